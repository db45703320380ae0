// The windows of the histories.

#include <atomic>

#include "console/key_codes.h"
#include "foundation/data_paths.h"
#include "foundation/utf8.h"
#include "history/history_store.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/panel_screen.h"
#include "tools/command_history_window.h"
#include "tools/directory_history_window.h"

namespace {

class HistoryWindowsTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    commandHistory().clear();
    directoryHistory().clear();
    goToPath(left(), dir.wide());
    goToPath(right(), dir.wide());
    directoryHistory().clear();
  }

  void queueKeys(std::initializer_list<Key::Code> keys) {
    for (Key::Code key : keys) queueKey(key);
  }
  HistoryOutcome open(std::initializer_list<Key::Code> keys) {
    queueKeys(keys);
    const HistoryOutcome outcome = commandHistoryWindow(command, [this] { ++helps; });
    EXPECT_EQ(console->eventCount(), 0) << "keys that nobody took";
    drainEvents();
    return outcome;
  }
  // What stands on the line after these keys and Ctrl-Enter.
  std::string chosenBy(std::initializer_list<Key::Code> keys) {
    queueKeys(keys);
    EXPECT_EQ(open({Key::CtrlEnter}), HistoryOutcome::PutOnLine);
    return bytes(command);
  }
  std::string screenOf(const std::string& text, const std::function<void()>& act) {
    std::string picture;
    Beside user([&] {
      if (waitToShow(text)) picture = screenText();
      queueKey(Key::Esc);
    });
    act();
    return picture;
  }

  TempDir dir;
  Westring command;
  int helps = 0;
};

TEST_F(HistoryWindowsTest, AnEmptyHistoryOpensNoWindow) {
  EXPECT_EQ(commandHistoryWindow(command, [] {}), HistoryOutcome::Nothing);
  EXPECT_TRUE(directoryHistoryWindow().empty());
}

TEST_F(HistoryWindowsTest, TheNewestCommandIsChosenAtFirst) {
  for (const wchar_t* text : {L"ls -l", L"make all", L"git log --oneline"}) addCommand(text);
  expectGoldenText("command_history",
                   screenOf(" History ", [this] { commandHistoryWindow(command, [] {}); }));
  EXPECT_EQ(chosenBy({}), "git log --oneline");
  EXPECT_EQ(chosenBy({Key::Up}), "make all");
  EXPECT_EQ(chosenBy({Key::Home}), "ls -l");
}

TEST_F(HistoryWindowsTest, TheWindowStaysWithinTheScreen) {
  for (int i = 0; i < 60; ++i) addCommand(Westring(L'a' + i % 26, 100 + i));
  const std::string picture =
      screenOf(" History ", [this] { commandHistoryWindow(command, [] {}); });
  int rows = 0;
  std::istringstream lines(picture);
  for (std::string line; std::getline(lines, line);)
    rows += line.find("\u2551") != std::string::npos;
  EXPECT_EQ(rows, 19) << picture;
}

TEST_F(HistoryWindowsTest, EscLeavesAndEnterRuns) {
  addCommand(L"cd /");
  EXPECT_EQ(open({Key::Esc}), HistoryOutcome::Nothing);
  EXPECT_EQ(bytes(left().path), dir.path());
  addCommand(L"other");
  EXPECT_EQ(open({Key::Up, Key::Enter}), HistoryOutcome::Run);
  EXPECT_EQ(bytes(left().path), "/");
  EXPECT_EQ(bytes(*commandHistory().peek(1)), "cd /") << "it is the newest now";
}

TEST_F(HistoryWindowsTest, AltEnterRunsWithThePrefix) {
  addCommand(L"/");
  GlobalOptions::Background = L"cd";
  EXPECT_EQ(open({Key::AltEnter}), HistoryOutcome::Run);
  EXPECT_EQ(bytes(left().path), "/");
  EXPECT_EQ(bytes(*commandHistory().peek(1)), "cd /");
}

TEST_F(HistoryWindowsTest, CtrlEnterPutsTheCommandOnTheLine) {
  addCommand(L"cd /");
  EXPECT_EQ(open({Key::CtrlEnter}), HistoryOutcome::PutOnLine);
  EXPECT_EQ(bytes(command), "cd /");
  EXPECT_EQ(open({Key::CtrlScanEnter}), HistoryOutcome::PutOnLine);
  EXPECT_EQ(bytes(left().path), dir.path());
}

