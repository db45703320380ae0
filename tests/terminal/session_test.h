#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "terminal/child_environment.h"
#include "terminal/session_pump.h"

// Real commands on real pseudo-terminals, without a screen. After each test no descriptor and no
// child of the process may be left.
class SessionTest : public testing::Test {
 protected:
  static constexpr const char* PlainShell = "/bin/sh";

  void SetUp() override;
  void TearDown() override;

  // Runs a command to its end; its exit status. What it writes goes to `output`.
  int run(const std::string& command, const std::string& shell = PlainShell);

  // Is called, once, when the output so far holds `text`.
  void whenShown(const std::string& text, std::function<void()> action);
  // Types at the command that runs. False when it takes no more.
  bool type(std::string_view bytes) { return input->put(bytes) == ChildInput::Put::Taken; }

  SessionEnd end = SessionEnd::Own;  // of the last command
  std::string output;
  size_t outputSize = 0;
  bool keepOutput = true;  // else only its size is counted
  std::vector<std::string> environment{"PATH=/usr/bin:/bin", "TERM=ansi"};
  GridSize size{80, 25};
  std::unique_ptr<ChildInput> input;  // while a command runs

 private:
  class Screen;

  std::string awaited_;
  std::function<void()> action_;
  int descriptors_ = 0;
  pid_t others_ = -1;  // whether the process has children besides: 0, else -1
};

// How many descriptors this process has.
int openDescriptors();
// The process is there and no zombie.
bool isAlive(pid_t process);
// The number behind `label` in a command's output; 0 when there is none.
pid_t numberBehind(const std::string& output, const std::string& label);
