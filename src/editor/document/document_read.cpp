// What a document tells of its text.
#include <algorithm>

#include "editor/document/document.h"

namespace {
// Bytes from which on a line isn't decoded whole when a part of it is wanted.
constexpr size_t LongLineBytes = 65536;
constexpr size_t SeenLongLines = 64;
}  // namespace

Document::RunLine Document::runLine(int64_t line) const {
  if (line >= lines_.lines()) return {&last_, {last_.bytes(), {}}};
  const RunTree::Found found = lines_.find(line);
  return {found.run, found.run->lineAt(line - found.linesBefore)};
}

std::wstring Document::lineEnd(int64_t line) const {
  const RunLine found = runLine(line);
  return found.run->endText(found.bytes);
}

LongLine* Document::seenLongLine(int64_t line) const {
  for (const SeenLongLine& seen : seenLong_)
    if (seen.line == line) return seen.pieces.get();
  return nullptr;
}

LongLine* Document::keepSeen(int64_t line, std::unique_ptr<LongLine> pieces) const {
  if (seenLong_.size() == SeenLongLines) seenLong_.erase(seenLong_.begin());
  seenLong_.push_back({line, std::move(pieces)});
  return seenLong_.back().pieces.get();
}

LongLine* Document::look(int64_t line) const {
  if (line == work_.line) return work_.pieces.get();
  if (line == seen_.line) return nullptr;
  if (LongLine* seen = seenLongLine(line)) return seen;
  const RunLine found = runLine(line);
  const TextRun& run = *found.run;
  if (found.bytes.text.size() < LongLineBytes) {
    seen_ = {line, decodeBytes(found.bytes.text, run.storage), run.endText(found.bytes)};
    return nullptr;
  }
  return keepSeen(line, std::make_unique<LongLine>(run.textOf(found.bytes.text)));
}

const std::wstring& Document::seenText(int64_t line) const {
  return line == work_.line ? work_.text : seen_.text;
}

std::wstring Document::text(int64_t line) const {
  if (line < 0 || line >= lineCount()) return {};
  if (LongLine* pieces = look(line)) return pieces->slice(0, INT64_MAX);
  return seenText(line);
}

int64_t Document::lineLength(int64_t line) const {
  if (line < 0 || line >= lineCount()) return 0;
  if (LongLine* pieces = look(line)) return pieces->length();
  return static_cast<int64_t>(seenText(line).size());
}

int64_t Document::lineBytes(int64_t line) const {
  if (line < 0 || line >= lineCount()) return 0;
  const LongLine* pieces = line == work_.line ? work_.pieces.get() : seenLongLine(line);
  if (pieces) return static_cast<int64_t>(pieces->bytes());
  if (line == work_.line || line == seen_.line) return static_cast<int64_t>(seenText(line).size());
  return static_cast<int64_t>(runLine(line).bytes.text.size());
}

std::wstring Document::slice(int64_t line, int64_t from, int64_t count) const {
  if (line < 0 || line >= lineCount() || count <= 0) return {};
  from = std::max<int64_t>(from, 0);
  if (LongLine* pieces = look(line)) return pieces->slice(from, count);
  const std::wstring& whole = seenText(line);
  if (from >= static_cast<int64_t>(whole.size())) return {};
  return whole.substr(static_cast<size_t>(from), static_cast<size_t>(count));
}

wchar_t Document::characterAt(TextPlace place) const {
  const std::wstring one = slice(place.line, place.index, 1);
  return one.empty() ? L'\0' : one[0];
}

TextPlace Document::end() const {
  return {lineCount() - 1, lineLength(lineCount() - 1)};
}

TextPlace Document::clamped(TextPlace place) const {
  if (place.line >= lineCount()) return end();
  if (place.line < 0) return {};
  return {place.line, std::clamp<int64_t>(place.index, 0, lineLength(place.line))};
}

Document::RunPlace Document::runAt(int64_t line) const {
  store();
  if (line >= lines_.lines()) return {&last_, lines_.lines()};
  const RunTree::Found found = lines_.find(line);
  return {found.run, found.linesBefore};
}

Document::BytePlace Document::lineOfByte(int64_t offset) const {
  store();
  const auto inText = static_cast<size_t>(std::max<int64_t>(offset, 0));
  const size_t wanted = inText - std::min(inText, textStart_);
  if (wanted >= lines_.bytes()) {
    const size_t inLast = std::min(wanted - lines_.bytes(), last_.length);
    return {lines_.lines(), static_cast<int64_t>(inLast)};
  }
  const RunTree::Found found = lines_.findByte(wanted);
  const size_t inRun = wanted - found.bytesBefore;
  const int64_t line = found.run->lineOf(inRun);
  return {found.linesBefore + line, static_cast<int64_t>(inRun - found.run->offsetOf(line))};
}

int64_t Document::columnOf(TextPlace place, int tabWidth) const {
  place = clamped(place);
  if (LongLine* pieces = look(place.line)) return pieces->columnOf(place.index, tabWidth);
  const std::wstring_view text = seenText(place.line);
  return columnBehind(text.substr(0, static_cast<size_t>(place.index)), 0, tabWidth);
}

int64_t Document::indexAt(int64_t line, int64_t column, int tabWidth) const {
  if (column <= 0 || line < 0 || line >= lineCount()) return 0;
  if (LongLine* pieces = look(line)) return pieces->indexAt(column, tabWidth);
  return static_cast<int64_t>(charactersTo(seenText(line), 0, column, tabWidth));
}

int64_t Document::widthOf(int64_t line, int tabWidth) const {
  return columnOf({line, lineLength(line)}, tabWidth);
}
