#include "viewer/line_cells.h"

#include <algorithm>

#include "options/options.h"

namespace {
constexpr int64_t WholePart = 4096;
}

int64_t LineCells::length(const ViewedLine& line, int64_t most) {
  Known& place = known(line);
  while (place.marks.back().cell < most && extend(place)) {
  }
  return std::min(place.marks.back().cell, most);
}

int64_t LineCells::cellOf(const ViewedLine& line, int64_t position) {
  const Mark mark = markBefore(line, position);
  int64_t cell = mark.cell;
  int64_t at = mark.position;
  const int64_t end = std::min(position, line.textEnd);
  while (at < end) {
    std::wstring part;
    const int64_t next = file_.appendText(at, end, WholePart, part);
    if (next == at) break;
    cell = cellsOf(part, cell);
    at = next;
  }
  return cell;
}

int64_t LineCells::positionOf(const ViewedLine& line, int64_t cell) {
  const Mark mark = markAtCell(line, cell);
  std::wstring part;
  file_.appendText(mark.position, line.textEnd, WholePart, part);
  int64_t at = mark.cell;
  size_t characters = 0;
  for (; characters < part.size(); ++characters) {
    at += widthAt(part[characters], at);
    if (at > cell) break;
  }
  if (characters == part.size()) return line.textEnd;
  std::string bytes;
  encodeText(std::wstring_view(part).substr(0, characters), file_.encoding(), bytes,
             CutUnit::AllowedAtTheEnd);
  return mark.position + static_cast<int64_t>(bytes.size());
}

std::wstring LineCells::text(const ViewedLine& line, int64_t cell, int64_t count) {
  const Mark mark = markAtCell(line, cell);
  std::wstring result;
  std::wstring part;
  int64_t at = mark.cell;
  int64_t position = mark.position;
  while (position < line.textEnd && static_cast<int64_t>(result.size()) < count) {
    part.clear();
    const int64_t next = file_.appendText(position, line.textEnd, WholePart, part);
    if (next == position) break;
    for (const wchar_t character : part) {
      const int64_t end = at + widthAt(character, at);
      const int64_t shown = std::min(end, cell + count) - std::max(at, cell);
      if (shown > 0)
        result.append(static_cast<size_t>(shown), character == L'\t' ? L' ' : character);
      at = end;
    }
    position = next;
  }
  return result;
}

LineCells::Known& LineCells::known(const ViewedLine& line) {
  const int64_t tabWidth = std::max<int64_t>(GlobalOptions::TabWidth, 1);
  if (version_ != file_.version() || tabWidth_ != tabWidth) {
    for (Known& other : lines_) other = Known();
    version_ = file_.version();
    tabWidth_ = tabWidth;
  }
  const auto place = std::find_if(lines_.begin(), lines_.end() - 1, [&](const Known& candidate) {
    return candidate.start == line.start && candidate.textEnd == line.textEnd;
  });
  std::rotate(lines_.begin(), place, place + 1);
  Known& result = lines_[0];
  if (result.start != line.start || result.textEnd != line.textEnd) {
    result.start = line.start;
    result.textEnd = line.error ? line.start : line.textEnd;
    result.marks.assign(1, {line.start, 0});
  }
  return result;
}

bool LineCells::extend(Known& line) {
  const Mark last = line.marks.back();
  if (last.position >= line.textEnd) return false;
  std::wstring part;
  const int64_t next = file_.appendText(last.position, line.textEnd, WholePart, part);
  if (next == last.position) return false;
  line.marks.push_back({next, cellsOf(part, last.cell)});
  return true;
}

LineCells::Mark LineCells::markBefore(const ViewedLine& line, int64_t position) {
  Known& place = known(line);
  while (place.marks.back().position <= position && extend(place)) {
  }
  const auto behind = std::find_if(place.marks.rbegin(), place.marks.rend(),
                                   [&](const Mark& mark) { return mark.position <= position; });
  return behind == place.marks.rend() ? place.marks.front() : *behind;
}

LineCells::Mark LineCells::markAtCell(const ViewedLine& line, int64_t cell) {
  Known& place = known(line);
  while (place.marks.back().cell <= cell && extend(place)) {
  }
  const auto behind = std::find_if(place.marks.rbegin(), place.marks.rend(),
                                   [&](const Mark& mark) { return mark.cell <= cell; });
  return behind == place.marks.rend() ? place.marks.front() : *behind;
}

int64_t LineCells::widthAt(wchar_t character, int64_t cell) const {
  return character == L'\t' ? tabWidth_ - cell % tabWidth_ : 1;
}

int64_t LineCells::cellsOf(const std::wstring& text, int64_t cell) const {
  for (const wchar_t character : text) cell += widthAt(character, cell);
  return cell;
}
