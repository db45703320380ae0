#pragma once

#include <memory>

#include "fileops/description_cache.h"
#include "fileops/operation_ui.h"
#include "fileops/progress_record.h"

// One file command under way: what its steps share. Lives on the application thread for as long as
// the command; the progress record is also read by the thread that repaints it.
class RunningOperation {
 public:
  static constexpr size_t BufferSize = 256 * 1024;

  explicit RunningOperation(OperationUi& shownBy) : ui(shownBy) {}
  RunningOperation(const RunningOperation&) = delete;
  RunningOperation& operator=(const RunningOperation&) = delete;

  // Break was pressed, or Esc waits in the queue. Once true it stays true.
  bool cancelled();
  char* buffer();  // BufferSize bytes

  OperationUi& ui;
  ProgressRecord progress;
  DescriptionCache descriptions;
  bool interruptible = true;  // what cleans up goes on to its end
  bool foldNames = false;     // names of plain files copied out of directories become lower case

 private:
  bool cancelled_ = false;
  std::unique_ptr<char[]> buffer_;
};
