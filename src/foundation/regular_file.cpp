#include "foundation/regular_file.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

#include "foundation/utf8.h"

namespace {
constexpr size_t PieceSize = 65536;
}

int openRegularFile(const Westring& path, Descriptor& result, Links links) {
  const int follow = links == Links::Follow ? 0 : O_NOFOLLOW;
  Descriptor opened(System::open(toUtf8(path).data(), O_RDONLY | follow | O_NONBLOCK | O_CLOEXEC));
  if (!opened.valid()) return errno;
  struct stat info;
  if (System::fstat(opened.get(), &info) < 0) return errno;
  if (!S_ISREG(info.st_mode)) return S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
  result = std::move(opened);
  return 0;
}

int readWhole(const Descriptor& file, std::string& content, size_t limit) {
  content.clear();
  for (;;) {
    const size_t before = content.size();
    const size_t piece = std::min(PieceSize, limit - before + 1);
    content.resize(before + piece);
    const ssize_t count = System::read(file.get(), content.data() + before, piece);
    const int error = count < 0 ? errno : 0;
    content.resize(before + static_cast<size_t>(std::max<ssize_t>(count, 0)));
    if (error == 0 && count == 0) return 0;
    if (error == 0 && content.size() <= limit) continue;
    content.clear();
    return error ? error : EFBIG;
  }
}

int readRegularFile(const Westring& path, std::string& content, size_t limit, Links links,
                    FileStamp* stamp) {
  content.clear();
  Descriptor file;
  if (const int error = openRegularFile(path, file, links)) return error;
  if (stamp != nullptr) {
    struct stat info;
    if (System::fstat(file.get(), &info) < 0) return errno;
    *stamp = FileStamp::of(info);
  }
  return readWhole(file, content, limit);
}

std::optional<std::string> readBeginning(const char* utf8Path, size_t limit) {
  struct stat info;
  // Looked at before it is opened, since opening alone makes some devices act; and again after,
  // since another file may have taken the name.
  if (System::stat(utf8Path, &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  Descriptor file(System::open(utf8Path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.valid() || System::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
    return std::nullopt;
  }
  std::string content(limit, '\0');
  size_t length = 0;
  while (length < limit) {
    const ssize_t count = System::read(file.get(), content.data() + length, limit - length);
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    length += static_cast<size_t>(count);
  }
  content.resize(length);
  return content;
}
