#include "foundation/users.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/utf8.h"

namespace {

constexpr size_t FirstBufferSize = 1024;
constexpr size_t LargestBufferSize = 1 << 24;

// Calls one of the reentrant look-ups with a buffer that grows until the record fits. Null when
// there is no such record.
template <class Record, class Call>
Record* lookUp(Record& record, std::vector<char>& buffer, Call call) {
  buffer.resize(FirstBufferSize);
  for (;;) {
    Record* found = nullptr;
    const int error = call(&record, buffer.data(), buffer.size(), &found);
    if (error == EINTR) continue;
    if (error != ERANGE || buffer.size() >= LargestBufferSize) return found;
    buffer.resize(buffer.size() * 2);
  }
}

Westring decimal(uint32_t id) {
  return Westring(std::to_string(id).c_str());
}

// A directory service may take long to answer, and a panel asks for each line of each draw: every
// id is looked up once in a run.
class NameCache {
 public:
  template <class LookUp>
  Westring get(uint32_t id, LookUp find) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto known = names_.find(id);
    if (known != names_.end()) return known->second;
    return names_.emplace(id, find(id)).first->second;
  }

 private:
  std::mutex mutex_;
  std::unordered_map<uint32_t, Westring> names_;
};

Westring findGroupName(uint32_t id) {
  struct group record;
  std::vector<char> buffer;
  const auto* found =
      lookUp(record, buffer, [id](auto... rest) { return getgrgid_r(id, rest...); });
  return found ? decodeFileName(found->gr_name) : decimal(id);
}

Westring findUserName(uint32_t id) {
  struct passwd record;
  std::vector<char> buffer;
  const auto* found =
      lookUp(record, buffer, [id](auto... rest) { return getpwuid_r(id, rest...); });
  return found ? decodeFileName(found->pw_name) : decimal(id);
}

}  // namespace

int64_t groupId(const Westring& name) {
  struct group record;
  std::vector<char> buffer;
  const Estring encoded = toUtf8(name);
  const auto* found = lookUp(
      record, buffer, [&encoded](auto... rest) { return getgrnam_r(encoded.data(), rest...); });
  return found ? int64_t{found->gr_gid} : -1;
}

int64_t userId(const Westring& name) {
  struct passwd record;
  std::vector<char> buffer;
  const Estring encoded = toUtf8(name);
  const auto* found = lookUp(
      record, buffer, [&encoded](auto... rest) { return getpwnam_r(encoded.data(), rest...); });
  return found ? int64_t{found->pw_uid} : -1;
}

Westring groupName(uint32_t id) {
  static NameCache cache;
  return cache.get(id, findGroupName);
}

Westring userName(uint32_t id) {
  static NameCache cache;
  return cache.get(id, findUserName);
}

Westring homeOfUser() {
  struct passwd record;
  std::vector<char> buffer;
  const uid_t id = getuid();
  const auto* found =
      lookUp(record, buffer, [id](auto... rest) { return getpwuid_r(id, rest...); });
  return found && found->pw_dir ? decodeFileName(found->pw_dir) : Westring();
}
