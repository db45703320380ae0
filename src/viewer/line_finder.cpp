#include "viewer/line_finder.h"

#include <algorithm>

namespace {

constexpr int64_t NotFound = -1;
constexpr int64_t WorthNoting = 64 * 1024;
constexpr int LongestTail = 3;  // bytes of a character behind its first one

bool isTail(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

void LineFinder::begin(TextFormat format, int64_t textStart) {
  format_ = format;
  scan_ = UnitScan(format);
  textStart_ = textStart;
  freeFrom_ = freeTo_ = 0;
}

ViewedLine LineFinder::lineAt(int64_t start) {
  int64_t multiple = multipleBelow(start) + searched_;
  int64_t position = start;
  for (;;) {
    const bool known = position >= freeFrom_ && position < freeTo_;
    int64_t limit = known ? std::min(freeTo_, multiple) : position;
    if (!known) {
      const Stretch stretch = bytes_.from(position);
      if (stretch.error && position == start) return {start, start, stretch.end(), stretch.error};
      if (stretch.error || stretch.length == 0) return {start, position, position, 0};
      limit = std::min(stretch.end(), multiple);
      const std::string_view text = stretch.text().substr(0, static_cast<size_t>(limit - position));
      const size_t end = scan_.findEnd(text, 0);
      if (end != UnitScan::None) {
        const int64_t at = position + static_cast<int64_t>(end);
        return {start, at, groupEnd(at), 0};
      }
      noteFree(position, limit);
    }
    position = limit;
    if (position < multiple) continue;
    if (position < bytes_.size() && isFree(multiple - searched_, start)) {
      const int64_t next = characterStart(multiple);
      return {start, next, next, 0};
    }
    multiple += searched_;
  }
}

int64_t LineFinder::startOf(int64_t position) {
  position = std::min(position, bytes_.size() - 1);
  if (position <= textStart_) return textStart_;
  position -= position % static_cast<int64_t>(scan_.width());
  const Stretch here = bytes_.from(position);
  if (here.error) return std::max(bytes_.before(position + 1).position, textStart_);
  if (isSecondOfGroup(position)) position -= static_cast<int64_t>(scan_.width());
  int64_t multiple = multipleBelow(position);
  if (characterStart(multiple) > position) multiple -= searched_;
  const int64_t lowest = std::max<int64_t>(multiple - searched_, 0);
  const int64_t start = behindLastEnd(lowest, position);
  if (start != NotFound) return std::max(start, textStart_);
  return multiple >= searched_ ? characterStart(multiple) : textStart_;
}

int64_t LineFinder::characterStart(int64_t position) {
  const int64_t size = bytes_.size();
  if (format_ == TextFormat::Utf8) {
    int64_t at = position;
    while (at < size && at <= position + LongestTail) {
      const Stretch stretch = bytes_.from(at);
      if (stretch.error || stretch.length == 0 || !isTail(stretch.bytes[0])) return at;
      ++at;
    }
    return at > position + LongestTail ? position : size;
  }
  if (scan_.width() == 2) {
    const Stretch stretch = bytes_.from(position);
    if (stretch.error || stretch.length < 2) return position;
    const size_t high = isBigEndian(format_) ? 0 : 1;
    const bool lowSurrogate = (static_cast<unsigned char>(stretch.bytes[high]) & 0xFC) == 0xDC;
    return lowSurrogate ? position + 2 : position;
  }
  return position;
}

EndKind LineFinder::kindAt(int64_t position) {
  const Stretch stretch = bytes_.from(position);
  return stretch.error ? EndKind::None : scan_.kindAt(stretch.text(), 0);
}

int64_t LineFinder::groupEnd(int64_t lineEnd) {
  const int64_t width = static_cast<int64_t>(scan_.width());
  const int64_t next = lineEnd + width;
  const EndKind second = kindAt(next);
  if (second == EndKind::None || second == kindAt(lineEnd) || alternatesBefore(next)) return next;
  return next + width;
}

// Whether the line end of the unit before goes on with the one here.
bool LineFinder::isSecondOfGroup(int64_t position) {
  if (kindAt(position) == EndKind::None) return false;
  const int64_t multiple = multipleBelow(position);
  const int64_t lowest = std::max<int64_t>(multiple - searched_, 0);
  int64_t start = runStart(position, lowest);
  if (start == lowest && multiple > 0) start = multiple;
  return (position - start) / static_cast<int64_t>(scan_.width()) % 2 != 0;
}

bool LineFinder::alternatesBefore(int64_t position) {
  if (position < searched_ || position % searched_ != 0) return false;
  const int64_t last = position - static_cast<int64_t>(scan_.width());
  return kindAt(last) != EndKind::None &&
         runStart(last, position - searched_) == position - searched_;
}

// Where the CRs and LFs by turns begin of which the one at `position` is the last.
int64_t LineFinder::runStart(int64_t position, int64_t lowest) {
  const int64_t width = static_cast<int64_t>(scan_.width());
  EndKind kind = kindAt(position);
  lowest = std::max(lowest, textStart_);
  while (position > lowest) {
    const Stretch stretch = bytes_.before(position);
    if (stretch.error || stretch.length < width) return position;
    const int64_t from = std::max(stretch.position, lowest);
    for (; position > from; position -= width) {
      const EndKind before =
          scan_.kindAt(stretch.text(), static_cast<size_t>(position - width - stretch.position));
      if (before == EndKind::None || before == kind) return position;
      kind = before;
    }
  }
  return position;
}

bool LineFinder::isFree(int64_t from, int64_t to) {
  return to <= from || behindLastEnd(from, to) == NotFound;
}

// The position behind the last line end, or behind the last byte that can't be read, in from..to.
int64_t LineFinder::behindLastEnd(int64_t from, int64_t to) {
  int64_t position = to;
  while (position > from) {
    if (position > freeFrom_ && position <= freeTo_) {
      position = freeFrom_;
      continue;
    }
    const Stretch stretch = bytes_.before(position);
    if (stretch.error) return position;
    if (stretch.length == 0) break;
    const int64_t begin = std::max(stretch.position, from);
    const std::string_view text =
        stretch.text().substr(static_cast<size_t>(begin - stretch.position));
    const size_t end = scan_.findLastEnd(text);
    if (end != UnitScan::None) {
      const int64_t behind = begin + static_cast<int64_t>(end + scan_.width());
      noteFree(behind, to);
      return behind;
    }
    position = begin;
  }
  noteFree(std::max(position, from), to);
  return NotFound;
}

void LineFinder::noteFree(int64_t from, int64_t to) {
  if (from <= freeTo_ && to >= freeFrom_ && freeTo_ > freeFrom_) {
    freeFrom_ = std::min(freeFrom_, from);
    freeTo_ = std::max(freeTo_, to);
  } else if (to - from >= WorthNoting) {
    freeFrom_ = from;
    freeTo_ = to;
  }
}
