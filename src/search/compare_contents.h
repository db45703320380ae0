#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Whether files of the same names in two directories have the same contents.

enum class Contents { Unread, Equal, Different, Failed };

struct ContentVerdict {
  Contents contents = Contents::Unread;
  int error = 0;            // errno of Failed
  bool failedLeft = false;  // whose file it was
};

// Sees how far a comparison is. Application thread.
class ContentWatch {
 public:
  virtual ~ContentWatch() = default;
  // Asked before each file that this thread takes and after each of its blocks, with the bytes
  // compared and the size of the file at the left; then, while the other thread is at its last
  // file, every 20 ms with that one. False stops.
  virtual bool goOn(size_t name, int64_t done, int64_t size) = 0;
};

// Compares the files `names` of two directories that are held open, on the calling thread and,
// for more than one file, one more. Only regular files are opened; others are equal when they are
// of one kind and show the same device; a file is equal to itself unread. The first failure in the
// order of names ends it: what stands behind it may be Unread, all before it has a verdict. False
// when the watch stopped it.
bool compareContents(int left, int right, const std::vector<std::string>& names,
                     std::vector<ContentVerdict>& verdicts, ContentWatch& watch);