TEST_F(HistoryWindowsTest, F1IsForHelpAndTheWindowStays) {
  addCommand(L"ls");
  EXPECT_EQ(open({Key::F1, Key::F1, Key::Esc}), HistoryOutcome::Nothing);
  EXPECT_EQ(helps, 2);
}

TEST_F(HistoryWindowsTest, ASearchGoesFromTheCursorToOlderCommands) {
  for (const wchar_t* text : {L"make one", L"ls", L"make two", L"echo", L"make three"})
    addCommand(text);
  EXPECT_EQ(chosenBy({Key::F7, 'm', 'a', 'k', 'e', Key::Enter}), "make three")
      << "the cursor's own too";
  EXPECT_EQ(chosenBy({Key::ShiftF7}), "make two") << "the text stays";
  EXPECT_EQ(chosenBy({Key::ShiftF7, Key::ShiftF7}), "make one");
  EXPECT_EQ(chosenBy({Key::Home, Key::AltF7}), "make two");
  EXPECT_EQ(chosenBy({Key::Home, Key::AltF7, Key::AltF7}), "make three");
}

TEST_F(HistoryWindowsTest, ASearchThatFindsNothingSaysSoAndStays) {
  for (const wchar_t* text : {L"one", L"two"}) addCommand(text);
  std::string box;
  std::thread user([&] {
    if (waitToShow("String not found")) box = screenText();
    queueKeys({Key::Enter, Key::CtrlEnter});
  });
  queueKeys({Key::F7, 'x', 'y', Key::Enter});
  EXPECT_EQ(commandHistoryWindow(command, [] {}), HistoryOutcome::PutOnLine);
  user.join();
  EXPECT_NE(box, "");
  EXPECT_EQ(bytes(command), "two");
}

TEST_F(HistoryWindowsTest, ARepetitionWithoutATextAsksForIt) {
  for (const wchar_t* text : {L"make", L"ls", L"echo"}) addCommand(text);
  EXPECT_EQ(chosenBy({Key::ShiftF7, Key::Esc}), "echo") << "nothing was looked for";
  EXPECT_EQ(chosenBy({Key::ShiftF7, 'm', Key::Enter}), "make");
}

TEST_F(HistoryWindowsTest, TheSearchFieldLooksAsItShould) {
  addCommand(L"ls");
  std::string picture;
  std::thread user([&] {
    if (waitToShow("Search:")) picture = screenText();
    queueKeys({Key::Esc, Key::Esc});
  });
  queueKey(Key::F7);
  commandHistoryWindow(command, [] {});
  user.join();
  expectGoldenText("command_history_search", picture);
}

TEST(HistorySearch, IsForAPartWithItsCase) {
  FnStringStore texts;
  for (const wchar_t* text : {L"make", L"Make", L"remake"}) texts.add(new Westring(text));
  EXPECT_EQ(findInHistory(texts, L"make", 2, -1), 2);
  EXPECT_EQ(findInHistory(texts, L"make", 1, -1), 0);
  EXPECT_EQ(findInHistory(texts, L"Mak", 0, 1), 1);
  EXPECT_EQ(findInHistory(texts, L"make", 3, 1), -1);
  EXPECT_EQ(findInHistory(texts, L"make", -1, -1), -1);
}

TEST_F(HistoryWindowsTest, TheDirectoryHistoryGivesTheChosenOne) {
  for (const wchar_t* path : {L"/etc", L"/usr/share", L"/"}) addDirectory(path);
  expectGoldenText("directory_history",
                   screenOf("Directory History", [] { directoryHistoryWindow(); }));
  queueKey(Key::Enter);
  EXPECT_EQ(bytes(directoryHistoryWindow()), "/");
  queueKeys({Key::Up, Key::Enter});
  EXPECT_EQ(bytes(directoryHistoryWindow()), "/usr/share");
  queueKey(Key::Esc);
  EXPECT_EQ(bytes(directoryHistoryWindow()), "");
}

}  // namespace
