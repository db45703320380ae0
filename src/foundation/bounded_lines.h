#pragma once

#include <string>
#include <string_view>

// The lines of a text file of the program's own, whatever bytes it holds. A line ends at LF, a CR
// before it doesn't count, and the last one needs no end. Of a line at most LongestLine bytes
// count; what lies beyond them up to its end is no line of its own. The byte order mark that some
// editors begin a file with is skipped.
class BoundedLines {
 public:
  static constexpr size_t LongestLine = 4096;

  // `content` must stay for as long as this is asked.
  explicit BoundedLines(std::string_view content);

  // False at the end. A view is one of the content.
  bool next(std::string_view& line);
  bool next(std::string& line);
  bool wasCut() const { return wasCut_; }  // the line that came last was longer
  bool hadEnd() const { return hadEnd_; }  // the line that came last ended in LF

 private:
  std::string_view rest_;
  bool wasCut_ = false;
  bool hadEnd_ = true;
};
