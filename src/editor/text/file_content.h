#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "editor/text/content_hash.h"
#include "foundation/file_stamp.h"
#include "foundation/system.h"
#include "foundation/westring.h"

// All bytes of a file that is to be edited, in memory of our own: a mapped file that another
// program cuts off would take the program with it.
struct FileContent {
  std::string bytes;
  FileStamp stamp;          // the file, before it was read
  ContentHash::Value hash;  // of the bytes
  bool isReadOnly = false;  // for the effective user
  // A file that doesn't tell its size, as those of /proc, is no content that could be replaced: it
  // is written in place.
  bool tellsSize = true;
};

// Larger files can't be edited; those that don't tell their size must be smaller.
inline constexpr int64_t LargestEdited = 0x7FFFFFFF;
inline constexpr int64_t LargestUnsized = int64_t{64} << 20;

// Told how many of how many bytes are done, after each part of a few milliseconds; false stops.
using FileProgress = std::function<bool(int64_t done, int64_t total)>;

// 0, or an error after which `content` is empty: errno, Status::NotRegularFile, Status::TooLarge
// (also for the memory that the machine has left), Status::ChangedMeanwhile when fewer bytes came
// than the file has, ECANCELED when it was stopped.
int readFileContent(const Westring& path, FileContent& content, const FileProgress& progress = {});

// Reads an open file from its start to its end, at most `limit` bytes, in parts; `take` gets each,
// and stops it with another result than 0. 0, errno, what `take` gave, or Status::TooLarge.
int readParts(int file, int64_t limit, const std::function<int(std::string_view part)>& take);
