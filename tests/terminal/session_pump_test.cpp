#include "terminal/session_pump.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>

#include "support/as_user.h"
#include "support/end_request.h"
#include "support/temp_dir.h"
#include "support/wait_until.h"
#include "terminal/session_test.h"

namespace {

class Session : public SessionTest {
 protected:
  // A process that a command left behind; ends with the test.
  void expectLivesOn(const std::string& label) {
    const pid_t process = numberBehind(output, label);
    ASSERT_GT(process, 1) << output;
    EXPECT_TRUE(isAlive(process)) << output;
    kill(process, SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return !isAlive(process); }));
  }
  void expectGone(const std::string& label) {
    const pid_t process = numberBehind(output, label);
    ASSERT_GT(process, 1) << output;
    EXPECT_TRUE(waitUntil([&] { return !isAlive(process); })) << output;
  }
};

}  // namespace

TEST_F(Session, AllThatACommandPrintsIsShown) {
  EXPECT_EQ(run("echo one; echo two >&2; printf three"), 0);
  EXPECT_EQ(output, "one\r\ntwo\r\nthree");
}

TEST_F(Session, ACommandThatPrintsNothingReturns) {
  EXPECT_EQ(run("true"), 0);
  EXPECT_EQ(output, "");
}

TEST_F(Session, TheEndOfTheOutputIsThereThoughTheCommandHasEnded) {
  for (int i = 0; i < 50; ++i) {
    output.clear();
    EXPECT_EQ(run("head -c 4000 /dev/zero | tr '\\0' x; printf end"), 0);
    EXPECT_EQ(output.size(), 4003u);
    EXPECT_TRUE(output.ends_with("end"));
  }
}

TEST_F(Session, TheStatusIsTheExitCode) {
  EXPECT_EQ(run("exit 0"), 0);
  EXPECT_EQ(run("exit 3"), 3);
  EXPECT_EQ(run("exit 255"), 255);
  EXPECT_EQ(run("no-such-program-anywhere 2>/dev/null"), 127);
}

TEST_F(Session, DeathByASignalGives128AndItsNumber) {
  EXPECT_EQ(run("kill -KILL $$"), 128 + SIGKILL);
  EXPECT_EQ(run("kill -SEGV $$"), 128 + SIGSEGV);
  EXPECT_EQ(run("kill -HUP $$"), 128 + SIGHUP);
}

TEST_F(Session, TheDeathOfTheLeaderEndsTheCommandToo) {
  EXPECT_EQ(run("echo shell=$$; kill -KILL $PPID; while :; do sleep 1; done"), 128 + SIGKILL);
  expectGone("shell=");
}

TEST_F(Session, HundredsOfMegabytesComeThrough) {
  keepOutput = false;
  EXPECT_EQ(run("head -c 200000000 /dev/zero"), 0);
  EXPECT_EQ(outputSize, 200'000'000u);
}

TEST_F(Session, ABackgroundProcessLivesOn) {
  EXPECT_EQ(run("sleep 1000 & echo pid=$!"), 0);
  expectLivesOn("pid=");
}

TEST_F(Session, ABackgroundProcessWithoutHangUpsLivesOn) {
  EXPECT_EQ(run("nohup sleep 1000 >/dev/null 2>&1 & echo pid=$!"), 0);
  expectLivesOn("pid=");
}

TEST_F(Session, ABackgroundProcessInASessionOfItsOwnLivesOn) {
  EXPECT_EQ(run("setsid sh -c 'echo pid=$$; exec sleep 1000' & sleep 0.3"), 0);
  expectLivesOn("pid=");
}

TEST_F(Session, ABackgroundProcessThatFloodsTheTerminalIsNotWaitedFor) {
  EXPECT_EQ(run("(trap '' HUP; exec yes) & echo pid=$!"), 0);
  expectGone("pid=");  // its terminal is no more
}

TEST_F(Session, ACommandThatClosesItsOutputLivesOn) {
  const TempDir dir;
  EXPECT_EQ(run("exec >" + dir.path("log") + " 2>&1 </dev/null; sleep 0.3; echo lived on"), 0);
  EXPECT_EQ(dir.read("log"), "lived on\n");
}

TEST_F(Session, ACommandCanBeInterruptedThoughItClosedItsOutput) {
  whenShown("go", [this] { EXPECT_TRUE(type("\x03")); });
  EXPECT_EQ(run("echo go; exec >/dev/null 2>&1 </dev/null; exec sleep 1000"), 128 + SIGINT);
}

TEST_F(Session, ControlCInterrupts) {
  whenShown("go", [this] { EXPECT_TRUE(type("\x03")); });
  EXPECT_EQ(run("echo go; exec sleep 1000"), 128 + SIGINT);
}

