#include <string>

#include "fileops/copy_engine.h"
#include "fileops/notices.h"
#include "foundation/kept_attributes.h"
#include "foundation/partial_file.h"
#include "foundation/system.h"

// Links, FIFOs, sockets and devices: things without content, made in one call and therefore whole
// from the start. Where one takes the place of something, it is made beside and renamed over it.

namespace {

constexpr size_t FirstLinkBuffer = 512;
constexpr size_t LargestLinkText = 1 << 20;
constexpr int NameOnly = O_PATH | O_NOFOLLOW | O_CLOEXEC;

int readLinkText(const Place& link, std::string& text) {
  for (size_t size = FirstLinkBuffer; size <= LargestLinkText; size *= 2) {
    text.resize(size);
    const ssize_t length = System::readlinkAt(link.directory, link.name, text.data(), size);
    if (length < 0) return errno;
    if (static_cast<size_t>(length) < size) {
      text.resize(static_cast<size_t>(length));
      return 0;
    }
  }
  return ENAMETOOLONG;
}

// What was just made under `name`, and never what somebody put there since: a descriptor that only
// names it, so that nothing is opened. 0, errno, or ESTALE for something else.
int openMade(int directory, const char* name, const struct stat& source, Descriptor& made) {
  made = Descriptor(System::openAt(directory, name, NameOnly));
  if (!made.valid()) return errno;
  struct stat info;
  if (System::fstat(made.get(), &info) < 0) return errno;
  const bool alike = (info.st_mode & S_IFMT) == (source.st_mode & S_IFMT) &&
                     (!isDeviceNode(info.st_mode) || info.st_rdev == source.st_rdev);
  return alike && info.st_nlink <= 1 ? 0 : ESTALE;
}

// What took the source's place since it was looked at has no say.
int keepOwnershipOf(const CopyRequest& request, int made) {
  const Place& place = request.source;
  Descriptor source(System::openAt(place.directory, place.name, NameOnly));
  struct stat info;
  const bool same = source.valid() && System::fstat(source.get(), &info) == 0 &&
                    isSameThing(*request.looked, info);
  if (!same) source.reset();
  return keepOwnership(source.get(), made, *request.looked);
}

// Owner, time and mode.
int dress(int directory, const char* name, const CopyRequest& request) {
  const struct stat& source = *request.looked;
  const bool move = request.kind == TransferKind::Move;
  if (S_ISLNK(source.st_mode) && !move) {
    return keepLinkTimes(directory, name, source);
  }
  Descriptor made;
  int error = openMade(directory, name, source, made);
  if (error == 0 && move) error = keepOwnershipOf(request, made.get());
  const auto grain = move ? TimeGrain::Whole : TimeGrain::TwoSeconds;
  if (error == 0) error = keepTimes(made.get(), source, grain);
  if (error == 0 && !S_ISLNK(source.st_mode)) error = keepMode(made.get(), source);
  return error;
}

void removeMade(RunningOperation& operation, const Place& target, const char* name) {
  if (System::unlinkAt(target.directory, name, 0) == 0 || errno == ENOENT) return;
  tellLeftover(operation, pathBeside(target, name));
}

// Makes it whole under `name`, or not at all.
template <class Make>
int makeWhole(RunningOperation& operation, const CopyRequest& request, const char* name,
              Make make) {
  if (const int error = make(name)) return error;
  const int error = dress(request.target.directory, name, request);
  if (error && error != ESTALE) removeMade(operation, request.target, name);
  return error;
}

template <class Make>
int makeInPlaceOf(RunningOperation& operation, const CopyRequest& request, Make make) {
  const Place& target = request.target;
  std::string temporary;
  const int made = makeBeside(target, temporary, [&](const char* name) {
    return makeWhole(operation, request, name, make);
  });
  if (made) return made;
  if (System::renameAt(target.directory, temporary.c_str(), target.directory, target.name) == 0) {
    return 0;
  }
  const int error = errno;
  removeMade(operation, target, temporary.c_str());
  return error;
}

// Something else may stand under the name by now.
bool isStillThere(const CopyRequest& request) {
  const Place& place = request.source;
  const struct stat& looked = *request.looked;
  struct stat now;
  if (System::statAt(place.directory, place.name, &now, AT_SYMLINK_NOFOLLOW) < 0) return true;
  // What goes through a FIFO or device changes its time, and nothing of it.
  return S_ISLNK(looked.st_mode) ? isUnchanged(looked, now) : isSameThing(looked, now);
}

template <class Make>
CopyResult makeAnew(RunningOperation& operation, const CopyRequest& request, Make make) {
  const Place& target = request.target;
  if (request.replaced && request.overwrite == Permission::No) return {CopyStatus::Exists, EEXIST};
  if (linkToMoved(operation, request, *request.looked) != 0) {
    int error = 0;
    if (request.replaced) {
      error = makeInPlaceOf(operation, request, make);
      if (error == EACCES) return {CopyStatus::Refused, EACCES};
    } else {
      error = makeWhole(operation, request, target.name, make);
    }
    if (error) return targetFailure(error);
    if (request.kind == TransferKind::Move) operation.movedLinks.remember(*request.looked, target);
  }
  operation.progress.advance(0);
  if (request.kind == TransferKind::Copy) return {};
  if (!isStillThere(request)) return {CopyStatus::LeftInPlace, 0};
  if (request.keepSource == KeepSource::Yes) return {};
  return removeMovedSource(operation, request);
}

}  // namespace

CopyResult copyLink(RunningOperation& operation, const CopyRequest& request) {
  std::string text;
  if (const int error = readLinkText(request.source, text)) return sourceFailure(error);
  return makeAnew(operation, request, [&](const char* name) {
    return System::symlinkAt(text.c_str(), request.target.directory, name) == 0 ? 0 : errno;
  });
}

CopyResult copyNode(RunningOperation& operation, const CopyRequest& request) {
  const struct stat& source = *request.looked;
  // Made private; the source's mode comes when it stands.
  const mode_t mode = (source.st_mode & S_IFMT) | modeInTheMaking(source.st_mode);
  return makeAnew(operation, request, [&](const char* name) {
    const int made = System::mknodAt(request.target.directory, name, mode, source.st_rdev);
    return made == 0 ? 0 : errno;
  });
}
