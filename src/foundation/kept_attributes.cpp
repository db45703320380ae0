#include "foundation/kept_attributes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <string>

#include "foundation/dos_time.h"
#include "foundation/not_offered.h"
#include "foundation/system.h"

namespace {

constexpr mode_t ModeBits = 07777;
constexpr mode_t SetIdBits = S_ISUID | S_ISGID;
constexpr mode_t NewFileMode = 0660;
constexpr mode_t OwnerOnly = 0700;
constexpr mode_t GroupAndOthers = 077;
constexpr ssize_t LargestAttributes =
    64 * 1024;  // what the system allows for names and for a value
constexpr int FirstYear = 1980;
constexpr int LastYear = 2107;
constexpr int TmYearBase = 1900;

bool sameWords(DosTime a, DosTime b) {
  return a.date == b.date && a.time == b.time;
}

// At the ends of what the words can hold they repeat and tell nothing.
struct timespec copiedTimeAtTheEnds(struct timespec source) {
  struct tm local {};
  if (!localtime_r(&source.tv_sec, &local)) return source;
  const int year = local.tm_year + TmYearBase;
  if (year < FirstYear || year > LastYear) return source;
  return {source.tv_sec - (local.tm_sec & 1), 0};
}

// 0 for what counts as done.
int settled(int result) {
  return result >= 0 || isAttributeNotOffered(errno) ? 0 : errno;
}

// One that is gone since it was listed, or that this process may not see, is none of its affairs.
int copyExtendedAttribute(int from, int to, const char* name, std::string& room) {
  const ssize_t size = System::getAttribute(from, name, room.data(), room.size());
  if (size < 0) return errno == ENODATA || errno == EACCES ? 0 : settled(-1);
  const int error = settled(System::setAttribute(to, name, room.data(), static_cast<size_t>(size)));
  // The system's own guards give out their labels themselves.
  return error == EACCES && strncmp(name, "security.", 9) == 0 ? 0 : error;
}

int copyExtendedAttributes(int from, int to) {
  std::string names(LargestAttributes, 0);
  const ssize_t length = System::listAttributes(from, names.data(), names.size());
  if (length <= 0) return settled(static_cast<int>(length));
  std::string room(LargestAttributes, 0);
  for (const char* name = names.data(); name < names.data() + length; name += strlen(name) + 1) {
    if (const int error = copyExtendedAttribute(from, to, name, room)) return error;
  }
  return 0;
}

using Attributes = std::map<std::string, std::string>;

// False when some of them can't be read.
bool readAttributes(int fd, Attributes& result) {
  std::string names(LargestAttributes, 0);
  const ssize_t length = System::listAttributes(fd, names.data(), names.size());
  if (length < 0) return isNotOffered(errno);
  std::string room(LargestAttributes, 0);
  for (const char* name = names.data(); name < names.data() + length; name += strlen(name) + 1) {
    const ssize_t size = System::getAttribute(fd, name, room.data(), room.size());
    if (size < 0) return false;
    result[name].assign(room, 0, static_cast<size_t>(size));
  }
  return true;
}

// A new file takes over the access list that its directory has ready for new ones; what is moved
// has its own, or none.
int dropInheritedList(int fd, const char* name) {
  if (System::removeAttribute(fd, name) == 0 || errno == ENODATA) return 0;
  return settled(-1);
}

}  // namespace

struct timespec copiedTime(struct timespec source) {
  const DosTime words = timeToDos(source.tv_sec);
  // The first of the two seconds of a word has another word before it, the second one the same.
  if (!sameWords(words, timeToDos(source.tv_sec - 1))) return {source.tv_sec, 0};
  if (sameWords(words, timeToDos(source.tv_sec - 2))) return copiedTimeAtTheEnds(source);
  return {source.tv_sec - 1, 0};
}

int keepTimes(int fd, const struct stat& source, TimeGrain grain) {
  const struct timespec time = copiedTime(source.st_mtim);
  const struct timespec copied[2] = {time, time};
  const struct timespec whole[2] = {source.st_atim, source.st_mtim};
  return settled(System::futimens(fd, grain == TimeGrain::Whole ? whole : copied));
}

int keepLinkTimes(int directory, const char* name, const struct stat& source) {
  const struct timespec time = copiedTime(source.st_mtim);
  const struct timespec times[2] = {time, time};
  return settled(System::utimensAt(directory, name, times, AT_SYMLINK_NOFOLLOW));
}

mode_t keptMode(const struct stat& source, uid_t owner, gid_t group) {
  const mode_t mode = source.st_mode & ModeBits;
  const bool same = owner == source.st_uid && group == source.st_gid;
  return same || S_ISDIR(source.st_mode) ? mode : mode & ~SetIdBits;
}

int keepMode(int fd, const struct stat& source) {
  mode_t mode = source.st_mode & ModeBits;
  if ((mode & SetIdBits) != 0) {
    struct stat made;
    mode = System::fstat(fd, &made) == 0 ? keptMode(source, made.st_uid, made.st_gid)
                                         : mode & ~SetIdBits;
  }
  return settled(System::fchmod(fd, mode));
}

int keepOwnership(int from, int to, const struct stat& source) {
  int error = System::fchown(to, source.st_uid, source.st_gid) == 0 ? 0 : errno;
  // An ordinary user can at least keep the group, when it is one of theirs.
  if (error == EPERM) error = settled(System::fchown(to, static_cast<uid_t>(-1), source.st_gid));
  if (error && !isNotOffered(error)) return error;
  error = S_ISLNK(source.st_mode) ? 0 : dropInheritedList(to, "system.posix_acl_access");
  const bool directory = S_ISDIR(source.st_mode);
  if (error == 0 && directory) error = dropInheritedList(to, "system.posix_acl_default");
  return error || from < 0 ? error : copyExtendedAttributes(from, to);
}

int compareAttributes(int a, int b, bool& same) {
  struct stat infos[2];
  if (System::fstat(a, &infos[0]) < 0 || System::fstat(b, &infos[1]) < 0) return errno;
  Attributes attributes[2];
  same = infos[0].st_uid == infos[1].st_uid && infos[0].st_gid == infos[1].st_gid &&
         infos[0].st_mode == infos[1].st_mode && readAttributes(a, attributes[0]) &&
         readAttributes(b, attributes[1]) && attributes[0] == attributes[1];
  return 0;
}

mode_t modeInTheMaking(mode_t source) {
  return source & NewFileMode;
}

mode_t directoryModeInTheMaking(mode_t source) {
  return ((source & ModeBits) | OwnerOnly) & ~GroupAndOthers & ~SetIdBits;
}