// The shell itself reads meanwhile: one that is just starting a program with vfork can't stop
// before that program does, which then nobody sees.
TEST_F(Session, AStoppedCommandGoesOn) {
  whenShown("go", [this] { EXPECT_TRUE(type("\x1a\n")); });
  EXPECT_EQ(run("echo go; read line; echo on"), 0);
  EXPECT_TRUE(output.ends_with("on\r\n")) << output;
}

TEST_F(Session, AProcessThatStopsAloneAtTheStopKeyGoesOn) {
  whenShown("go", [this] { EXPECT_TRUE(type("\x1a")); });
  EXPECT_EQ(run("trap '' TSTP; sh -c 'echo go; kill -STOP $$; echo on'; echo end"), 0);
  EXPECT_TRUE(output.ends_with("on\r\nend\r\n")) << output;
}

TEST_F(Session, ACommandThatStopsItselfGoesOn) {
  EXPECT_EQ(run("kill -STOP $$; echo on"), 0);
  EXPECT_EQ(output, "on\r\n");
}

TEST_F(Session, TypedLinesAreRead) {
  whenShown("name?", [this] { EXPECT_TRUE(type("Ada\r")); });
  EXPECT_EQ(run("printf name?; read x; echo \"<$x>\""), 0);
  EXPECT_TRUE(output.ends_with("<Ada>\r\n")) << output;
}

TEST_F(Session, BackSpaceErasesAWholeCharacter) {
  whenShown("name?", [this] { EXPECT_TRUE(type("x\xC3\xA9\by\r")); });
  EXPECT_EQ(run("printf name?; read x; echo \"<$x>\""), 0);
  EXPECT_TRUE(output.ends_with("<xy>\r\n")) << output;
}

TEST_F(Session, ACommandThatReadsWithoutEndEndsByControlD) {
  whenShown("go", [this] { EXPECT_TRUE(type("line\r\x04")); });
  EXPECT_EQ(run("echo go; cat"), 0);
}

