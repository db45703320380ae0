#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>

#include "support/test_end.h"

namespace {

using Variables = std::map<std::string, std::string>;

Variables presentVariables() {
  Variables variables;
  for (char** variable = environ; *variable; ++variable) {
    const std::string text = *variable;
    const size_t equals = text.find('=');
    variables[text.substr(0, equals)] = text.substr(equals + 1);
  }
  return variables;
}

// Puts back what a test changed of its process, so that the tests of one process don't see each
// other. What stayed as it was is left alone: the toolkit's threads read the environment.
class ProcessState : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override {
    directory_ = std::filesystem::current_path();
    variables_ = presentVariables();
  }
  void OnTestEnd(const testing::TestInfo&) override {
    std::filesystem::current_path(directory_);
    const Variables changed = presentVariables();
    if (changed == variables_) return;
    for (const auto& [name, value] : changed) {
      if (!variables_.contains(name)) unsetenv(name.c_str());
    }
    for (const auto& [name, value] : variables_) {
      const auto now = changed.find(name);
      if (now == changed.end() || now->second != value) setenv(name.c_str(), value.c_str(), 1);
    }
    tzset();
  }

 private:
  std::filesystem::path directory_;
  Variables variables_;
};

}  // namespace

// For the test programs that need nothing before their tests; one with a main of its own doesn't
// take this one out of the library. The locale, the shell and the mask of new files are the same on
// every machine: texts of errors come out alike, commands find a shell, and own files are trusted.
int main(int argc, char** argv) {
  setlocale(LC_ALL, "C.UTF-8");
  setenv("SHELL", "/bin/sh", 1);
  umask(S_IWGRP | S_IWOTH);
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
