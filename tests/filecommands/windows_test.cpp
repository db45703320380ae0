#include "filecommands/command_test.h"
#include "filecommands/console_ui.h"
#include "fileops/progress.h"
#include "support/manual_clock.h"

// The windows that only show: progress and deletion.

namespace {

class WindowsTest : public PanelScreenTest {
 protected:
  void picture(const std::string& name) {
    const char* pictures = getenv("TD_PICTURES");
    if (pictures) console->savePicture((std::string(pictures) + "/" + name + ".png").c_str());
  }
  void expectScreen(const std::string& name) {
    expectGolden(name);
    picture(name);
  }
  ProgressRecord record;
};

constexpr uint32_t FrameMs = 16, RepaintMs = 100;

}  // namespace

TEST_F(WindowsTest, TheProgressWindowShowsItemBarAndStatistics) {
  CopyProgress progress(record);
  record.total = 1000;
  record.done = 400;
  record.dirty = true;
  progress.showItem(TransferKind::Copy, "/from/file.txt", "/to/file.txt", 3, 7);
  EXPECT_TRUE(waitToShow("█"));
  EXPECT_TRUE(waitUntil([&] { return !record.dirty; }));
  progress.pause();
  expectScreen("progress_copy");
  EXPECT_EQ(attrAt(20, 8), colourOf(Colour::Messages));
}

TEST_F(WindowsTest, WithAStartTimeTheStatisticsAreShown) {
  CopyProgress progress(record);
  record.total = 1000;
  record.done = 500;
  record.start = clockSeconds() - 10;
  record.dirty = true;
  progress.showItem(TransferKind::Move, "/from/file.txt", "/to/file.txt", 1, 1);
  EXPECT_TRUE(waitToShow("Time: 0:1"));
  EXPECT_TRUE(shows("ETA: 0:1"));
  EXPECT_TRUE(shows("Moving"));
  EXPECT_FALSE(shows("of 1"));
  picture("progress_statistics");
}

TEST_F(WindowsTest, WithoutATotalThereIsNoBar) {
  CopyProgress progress(record);
  record.done = 500;
  record.start = clockSeconds() - 10;
  record.dirty = true;
  progress.showItem(TransferKind::Copy, "/a", "/b", 1, 1);
  EXPECT_TRUE(waitToShow("Time:"));
  EXPECT_FALSE(shows("█"));
  EXPECT_FALSE(shows("░"));
}

TEST_F(WindowsTest, ALongerPathMakesANewWindowAndAShorterOneKeepsIt) {
  const std::string before = screenText();
  {
    CopyProgress progress(record);
    progress.showItem(TransferKind::Copy, "/a", "/b", 1, 1);
    EXPECT_EQ(
        rowText(8), std::string(20, ' ') + "╔" + [] {
          std::string line;
          for (int i = 0; i < 38; ++i) line += "═";
          return line;
        }() + "╗" + std::string(20, ' '));
    const std::string longer = "/first/" + std::string(100, 'x');
    progress.showItem(TransferKind::Copy, longer.c_str(), "/b", 1, 1);
    progress.complete();
    EXPECT_TRUE(shows("/first/..."));
    expectScreen("progress_wide");
    progress.showItem(TransferKind::Copy, "/short", "/b", 1, 1);
    progress.complete();
    EXPECT_FALSE(shows("xxxx"));
    EXPECT_TRUE(shows("/short"));
  }
  EXPECT_EQ(screenText(), before);
}

TEST_F(WindowsTest, RenamesShowTheirCountAsTheBar) {
  CopyProgress progress(record);
  progress.showItem(TransferKind::Move, "/a", "/b", 2, 4);
  progress.showItemsDone(2, 4);
  std::string bar;
  for (int i = 0; i < 37; ++i) bar += i < 18 ? "█" : "░";
  EXPECT_EQ(rowText(14), std::string(20, ' ') + "║ " + bar + "║" + std::string(20, ' '));
}

TEST_F(WindowsTest, PausedTheThreadDrawsNothing) {
  ManualClock clock;
  CopyProgress progress(record, clock);
  record.total = 100;
  progress.showItem(TransferKind::Copy, "/a", "/b", 1, 1);
  progress.pause();
  record.done = 50;
  record.dirty = true;
  for (int rounds = 0; rounds < 3; ++rounds) clock.letPass(RepaintMs);
  EXPECT_FALSE(shows("█"));
  EXPECT_TRUE(record.dirty);
  progress.resume();
  clock.letPass(RepaintMs);
  EXPECT_TRUE(waitToShow("█"));
}

