#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/dos_time.h"
#include "foundation/entry.h"
#include "foundation/westring.h"

// Look-ups and changes of one path. Paths are taken exactly as they are: nothing here canonicalises.

bool pathExists(const Westring& path);       // by lstat: a dangling link exists
bool isDirectoryPath(const Westring& path);  // by stat
bool isDevice(const Westring& path);         // character or block device, FIFO, socket
int statPath(const Westring& path, struct stat& result);   // 0 or errno; follows links
int lstatPath(const Westring& path, struct stat& result);  // 0 or errno
bool sameFile(const struct stat& a, const struct stat& b);  // equal device and inode
// True when both exist and are one file, by path, hard link or link to it.
bool sameFile(const Westring& a, const Westring& b);

// The whole link text, however long; empty on failure.
Westring readLinkTarget(const Westring& path);

// Typed or stored text made into an absolute path: '\' becomes '/', ':' anywhere but in second place
// fails, n dots go up n-1 levels (above the root fails). Relative paths start at `base`, or at the
// working directory when it is null. 0, or -1.
int canonicalPath(Westring& path, const Westring* base = nullptr);

int groupId(const Westring& name);  // -1 when unknown
int userId(const Westring& name);
Westring groupName(uint32_t id);  // decimal when unknown; remembered for the run
Westring userName(uint32_t id);
Westring modeString(unsigned mode);  // nine characters rwxrwxrwx

int getFileTime(const Westring& path, DosTime& words);  // 0 or errno
int makeDir(const Westring& path);  // mode 0777 before umask; 0 or errno, as the next four
int removeDir(const Westring& path);
int removeFile(const Westring& path);
int renameFile(const Westring& from, const Westring& to);  // EEXIST when `to` exists
int changeDir(const Westring& path);
Westring currentDir();  // "" on failure
int diskSpace(const Westring& path, uint64_t& total, uint64_t& free, uint64_t& unit);

Westring errorText(int code);       // the system's text and " (code)"
Estring errorTextShort(int code);   // the system's text alone

// Every name in a directory but "." and "..", as bytes, in directory order; nothing is left out and
// nothing is looked at. 0 or errno. The directory is closed again before this returns.
int listNames(const char* utf8Directory, std::vector<std::string>& names);

// Fills everything but the name, sortGroup and node from `info`.
void fillEntry(entry* item, const struct stat& info);
// One path as an entry whose name is its last component; null and `error` when it can't be looked at.
// Follows a link and sets Attribute::Link; a dangling link is described by itself.
EntryPtr entryOfPath(const Westring& path, int& error);

// Makes a file writable for its owner for a while.
class FileUnlock {
 public:
  // EACCES when it already was writable for its owner: the refusal had another reason.
  int unlock(const Westring& path);
  int relock();
  bool locked() const { return locked_; }

 private:
  Westring name_;
  bool locked_ = false;
  mode_t mode_ = 0;
};
