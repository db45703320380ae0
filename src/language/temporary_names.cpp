#include "language/temporary_names.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/system.h"
#include "foundation/utf8.h"
#include "language/private_tree.h"

namespace {

constexpr unsigned ProcessMask = 0xFFFF;
constexpr int MostNames = 1000000;  // a stop for a directory where each name is taken again at once
constexpr mode_t OwnerFile = 0600;
constexpr mode_t OwnerDirectory = 0700;

std::string namePrefix() {
  return "TD#" + std::to_string(static_cast<unsigned>(getpid()) & ProcessMask) + ".";
}

bool isOwnName(const std::string& name, const std::string& prefix) {
  return name.size() > prefix.size() && name.compare(0, prefix.size(), prefix) == 0 &&
         name.find_first_not_of("0123456789", prefix.size()) == std::string::npos;
}

// Tries the names in their order; `attempt` gives 0 for success, EEXIST for the next name, or an
// error.
int withFreeName(Westring& path, const std::function<int(const char*)>& attempt) {
  const Westring directory = temporaryDirectory();
  const std::string prefix = namePrefix();
  for (int sequence = 0; sequence < MostNames; ++sequence) {
    const Westring candidate =
        joinPath(directory, decodeFileName((prefix + std::to_string(sequence)).c_str()));
    const int result = attempt(toUtf8(candidate).data());
    if (result == EEXIST) continue;
    if (result == 0) path = candidate;
    return result;
  }
  return EEXIST;
}

int lookFree(const char* path) {
  struct stat info;
  if (System::lstat(path, &info) == 0) return EEXIST;
  return errno == ENOENT ? 0 : errno;
}

bool writeAll(int fd, const std::string& bytes) {
  size_t done = 0;
  while (done < bytes.size()) {
    ssize_t written = System::write(fd, bytes.data() + done, bytes.size() - done);
    if (written <= 0) return false;
    done += static_cast<size_t>(written);
  }
  return true;
}

}  // namespace

Westring temporaryDirectory() {
  for (const char* variable : {"TMP", "TEMP"}) {
    const char* value = getenv(variable);
    if (value != nullptr && *value == '/') return decodeFileName(value);
  }
  return L"/tmp";
}

int tempName(Westring& path) {
  return withFreeName(path, lookFree);
}

int makeTemporaryDirectory(Westring& path) {
  return withFreeName(
      path, [](const char* name) { return System::mkdir(name, OwnerDirectory) == 0 ? 0 : errno; });
}

std::optional<Westring> writeListFile(const std::vector<Westring>& lines) {
  std::string bytes;
  for (const Westring& line : lines) {
    bytes += toUtf8(line).data();
    bytes += "\r\n";
  }
  Westring path;
  Descriptor file;
  const int made = withFreeName(path, [&file](const char* name) {
    file = Descriptor(
        System::open(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, OwnerFile));
    return file.valid() ? 0 : errno;
  });
  if (made != 0) return std::nullopt;
  const bool written = writeAll(file.get(), bytes);
  const bool closed = file.close() == 0;
  if (written && closed) return path;
  System::unlink(toUtf8(path).data());
  return std::nullopt;
}

void removeTemporaries() {
  const Estring directory = toUtf8(temporaryDirectory());
  std::vector<std::string> names;
  if (listNames(directory.data(), names) != 0) return;
  Descriptor parent(System::open(directory.data(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!parent.valid()) return;
  const std::string prefix = namePrefix();
  for (const std::string& name : names) {
    if (isOwnName(name, prefix)) removePrivateTree(parent.get(), name.c_str());
  }
}
