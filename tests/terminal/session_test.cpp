#include "terminal/session_test.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/temp_dir.h"
#include "support/wait_until.h"

class SessionTest::Screen : public SessionScreen {
 public:
  explicit Screen(SessionTest& test) : test_(test) {}

  void write(std::string_view bytes) override {
    test_.outputSize += bytes.size();
    if (test_.keepOutput) test_.output += bytes;
    if (!test_.action_ || test_.output.find(test_.awaited_) == std::string::npos) return;
    std::exchange(test_.action_, nullptr)();
  }
  void showHeldBack() override {}
  GridSize size() const override { return test_.size; }

 private:
  SessionTest& test_;
};

void SessionTest::SetUp() {
  descriptors_ = openDescriptors();
  others_ = waitpid(-1, nullptr, WNOHANG);
}

void SessionTest::TearDown() {
  EXPECT_EQ(openDescriptors(), descriptors_);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), others_) << "a child is left";
}

int SessionTest::run(const std::string& command, const std::string& shell) {
  PseudoTerminal terminal;
  EXPECT_EQ(terminal.open(size), 0);
  ChildProcess child;
  EXPECT_EQ(child.start({shell, command, environment}, terminal.slave()), 0);
  input = std::make_unique<ChildInput>(terminal.master());
  Screen screen(*this);
  end = pumpSession(child, terminal, *input, screen);
  input.reset();
  return child.status();
}

void SessionTest::whenShown(const std::string& text, std::function<void()> action) {
  awaited_ = text;
  action_ = std::move(action);
}

int openDescriptors() {
  int count = 0;
  for (const auto& item : std::filesystem::directory_iterator("/proc/self/fd")) {
    static_cast<void>(item);
    ++count;
  }
  return count;
}

bool isAlive(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(file, text);
  const size_t name = text.rfind(") ");
  return name != std::string::npos && text[name + 2] != 'Z';
}

pid_t numberBehind(const std::string& output, const std::string& label) {
  const size_t at = output.find(label);
  return at == std::string::npos ? 0 : std::atoi(output.c_str() + at + label.size());
}

// The screen shows private sequences as text: the prompt must not hold any.
TEST_F(SessionTest, ThePromptOfAnInteractiveBashIsClean) {
  const TempDir home;
  const std::string data = std::filesystem::absolute(__FILE__).parent_path() / "../../data/";
  home.write(".inputrc", "set enable-bracketed-paste on\n\"\\C-g\": \"echo mine\"\n");
  for (const char* settings : {"inputrc", "inputrc.system"}) {
    environment = {"PATH=/usr/bin:/bin", "TERM=ansi", "HOME=" + home.path(), "PS1=ready> ",
                   "INPUTRC=" + data + settings};
    output.clear();
    whenShown("ready> ", [this] { ASSERT_TRUE(type("\x07 it; exit\r")); });
    run("exec bash --norc -i");
    EXPECT_EQ(output.find("\x1b[?"), std::string::npos) << output;
    EXPECT_EQ(output.find("mine it") != std::string::npos, settings == std::string("inputrc"))
        << output;
  }
}
