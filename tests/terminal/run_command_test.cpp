#include "terminal/run_command.h"

#include <X11/keysym.h>
#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <thread>

#include "foundation/path_info.h"
#include "foundation/utf8.h"
#include "language/environment.h"
#include "options/colours.h"
#include "support/console_test.h"
#include "support/x_keys.h"
#include "terminal/session_test.h"

namespace {

// Commands on the console, typed at by real keys.
class RunCommand : public RealKeysTest {
 protected:
  void SetUp() override {
    RealKeysTest::SetUp();
    sessionEnvironment().set("SHELL", "/bin/sh");
    console->setCursorPos(5, 3);
    descriptors_ = openDescriptors();
  }
  void TearDown() override {
    EXPECT_EQ(openDescriptors(), descriptors_);
    sessionEnvironment().set("SHELL", nullptr);
    RealKeysTest::TearDown();
  }

  int run(const std::string& command, unsigned flags = 0) {
    return runCommand(fromUtf8(command.c_str()), currentDir(), flags, &status);
  }
  bool shows(const std::string& text) const { return screenText().find(text) != std::string::npos; }
  // Runs a command and acts as its user as soon as the screen shows `text`.
  int runWithUser(const std::string& command, const std::string& text,
                  const std::function<void()>& act) {
    std::thread user([&] {
      EXPECT_TRUE(waitUntil([&] { return shows(text); })) << screenText();
      act();
    });
    const int result = run(command);
    user.join();
    return result;
  }
  XKeys& keys() { return XKeys::get(); }

  int status = -1;

 private:
  int descriptors_ = 0;
};

TEST_F(RunCommand, OutputBeginsAtTheLeftOfTheCursorsRow) {
  EXPECT_EQ(run("echo one; echo two"), 0);
  EXPECT_EQ(rowText(0, 3, 4), "one ");
  EXPECT_EQ(rowText(0, 4, 4), "two ");
  EXPECT_EQ(console->getCursorPos().y, 5);
  EXPECT_EQ(status, 0);
}

TEST_F(RunCommand, TheStatusIsTheShells) {
  EXPECT_EQ(run("exit 42"), 0);
  EXPECT_EQ(status, 42);
  EXPECT_EQ(run("kill -TERM $$"), 0);
  EXPECT_EQ(status, 128 + SIGTERM);
}

TEST_F(RunCommand, ColoursComeAsAttributes) {
  EXPECT_EQ(run("printf 'a\\033[31mb\\033[0mc'"), 0);
  EXPECT_EQ(attrAt(0, 3), 7);
  EXPECT_EQ(attrAt(1, 3), 4);
  EXPECT_EQ(attrAt(2, 3), 7);
}

TEST_F(RunCommand, ACharacterThatComesInPiecesIsWhole) {
  EXPECT_EQ(run("printf '\\303'; sleep 0.05; printf '\\251\\n'"), 0);
  EXPECT_EQ(rowText(0, 3, 3), "\xC3\xA9  ");
}

TEST_F(RunCommand, APieceOfACharacterShowsWhenNothingFollows) {
  EXPECT_EQ(runWithUser("printf 'a\\303'; read x; printf b", "a\xC3\x83",
                        [this] { keys().press(XK_Return); }),
            0);
  EXPECT_EQ(run("printf '\\303'"), 0) << "also at the end";
  EXPECT_TRUE(shows("\xC3\x83"));
}

TEST_F(RunCommand, KeysReachTheCommandAndNotTheQueue) {
  EXPECT_EQ(runWithUser("printf 'name? '; read x; echo \"<$x>\"", "name?",
                        [this] {
                          keys().type("A\xC3\xA9");
                          keys().press(XK_Return);
                        }),
            0);
  EXPECT_TRUE(shows("<A\xC3\xA9>")) << screenText();
  EXPECT_FALSE(keyPending());
}

TEST_F(RunCommand, ControlCInterrupts) {
  EXPECT_EQ(
      runWithUser("echo go; exec sleep 1000", "go", [this] { keys().press(XK_c, {XK_Control_L}); }),
      0);
  EXPECT_EQ(status, 128 + SIGINT);
}

TEST_F(RunCommand, BreakTwiceLeavesAProgramThatIgnoresControlC) {
  EXPECT_EQ(runWithUser("trap '' INT; echo go; while :; do sleep 1; done", "go",
                        [this] {
                          keys().press(XK_c, {XK_Control_L});
                          keys().press(XK_Pause, {XK_Control_L});
                          keys().press(XK_Pause, {XK_Control_L});
                        }),
            -EINTR);
  EXPECT_EQ(status, 128 + SIGHUP);
}

TEST_F(RunCommand, TheCloseButtonEndsTheCommandAndIsAKeyAfterwards) {
  EXPECT_EQ(runWithUser("echo go; exec sleep 1000", "go",
                        [this] { keys().closeWindow(console->windowId()); }),
            -EINTR);
  EXPECT_EQ(waitKey(), Key::F10);
}

TEST_F(RunCommand, ACommandKnowsItsScreen) {
  EXPECT_EQ(run("stty size; echo $TERM; echo \"<$LINES$COLUMNS>\"; pwd"), 0);
  EXPECT_EQ(rowText(0, 3, 6), "25 80 ");
  EXPECT_EQ(rowText(0, 4, 5), "ansi ");
  EXPECT_EQ(rowText(0, 5, 3), "<> ");
}

TEST_F(RunCommand, WithoutAShellThatIsShown) {
  sessionEnvironment().hide("SHELL");
  EXPECT_EQ(run("echo no"), 0);
  EXPECT_EQ(status, 127);
  EXPECT_EQ(rowText(0, 3, 17), "SHELL is not set ");
  sessionEnvironment().set("SHELL", "/no/shell");
  EXPECT_EQ(run("echo no"), 0);
  EXPECT_EQ(status, 127);
  EXPECT_TRUE(shows("/no/shell: No such file or directory"));
}

TEST_F(RunCommand, NothingRunsWithoutATerminal) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit none = before;
  none.rlim_cur = 3;
  setrlimit(RLIMIT_NOFILE, &none);
  EXPECT_EQ(run("echo no"), -EMFILE);
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_FALSE(shows("no"));
}

TEST_F(RunCommand, AHiddenCommandShowsNothingAndEscEndsIt) {
  EXPECT_EQ(run("echo no", RunFlag::Hidden), 0);
  EXPECT_FALSE(shows("no"));
  EXPECT_EQ(console->getCursorPos().x, 5);
  queueKey(Key::Esc);
  EXPECT_EQ(run("exec sleep 1000", RunFlag::Hidden), -EINTR);
}

TEST_F(RunCommand, FloodsOfOutputAreDrawnToTheirEnd) {
  EXPECT_EQ(run("yes 0123456789012345678901234567890123456789 | head -c 4000000; echo the end"), 0);
  EXPECT_TRUE(shows("the end"));
}

}  // namespace
