// The keyboard while a command runs: a session gets the keys, and nothing else does.
#include "console/terminal_session.h"

#include <X11/keysym.h>

#include <atomic>
#include <mutex>

#include "console/key_codes.h"
#include "foundation/break_state.h"
#include "foundation/utf8.h"
#include "support/console_test.h"
#include "support/x_keys.h"

namespace {
// What a session was told, kept by the test: the session itself goes with detachTerminal.
struct Told {
  std::mutex lock;
  std::string text;
  std::atomic<int> breaks{0}, closes{0}, ends{0};
  std::atomic<bool> full{false};

  void add(const std::string& more) {
    const std::lock_guard guard(lock);
    text += more;
  }
  std::string heard() {
    const std::lock_guard guard(lock);
    return text;
  }
};

class ListeningSession : public TerminalSession {
 public:
  explicit ListeningSession(Told& told) : told_(told) {}
  ~ListeningSession() override { ++told_.ends; }
  void write(std::string_view bytes) override { told_.add(std::string(bytes)); }
  bool sendKey(Key::Code code) override {
    char hex[16];
    snprintf(hex, sizeof hex, "%X ", static_cast<unsigned>(code.value()));
    if (code != Key::ShiftChanged) told_.add(hex);
    return !told_.full;
  }
  bool sendText(const Westring& text) override {
    told_.add(std::string("[") + toUtf8(text).data() + "]");
    return !told_.full;
  }
  void breakPressed() override { ++told_.breaks; }
  void closePressed() override { ++told_.closes; }

 private:
  Told& told_;
};

class TerminalSessionTest : public RealKeysTest {
 protected:
  void SetUp() override {
    RealKeysTest::SetUp();
    console->attachTerminal(std::make_unique<ListeningSession>(told));
  }
  void TearDown() override {
    console->detachTerminal();
    RealKeysTest::TearDown();
  }
  bool hears(const std::string& text) {
    return waitUntil([&] { return told.heard() == text; });
  }

  Told told;
};
}  // namespace

TEST_F(TerminalSessionTest, KeysAndTypedTextGoToItAndNotToTheQueue) {
  XKeys::get().press(XK_Up);
  XKeys::get().type("a\xC3\xA9");
  XKeys::get().press(XK_c, {XK_Control_L});
  XKeys::get().press(XK_F10);
  EXPECT_TRUE(hears("10048 61 E9 3 10044 ")) << told.heard();
  EXPECT_EQ(console->eventCount(), 0);
}

TEST_F(TerminalSessionTest, TheKeypadTypesItsSigns) {
  for (const unsigned long key :
       {XK_KP_Add, XK_KP_Subtract, XK_KP_Multiply, XK_KP_Divide, XK_KP_Enter}) {
    XKeys::get().press(key);
  }
  EXPECT_TRUE(hears("40002B 40002D 40002A 2F D ")) << told.heard();
}

TEST_F(TerminalSessionTest, AltAndACharacterWithoutACodeOfItsOwnIsEscAndIt) {
  XKeys::get().press(XK_f, {XK_Alt_L, XK_Shift_L});
  XKeys::get().press(XK_less, {XK_Alt_L});
  XKeys::get().press(XK_slash, {XK_Alt_L});
  XKeys::get().press(XK_slash, {XK_Alt_L, XK_Control_L});
  XKeys::get().type("x");
  EXPECT_TRUE(
      hears("[\x1B"
            "F][\x1B<][\x1B/]78 "))
      << told.heard();
}

TEST_F(TerminalSessionTest, TheMouseIsDropped) {
  XKeys::get().click(5, 5);
  XKeys::get().wheel(5, 5, 1);
  XKeys::get().type("x");
  EXPECT_TRUE(hears("78 ")) << told.heard();
  EXPECT_EQ(console->eventCount(), 0);
}

TEST_F(TerminalSessionTest, TheCloseButtonAndBreakAreToldAndAreNoKeys) {
  XKeys::get().press(XK_Pause, {XK_Control_L});
  XKeys::get().press(XK_Up);
  EXPECT_TRUE(hears("10048 "));
  EXPECT_EQ(told.breaks, 1) << "the release is no second press";
  XKeys::get().closeWindow(console->windowId());
  EXPECT_TRUE(waitUntil([&] { return told.closes == 1; }));
  EXPECT_EQ(told.heard(), "10048 ");
  EXPECT_EQ(console->eventCount(), 0);
}

TEST_F(TerminalSessionTest, ShiftInsertPastesTheClipboardAsOneText) {
  console->setClipboardText(L"two\nlines \x20AC");
  XKeys::get().press(XK_Insert, {XK_Shift_L});
  EXPECT_TRUE(hears("[two\nlines \xE2\x82\xAC]")) << told.heard();
}

TEST_F(TerminalSessionTest, AFullSessionIsNoTrouble) {
  told.full = true;
  console->setClipboardText(L"p");
  XKeys::get().type("a");
  XKeys::get().press(XK_Insert, {XK_Shift_L});
  XKeys::get().type("b");
  EXPECT_TRUE(waitUntil([&] { return told.heard().size() == 9; })) << told.heard();
}

TEST_F(TerminalSessionTest, WriteTtyGoesToIt) {
  console->writeTty("h\xC3\xA9\n");
  EXPECT_EQ(told.heard(), "h\xC3\xA9\n");
  EXPECT_EQ(rowText(0), std::string(80, ' '));
}

TEST_F(TerminalSessionTest, DetachingDeletesItAndGivesTheKeyboardBack) {
  console->detachTerminal();
  EXPECT_EQ(told.ends, 1);
  XKeys::get().type("q");
  EXPECT_EQ(waitKey(), 'q');
  console->writeTty("tty");
  EXPECT_EQ(rowText(0, 0, 3), "tty");
  XKeys::get().click(1, 1);
  MouseMessage mouse;
  EXPECT_EQ(waitKey(&mouse), Key::MouseEvent);
}

TEST_F(TerminalSessionTest, ANewOneReplacesTheOneBefore) {
  Told second;
  console->attachTerminal(std::make_unique<ListeningSession>(second));
  EXPECT_EQ(told.ends, 1);
  XKeys::get().type("z");
  EXPECT_TRUE(waitUntil([&] { return second.heard() == "7A "; }));
  EXPECT_EQ(told.heard(), "");
  console->detachTerminal();
}

TEST_F(TerminalSessionTest, RecordsThatWereQueuedBeforeStay) {
  console->detachTerminal();
  XKeys::get().type("k");
  ASSERT_TRUE(waitUntil([] { return console->eventCount() == 1; }));
  console->attachTerminal(std::make_unique<ListeningSession>(told));
  XKeys::get().type("l");
  EXPECT_TRUE(hears("6C "));
  console->detachTerminal();
  EXPECT_EQ(waitKey(), 'k');
}

TEST_F(TerminalSessionTest, AModifierHeldDownSinceIsToldToTheQueueAfterwards) {
  XKeys::get().keyDown(XK_Control_L);
  XKeys::get().press(XK_a);
  EXPECT_TRUE(hears("1 ")) << told.heard();
  console->detachTerminal();
  TEvent event;
  ASSERT_TRUE(console->readEvent(event, PatienceMs));
  EXPECT_EQ(event.key, Key::ShiftChanged);
  EXPECT_EQ(event.state, ShiftState::Ctrl);
  XKeys::get().keyUp(XK_Control_L);
}
