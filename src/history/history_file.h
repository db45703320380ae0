#pragma once

#include <functional>
#include <optional>
#include <string>

#include "foundation/system.h"
#include "foundation/westring.h"

// The file of the histories, which several programs at once may add to: whoever writes has an
// advisory lock on it, so that a line added while the file is replaced isn't lost. 0 or errno.
class HistoryFile {
 public:
  explicit HistoryFile(Westring path) : path_(std::move(path)) {}

  int read(std::string& content) const;
  // Adds a line, given without its end, in one write: whole or not at all. A file whose last line
  // has no end gets one first. Makes the file and the directory of the user's files.
  int append(const std::string& line) const;
  // Reads the file and puts what `make` gives in its place, nothing if it gives none. EWOULDBLOCK
  // when another program keeps the lock.
  using Maker = std::function<std::optional<std::string>(const std::string& content)>;
  int rewrite(const Maker& make) const;

 private:
  int openLocked(int flags, Descriptor& file) const;
  bool isStillThere(const Descriptor& file) const;

  Westring path_;
};
