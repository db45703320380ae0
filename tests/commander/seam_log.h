#pragma once

#include <string>
#include <utility>
#include <vector>

#include "commander/command_seams.h"

// What connected modules were asked for, in order.
class SeamLog {
 public:
  void connect();  // fills every place of commandSeams
  std::vector<std::string> take() { return std::exchange(calls_, {}); }
  std::string last() { return calls_.empty() ? "" : calls_.back(); }
  // What the windows of other modules answer.
  HistoryChoice historyChoice;
  Westring directory;
  Westring extracted;

 private:
  void note(const std::string& call) { calls_.push_back(call); }

  std::vector<std::string> calls_;
};
