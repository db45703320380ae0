#pragma once

#include <string>
#include <vector>

#include "foundation/westring.h"

// The topics of a help file: records of a number, their own size and the lines of a topic, the last
// of them a record that is shown for numbers without a topic. The file is not trusted: a size that
// can't be ends it.
class HelpFile {
 public:
  static constexpr int EndRecord = 30000;
  static constexpr int LongestLine = 72;  // characters; what is behind is not shown
  static constexpr size_t LargestFile = size_t{4} << 20;

  explicit HelpFile(std::string bytes) : bytes_(std::move(bytes)) {}

  // The lines of a topic, or else those of the end record; none when the file has neither.
  std::vector<Westring> topic(int number) const;

 private:
  std::string bytes_;
};
