#include "foundation/path_info.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "foundation/names.h"
#include "foundation/status.h"
#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {

constexpr size_t FirstPathBuffer = 512;
constexpr size_t LargestPathBuffer = 1 << 20;
constexpr unsigned LowWord = 0xFFFF;
constexpr mode_t NewDirectoryMode = 0777;

int resultOf(int systemResult) {
  return systemResult == 0 ? 0 : errno;
}

bool isDotName(const char* name) {
  return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

// A dot in front hides a name, but not the parent's.
bool isHiddenName(const wchar_t* name) {
  return name[0] == L'.' && !sameName(name, ParentName);
}

}  // namespace

bool pathExists(const Westring& path) {
  struct stat info;
  return lstatPath(path, info) == 0;
}

bool isDirectoryPath(const Westring& path) {
  struct stat info;
  return statPath(path, info) == 0 && S_ISDIR(info.st_mode);
}

bool isDevice(const Westring& path) {
  struct stat info;
  if (lstatPath(path, info) != 0) return false;
  return S_ISCHR(info.st_mode) || S_ISBLK(info.st_mode) || S_ISFIFO(info.st_mode) ||
         S_ISSOCK(info.st_mode);
}

int statPath(const Westring& path, struct stat& result) {
  return resultOf(System::stat(toUtf8(path).data(), &result));
}

int lstatPath(const Westring& path, struct stat& result) {
  return resultOf(System::lstat(toUtf8(path).data(), &result));
}

bool sameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool sameFile(const Westring& a, const Westring& b) {
  struct stat first;
  struct stat second;
  return statPath(a, first) == 0 && statPath(b, second) == 0 && sameFile(first, second);
}

Westring readLinkTarget(const Westring& path) {
  const Estring encoded = toUtf8(path);
  std::string buffer(FirstPathBuffer, 0);
  while (buffer.size() <= LargestPathBuffer) {
    const ssize_t length = System::readlink(encoded.data(), buffer.data(), buffer.size());
    if (length < 0) return Westring();
    if (static_cast<size_t>(length) < buffer.size()) {
      buffer.resize(static_cast<size_t>(length));
      return decodeFileName(buffer.c_str());
    }
    buffer.resize(buffer.size() * 2);
  }
  return Westring();
}

Westring modeString(unsigned mode) {
  struct Triple {
    unsigned special;  // the bit that shows in the place of x
    wchar_t withX;
    wchar_t withoutX;
  };
  static constexpr Triple Triples[3] = {
      {S_ISUID, L's', L'S'}, {S_ISGID, L's', L'S'}, {S_ISVTX, L't', L'T'}};
  wchar_t text[10] = {};
  for (int i = 2; i >= 0; --i) {
    const unsigned bits = mode >> (6 - 3 * i);
    const Triple& triple = Triples[i];
    text[3 * i] = bits & 4 ? L'r' : L'-';
    text[3 * i + 1] = bits & 2 ? L'w' : L'-';
    text[3 * i + 2] = bits & 1 ? L'x' : L'-';
    if (mode & triple.special) text[3 * i + 2] = bits & 1 ? triple.withX : triple.withoutX;
  }
  return Westring(text);
}

int getFileTime(const Westring& path, DosTime& words) {
  struct stat info;
  const int error = statPath(path, info);
  if (error == 0) words = timeToDos(info.st_mtime);
  return error;
}

int makeDir(const Westring& path) {
  return resultOf(System::mkdir(toUtf8(path).data(), NewDirectoryMode));
}

int removeDir(const Westring& path) {
  return resultOf(System::rmdir(toUtf8(path).data()));
}

int removeFile(const Westring& path) {
  return resultOf(System::unlink(toUtf8(path).data()));
}

int renameFile(const Westring& from, const Westring& to) {
  return resultOf(System::renameNoReplace(toUtf8(from).data(), toUtf8(to).data()));
}

int changeDir(const Westring& path) {
  return resultOf(System::chdir(toUtf8(path).data()));
}

Westring currentDir() {
  std::string buffer(FirstPathBuffer, 0);
  while (!getcwd(buffer.data(), buffer.size())) {
    if (errno != ERANGE || buffer.size() > LargestPathBuffer) return Westring();
    buffer.resize(buffer.size() * 2);
  }
  // The system marks a directory outside the process's root by a text in front.
  return buffer[0] == '/' ? decodeFileName(buffer.c_str()) : Westring();
}

int diskSpace(const Westring& path, uint64_t& total, uint64_t& free, uint64_t& unit) {
  struct statfs info;
  if (System::statFs(toUtf8(path).data(), &info) < 0) return errno;
  // The counts are in fragments where a file system tells their size.
  unit = static_cast<uint64_t>(info.f_frsize ? info.f_frsize : info.f_bsize);
  total = info.f_blocks * unit;
  free = info.f_bavail * unit;
  return 0;
}

Westring errorText(int code) {
  Westring text = fromUtf8(errorTextShort(code).data());
  if (code >= Status::FirstOwn) return text;
  Estring number;
  number.format(" (%d)", code);
  return text + fromUtf8(number.data());
}

Estring errorTextShort(int code) {
  char buffer[256];
  if (code == Status::NotRegularFile) return "Not a regular file";
  if (code == Status::TooLarge) return "File is too large to edit";
  if (code == Status::ChangedMeanwhile) return "The file was changed meanwhile";
  return rtrim(Estring(strerror_r(code, buffer, sizeof buffer)));
}

int listNames(const char* utf8Directory, std::vector<std::string>& names) {
  DIR* directory = System::openDirectory(utf8Directory);
  return directory ? listNames(directory, names) : errno;
}

int listNames(DIR* directory, std::vector<std::string>& names) {
  names.clear();
  int error = 0;
  for (;;) {
    const dirent* item = System::readDirectory(directory);
    if (!item) {
      error = errno;
      break;
    }
    if (!isDotName(item->d_name)) names.emplace_back(item->d_name);
  }
  if (System::closeDirectory(directory) < 0 && error == 0) error = errno;
  return error;
}

void fillEntry(entry* item, const struct stat& info) {
  const bool directory = S_ISDIR(info.st_mode);
  const DosTime words = timeToDos(info.st_mtime);
  item->size = directory ? 0 : static_cast<uint64_t>(info.st_size);
  item->total = -1;
  item->level = 0;
  item->owner = info.st_uid;
  item->group = info.st_gid;
  item->mode = static_cast<uint16_t>(info.st_mode & LowWord);
  item->time = words.time;
  item->date = words.date;
  item->attributes = directory ? Attribute::Directory : 0;
  if (isHiddenName(item->name())) item->attributes |= Attribute::Hidden;
  if (!(info.st_mode & S_IWUSR)) item->attributes |= Attribute::ReadOnly;
}

EntryPtr entryOfPath(const Westring& path, int& error) {
  struct stat info;
  error = lstatPath(path, info);
  if (error) return nullptr;
  const bool link = S_ISLNK(info.st_mode);
  struct stat target;
  if (link && statPath(path, target) == 0) info = target;
  EntryPtr item(newEntry(lastComponent(path).data()));
  fillEntry(item.get(), info);
  if (link) item->attributes |= Attribute::Link;
  return item;
}
