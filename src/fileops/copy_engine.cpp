#include "fileops/copy_engine.h"

#include "fileops/block_copy.h"
#include "fileops/delete_file.h"
#include "fileops/notices.h"
#include "foundation/kept_attributes.h"
#include "foundation/mount_id.h"
#include "foundation/partial_file.h"
#include "foundation/system.h"
#include "foundation/threads.h"

namespace {

constexpr uint32_t LookMs = 50;
constexpr off_t BlockSize = 512;  // the unit of st_blocks

class FileCopy {
 public:
  FileCopy(RunningOperation& operation, const CopyRequest& request)
      : operation_(operation), request_(request) {}

  CopyResult run();

 private:
  CopyResult openSource();
  CopyResult copyToFile();
  CopyResult createTarget(PartialFile& target) const;
  CopyResult copyToDevice(mode_t mode);
  CopyResult openDevice(mode_t mode, Descriptor& device);
  CopyResult fill(int to, Waits targetWaits);
  CopyResult finish(PartialFile& target);
  int dress(int target) const;
  CopyResult removeSource();
  void noteChange();
  bool sourceStoodStill() const;
  bool replaces() const { return request_.replaced.has_value(); }

  RunningOperation& operation_;
  const CopyRequest& request_;
  Descriptor source_;
  struct stat info_ {};   // of the source, when it was opened
  struct stat after_ {};  // and when it had been read
  off_t copied_ = 0;
};

// The first try asks for a file that nobody writes to; where the system refuses that, a second one
// without this wish tells whether that was the reason.
CopyResult FileCopy::openSource() {
  const int noFollow =
      request_.looked && !S_ISLNK(request_.looked->st_mode) && request_.kind == TransferKind::Copy
          ? 0
          : O_NOFOLLOW;
  const int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | noFollow;
  const Place& place = request_.source;
  source_ = Descriptor(System::openAt(place.directory, place.name, flags));
  if (!source_.valid() && (errno == EAGAIN || errno == EACCES)) {
    const int first = errno;
    source_ = Descriptor(System::openAt(place.directory, place.name, flags));
    if (!source_.valid()) return sourceFailure(first == EACCES ? first : errno);
    if (request_.openAnyway == Permission::No) return {CopyStatus::OpenForWriting, 0};
  }
  if (!source_.valid()) return sourceFailure(errno);
  if (System::fstat(source_.get(), &info_) < 0) return sourceFailure(errno);
  const bool expected =
      request_.looked ? isSameThing(*request_.looked, info_) : S_ISREG(info_.st_mode);
  return expected ? CopyResult{} : sourceFailure(ESTALE);
}

CopyResult FileCopy::run() {
  const CopyResult opened = openSource();
  if (opened.status != CopyStatus::Done) return opened;
  // A device or FIFO, also one behind a link, is written to; it is never replaced.
  struct stat target;
  if (request_.making == Making::Beside &&
      System::statAt(request_.target.directory, request_.target.name, &target, 0) == 0 &&
      isSpecialFile(target.st_mode)) {
    return copyToDevice(target.st_mode);
  }
  return copyToFile();
}

CopyResult FileCopy::createTarget(PartialFile& target) const {
  // Extended attributes are only given to a file that one may write to.
  const mode_t writable = request_.kind == TransferKind::Move ? S_IWUSR : 0;
  const mode_t mode = modeInTheMaking(info_.st_mode) | writable;
  if (request_.making == Making::Directly && !replaces()) {
    const int error = target.createDirectly(request_.target, mode);
    return error ? targetFailure(error) : CopyResult{};
  }
  int error = target.createBeside(request_.target, mode);
  if (error == EACCES && replaces()) {
    if (request_.inPlace == Permission::Yes) {
      error = target.openInPlace(request_.target, idOf(*request_.replaced));
    }
    if (error == EACCES) return {CopyStatus::Refused, EACCES};
  }
  return error ? CopyResult{CopyStatus::TargetFailed, error} : CopyResult{};
}

CopyResult FileCopy::copyToFile() {
  if (replaces() && request_.overwrite == Permission::No) return {CopyStatus::Exists, EEXIST};
  if (linkToMoved(operation_, request_, info_) == 0) {
    after_ = info_;
    copied_ = info_.st_size;
    operation_.progress.advance(copied_);
    return removeSource();
  }
  PartialFile target;
  CopyResult result = createTarget(target);
  if (result.status != CopyStatus::Done) return result;
  result = fill(target.fd(), Waits::No);
  if (result.status == CopyStatus::Done) {
    result = finish(target);
  } else {
    // Should the unfinished file stay after all, it is at least no more open than its source.
    static_cast<void>(keepMode(target.fd(), info_));
  }
  if (target.discard() != 0) tellLeftover(operation_, target.path());
  return result;
}

// All that the source has when its end is read; what is added to it meanwhile comes along.
CopyResult FileCopy::fill(int to, Waits targetWaits) {
  BlockCopy job;
  job.from = source_.get();
  job.to = to;
  job.source = &request_.source;
  job.expected = S_ISREG(info_.st_mode) ? info_.st_size : 0;
  job.stored = info_.st_blocks * BlockSize;
  job.sourceWaits = S_ISREG(info_.st_mode) ? Waits::No : Waits::Yes;
  job.targetWaits = targetWaits;
  for (;;) {
    const off_t before = copied_;
    const CopyResult result = copyBlocks(operation_, job, copied_);
    if (result.status != CopyStatus::Done) return result;
    if (System::fstat(source_.get(), &after_) < 0) return sourceFailure(errno);
    if (!S_ISREG(after_.st_mode) || copied_ >= after_.st_size) return result;
    // What the kernel shows of itself has no true size; anywhere else bytes are missing.
    if (copied_ == before) return isKernelFileSystem(source_.get()) ? result : sourceFailure(EIO);
    job.expected = job.stored = 0;
  }
}

CopyResult FileCopy::finish(PartialFile& target) {
  const bool move = request_.kind == TransferKind::Move;
  if (const int error = dress(target.fd())) return targetFailure(error);
  const auto replace = replaces() ? PartialFile::Replace::Yes : PartialFile::Replace::No;
  if (const int error = target.commit(replace)) return targetFailure(error);
  if (move) {
    operation_.movedLinks.remember(after_, request_.target);
    return removeSource();
  }
  noteChange();
  return {};
}

void FileCopy::noteChange() {
  const bool changed = !isUnchanged(info_, after_) || info_.st_size != after_.st_size ||
                       info_.st_ctim.tv_sec != after_.st_ctim.tv_sec ||
                       info_.st_ctim.tv_nsec != after_.st_ctim.tv_nsec;
  if (S_ISREG(info_.st_mode) && changed) operation_.changedSources.add(request_.source.path);
}

CopyResult FileCopy::removeSource() {
  if (!sourceStoodStill()) {
    operation_.changedSources.add(request_.source.path);
    return {CopyStatus::LeftInPlace, 0};
  }
  if (request_.keepSource == KeepSource::Yes) return {};
  source_.reset();
  return removeMovedSource(operation_, request_);
}

int FileCopy::dress(int target) const {
  const bool move = request_.kind == TransferKind::Move;
  const auto grain = move ? TimeGrain::Whole : TimeGrain::TwoSeconds;
  struct stat times = after_;
  times.st_atim = info_.st_atim;  // before it was read here
  int error = move ? keepOwnership(source_.get(), target, after_) : 0;
  if (error == 0) error = keepTimes(target, times, grain);
  return error ? error : keepMode(target, after_);
}

// What was added or changed since the file was opened is only in the source, and so is a file that
// was saved anew under its name. A name that can't be looked at can't be removed, which is told
// there.
bool FileCopy::sourceStoodStill() const {
  const Place& place = request_.source;
  struct stat now;
  if (System::statAt(place.directory, place.name, &now, AT_SYMLINK_NOFOLLOW) < 0) now = after_;
  return S_ISREG(now.st_mode) && now.st_size == copied_ && isUnchanged(info_, now);
}

// A FIFO that nobody reads yet can't be opened without waiting for ever.
CopyResult FileCopy::openDevice(mode_t mode, Descriptor& device) {
  const Place& place = request_.target;
  for (;;) {
    device = Descriptor(
        System::openAt(place.directory, place.name, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (device.valid()) return {};
    if (errno != ENXIO || !S_ISFIFO(mode)) return targetFailure(errno);
    operation_.ui.working();
    if (operation_.cancelled()) return {CopyStatus::Cancelled, 0};
    sleepMs(LookMs);
  }
}

CopyResult FileCopy::copyToDevice(mode_t mode) {
  Descriptor device;
  CopyResult result = openDevice(mode, device);
  if (result.status != CopyStatus::Done) return result;
  result = fill(device.get(), Waits::Yes);
  if (result.status != CopyStatus::Done) return result;
  // A device node belongs to the whole machine: its mode is nobody's copy.
  if (!isDeviceNode(mode)) static_cast<void>(keepMode(device.get(), after_));
  if (const int error = device.close()) return targetFailure(error);
  noteChange();
  // What comes out at the other end is nobody's copy to keep.
  return {request_.kind == TransferKind::Copy ? CopyStatus::Done : CopyStatus::KeptSource, 0};
}

}  // namespace

bool isSameThing(const struct stat& before, const struct stat& now) {
  return idOf(before) == idOf(now) && (before.st_mode & S_IFMT) == (now.st_mode & S_IFMT);
}

bool isUnchanged(const struct stat& before, const struct stat& now) {
  return isSameThing(before, now) && before.st_mtim.tv_sec == now.st_mtim.tv_sec &&
         before.st_mtim.tv_nsec == now.st_mtim.tv_nsec;
}

bool isSpecialFile(mode_t mode) {
  return S_ISFIFO(mode) || S_ISSOCK(mode) || isDeviceNode(mode);
}

bool isDeviceNode(mode_t mode) {
  return S_ISCHR(mode) || S_ISBLK(mode);
}

CopyResult copyFile(RunningOperation& operation, const CopyRequest& request) {
  return FileCopy(operation, request).run();
}

int linkToMoved(RunningOperation& operation, const CopyRequest& request,
                const struct stat& source) {
  if (request.kind == TransferKind::Copy) return ENOENT;
  const Place& target = request.target;
  if (!request.replaced) return operation.movedLinks.link(source, target);
  std::string name;
  const int error = makeBeside(target, name, [&](const char* candidate) {
    return operation.movedLinks.link(source, {target.directory, candidate, target.path});
  });
  if (error) return error;
  const int renamed =
      System::renameAt(target.directory, name.c_str(), target.directory, target.name);
  const int renameError = renamed == 0 ? 0 : errno;
  // Two names of one file stay both in a rename.
  System::unlinkAt(target.directory, name.c_str(), 0);
  return renameError;
}

CopyResult removeMovedSource(RunningOperation& operation, const CopyRequest& request) {
  switch (deleteFile(operation, request.source, DeleteMode::Quiet, nullptr)) {
    case Outcome::Done:
      return {};
    case Outcome::Cancelled:
      if (!request.replaced) {
        static_cast<void>(deleteFile(operation, request.target, DeleteMode::Forced, nullptr));
      }
      return {CopyStatus::Cancelled, 0};
    default:
      return {CopyStatus::LeftInPlace, 0};
  }
}
