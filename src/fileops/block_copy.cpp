#include "fileops/block_copy.h"

#include <poll.h>

#include <algorithm>
#include <chrono>

#include "fileops/error_dialog.h"
#include "foundation/not_offered.h"
#include "foundation/system.h"

namespace {

constexpr int LookMs = 50;
constexpr int ReadErrorsInARow = 3;
constexpr size_t FirstPiece = 1 << 20;
constexpr size_t SmallestPiece = 64 * 1024;
constexpr size_t LargestPiece = 16 << 20;
constexpr double SlowPiece = 0.02;    // seconds: above, pieces get smaller
constexpr double QuickPiece = 0.004;  // below, larger

enum class Step { Moved, End, Retry, UsePlainReads };

double secondsNow() {
  using namespace std::chrono;
  return duration<double>(steady_clock::now().time_since_epoch()).count();
}

// What the kernel answers when it can't move blocks between these two files.
bool canNotMoveBlocks(int error) {
  return isNotOffered(error) || error == EXDEV || error == EPERM;
}

class Copier {
 public:
  Copier(RunningOperation& operation, const BlockCopy& job) : operation_(operation), job_(job) {
    // Small files are quicker through the buffer, and pseudo files have no size.
    kernel_ = job.expected > static_cast<off_t>(RunningOperation::BufferSize) &&
              job.sourceWaits == Waits::No && job.targetWaits == Waits::No;
    holes_ = kernel_ && job.stored < job.expected;
  }

  CopyResult run() {
    for (;;) {
      if (holes_ && copied_ == dataEnd_) skipHole();
      if (result_.status != CopyStatus::Done) return result_;
      const Step step = kernel_ ? moveInKernel() : moveThroughBuffer();
      if (result_.status != CopyStatus::Done) return result_;
      if (operation_.cancelled()) return {CopyStatus::Cancelled, 0};
      if (step == Step::End) return result_;
      if (step == Step::UsePlainReads) kernel_ = false;
    }
  }

  off_t copied() const { return copied_; }

 private:
  void skipHole();
  off_t endInHole();
  bool goTo(off_t position);
  size_t nextPiece() const;
  Step moveInKernel();
  Step moveThroughBuffer();
  Step readFailed(int error);
  Step writeOut(const char* bytes, size_t count);
  Step fail(CopyStatus status, int code) {
    result_ = {status, code};
    return Step::End;
  }
  void moved(size_t bytes) {
    readErrors_ = 0;
    copied_ += static_cast<off_t>(bytes);
    operation_.progress.advance(static_cast<int64_t>(bytes));
    operation_.ui.working();
  }

