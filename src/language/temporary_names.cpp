#include "language/temporary_names.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <set>
#include <string>
#include <utility>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/system.h"
#include "foundation/utf8.h"
#include "language/private_tree.h"

namespace {

constexpr unsigned ProcessMask = 0xFFFF;
constexpr int MostNames = 1000000;  // a stop for a directory where each name is taken again at once
constexpr time_t SecondsOfDay = 24 * 60 * 60;
constexpr mode_t OwnerFile = 0600;
constexpr mode_t OwnerDirectory = 0700;

std::string namePrefix() {
  return "TD#" + std::to_string(static_cast<unsigned>(getpid()) & ProcessMask) + ".";
}

// What this process made and has not deleted yet, as whole paths.
std::vector<std::string>& madeHere() {
  static std::vector<std::string> paths;
  return paths;
}

// Tries the names in their order; `make` gives 0 for success, EEXIST for the next name, or an
// error.
int makeUnderFreeName(const Westring& directory, Westring& path,
                      const std::function<int(const char*)>& make) {
  const std::string prefix = namePrefix();
  for (int sequence = 0; sequence < MostNames; ++sequence) {
    const Westring candidate =
        joinPath(directory, decodeFileName((prefix + std::to_string(sequence)).c_str()));
    const Estring name = toUtf8(candidate);
    const int result = make(name.data());
    if (result == EEXIST) continue;
    if (result == 0) path = candidate;
    return result;
  }
  return EEXIST;
}

int makeDirectory(const char* name) {
  return System::mkdir(name, OwnerDirectory) == 0 ? 0 : errno;
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

// The process number in a temporary's name; nothing when it is no such name.
std::optional<unsigned> processOf(const std::string& name) {
  unsigned process = 0;
  int sequence = 0;
  if (sscanf(name.c_str(), "TD#%u.%d", &process, &sequence) != 2) return std::nullopt;
  const std::string exact = "TD#" + std::to_string(process) + "." + std::to_string(sequence);
  const bool ours = name == exact && process <= ProcessMask;
  return ours ? std::optional(process) : std::nullopt;
}

bool isOld(int directory, const char* name) {
  struct stat info;
  if (System::statAt(directory, name, &info, AT_SYMLINK_NOFOLLOW) != 0) return false;
  return info.st_uid == geteuid() && info.st_mtime < time(nullptr) - SecondsOfDay;
}

// The low bits of the numbers of all processes; nothing when they aren't told.
std::set<unsigned> livingProcesses() {
  std::set<unsigned> living;
  std::vector<std::string> names;
  if (listNames("/proc", names) != 0) return living;
  for (const std::string& name : names) {
    const unsigned long number = strtoul(name.c_str(), nullptr, 10);
    if (number > 0) living.insert(static_cast<unsigned>(number) & ProcessMask);
  }
  return living;
}

}  // namespace

void removeLeftOverTemporaries() {
  const std::string path = toUtf8(temporaryDirectory()).data();
  const Descriptor directory(System::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  std::vector<std::string> names;
  if (!directory.valid() || listNames(path.c_str(), names) != 0) return;
  const auto isYoungOrStrange = [&](const std::string& name) {
    return !processOf(name) || !isOld(directory.get(), name.c_str());
  };
  std::erase_if(names, isYoungOrStrange);
  if (names.empty()) return;
  const std::set<unsigned> living = livingProcesses();
  if (living.empty()) return;
  for (const std::string& name : names) {
    if (!living.contains(*processOf(name))) removePrivateTree(directory.get(), name.c_str());
  }
}

Westring temporaryDirectory() {
  for (const char* variable : {"TMP", "TEMP"}) {
    const char* value = getenv(variable);
    if (value != nullptr && *value == '/') return decodeFileName(value);
  }
  return L"/tmp";
}

int makeTemporaryDirectory(Westring& path) {
  const int error = makeUnderFreeName(temporaryDirectory(), path, makeDirectory);
  if (error == 0) madeHere().push_back(toUtf8(path).data());
  return error;
}

int makeOwnedDirectory(const Westring& where, Westring& path) {
  return makeUnderFreeName(where, path, makeDirectory);
}

std::optional<Westring> writeListFile(const std::vector<Westring>& lines) {
  std::string bytes;
  for (const Westring& line : lines) {
    bytes += toUtf8(line).data();
    bytes += "\r\n";
  }
  Westring path;
  Descriptor file;
  const int made = makeUnderFreeName(temporaryDirectory(), path, [&file](const char* name) {
    file = Descriptor(
        System::open(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, OwnerFile));
    return file.valid() ? 0 : errno;
  });
  if (made != 0) return std::nullopt;
  const bool written = writeAll(file.get(), bytes);
  const bool closed = file.close() == 0;
  if (!written || !closed) {
    System::unlink(toUtf8(path).data());
    return std::nullopt;
  }
  madeHere().push_back(toUtf8(path).data());
  return path;
}

void removeTemporaries() {
  for (const std::string& path : std::exchange(madeHere(), {})) {
    const size_t slash = path.rfind('/');
    const std::string directory = path.substr(0, slash + 1);
    const Descriptor parent(System::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (parent.valid()) removePrivateTree(parent.get(), path.c_str() + slash + 1);
  }
}
