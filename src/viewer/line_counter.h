#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "viewer/viewed_file.h"

// Finds a line by its number. How many lines each whole part of the file has is kept, so that the
// next search begins where the last one ended. Application thread.
class LineCounter {
 public:
  struct Place {
    enum class Result { Found, TooFew, Stopped };

    Result result = Result::Found;
    int64_t position = 0;  // Found: of the line's start
    int64_t lines = 0;     // TooFew: so many the file has
  };

  explicit LineCounter(ViewedFile& file) : file_(file) {}

  // `line` counts from 0; the first one exists in every file. `stopAsked` is asked often; true
  // stops the count.
  Place find(int64_t line, const std::function<bool()>& stopAsked);

 private:
  // What a part leaves to the next one.
  struct Border {
    EndKind open = EndKind::None;  // the last unit is a line end that may go on
    bool endsWithEnd = false;      // the last unit belongs to a line end
    bool noEnd = false;            // nothing in it ends a line, and all of it can be read
    bool hasGap = false;           // some of it can't be read
  };
  class Part;

  void forgetIfChanged();
  int64_t partStart(size_t part) const;
  int64_t startsIn(size_t part, const Part& counted);
  int64_t walkThrough(size_t part);
  int64_t firstStart(size_t part);
  Place walkTo(size_t part, int64_t number, const std::function<bool()>& stopAsked);

  ViewedFile& file_;
  int64_t rewrites_ = -1;        // of the file, for which the rest holds
  std::vector<int32_t> counts_;  // of the line starts in each part that was counted
  Border border_;                // behind the last of them
};
