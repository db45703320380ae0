#include <string>

#include "fileops/copy_engine.h"
#include "foundation/kept_attributes.h"
#include "foundation/partial_file.h"
#include "foundation/system.h"

// Links, FIFOs, sockets and devices: things without content, made in one call and therefore whole
// from the start. Where one takes the place of something, it is made beside and renamed over it.

namespace {

constexpr size_t FirstLinkBuffer = 512;
constexpr size_t LargestLinkText = 1 << 20;
constexpr mode_t PermissionBits = 07777;

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

// Owner and time as the system allows; neither keeps the copy from being whole.
void dress(int directory, const char* name, const CopyRequest& request, const struct stat& source) {
  if (request.kind == TransferKind::Move) {
    static_cast<void>(System::lchownAt(directory, name, source.st_uid, source.st_gid));
  }
  if (!S_ISLNK(source.st_mode)) {
    const mode_t mode = source.st_mode & PermissionBits;
    static_cast<void>(System::chmodAt(directory, name, mode & ~(S_ISUID | S_ISGID)));
  }
  const struct timespec time = copiedTime(source.st_mtim);
  const struct timespec times[2] = {time, time};
  static_cast<void>(System::utimensAt(directory, name, times, AT_SYMLINK_NOFOLLOW));
}

template <class Make>
int makeInPlaceOf(const CopyRequest& request, Make make) {
  const Place& target = request.target;
  std::string temporary;
  if (const int error = makeBeside(target, temporary, make)) return error;
  dress(target.directory, temporary.c_str(), request, *request.looked);
  if (System::renameAt(target.directory, temporary.c_str(), target.directory, target.name) == 0) {
    return 0;
  }
  const int error = errno;
  System::unlinkAt(target.directory, temporary.c_str(), 0);
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
  int error = 0;
  if (request.replaced) {
    if (request.overwrite == Permission::No) return {CopyStatus::Exists, EEXIST};
    error = makeInPlaceOf(request, make);
    if (error == EACCES) return {CopyStatus::Refused, EACCES};
  } else {
    error = make(target.name);
    if (error == 0) dress(target.directory, target.name, request, *request.looked);
  }
  if (error) return targetFailure(error);
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
