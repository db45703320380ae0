#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "editor/document/text_run.h"

// Lines as runs, in a balanced tree whose nodes are shared between copies: a copy costs nothing,
// and finding, cutting and joining cost by the depth. Every line has a line end.
class RunTree {
 public:
  RunTree() = default;
  explicit RunTree(const std::vector<TextRun>& runs);  // each with a line at least

  bool empty() const { return !root_; }
  int64_t lines() const;
  size_t bytes() const;
  int depth() const;  // at most about 1.44 times the binary logarithm of the number of runs

  // A run, and what stands before it. Stays as long as the tree isn't changed.
  struct Found {
    const TextRun* run = nullptr;
    int64_t linesBefore = 0;
    size_t bytesBefore = 0;
  };
  Found find(int64_t line) const;       // below lines()
  Found findByte(size_t offset) const;  // below bytes()

  void setLine(int64_t line, const TextRun& run);  // run: one line
  RunTree cutFrom(int64_t line);                   // takes off the lines from this one on
  void append(RunTree lines);
  // In order; false ends the walk, and is returned.
  bool forEach(const std::function<bool(const TextRun& run)>& visit) const;
  void changeRuns(const std::function<void(TextRun& run)>& change);  // as many lines as before

  struct Node;

 private:
  Shared<Node> root_;
};

struct RunTree::Node : Counted {
  explicit Node(const TextRun& itsRun);

  Shared<Node> left;
  Shared<Node> right;
  TextRun run;
  int64_t lines = 0;  // of the node with all below it, as the next ones
  size_t bytes = 0;
  int height = 1;
};
