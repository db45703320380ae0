#include "archive_actions/written_files.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "foundation/directory_names.h"
#include "foundation/open_beneath.h"
#include "foundation/place.h"

namespace {

constexpr mode_t OwnerDirectory = 0700;
constexpr int JustNamed = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isAscii(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

bool isLikely(const char* found, const std::string& wanted) {
  size_t i = 0;
  for (; i < wanted.size() && found[i] != 0; ++i) {
    if (isAscii(wanted[i]) && found[i] != wanted[i]) return false;
  }
  return i == wanted.size() && found[i] == 0;
}

// The name in a directory that `wanted` most likely became, or "".
std::string likelyName(int directory, const std::string& wanted) {
  OpenDirectory names;
  DirectoryNames list;
  if (names.open(directory, ".", FollowLinks::No) != 0) return "";
  if (list.read(names.fd()) != 0) return "";
  std::string result;
  for (size_t i = 0; i < list.count(); ++i) {
    if (!isLikely(list.name(i), wanted)) continue;
    if (!result.empty()) return "";
    result = list.name(i);
  }
  return result;
}

int look(int directory, const std::string& name, struct stat& info) {
  return System::statAt(directory, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

// Finds `name` in the directory; it may become another one.
int findName(int directory, std::string& name, NameMatch match, struct stat& info) {
  const int error = look(directory, name, info);
  if (error != ENOENT || match == NameMatch::Exact) return error;
  name = likelyName(directory, name);
  return name.empty() ? ENOENT : look(directory, name, info);
}

std::vector<std::string> componentsOf(const std::string& path) {
  std::vector<std::string> result;
  for (size_t start = 0; start < path.size();) {
    const size_t end = std::min(path.find('/', start), path.size());
    const std::string component = path.substr(start, end - start);
    if (!component.empty() && component != ".") result.push_back(component);
    start = end + 1;
  }
  return result;
}

// One step at a time: openat2 isn't everywhere, and a name may become a likely one.
int goBelow(Descriptor& directory, std::string& name, NameMatch match) {
  struct stat info;
  if (name == "..") return ELOOP;
  if (const int error = findName(directory.get(), name, match, info); error != 0) return error;
  if (S_ISLNK(info.st_mode)) return ELOOP;
  Descriptor next(System::openAt(directory.get(), name.c_str(), JustNamed));
  if (!next.valid()) return errno;
  directory = std::move(next);
  return 0;
}

std::string joined(const std::vector<std::string>& components, size_t count) {
  std::string path;
  for (size_t i = 0; i < count; ++i) path += (i > 0 ? "/" : "") + components[i];
  return path;
}

int openParent(int top, std::vector<std::string>& components, NameMatch match, Descriptor& parent) {
  const std::string path = "./" + joined(components, components.size() - 1);
  parent = Descriptor(System::openBeneath(top, path.c_str(), JustNamed));
  if (parent.valid()) return 0;
  const bool missing = errno == ENOENT && match == NameMatch::Likely;
  if (!missing && errno != ENOSYS && errno != EPERM && errno != ENAMETOOLONG) return errno;
  parent = Descriptor(System::openAt(top, ".", JustNamed));
  if (!parent.valid()) return errno;
  for (size_t i = 0; i + 1 < components.size(); ++i) {
    if (const int error = goBelow(parent, components[i], match); error != 0) return error;
  }
  return 0;
}

// The names in a directory, at most two of them.
std::vector<std::string> someNames(int directory) {
  OpenDirectory names;
  DirectoryNames list;
  std::vector<std::string> result;
  if (names.open(directory, ".", FollowLinks::No) != 0 || list.read(names.fd()) != 0) return {};
  for (size_t i = 0; i < std::min<size_t>(list.count(), 2); ++i) result.emplace_back(list.name(i));
  return result;
}

// Opens the directory that is to hold a path, made where it isn't there.
int makeParent(int top, const std::vector<std::string>& components, Descriptor& parent) {
  parent = Descriptor(System::openAt(top, ".", JustNamed));
  for (size_t i = 0; parent.valid() && i + 1 < components.size(); ++i) {
    const char* const name = components[i].c_str();
    if (components[i] == "..") return ELOOP;
    if (System::mkdirAt(parent.get(), name, OwnerDirectory) != 0 && errno != EEXIST) return errno;
    parent = Descriptor(System::openAt(parent.get(), name, JustNamed));
  }
  return parent.valid() ? 0 : errno;
}

struct Candidate {
  std::string path;
  NameMatch match;
};

// Where a tool may have written what it knows as `operand`, the likeliest first. Of a directory
// `operand` may be something below.
std::vector<Candidate> candidatesFor(const std::string& shown, const ToolOperand& operand,
                                     bool alone) {
  const size_t components = componentsOf(shown).size();
  const auto beginning = [components](const std::string& path) {
    const std::vector<std::string> all = componentsOf(path);
    return joined(all, std::min(all.size(), components));
  };
  const std::string known =
      bytePath(operand.secondPath.empty() ? operand.path : operand.secondPath);
  const std::string stored = beginning(known);
  const std::string turned = beginning(withSlashes(known));
  using enum NameMatch;
  std::vector<Candidate> result{{stored, Exact}, {turned, Exact}};
  // Another name of the same directory may be written as it is shown.
  if (alone) result.push_back({shown, Exact});
  for (const std::string& path : {stored, turned}) result.push_back({path, Likely});
  result.push_back({shown, Likely});
  return result;
}

int findOperand(int top, const std::string& shown, const ToolOperand& operand, bool alone,
                FoundPlace& place) {
  int result = ENOENT;
  for (const Candidate& candidate : candidatesFor(shown, operand, alone)) {
    const int error = findWritten(top, candidate.path, candidate.match, place);
    if (error == 0) return 0;
    if (result == ENOENT) result = error;
  }
  return result;
}

}  // namespace

int findWritten(int top, const std::string& path, NameMatch match, FoundPlace& place) {
  std::vector<std::string> components = componentsOf(path);
  if (components.empty()) return ENOENT;
  if (const int error = openParent(top, components, match, place.parent); error != 0) return error;
  place.name = components.back();
  if (place.name == "..") return ELOOP;
  const int error = findName(place.parent.get(), place.name, match, place.info);
  components.back() = place.name;
  place.path = joined(components, components.size());
  return error;
}

int findMember(int top, const Westring& shown, const std::vector<ToolOperand>& operands,
               FoundPlace& place) {
  int error = ENOENT;
  for (size_t i = 0; i < operands.size(); ++i) {
    FoundPlace found;
    error = findOperand(top, bytePath(shown), operands[i], operands.size() == 1, found);
    if (error != 0) return error;
    if (i > 0 && !(idOf(place.info) == idOf(found.info))) return EEXIST;
    place = std::move(found);
  }
  return error;
}

int findOnlyFile(int top, FoundPlace& place) {
  place.path.clear();
  place.parent = Descriptor(System::openAt(top, ".", JustNamed));
  while (place.parent.valid()) {
    const std::vector<std::string> names = someNames(place.parent.get());
    if (names.size() != 1) return ENOENT;
    place.name = names[0];
    place.path += (place.path.empty() ? "" : "/") + place.name;
    if (const int error = look(place.parent.get(), place.name, place.info); error != 0) {
      return error;
    }
    if (!S_ISDIR(place.info.st_mode)) return 0;
    place.parent = Descriptor(System::openAt(place.parent.get(), place.name.c_str(), JustNamed));
  }
  return errno;
}

bool isAt(const FoundPlace& place, const std::string& path) {
  const std::vector<std::string> components = componentsOf(path);
  return place.path == joined(components, components.size());
}

int checkRegular(const FoundPlace& place) {
  return S_ISREG(place.info.st_mode) && place.info.st_nlink == 1 ? 0 : EINVAL;
}

int moveWritten(int top, const FoundPlace& found, const std::string& path) {
  const std::vector<std::string> components = componentsOf(path);
  if (components.empty()) return ENOENT;
  Descriptor parent;
  if (const int error = makeParent(top, components, parent); error != 0) return error;
  const int result = System::renameAtNoReplace(found.parent.get(), found.name.c_str(), parent.get(),
                                               components.back().c_str());
  return result == 0 ? 0 : errno;
}

std::string withSlashes(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

int turnBackslashes(int top, const std::vector<ToolOperand>& operands) {
  for (const ToolOperand& operand : operands) {
    const std::string path = bytePath(operand.path);
    FoundPlace found;
    if (path.find('\\') == std::string::npos) continue;
    if (findWritten(top, path, NameMatch::Exact, found) != 0) continue;
    if (const int error = moveWritten(top, found, withSlashes(path)); error != 0) return error;
  }
  return 0;
}
