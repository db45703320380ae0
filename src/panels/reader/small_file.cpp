#include "panels/reader/small_file.h"

#include <fcntl.h>

#include "foundation/system.h"

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
