#pragma once

#include <dirent.h>
#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/dos_time.h"
#include "foundation/entry.h"
#include "foundation/westring.h"

// Look-ups and changes of one path. Paths are taken exactly as they are: nothing here
// canonicalises.

bool pathExists(const Westring& path);       // by lstat: a dangling link exists
bool isDirectoryPath(const Westring& path);  // by stat
bool isDevice(const Westring& path);         // by lstat: character or block device, FIFO, socket
int statPath(const Westring& path, struct stat& result);    // 0 or errno; follows links
int lstatPath(const Westring& path, struct stat& result);   // 0 or errno
bool sameFile(const struct stat& a, const struct stat& b);  // equal device and inode
// True when both exist and are one file, by path, hard link or link to it.
bool sameFile(const Westring& a, const Westring& b);

// The whole link text, however long; empty on failure.
Westring readLinkTarget(const Westring& path);

// Typed or stored text made into an absolute path: '\' becomes '/', ':' anywhere but in second
// place fails, n dots go up n-1 levels (above the root fails). Relative paths start at `base`, or
// at the working directory when it is null; the base is a real path and taken as it is. 0, or -1
// with errno (ENAMETOOLONG when the result can't be held) and the path unchanged.
int canonicalPath(Westring& path, const Westring* base = nullptr);
// The same for a path that is meant as it is written: only "." and ".." and repeated slashes are
// worked out, a backslash, a colon and a longer run of dots belong to names.
int writtenPath(Westring& path, const Westring* base = nullptr);

int64_t groupId(const Westring& name);  // -1 when unknown
int64_t userId(const Westring& name);
Westring groupName(uint32_t id);  // decimal when unknown; remembered for the run
Westring userName(uint32_t id);
Westring homeOfUser();  // the home directory in the user data base; "" when it tells none
Westring modeString(unsigned mode);  // nine characters rwxrwxrwx

int getFileTime(const Westring& path, DosTime& words);  // 0 or errno
int makeDir(const Westring& path);  // mode 0777 before umask; 0 or errno, as the next four
int removeDir(const Westring& path);
int removeFile(const Westring& path);
int renameFile(const Westring& from, const Westring& to);  // EEXIST when `to` exists
int changeDir(const Westring& path);
Westring currentDir();  // "" on failure; however long
int diskSpace(const Westring& path, uint64_t& total, uint64_t& free, uint64_t& unit);

Westring errorText(int code);      // the system's text and " (code)"
Estring errorTextShort(int code);  // the system's text alone

// Every name in a directory but "." and "..", as bytes, in directory order; nothing is left out and
// nothing is looked at. 0 or errno. The directory is closed again before this returns.
int listNames(const char* utf8Directory, std::vector<std::string>& names);
int listNames(DIR* directory, std::vector<std::string>& names);  // an open one, closed as well

// Fills a record from `info`; the name must stand in it, since a dot in front decides Hidden. The
// tags and sortGroup stay. Link isn't set: the caller knows what it looked at.
void fillEntry(entry* item, const struct stat& info);
// One path as an entry whose name is its last component; null and `error` when it can't be looked
// at. Follows a link and sets Attribute::Link; a dangling link is described by itself.
EntryPtr entryOfPath(const Westring& path, int& error);

// Makes a file writable for its owner for a while; the destructor restores the mode. Another file
// that took the name meanwhile is left alone.
class FileUnlock {
 public:
  FileUnlock() = default;
  ~FileUnlock() { relock(); }
  FileUnlock(const FileUnlock&) = delete;
  FileUnlock& operator=(const FileUnlock&) = delete;

  // EACCES when it already was writable for its owner: the refusal had another reason.
  int unlock(const Westring& path);
  int relock();  // 0 or errno
  bool locked() const { return locked_; }

 private:
  Westring name_;
  bool locked_ = false;
  mode_t mode_ = 0;
  dev_t device_ = 0;
  ino_t inode_ = 0;
};
