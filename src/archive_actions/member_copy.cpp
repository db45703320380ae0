#include "archive_actions/member_copy.h"

#include <cerrno>
#include <string>
#include <utility>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "foundation/regular_file.h"

namespace {

constexpr size_t BlockBytes = 256 * 1024;
constexpr char KeptEnding[] = ".kept";

int hashContent(int file, ContentHash& hash) {
  std::string block(BlockBytes, '\0');
  for (off_t at = 0;;) {
    const ssize_t got = System::readAt(file, block.data(), block.size(), at);
    if (got < 0) return errno;
    if (got == 0) return 0;
    hash.add({block.data(), static_cast<size_t>(got)});
    at += got;
  }
}

}  // namespace

int MemberCopy::read(const Westring& path, Facts& facts) {
  Descriptor file;
  if (const int error = openRegularFile(path, file, Links::Refuse); error != 0) return error;
  struct stat info;
  if (System::fstat(file.get(), &info) != 0) return errno;
  ContentHash hash;
  if (const int error = hashContent(file.get(), hash); error != 0) return error;
  facts = {timeToDos(info.st_mtime), info.st_size, hash.value()};
  return 0;
}

int MemberCopy::adopt(PrivateDirectory&& directory, const Westring& path) {
  directory_ = std::move(directory);
  path_ = path;
  return read(path_, taken_);
}

MemberCopy::State MemberCopy::compare(int& error) const {
  Facts now;
  error = read(path_, now);
  if (error != 0) return State::Unreadable;
  const bool same = now.words.date == taken_.words.date && now.words.time == taken_.words.time &&
                    now.size == taken_.size && now.hash == taken_.hash;
  return same ? State::Same : State::Changed;
}

uint64_t MemberCopy::size() const {
  struct stat info;
  return lstatPath(path_, info) == 0 ? static_cast<uint64_t>(info.st_size) : 0;
}

Westring MemberCopy::keep() {
  directory_.keep();
  const std::string from = bytePath(directory_.path());
  const std::string to = from + KeptEnding;
  if (System::renameAtNoReplace(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str()) != 0) {
    return path_;
  }
  const int length = directory_.path().length();
  path_ = decodeFileName(to.c_str()) + mid(path_, length, 0);
  return path_;
}