TEST_F(WindowsTest, OfManyShortItemsOneAFrameIsShown) {
  ManualClock clock;
  CopyProgress progress(record, clock);
  int item = 0;
  const auto showMany = [&] {
    for (int i = 0; i < 1000; ++i) {
      progress.showItem(TransferKind::Copy, ("/f" + std::to_string(item++)).c_str(), "/b", 1, 1);
    }
  };
  showMany();
  EXPECT_TRUE(shows(" /f0 "));
  clock.moveOn(FrameMs - 1);
  showMany();
  EXPECT_TRUE(shows(" /f0 "));
  clock.moveOn(1);
  showMany();
  EXPECT_TRUE(shows(" /f2000 "));
  progress.complete();
  EXPECT_TRUE(shows(" /f2999 "));
}

// However the window came to be, the question's box never stands over rows not yet painted.
TEST_F(WindowsTest, AWindowMadeWiderKeepsItsBarAndItsRates) {
  ManualClock clock;
  ConsoleUi ui;
  ui.watch(record, clock);
  record.total = 100;
  record.done = 50;
  record.start = clockSeconds() - 10;
  ui.itemStarted(TransferKind::Copy, "/a", "/b", 1, 1);
  EXPECT_TRUE(shows("Time:"));
  EXPECT_TRUE(shows("█"));
  const std::string longer = "/first/" + std::string(50, 'x');
  ui.itemStarted(TransferKind::Copy, longer.c_str(), "/b", 1, 1);
  std::string seen;
  Beside user([&] {
    waitToShow("[ Cancel ]");
    seen = screenText();
    queueKey(Key::Enter);
  });
  ui.ask(L"The question", L"/x", AlertButtons::OkCancel, AlertColour::Message);
  EXPECT_NE(seen.find("█"), std::string::npos) << seen;
  EXPECT_NE(seen.find("Time:"), std::string::npos) << seen;
}

TEST_F(WindowsTest, AWiderWindowOfRenamesKeepsTheirCount) {
  ManualClock clock;
  CopyProgress progress(record, clock);
  progress.showItem(TransferKind::Move, "/a", "/b", 1, 4);
  progress.showItemsDone(2, 4);
  clock.moveOn(FrameMs);
  const std::string longer = "/first/" + std::string(50, 'x');
  progress.showItem(TransferKind::Move, longer.c_str(), "/b", 2, 4);
  EXPECT_TRUE(shows("xxxx"));
  EXPECT_TRUE(shows("█░"));
}

TEST_F(WindowsTest, AQuestionFindsTheThreadAtRestAndTheNamesInPlace) {
  ManualClock clock;
  ConsoleUi ui;
  ui.watch(record, clock);
  record.total = 100;
  ui.itemStarted(TransferKind::Copy, "/first", "/b", 1, 1);
  ui.itemStarted(TransferKind::Copy, "/second", "/b", 1, 1);
  std::string seen;
  Beside user([&] {
    waitToShow("[ Cancel ]");
    const std::string first = screenText();
    record.done = 100;
    record.dirty = true;
    for (int rounds = 0; rounds < 3; ++rounds) clock.letPass(RepaintMs);
    EXPECT_EQ(screenText(), first);
    seen = first;
    queueKey(Key::Enter);
  });
  EXPECT_EQ(ui.ask(L"The question", L"/x", AlertButtons::OkCancel, AlertColour::Message),
            Answer::Yes);
  EXPECT_NE(seen.find("/b"), std::string::npos);
  clock.letPass(RepaintMs);
  EXPECT_TRUE(waitToShow("███"));
}

TEST_F(WindowsTest, TheDeleteWindowGrowsWithThePaths) {
  const std::string before = screenText();
  DeleteWindow window;
  window.show("/a", DeleteWindowUse::IfOpen);
  EXPECT_FALSE(window.isOpen());
  window.show("/a", DeleteWindowUse::Open);
  expectScreen("delete_window");
  EXPECT_NE(rowText(5).find("╔════════════════════╗"), std::string::npos) << screenText();
  window.show("/a/path/that/is/a/good/deal/longer", DeleteWindowUse::Open);
  window.complete();
  expectScreen("delete_window_wide");
  window.show("/b", DeleteWindowUse::Open);
  window.complete();
  EXPECT_FALSE(shows("longer"));
  window.close();
  EXPECT_EQ(screenText(), before);
}

TEST_F(WindowsTest, OfManyDeletionsOneAFrameIsShown) {
  ManualClock clock;
  DeleteWindow window(clock);
  int item = 0;
  const auto showMany = [&] {
    for (int i = 0; i < 1000; ++i) {
      window.show(("/f" + std::to_string(item++)).c_str(), DeleteWindowUse::Open);
    }
  };
  showMany();
  EXPECT_TRUE(shows(" /f0 "));
  clock.moveOn(FrameMs);
  showMany();
  EXPECT_TRUE(shows(" /f1000 "));
  window.complete();
  EXPECT_TRUE(shows(" /f1999 "));
}

TEST_F(WindowsTest, HostileNamesKeepTheirCells) {
  DeleteWindow window;
  window.show("/a\nb\x01\xff\xe6\x97\xa5", DeleteWindowUse::Open);
  EXPECT_TRUE(shows("/a◙b☺ÿ")) << screenText();
}
