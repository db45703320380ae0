#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "support/test_end.h"

namespace {

// Puts back what a test changed of its process, so that the tests of one process don't see each
// other.
class ProcessState : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override {
    directory_ = std::filesystem::current_path();
    variables_.clear();
    for (char** variable = environ; *variable; ++variable) variables_.emplace_back(*variable);
    mask_ = ::umask(0);
    ::umask(mask_);
  }
  void OnTestEnd(const testing::TestInfo&) override {
    std::filesystem::current_path(directory_);
    clearenv();
    for (std::string& variable : variables_) {
      const size_t equals = variable.find('=');
      setenv(variable.substr(0, equals).c_str(), variable.c_str() + equals + 1, 1);
    }
    tzset();
    ::umask(mask_);
  }

 private:
  std::filesystem::path directory_;
  std::vector<std::string> variables_;
  mode_t mask_ = 0;
};

}  // namespace

// For the test programs that need nothing before their tests; one with a main of its own doesn't
// take this one out of the library. The locale is the same on every machine, so that cases, spaces
// and the texts of errors come out alike.
int main(int argc, char** argv) {
  setlocale(LC_ALL, "C.UTF-8");
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest& tests = *testing::UnitTest::GetInstance();
  tests.listeners().Append(new ProcessState);  // owned by the list
  int result = RUN_ALL_TESTS();
  if (!testing::GTEST_FLAG(list_tests) && tests.test_to_run_count() == 0) {
    fputs("no test was run\n", stderr);
    result = 1;
  }
  runTestEnd();
  return result;
}
