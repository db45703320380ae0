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
  void closeRun();
  void closeBlock();

  std::vector<TextRun> runs_;
  TextRun run_;                  // the one in the making, at the end of the block
  BytesBlock* block_ = nullptr;  // its block, as long as it grows
  std::wstring lastEnd_;
};
