#include "editor/document/run_builder.h"

namespace {
// A line that is taken out of a block keeps all of it in memory.
constexpr size_t LargestBlock = size_t{16} << 20;
}  // namespace

void RunBuilder::addLine(std::wstring_view text, std::wstring_view end) {
  // Two line ends that meet in one block must be two there.
  if (text.empty() && lineEndsMerge(lastEnd_, end)) closeBlock();
  if (!block_) {
    run_ = {};
    run_.block = SharedBlock(block_ = new BytesBlock);
  }
  const size_t start = block_->bytes.size();
  if (!appendPlain(text, block_->bytes)) {
    block_->bytes.resize(start);
    addRun(newRun(text, end));
    return;
  }
  appendPlain(end, block_->bytes);
  if ((run_.firstLine + run_.lines) % MarkedLines == 0) block_->marks.push_back(start);
  ++run_.lines;
  run_.length = block_->bytes.size() - run_.begin;
  lastEnd_ = end;
  if (block_->bytes.size() >= LargestBlock) closeBlock();
}

void RunBuilder::addRun(const TextRun& run) {
  closeRun();
  if (!runs_.empty() && runs_.back().goesOnWith(run)) {
    runs_.back().length += run.length;
    runs_.back().lines += run.lines;
  } else {
    runs_.push_back(run);
  }
}

// What comes next in the block is another run.
void RunBuilder::closeRun() {
  if (run_.lines == 0) return;
  runs_.push_back(run_);
  run_.begin += run_.length;
  run_.firstLine += run_.lines;
  run_.length = 0;
  run_.lines = 0;
}

void RunBuilder::closeBlock() {
  closeRun();
  if (block_) block_->bytes.shrink_to_fit();
  block_ = nullptr;
  lastEnd_.clear();
}

RunTree RunBuilder::finish() {
  closeBlock();
  return RunTree(runs_);
}
