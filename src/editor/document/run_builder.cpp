#include "editor/document/run_builder.h"

namespace {
// A line that is taken out of a block keeps all of it in memory.
constexpr size_t LargestBlock = size_t{16} << 20;
}  // namespace

void RunBuilder::addLine(std::wstring_view text, std::wstring_view end) {
  // Two line ends that meet in one block must be two there.
  if (text.empty() && lineEndsMerge(lastEnd_, end)) closeBlock();
  const size_t start = bytes_.size();
  if (!appendPlain(text, bytes_)) {
    bytes_.resize(start);
    addRun(newRun(text, end));
    return;
  }
  appendPlain(end, bytes_);
  if (lines_ % MarkedLines == 0) marks_.push_back(start);
  ++lines_;
  lastEnd_ = end;
  if (bytes_.size() >= LargestBlock) closeBlock();
}

void RunBuilder::addRun(const TextRun& run) {
  closeBlock();
  if (!runs_.empty() && runs_.back().goesOnWith(run)) {
    runs_.back().length += run.length;
    runs_.back().lines += run.lines;
  } else {
    runs_.push_back(run);
  }
}

void RunBuilder::closeBlock() {
  if (lines_ == 0) return;
  auto* block = new BytesBlock;
  TextRun run;
  run.block = SharedBlock(block);
  run.length = bytes_.size();
  run.lines = lines_;
  block->bytes = std::move(bytes_);
  block->bytes.shrink_to_fit();
  block->marks = std::move(marks_);
  bytes_.clear();
  marks_.clear();
  lines_ = 0;
  lastEnd_.clear();
  runs_.push_back(std::move(run));
}

RunTree RunBuilder::finish() {
  closeBlock();
  return RunTree(runs_);
}
