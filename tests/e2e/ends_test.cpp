// Ends that the table of places doesn't hold: other signals, a copy that would never end, the exit
// script.

#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "commander/program.h"
#include "console/console.h"
#include "console/key_codes.h"
#include "e2e/program_test.h"
#include "foundation/utf8.h"
#include "support/x_display.h"

namespace {

class Signals : public ProgramTest {
 protected:
  // Copies a pipe into which nobody writes: that lasts until it is broken off.
  void startEndlessCopy() {
    ASSERT_EQ(mkfifo(left().path("pipe").c_str(), 0600), 0);
    right().write("kept", "old");
    start();
    moveTo("pipe");
    press(XK_F5);
    expectText("Copy \"pipe\" to");
    press(XK_Return);
    expectSoon("a copy in the making", [this] { return right().names().size() > 1; });
  }
};

TEST_F(Signals, AHangupEndsWithoutAQuestion) {
  start();
  kill(getpid(), SIGHUP);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(Signals, AnInterruptEndsWithoutAQuestion) {
  start();
  kill(getpid(), SIGINT);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(Signals, TerminateDuringACopyThatNeverEndsLeavesNoPartOfIt) {
  startEndlessCopy();
  kill(getpid(), SIGTERM);
  EXPECT_EQ(waitForEnd(), 0);
  EXPECT_EQ(right().names(), std::vector<std::string>{"kept"});
}

TEST_F(Signals, TheExitScriptIsWrittenAlsoAfterARequestToEnd) {
  start({"-x", home().path("leave.bat")});
  kill(getpid(), SIGTERM);
  EXPECT_EQ(waitForEnd(), 0);
  EXPECT_TRUE(home().exists("leave.bat"));
}

// ---- the display goes away: in a process of its own, which starts anew from main

constexpr char LostMessage[] = "^td: the connection to the X display is lost\n$";

class DisplayDeathTest : public testing::Test {
 protected:
  void SetUp() override {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // The process that loses its display starts anew, and works where the first one tells it.
    if (const char* known = getenv("TD_TEST_PLACE")) {
      place_ = known;
      return;
    }
    own_ = std::make_unique<TempDir>();
    place_ = own_->path();
    for (const char* directory : {"home", "left", "right"}) own_->makeDir(directory);
    ASSERT_EQ(mkfifo(own_->path("left/pipe").c_str(), 0600), 0);
    setenv("TD_TEST_PLACE", place_.c_str(), 1);
    setenv("HOME", own_->path("home").c_str(), 1);
    setenv("LC_ALL", "C.UTF-8", 1);
  }
  void TearDown() override { unsetenv("TD_TEST_PLACE"); }

  static std::string screen() {
    Westring text;
    for (const Cell& cell : console->getCells(0, 0, console->columns(), console->rows())) {
      text += cell.ch == 0 ? L' ' : cell.ch;
    }
    return toUtf8(text).data();
  }
  static void waitFor(const std::string& text) {
    if (!waitUntil([&] { return console && screen().find(text) != std::string::npos; })) _exit(7);
  }
  static void key(Key::Code code) {
    TEvent event;
    event.key = code;
    console->events().put(event);
  }

  // Runs td on a server of its own, brings it to where the display is to go, and takes it away.
  // Doesn't return.
  void loseDisplay(const std::function<void()>& prepare) {
    XServer server;
    setenv("DISPLAY", server.name().c_str(), 1);
    std::thread program([this] {
      std::string left = place_ + "/left", right = place_ + "/right";
      char name[] = "td", l[] = "-l", r[] = "-r";
      char* arguments[] = {name, l, left.data(), r, right.data(), nullptr};
      _exit(10 + runProgram(5, arguments));
    });
    waitFor("10Quit");
    prepare();
    std::ofstream(place_ + "/lost");
    server.kill();
    program.join();
    abort();
  }

  // Well before the process would be ended because it doesn't come to an end by itself.
  void expectEndedSoon() const {
    const auto lost = std::filesystem::last_write_time(place_ + "/lost");
    EXPECT_LT(std::filesystem::file_time_type::clock::now() - lost, std::chrono::seconds(4));
  }

  std::unique_ptr<TempDir> own_;
  std::string place_;
};

TEST_F(DisplayDeathTest, DuringACopyThatNeverEndsLeavesNoPartOfIt) {
  EXPECT_EXIT(loseDisplay([this] {
                key(Key::End);
                key(Key::F5);
                waitFor("Copy \"pipe\" to");
                key(Key::Enter);
                if (!waitUntil([this] { return !std::filesystem::is_empty(place_ + "/right"); })) {
                  _exit(8);
                }
              }),
              testing::ExitedWithCode(1), LostMessage);
  expectEndedSoon();
  EXPECT_TRUE(std::filesystem::is_empty(place_ + "/right"));
}

}  // namespace
