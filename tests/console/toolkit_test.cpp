#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <thread>

#include "console/console.h"
#include "console/input.h"
#include "console/key_codes.h"
#include "console/toolkit.h"
#include "foundation/break_state.h"
#include "support/wait_until.h"
#include "support/x_display.h"

// The X headers' macros would break the toolkit's, so they come last.
#include <X11/Xlib.h>

// The beginning and the end of the toolkit: each in a process of its own, which starts anew from
// main.
namespace {
class Toolkit : public testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

bool begin() {
  static char name[] = "td";
  static char* arguments[] = {name, nullptr};
  int count = 1;
  char** values = arguments;
  return initToolkit(&count, &values);
}

void useServer(const XServer& server) {
  setenv("DISPLAY", server.name().c_str(), 1);
}

[[noreturn]] void leave(int status) {
  fflush(nullptr);
  _exit(status);
}

// Runs `body` with a console on a server of its own; it ends the process.
[[noreturn]] void onServer(const std::function<void(XServer&, CConsole&)>& body) {
  XServer server;
  useServer(server);
  if (!begin()) leave(9);
  CConsole screen;
  body(server, screen);
  leave(8);
}

using ToolkitDeathTest = Toolkit;

TEST_F(ToolkitDeathTest, WithoutADisplayItTellsSoAndLeavesTheEndToTheProgram) {
  EXPECT_EXIT(
      {
        unsetenv("DISPLAY");
        leave(begin() ? 0 : 7);
      },
      testing::ExitedWithCode(7), "");
  EXPECT_EXIT(
      {
        setenv("DISPLAY", ":98765", 1);
        leave(begin() ? 0 : 7);
      },
      testing::ExitedWithCode(7), "");
}

TEST_F(ToolkitDeathTest, AConsoleMayEndRightAfterItsBeginning) {
  EXPECT_EXIT(
      {
        XServer server;
        useServer(server);
        if (!begin()) leave(9);
        { CConsole screen; }
        endToolkit();
        leave(console == nullptr ? 5 : 6);
      },
      testing::ExitedWithCode(5), "^$");
}

TEST_F(ToolkitDeathTest, ALostDisplayEndsAProgramThatWaitsForAKey) {
  EXPECT_EXIT(onServer([](XServer& server, CConsole& screen) {
                screen.writeWide(0, 0, L"text", 7);
                screen.completePainting();
                server.kill();
                for (;;) getKey(nullptr, nullptr);
              }),
              testing::ExitedWithCode(1), "^td: the connection to the X display is lost\n$");
}

TEST_F(ToolkitDeathTest, ALostDisplayAnswersEscAndLetsAnOperationEnd) {
  EXPECT_EXIT(onServer([](XServer& server, CConsole& screen) {
                BreakScope operation;
                server.kill();
                while (!breakRequested()) {
                }
                const bool asked = getKey(nullptr, nullptr) == Key::Esc && escapePressed();
                // The screen is gone, but what the operation draws meanwhile does no harm.
                screen.writeWide(0, 0, L"ending", 7);
                screen.setGeometry(90, 30, Estring("DejaVu Sans"), 11);
                screen.setTitle("gone");
                screen.scrollUp(0, 0, 80, 25, 1, 7);
                screen.setClipboardText(Westring(L"x"));
                screen.beep();
                const bool empty = screen.getClipboardText().empty() && screen.picture().width == 0;
                fputs(asked && empty && displayLost() ? "brought to its end\n" : "wrong\n", stderr);
                for (;;) getKey(nullptr, nullptr);
              }),
              testing::ExitedWithCode(1),
              "^brought to its end\ntd: the connection to the X display is lost\n$");
}

TEST_F(ToolkitDeathTest, ALostDisplayIsNoticedWhilePainting) {
  EXPECT_EXIT(onServer([](XServer& server, CConsole& screen) {
                server.kill();
                for (int i = 0; !displayLost(); ++i) {
                  screen.fillBlank(0, 0, 80, 25, static_cast<unsigned char>(i));
                  screen.completePainting();
                }
                fputs("noticed\n", stderr);
                for (;;) getKey(nullptr, nullptr);
              }),
              testing::ExitedWithCode(1),
              "^noticed\ntd: the connection to the X display is lost\n$");
}

TEST_F(ToolkitDeathTest, ALostDisplayDoesNotKeepTheConsoleFromEnding) {
  EXPECT_EXIT(
      {
        XServer server;
        useServer(server);
        if (!begin()) leave(9);
        {
          CConsole screen;
          server.kill();
          getKey(nullptr, nullptr);
        }
        leave(8);
      },
      testing::ExitedWithCode(1), "^td: the connection to the X display is lost\n$");
}

TEST_F(ToolkitDeathTest, AThreadStuckWithTheLockDoesNotHoldUpTheEnd) {
  EXPECT_EXIT(onServer([](XServer&, CConsole& screen) {
                std::atomic<bool> stuck{false};
                std::thread([&stuck] {
                  ToolkitLock lock;
                  stuck = true;
                  for (;;) pause();
                }).detach();
                if (!waitUntil([&stuck] { return stuck.load(); })) leave(8);
                // By then the console waits for the lock.
                std::thread([] {
                  sleep(1);
                  XSetIOErrorHandler(nullptr)(nullptr);
                }).detach();
                screen.setTitle("waits for the lock");
                fputs(displayLost() ? "went on\n" : "wrong\n", stderr);
                leave(1);
              }),
              testing::ExitedWithCode(1), "^went on\n$");
}

TEST_F(ToolkitDeathTest, AProgramThatNeverRestsIsEndedAfterAWhile) {
  EXPECT_EXIT(onServer([](XServer& server, CConsole&) {
                server.kill();
                for (;;) pause();
              }),
              testing::ExitedWithCode(1), "^td: the connection to the X display is lost\n$");
}
}  // namespace
