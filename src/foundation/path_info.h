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

Westring modeString(unsigned mode);  // nine characters rwxrwxrwx

int getFileTime(const Westring& path, DosTime& words);  // 0 or errno
int makeDir(const Westring& path);  // mode 0777 before umask; 0 or errno, as the next four
int removeDir(const Westring& path);
int removeFile(const Westring& path);
int renameFile(const Westring& from, const Westring& to);  // EEXIST when `to` exists
int changeDir(const Westring& path);
Westring currentDir();  // "" on failure; however long
int diskSpace(const Westring& path, uint64_t& total, uint64_t& free, uint64_t& unit);

Westring errorText(int code);      // the system's text and " (code)"; one of our own alone
Estring errorTextShort(int code);  // the text alone

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
