#include "terminal/terminal_log.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {
TEST(TerminalLog, IsMadeForItsOwnerOnlyAndThenAppendedTo) {
  TempDir files;
  const std::string path = files.path("log");
  TerminalLog log(path.c_str());
  EXPECT_FALSE(files.exists("log"));
  log.open();
  EXPECT_TRUE(files.exists("log"));
  EXPECT_EQ(files.read("log"), "");
  EXPECT_EQ(files.mode("log"), 0600u);
  log.add("one");
  TerminalLog(path.c_str()).add("two");
  log.add("three");
  EXPECT_EQ(files.read("log"), "one\r\ntwo\r\nthree\r\n");
}

TEST(TerminalLog, StopsGrowingAtOneMebibyte) {
  TempDir files;
  files.write("log", std::string((1 << 20) - 10, 'x'));
  const std::string path = files.path("log");
  TerminalLog log(path.c_str());
  log.add("123456789");
  EXPECT_EQ(files.read("log").size(), (1u << 20) - 10);
  log.add("12345678");
  EXPECT_EQ(files.read("log").size(), 1u << 20);
  log.add("");
  EXPECT_EQ(files.read("log").size(), 1u << 20);
}

TEST(TerminalLog, LinksAndOtherThingsAreLeftAlone) {
  TempDir files;
  files.write("victim", "mine");
  files.link("victim", "link");
  files.link("nowhere", "dangling");
  ASSERT_EQ(::link(files.path("victim").c_str(), files.path("hard").c_str()), 0);
  files.makeDir("directory");
  ASSERT_EQ(mkfifo(files.path("pipe").c_str(), 0600), 0);
  for (const char* name : {"link", "dangling", "hard", "directory", "pipe"}) {
    const std::string path = files.path(name);
    TerminalLog(path.c_str()).add("line");
  }
  EXPECT_EQ(files.read("victim"), "mine");
  EXPECT_FALSE(files.exists("nowhere"));
}

TEST(TerminalLog, AFileOfSomebodyElseIsLeftAlone) {
  TempDir files;
  files.openToAll();
  files.write("log", "theirs");
  files.chmod("log", 0666);
  const std::string path = files.path("log");
  EXPECT_EQ(runAsUser([&] {
              TerminalLog(path.c_str()).add("line");
              EXPECT_EQ(files.read("log"), "theirs");
            }),
            0);
}

TEST(TerminalLog, AFailingSystemIsNoTrouble) {
  TempDir files;
  const std::string path = files.path("log");
  const auto logALine = [&] { TerminalLog(path.c_str()).add("line"); };
  int calls = 0;
  {
    FaultHook counting;
    logALine();
    calls = counting.calls();
  }
  ASSERT_GT(calls, 3);
  for (int number = 1; number <= calls; ++number) {
    unlink(path.c_str());
    FaultHook hook(number, EIO);
    logALine();
    EXPECT_TRUE(hook.hit()) << number;
  }
}
}  // namespace
