#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
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

// Runs `body` with a console on a server of its own, and ends the console and the process.
[[noreturn]] void onServer(const std::function<void(XServer&, CConsole&)>& body) {
  XServer server;
  useServer(server);
  if (!begin()) leave(9);
  {
    CConsole screen;
    body(server, screen);
  }
  leave(8);
}

bool sleeps(pid_t thread) {
  std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string text;
  std::getline(status, text);
  return text.find(") S ") != std::string::npos;
}

void waitForTheEnd() {
  while (!programEnds()) getKey();
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
                waitForTheEnd();
              }),
              testing::ExitedWithCode(1), "^td: the connection to the X display is lost\n$");
}

TEST_F(ToolkitDeathTest, ALostDisplayIsNoEscAndLetsAnOperationEnd) {
  EXPECT_EXIT(onServer([](XServer& server, CConsole& screen) {
                BreakScope operation;
                server.kill();
                while (!breakRequested()) {
                }
                const bool told = programEnds() && getKey() == Key::NoKey && escapePressed();
                // The screen is gone, but what the operation draws meanwhile does no harm.
                screen.writeWide(0, 0, L"ending", 7);
                screen.setGeometry(90, 30, Estring("DejaVu Sans"), 11);
                screen.setTitle("gone");
                screen.scrollUp(0, 0, 80, 25, 1, 7);
                screen.setClipboardText(Westring(L"x"));
                screen.beep();
                const bool empty = screen.getClipboardText().empty() && screen.picture().width == 0;
                fputs(told && empty && displayLost() ? "brought to its end\n" : "wrong\n", stderr);
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
          getKey();
        }
        leave(8);
      },
      testing::ExitedWithCode(1), "^td: the connection to the X display is lost\n$");
}

TEST_F(ToolkitDeathTest, ALostDisplayLeavesTimeToPutUnsavedWorkAside) {
  EXPECT_EXIT(onServer([](XServer& server, CConsole&) {
                server.kill();
                waitForTheEnd();
                // Where Esc means to stay, any number of further questions may be met on the way.
                for (int i = 0; i < 1000; ++i) getKey();
                fputs("saved\n", stderr);
              }),
              testing::ExitedWithCode(1), "^saved\ntd: the connection to the X display is lost\n$");
}

// Whoever is told when the display goes is told while he is there: neither half replaced nor after
// his end.
struct LossListener {
  std::atomic<bool> alive{false};
  static void told(void* self) {
    if (!self || !static_cast<LossListener*>(self)->alive) leave(6);
  }
};

TEST_F(ToolkitDeathTest, ADisplayLostWhileListenersComeAndGoIsNoCrash) {
  EXPECT_EXIT(onServer([](XServer&, CConsole&) {
                constexpr int Listeners = 64, RoundsAfterTheLoss = 1000;
                static LossListener listeners[Listeners];
                std::thread([] { XSetIOErrorHandler(nullptr)(nullptr); }).detach();
                for (int i = 0, rest = RoundsAfterTheLoss; rest > 0; ++i) {
                  LossListener& listener = listeners[i % Listeners];
                  listener.alive = true;
                  whenDisplayLost(LossListener::told, &listener);
                  whenDisplayLost(nullptr, nullptr);
                  listener.alive = false;
                  if (displayLost()) --rest;
                }
              }),
              testing::ExitedWithCode(1), "^td: the connection to the X display is lost\n$");
}

TEST_F(ToolkitDeathTest, ADisplayLostWhileTheConsoleEndsIsNoCrash) {
  for (int delay = 0; delay < 6; ++delay) {
    EXPECT_EXIT(
        onServer([delay](XServer& server, CConsole&) {
          std::thread([pid = server.pid(), delay] {
            for (int i = 0; i < delay; ++i) sched_yield();
            kill(pid, SIGKILL);
          }).detach();
        }),
        [](int status) {
          const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
          return code == 1 || code == 8;  // lost before or after the end
        },
        "");
  }
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
                std::thread([] {
                  waitUntil([] { return sleeps(getpid()); });  // for the lock
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