  RunningOperation& operation_;
  const BlockCopy& job_;
  bool kernel_;
  bool holes_;
  off_t dataEnd_ = 0;  // of the stored bytes that are being copied, in a file with holes
  size_t piece_ = FirstPiece;
  off_t copied_ = 0;
  int readErrors_ = 0;
  CopyResult result_;
};

bool Copier::goTo(off_t position) {
  return System::seek(job_.from, position, SEEK_SET) == position &&
         System::seek(job_.to, position, SEEK_SET) == position;
}

// The end of a file that has nothing stored any more; the target gets the same size. -1: not so.
off_t Copier::endInHole() {
  const off_t size = System::seek(job_.from, 0, SEEK_END);
  return size >= copied_ && System::truncate(job_.to, size) == 0 ? size : -1;
}

// Holes stay holes: a disk image of a terabyte may hold a few bytes. Where the file system doesn't
// tell them they are copied as the zeros they read as.
void Copier::skipHole() {
  off_t data = System::seek(job_.from, copied_, SEEK_DATA);
  off_t end = -1;
  if (data >= 0) {
    end = System::seek(job_.from, data, SEEK_HOLE);
  } else if (errno == ENXIO) {
    data = endInHole();
  }
  holes_ = end > data;
  data = std::max(data, copied_);
  if (!goTo(data)) {
    result_ = {CopyStatus::SourceFailed, errno};
    return;
  }
  operation_.progress.advance(data - copied_);
  copied_ = data;
  dataEnd_ = end;
}

size_t Copier::nextPiece() const {
  return holes_ ? std::min(piece_, static_cast<size_t>(dataEnd_ - copied_)) : piece_;
}

Step Copier::moveInKernel() {
  const double before = secondsNow();
  const ssize_t got = System::copyRange(job_.from, job_.to, nextPiece());
  if (got < 0 && canNotMoveBlocks(errno)) return Step::UsePlainReads;
  if (got < 0 && errno == EIO) return readFailed(EIO);
  if (got < 0) return fail(CopyStatus::TargetFailed, errno);
  // A plain read has the last word on where the file ends: some file systems deliver nothing this
  // way.
  if (got == 0) return copied_ < job_.expected ? Step::UsePlainReads : Step::End;
  const double took = secondsNow() - before;
  if (took > SlowPiece) piece_ = std::max(piece_ / 2, SmallestPiece);
  if (took < QuickPiece) piece_ = std::min(piece_ * 2, LargestPiece);
  moved(static_cast<size_t>(got));
  return Step::Moved;
}

Step Copier::moveThroughBuffer() {
  if (job_.sourceWaits == Waits::Yes) {
    result_ = waitReady(operation_, job_.from, POLLIN);
    if (result_.status != CopyStatus::Done) return Step::End;
  }
  const size_t piece = std::min(nextPiece(), RunningOperation::BufferSize);
  const ssize_t got = System::read(job_.from, operation_.buffer(), piece);
  if (got < 0 && errno == EAGAIN && job_.sourceWaits == Waits::Yes) return Step::Retry;
  if (got < 0) return readFailed(errno);
  if (got == 0) {
    operation_.progress.advance(0);
    return Step::End;
  }
  return writeOut(operation_.buffer(), static_cast<size_t>(got));
}

// A disk often reads on the second try; the user is asked after the third failure in a row.
Step Copier::readFailed(int error) {
  if (error != EIO) return fail(CopyStatus::SourceFailed, error);
  if (++readErrors_ < ReadErrorsInARow) return Step::Retry;
  readErrors_ = 0;
  switch (showError(operation_.ui, EIO, job_.source->shown())) {
    case ErrorAnswer::Retry:
      return Step::Retry;
    case ErrorAnswer::Cancel:
      return fail(CopyStatus::Cancelled, 0);
    default:
      return fail(CopyStatus::Failed, EIO);
  }
}

Step Copier::writeOut(const char* bytes, size_t count) {
  for (size_t done = 0; done < count;) {
    if (job_.targetWaits == Waits::Yes) {
      result_ = waitReady(operation_, job_.to, POLLOUT);
      if (result_.status != CopyStatus::Done) return Step::End;
    }
    const ssize_t written = System::write(job_.to, bytes + done, count - done);
    if (written < 0 && errno == EAGAIN && job_.targetWaits == Waits::Yes) continue;
    if (written < 0) return fail(CopyStatus::TargetFailed, errno);
    if (written == 0) return fail(CopyStatus::TargetFailed, EIO);
    done += static_cast<size_t>(written);
  }
  moved(count);
  return Step::Moved;
}

}  // namespace

CopyResult waitReady(RunningOperation& operation, int fd, short events) {
  for (;;) {
    pollfd wanted{fd, events, 0};
    const int ready = ::poll(&wanted, 1, LookMs);
    if (ready > 0) return {};
    if (ready < 0 && errno != EINTR) return {CopyStatus::TargetFailed, errno};
    operation.ui.working();
    if (operation.cancelled()) return {CopyStatus::Cancelled, 0};
  }
}

CopyResult copyBlocks(RunningOperation& operation, const BlockCopy& job, off_t& copied) {
  Copier copier(operation, job);
  const CopyResult result = copier.run();
  copied += copier.copied();
  return result;
}
