#include "viewer/line_counter.h"

#include <algorithm>

#include "viewer/block_scan.h"

namespace {
constexpr int64_t LinesBetweenStops = 16 * 1024;
}

// The line ends in one part, block by block.
class LineCounter::Part {
 public:
  Part(const UnitScan& scan, const Border& before) : scan_(scan), open_(before.open) {}

  void add(const FileBlock& block) {
    if (!block.unreadable.empty()) hasGap_ = true;
    if (hasGap_ || block.length == 0) return;
    const Stretch stretch = block.from(block.base);
    addText(stretch.text());
    length_ += stretch.length;
  }

  Border border() const { return {open_, endsWithEnd_, ends_ == 0 && !hasGap_, hasGap_}; }
  bool hasGap() const { return hasGap_; }
  int64_t lineEnds() const { return lineEnds_; }
  // Whether there is nothing but characters that end lines.
  bool allEnds() const { return ends_ * static_cast<int64_t>(scan_.width()) == length_; }

 private:
  void addText(std::string_view text) {
    const size_t tail = text.size() % scan_.width();  // of the file, less than a unit
    addUnits(text.substr(0, text.size() - tail));
    if (tail > 0) endsWithEnd_ = false;
  }

  void addUnits(std::string_view text) {
    if (text.empty()) return;
    if (open_ != EndKind::None) {
      const EndKind first = scan_.kindAt(text, 0);
      const bool goesOn = first != EndKind::None && first != open_;
      open_ = EndKind::None;
      if (goesOn) {
        text.remove_prefix(scan_.width());
        ++ends_;
        endsWithEnd_ = true;
      }
    }
    if (text.empty()) return;
    const EndKind last = scan_.kindAt(text, text.size() - scan_.width());
    endsWithEnd_ = last != EndKind::None;
    const bool noCr = scan_.width() == 1 && text.find('\r') == std::string_view::npos;
    const size_t crs = noCr ? 0 : scan_.countEnds(text, EndKind::Cr);
    const size_t lfs = scan_.countEnds(text, EndKind::Lf);
    ends_ += static_cast<int64_t>(crs + lfs);
    if (crs == 0 || lfs == 0) {
      lineEnds_ += static_cast<int64_t>(crs + lfs);
      open_ = last;
    } else if (crs == lfs + (last == EndKind::Cr) && scan_.countCrLf(text) == lfs) {
      lineEnds_ += static_cast<int64_t>(crs);
      open_ = last == EndKind::Cr ? last : EndKind::None;
    } else {
      addMixed(text);
    }
  }

  void addMixed(std::string_view text) {
    size_t behindOpen = 0;
    for (size_t at = scan_.findEnd(text, 0); at != UnitScan::None; at = scan_.findEnd(text, at)) {
      const EndKind kind = scan_.kindAt(text, at);
      const bool goesOn = open_ != EndKind::None && at == behindOpen && kind != open_;
      if (!goesOn) ++lineEnds_;
      open_ = goesOn ? EndKind::None : kind;
      at += scan_.width();
      behindOpen = at;
    }
    if (behindOpen != text.size()) open_ = EndKind::None;
  }

  UnitScan scan_;
  EndKind open_;
  bool endsWithEnd_ = false;
  bool hasGap_ = false;
  int64_t ends_ = 0;      // characters that end lines
  int64_t lineEnds_ = 0;  // that begin in this part; one may be of two characters
  int64_t length_ = 0;
};

LineCounter::Place LineCounter::find(int64_t line, const std::function<bool()>& stopAsked) {
  forgetIfChanged();
  int64_t before = 0;
  for (size_t part = 0; part < counts_.size(); ++part) {
    if (before + counts_[part] > line) return walkTo(part, line - before, stopAsked);
    before += counts_[part];
  }
  if (line <= 0) return {Place::Result::Found, file_.textStart(), 0};
  const int64_t partSize = file_.limits().searched;
  const UnitScan scan(file_.encoding().format);
  BlockScan blocks(file_.bytes(), file_.limits(), partStart(counts_.size()), file_.size(),
                   BlockScan::Direction::Forward);
  Part counted(scan, border_);
  while (const FileBlock* block = blocks.next()) {
    if (stopAsked()) return {Place::Result::Stopped, 0, 0};
    counted.add(*block);
    const int64_t end = block->base + block->length;
    if (end % partSize != 0 && end < file_.size()) continue;
    const size_t part = counts_.size();
    const int64_t starts = startsIn(part, counted);
    if (before + starts > line) return walkTo(part, line - before, stopAsked);
    before += starts;
    if (end >= file_.size()) break;
    counts_.push_back(static_cast<int32_t>(starts));
    border_ = counted.border();
    if (counted.allEnds() && file_.lines().alternatesBefore(end)) border_.open = EndKind::None;
    counted = Part(scan, border_);
  }
  return {Place::Result::TooFew, 0, before};
}

void LineCounter::forgetIfChanged() {
  if (rewrites_ == file_.rewrites()) return;
  rewrites_ = file_.rewrites();
  counts_.clear();
  border_ = Border();
}

int64_t LineCounter::partStart(size_t part) const {
  return static_cast<int64_t>(part) * file_.limits().searched;
}

// How many lines start in the part that was just counted.
int64_t LineCounter::startsIn(size_t part, const Part& counted) {
  if (counted.hasGap() || border_.hasGap) return walkThrough(part);
  // A line end at the part's end begins the next line there.
  int64_t starts = counted.lineEnds() - counted.border().endsWithEnd + border_.endsWithEnd;
  if (part == 0 && file_.textStart() < file_.size()) ++starts;
  if (border_.noEnd && file_.lines().characterStart(partStart(part)) < file_.size()) ++starts;
  return starts;
}

int64_t LineCounter::walkThrough(size_t part) {
  int64_t starts = 0;
  const int64_t end = std::min(partStart(part + 1), file_.size());
  for (int64_t at = firstStart(part); at < end; at = file_.nextLine(at)) ++starts;
  return starts;
}

int64_t LineCounter::firstStart(size_t part) {
  if (part == 0) return file_.textStart();
  const int64_t start = file_.startOf(partStart(part));
  return start >= partStart(part) ? start : file_.nextLine(start);
}

LineCounter::Place LineCounter::walkTo(size_t part, int64_t number,
                                       const std::function<bool()>& stopAsked) {
  int64_t position = firstStart(part);
  for (int64_t i = 0; i < number; ++i) {
    if (i % LinesBetweenStops == 0 && stopAsked()) return {Place::Result::Stopped, 0, 0};
    position = file_.nextLine(position);
  }
  return {Place::Result::Found, position, 0};
}
