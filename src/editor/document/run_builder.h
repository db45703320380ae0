#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "editor/document/run_tree.h"

// Makes a tree of lines that come one after the other: new ones stand together in few blocks, old
// ones stay where they are.
class RunBuilder {
 public:
  void addLine(std::wstring_view text, std::wstring_view end);
  void addRun(const TextRun& run);  // with lines
  RunTree finish();

 private:
  void closeBlock();

  std::vector<TextRun> runs_;
  std::string bytes_;  // of the lines of the block in the making
  std::vector<size_t> marks_;
  int64_t lines_ = 0;
  std::wstring lastEnd_;
};
