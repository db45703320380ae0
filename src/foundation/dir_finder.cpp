#include "foundation/dir_finder.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/status.h"
#include "foundation/system.h"
#include "foundation/utf8.h"
#include "foundation/wild_match.h"

namespace {

constexpr wchar_t EveryName[] = L"*";
constexpr wchar_t RootPath[] = L"/";
constexpr wchar_t CurrentPath[] = L".";
constexpr int UsualNameLength = 255;  // bytes; a few file systems have longer names

bool isAbsolute(const Westring& path) {
  return path[0] == L'/';
}

// Hidden names are those behind a dot, but for the directory itself and all that begins with two.
bool passesHidden(const char* name, int flags) {
  if (name[0] != '.' || flags & FindFlag::ShowHidden) return true;
  return name[1] == 0 || name[1] == '.';
}

// Where a search begins: an absolute pattern stands for itself, any other lies below the base.
Westring searchDirectory(const Westring& base, const Westring& pattern) {
  const Westring directory = dirPart(pattern);
  if (isAbsolute(pattern)) return directory.empty() ? Westring(RootPath) : directory;
  if (base.empty()) return directory.empty() ? Westring(CurrentPath) : directory;
  return directory.empty() ? base : joinPath(base, directory);
}

}  // namespace

DirFinder::DirFinder(const Westring& base) : base_(base) {}

DirFinder::~DirFinder() {
  close();
}

int DirFinder::first(const Westring& pattern, int flags, entry*& result) {
  close();
  result = nullptr;
  flags_ = flags;
  pattern_ = namePart(pattern);
  matchesAll_ = sameName(pattern_, EveryName);
  open_ = System::openDirectory(toUtf8(searchDirectory(base_, pattern)).data());
  if (!open_) return status_ = errno;
  return next(result);
}

int DirFinder::next(entry*& result) {
  result = nullptr;
  if (!open_) return status_ = Status::NoMoreFiles;
  for (;;) {
    const dirent* item = System::readDirectory(open_);
    if (!item) return status_ = errno ? errno : Status::NoMoreFiles;
    if (accept(item->d_name, result)) return status_ = 0;
  }
}

bool DirFinder::accept(const char* name, entry*& result) {
  if (!passesHidden(name, flags_)) return false;
  wchar_t usual[UsualNameLength + 1];
  std::vector<wchar_t> unusual;
  wchar_t* decoded = usual;
  const size_t bytes = strlen(name);
  if (bytes > UsualNameLength) {
    unusual.resize(bytes + 1);
    decoded = unusual.data();
  }
  const int length = decodeFileName(name, decoded);
  if (!matchesAll_ && !wildMatch(pattern_.data(), decoded)) return false;

  struct stat info;
  const int directory = dirfd(open_);
  if (System::statAt(directory, name, &info, AT_SYMLINK_NOFOLLOW) < 0) return false;
  const bool link = S_ISLNK(info.st_mode);
  if (link && System::statAt(directory, name, &info, 0) < 0) return false;
  return deliver(decoded, length, info, link ? Attribute::Link : 0, result);
}

bool DirFinder::deliver(const wchar_t* name, int length, const struct stat& info,
                        uint16_t attributes, entry*& result) {
  if (flags_ & FindFlag::DirectoriesOnly && !S_ISDIR(info.st_mode)) return false;
  EntryPtr item(newEntry(length));
  wmemcpy(item->name(), name, static_cast<size_t>(length) + 1);
  fillEntry(item.get(), info);
  item->attributes |= attributes;
  if (flags_ & FindFlag::OwnRecord) {
    result = item.release();
  } else {
    record_ = std::move(item);
    result = record_.get();
  }
  return true;
}

void DirFinder::close() {
  if (open_) System::closeDirectory(open_);
  open_ = nullptr;
}

int DirFinder::info(const Westring& path, int flags, entry*& result) {
  close();
  result = nullptr;
  flags_ = flags;
  const Westring full = isAbsolute(path) || base_.empty() ? path : joinPath(base_, path);
  const Westring name = lastComponent(full);
  const Estring encoded = toUtf8(full);
  struct stat info;
  if (System::lstat(encoded.data(), &info) < 0) return status_ = errno;
  const bool link = S_ISLNK(info.st_mode);
  if (link && System::stat(encoded.data(), &info) < 0) return status_ = errno;
  const bool found = passesHidden(toUtf8(name).data(), flags) &&
                     deliver(name.data(), name.length(), info, link ? Attribute::Link : 0, result);
  return status_ = found ? 0 : Status::NoMoreFiles;
}
