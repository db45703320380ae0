#include "fileops/operation.h"

#include "foundation/break_state.h"

bool RunningOperation::cancelled() {
  if (!interruptible) return false;
  cancelled_ = cancelled_ || breakRequested() || ui.escapePressed();
  return cancelled_;
}

char* RunningOperation::buffer() {
  if (!buffer_) buffer_ = std::make_unique_for_overwrite<char[]>(BufferSize);
  return buffer_.get();
}
