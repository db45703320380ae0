#include "panels/reader/volume_facts.h"

#include <fcntl.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "foundation/path_info.h"
#include "foundation/regular_file.h"
#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {

constexpr char MountTable[] = "/proc/self/mountinfo";
constexpr char LabelDirectory[] = "/dev/disk/by-label";
constexpr char IdDirectory[] = "/dev/disk/by-uuid";
constexpr size_t LongestTable = 1 << 20;
constexpr size_t LongestDescriptorInfo = 4096;
constexpr char MountIdHead[] = "mnt_id:";
constexpr int NoMount = -1;
constexpr int HexBase = 16;

// The number of the mount that a directory lies in. The device number of the directory itself would
// not do: on some file systems it is in no table.
int mountIdOf(const Westring& directory) {
  const Descriptor fd(System::open(toUtf8(directory).data(), O_PATH | O_CLOEXEC));
  if (!fd.valid()) return NoMount;
  const std::string path = "/proc/self/fdinfo/" + std::to_string(fd.get());
  const auto info = readBeginning(path.c_str(), LongestDescriptorInfo);
  const size_t at = info ? info->find(MountIdHead) : std::string::npos;
  if (at == std::string::npos) return NoMount;
  return atoi(info->c_str() + at + sizeof MountIdHead - 1);
}

bool isHexPair(const std::string& text, size_t at) {
  return at + 1 < text.size() && isxdigit(static_cast<unsigned char>(text[at])) &&
         isxdigit(static_cast<unsigned char>(text[at + 1]));
}

// Names of such links have "\x20" in place of a blank.
std::string unescaped(const std::string& name) {
  std::string result;
  for (size_t i = 0; i < name.size(); ++i) {
    if (name.compare(i, 2, "\\x") == 0 && isHexPair(name, i + 2)) {
      const std::string digits = name.substr(i + 2, 2);
      result += static_cast<char>(strtol(digits.c_str(), nullptr, HexBase));
      i += digits.size() + 1;
    } else {
      result += name[i];
    }
  }
  return result;
}

}  // namespace

MountLine findMount(const std::string& table, int mountId) {
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    if (atoi(line.c_str()) != mountId) continue;
    // Behind the fields of the mount, whose number varies, a lone dash begins those of the volume.
    const size_t dash = line.find(" - ");
    if (dash == std::string::npos) return {};
    std::istringstream fields(line.substr(dash + 3));
    MountLine result;
    fields >> result.fileSystem >> result.source;
    return result;
  }
  return {};
}

std::string nameOfDevice(const char* directory, dev_t device) {
  std::vector<std::string> names;
  if (listNames(directory, names) != 0) return "";
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    struct stat info;
    const std::string path = std::string(directory) + "/" + name;
    if (System::stat(path.c_str(), &info) == 0 && info.st_rdev == device) return unescaped(name);
  }
  return "";
}

Westring serialOfId(const std::string& id) {
  constexpr size_t shortDigits = 8, longDigits = 16;
  std::string digits = id;
  digits.erase(std::remove(digits.begin(), digits.end(), '-'), digits.end());
  const bool isHex = std::all_of(digits.begin(), digits.end(),
                                 [](char c) { return isxdigit(static_cast<unsigned char>(c)); });
  if (!isHex || (digits.size() != shortDigits && digits.size() != longDigits)) return Westring();
  char text[longDigits + 1];
  snprintf(text, sizeof text, "%llX", strtoull(digits.c_str(), nullptr, HexBase));
  return Westring(text);
}

VolumeFacts volumeFacts(const Westring& directory) {
  VolumeFacts facts;
  const int mountId = mountIdOf(directory);
  const auto table = mountId == NoMount ? std::nullopt : readBeginning(MountTable, LongestTable);
  if (!table) return facts;
  const MountLine mount = findMount(*table, mountId);
  facts.fileSystem = fromUtf8(mount.fileSystem.c_str());
  struct stat source;
  if (mount.source.empty() || mount.source[0] != '/') return facts;
  if (System::stat(mount.source.c_str(), &source) != 0 || !S_ISBLK(source.st_mode)) return facts;
  facts.label = fromUtf8(nameOfDevice(LabelDirectory, source.st_rdev).c_str());
  facts.serial = serialOfId(nameOfDevice(IdDirectory, source.st_rdev));
  return facts;
}
