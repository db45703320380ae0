#pragma once

#include <vector>

#include "foundation/place.h"

// Whether two places are one file, so that writing the one would destroy the other: by path, by a
// link, or as two names of one inode.
bool isSameFile(const Place& a, const Place& b);

// One directory entry seen through two spellings, as on a file system that folds case: a rename of
// it changes only the spelling.
bool isOtherSpelling(const Place& source, const Place& target);

// The directory that `path` names, or will lie in, and all that really hold it, nearest first.
std::vector<FileId> directoriesAbove(const char* path);

// True when `target` is `source` or lies below it, by the letters of the paths or by identity.
bool liesInside(const char* source, FileId sourceId, const char* target);
// The part by letters: `source` is a prefix of `target` up to a '/'.
bool isPathPrefix(const char* source, const char* target);
