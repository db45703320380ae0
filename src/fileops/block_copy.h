#pragma once

#include <sys/stat.h>

#include "fileops/copy_result.h"
#include "fileops/operation.h"
#include "foundation/place.h"

// Whether an end of the copy is a file that can keep the program waiting: FIFO, device, socket.
enum class Waits { No, Yes };

struct BlockCopy {
  int from = -1;
  int to = -1;
  const Place* source = nullptr;  // for the box after a third read error in a row
  off_t expected = 0;             // bytes that the source had when it was opened
  off_t stored = 0;               // bytes that they take on the disk; less where there are holes
  Waits sourceWaits = Waits::No;
  Waits targetWaits = Waits::No;
};

// Moves everything from the one descriptor to the other, looking for Break and Esc at least 20
// times a second, and adds their number to `copied`. Done, Cancelled, SourceFailed, TargetFailed or
// Failed.
CopyResult copyBlocks(RunningOperation& operation, const BlockCopy& job, off_t& copied);
// Waits until the descriptor is ready for `events` of poll, or the operation is cancelled.
CopyResult waitReady(RunningOperation& operation, int fd, short events);