TEST_F(Session, KeysForACommandThatNeverReadsAreKeptAndDontBlock) {
  const std::string keys(500'000, 'k');
  whenShown("go", [&, this] {
    EXPECT_TRUE(type(keys));
    input->breakPressed();
    input->breakPressed();
  });
  EXPECT_EQ(run("stty raw -echo; echo go; exec sleep 1000"), 128 + SIGHUP);
}

TEST_F(Session, KeysThatWaitedComeInTheirOrder) {
  std::string keys;
  while (keys.size() < 300'000) keys += std::to_string(keys.size()) + ",";
  whenShown("go", [&, this] {
    EXPECT_TRUE(type(keys.substr(0, 100'000)));
    EXPECT_TRUE(type(keys.substr(100'000)));
  });
  EXPECT_EQ(run("stty raw -echo; printf go; sleep 0.3; head -c " + std::to_string(keys.size())), 0);
  EXPECT_EQ(output, "go" + keys);
}

TEST_F(Session, MoreKeysThanAreKeptAreRefusedWhole) {
  whenShown("go", [this] {
    EXPECT_FALSE(type(std::string(ChildInput::MostWaiting + 1, 'k')));
    EXPECT_FALSE(input->waiting());
    EXPECT_TRUE(type(std::string(ChildInput::MostWaiting, 'k')));
    while (type("0123456789")) {
    }
    input->closePressed();
  });
  EXPECT_EQ(run("stty raw -echo; echo go; exec sleep 1000"), 128 + SIGHUP);
}

TEST_F(Session, AMissingShellSaysSo) {
  EXPECT_EQ(run("echo no", "/no/such/shell"), 127);
  EXPECT_EQ(output, "/no/such/shell: No such file or directory\r\n");
}

TEST_F(Session, AShellThatIsNoProgramSaysSo) {
  const TempDir dir;
  EXPECT_EQ(run("echo no", dir.path()), 127);
  EXPECT_EQ(output, dir.path() + ": Permission denied\r\n");
}

TEST_F(Session, WithoutAShellThatIsSaid) {
  EXPECT_EQ(run("echo no", ""), 127);
  EXPECT_EQ(output, "SHELL is not set\r\n");
}

TEST_F(Session, ACommandHasTheStandardStreamsOnly) {
  const TempDir dir;
  dir.write("open", "");
  const int other = open(dir.path("open").c_str(), O_RDONLY);
  EXPECT_EQ(run("ls /proc/$$/fd; true"), 0);
  EXPECT_EQ(output, "0  1  2\r\n");
  close(other);
}

TEST_F(Session, ACommandStartsWithDefaultSignals) {
  const auto before = signal(SIGPIPE, SIG_IGN);
  EXPECT_EQ(run("grep -E 'SigBlk|SigIgn' /proc/self/status"), 0);
  signal(SIGPIPE, before);
  EXPECT_EQ(output, "SigBlk:\t0000000000000000\r\nSigIgn:\t0000000000000000\r\n");
}

TEST_F(Session, ACommandKnowsTheSizeOfTheScreen) {
  size = {120, 40};
  EXPECT_EQ(run("stty size"), 0);
  EXPECT_EQ(output, "40 120\r\n");
}

TEST_F(Session, ACommandIsToldOfANewSize) {
  whenShown("go", [this] { size = {132, 50}; });
  EXPECT_EQ(run("trap 'stty size; exit' WINCH; echo go; while :; do sleep 0.1; done"), 0);
  EXPECT_EQ(output, "go\r\n50 132\r\n");
}

TEST_F(Session, OneBreakEndsNothing) {
  whenShown("go", [this] { input->breakPressed(); });
  EXPECT_EQ(run("echo go; sleep 0.3; exit 7"), 7);
  EXPECT_EQ(end, SessionEnd::Own);
}

TEST_F(Session, BreakTwiceEndsACommandThatIgnoresControlC) {
  whenShown("go", [this] {
    EXPECT_TRUE(type("\x03"));
    input->breakPressed();
    input->breakPressed();
  });
  EXPECT_EQ(run("trap '' INT; echo go; while :; do sleep 1; done"), 128 + SIGHUP);
  EXPECT_EQ(end, SessionEnd::HungUp);
}

TEST_F(Session, ACommandThatIgnoresTheHangUpIsKilledWithAllOfItsSession) {
  whenShown("go", [this] { input->closePressed(); });
  EXPECT_EQ(run("trap '' INT HUP; set -m; sleep 1000 & echo pid=$!; echo shell=$$; echo go;"
                "while :; do sleep 1; done"),
            128 + SIGKILL);
  expectGone("pid=");
  expectGone("shell=");
}

TEST_F(Session, AHangUpEndsAStoppedProcess) {
  whenShown("go", [this] { input->closePressed(); });
  EXPECT_EQ(run("set -m; sleep 1000 & kill -STOP $!; echo pid=$!; echo go; exec sleep 1000"),
            128 + SIGHUP);
  expectGone("pid=");
}

TEST_F(Session, TheEndOfTheProgramEndsTheCommand) {
  std::unique_ptr<EndRequest> request;
  whenShown("go", [&] { request = std::make_unique<EndRequest>(); });
  EXPECT_EQ(run("echo go; exec sleep 1000"), 128 + SIGHUP);
}

TEST_F(Session, ATerminalThatIsNotToBeHadIsAnError) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit none = before;
  none.rlim_cur = 3;
  setrlimit(RLIMIT_NOFILE, &none);
  {
    PseudoTerminal terminal;
    EXPECT_EQ(terminal.open(size), EMFILE);
  }
  setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(Session, AProcessThatIsNotToBeHadIsAnError) {
  EXPECT_EQ(runAsUser([this] {
              const rlimit none{0, 0};
              setrlimit(RLIMIT_NPROC, &none);
              PseudoTerminal terminal;
              EXPECT_EQ(terminal.open(size), 0);
              ChildProcess child;
              EXPECT_EQ(child.start({PlainShell, "true", environment}, terminal.slave()), EAGAIN);
              EXPECT_TRUE(child.reap());
            }),
            0);
}

TEST_F(Session, TheDeathOfTheProgramHangsUpTheCommand) {
  const TempDir dir;
  const pid_t program = fork();
  if (program == 0) {
    PseudoTerminal terminal;
    ChildProcess child;
    const std::string command = "echo $$ > " + dir.path("new") + "; mv " + dir.path("new") + " " +
                                dir.path("shell") + "; while :; do sleep 1; done";
    if (terminal.open(size) == 0) child.start({PlainShell, command, environment}, terminal.slave());
    waitUntil([&] { return dir.exists("shell"); });
    _exit(0);
  }
  ASSERT_EQ(waitpid(program, nullptr, 0), program);
  output = "shell=" + dir.read("shell");
  expectGone("shell=");
}

TEST_F(Session, AChildThatIsGivenUpIsKilledAndReaped) {
  PseudoTerminal terminal;
  ASSERT_EQ(terminal.open(size), 0);
  ChildProcess child;
  EXPECT_EQ(child.start({PlainShell, "exec sleep 1000", environment}, terminal.slave()), 0);
  EXPECT_FALSE(child.reap());
}
