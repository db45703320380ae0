#include "editor/document/text_run.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>

TextFormat TextStorage::unitFormat() const {
  if (!isWide) return encoding.format;
  return std::endian::native == std::endian::big ? TextFormat::Utf32Be : TextFormat::Utf32Le;
}

std::wstring_view lineEndText(LineEndStyle style) {
  return style == LineEndStyle::Lf ? L"\n" : L"\r\n";
}

bool lineEndsMerge(std::wstring_view first, std::wstring_view second) {
  return !first.empty() && !second.empty() && first.find(second[0]) == std::wstring_view::npos;
}

std::wstring decodeBytes(std::string_view bytes, const TextStorage& storage) {
  std::wstring text;
  if (bytes.empty()) return text;
  if (storage.isWide) {
    text.resize(bytes.size() / sizeof(wchar_t));
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  } else {
    decodeText(bytes, storage.encoding, text);
  }
  return text;
}

namespace {
// The nearest known start at or before a line or an offset.
LineStart knownStart(const TextRun& run, size_t mark) {
  const int64_t line = static_cast<int64_t>(mark) * MarkedLines;
  if (mark >= run.block->marks.size() || line <= run.firstLine) return {0, 0};
  return {line - run.firstLine, run.block->marks[mark] - run.begin};
}

size_t lineBehind(const TextRun& run, std::string_view bytes, size_t offset) {
  const LineEnd end = findLineEnd(bytes, offset, run.storage.unitFormat());
  return end.at + end.length;
}
}  // namespace

LineStart TextRun::startOf(int64_t line, LineStart known) const {
  if (line >= lines) return {lines, length};
  const std::string_view all = bytes();
  LineStart start = knownStart(*this, static_cast<size_t>((firstLine + line) / MarkedLines));
  if (known.line > start.line && known.line <= line) start = known;
  for (; start.line < line; ++start.line) start.offset = lineBehind(*this, all, start.offset);
  return start;
}

int64_t TextRun::lineOf(size_t offset, LineStart known) const {
  const std::string_view all = bytes();
  const std::vector<size_t>& marks = block->marks;
  const auto behind = std::upper_bound(marks.begin(), marks.end(), begin + offset);
  LineStart start = behind == marks.begin()
                        ? LineStart{0, 0}
                        : knownStart(*this, static_cast<size_t>(behind - marks.begin()) - 1);
  if (known.line > start.line && known.offset <= offset) start = known;
  for (;;) {
    const size_t next = lineBehind(*this, all, start.offset);
    if (next > offset || start.line + 1 >= lines) return start.line;
    start = {start.line + 1, next};
  }
}

LineBytes TextRun::lineFrom(size_t offset) const {
  const std::string_view all = bytes();
  const LineEnd end = findLineEnd(all, offset, storage.unitFormat());
  return {all.substr(offset, end.at - offset), all.substr(end.at, end.length)};
}

TextRun TextRun::part(LineStart from, LineStart to) const {
  TextRun piece = *this;
  piece.begin = begin + from.offset;
  piece.length = to.offset - from.offset;
  piece.firstLine = firstLine + from.line;
  piece.lines = to.line - from.line;
  return piece;
}

void TextRun::partsAround(int64_t line, TextRun& before, TextRun& behind) const {
  const LineStart start = startOf(line);
  before = part({}, start);
  behind = part({line + 1, lineBehind(*this, bytes(), start.offset)}, {lines, length});
}

TextRun TextRun::textOf(std::string_view text) const {
  TextRun run = *this;
  if (!text.empty()) run.begin += static_cast<size_t>(text.data() - bytes().data());
  run.length = text.size();
  run.lines = 0;
  run.ends.reset();
  return run;
}

std::wstring TextRun::text(int64_t line) const {
  return decodeBytes(lineAt(line).text, storage);
}

std::wstring TextRun::endText(const LineBytes& line) const {
  if (lines == 0) return {};
  return ends ? std::wstring(lineEndText(*ends)) : decodeBytes(line.end, storage);
}

std::wstring TextRun::wholeText() const {
  return decodeBytes(bytes(), storage);
}

bool TextRun::goesOnWith(const TextRun& next) const {
  return block.get() == next.block.get() && begin + length == next.begin &&
         firstLine + lines == next.firstLine && storage == next.storage && ends == next.ends;
}

bool LineWalk::next() {
  begin_ = end_.at + end_.length;
  if (++line_ >= run_.lines) return false;
  end_ = findLineEnd(all_, begin_, run_.storage.unitFormat());
  return true;
}

LineBytes LineWalk::bytes() const {
  return {all_.substr(begin_, end_.at - begin_), all_.substr(end_.at, end_.length)};
}

TextRun LineWalk::asRun() const {
  TextRun line = run_;
  line.begin = run_.begin + begin_;
  line.length = end_.at + end_.length - begin_;
  line.firstLine = run_.firstLine + line_;
  line.lines = 1;
  return line;
}

bool appendPlain(std::wstring_view text, std::string& bytes) {
  const auto any =
      std::accumulate(text.begin(), text.end(), uint32_t{0},
                      [](uint32_t all, wchar_t c) { return all | static_cast<uint32_t>(c); });
  if (any < 0x80) {
    const size_t start = bytes.size();
    bytes.resize(start + text.size());
    std::transform(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(start),
                   [](wchar_t c) { return static_cast<char>(c); });
    return true;
  }
  constexpr uint32_t Sign = 0x80000000;
  return (any & Sign) == 0 && encodeText(text, PlainEncoding, bytes) == AllEncoded;
}

namespace {
void appendWide(std::wstring_view text, std::string& bytes) {
  bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
}
}  // namespace

TextRun newRun(std::wstring_view text, std::wstring_view end) {
  if (text.empty() && end.empty()) return {};
  TextRun run;
  auto* block = new BytesBlock;
  run.block = SharedBlock(block);
  block->bytes.reserve(text.size() + end.size());
  if (appendPlain(text, block->bytes)) {
    appendPlain(end, block->bytes);
  } else {
    run.storage.isWide = true;
    block->bytes.clear();
    appendWide(text, block->bytes);
    appendWide(end, block->bytes);
  }
  run.length = block->bytes.size();
  run.lines = end.empty() ? 0 : 1;
  return run;
}

namespace {
// Whether the bytes of two texts, one behind the other, are read as both.
bool staySo(std::string_view before, std::string_view behind, const TextStorage& storage) {
  constexpr size_t LongestCharacter = 4;
  if (before.size() % static_cast<size_t>(unitBytes(storage.unitFormat())) != 0) return false;
  before.remove_prefix(before.size() - std::min(before.size(), LongestCharacter));
  behind = behind.substr(0, LongestCharacter);
  return decodeBytes(std::string(before).append(behind), storage) ==
         decodeBytes(before, storage) + decodeBytes(behind, storage);
}

// Appends a text as `storage` holds it. False when it can't hold it, or not behind these bytes.
bool appendAs(const TextStorage& storage, const TextRun& text, std::string& bytes) {
  if (text.storage == storage) {
    if (!staySo(bytes, text.bytes(), storage)) return false;
    bytes += text.bytes();
    return true;
  }
  const std::wstring wide = text.wholeText();
  std::string own;
  if (storage.isWide) {
    appendWide(wide, own);
  } else if (encodeText(wide, storage.encoding, own) != AllEncoded ||
             decodeBytes(own, storage) != wide) {
    return false;
  }
  if (findLineEnd(own, 0, storage.unitFormat()).length != 0) return false;
  if (!staySo(bytes, own, storage)) return false;
  bytes += own;
  return true;
}

bool appendEnd(const TextStorage& storage, std::wstring_view end, std::string& bytes) {
  if (end.empty()) return true;
  const auto unit = static_cast<size_t>(unitBytes(storage.unitFormat()));
  if (bytes.size() % unit != 0) return false;
  if (storage.isWide) {
    appendWide(end, bytes);
    return true;
  }
  if (unit == 1) return appendPlain(end, bytes);
  return encodeText(end, storage.encoding, bytes) == AllEncoded;
}
}  // namespace

TextRun joinedRuns(const std::vector<TextRun>& texts, std::wstring_view end) {
  if (texts.empty()) return newRun({}, end);
  if (texts.size() == 1 && end.empty()) return texts.front();
  size_t size = end.size() * sizeof(wchar_t);
  for (const TextRun& text : texts) size += text.length;
  TextRun run;
  run.storage =
      std::max_element(texts.begin(), texts.end(), [](const TextRun& a, const TextRun& b) {
        return a.length < b.length;
      })->storage;
  auto* block = new BytesBlock;
  run.block = SharedBlock(block);
  std::string& bytes = block->bytes;
  bytes.reserve(size);
  const auto append = [&](const TextRun& text) {
    return text.length == 0 || appendAs(run.storage, text, bytes);
  };
  if (!std::all_of(texts.begin(), texts.end(), append) || !appendEnd(run.storage, end, bytes)) {
    bytes.clear();
    run.storage = {PlainEncoding, true};
    for (const TextRun& text : texts) appendWide(text.wholeText(), bytes);
    appendWide(end, bytes);
  }
  if (bytes.empty()) return {};
  run.length = bytes.size();
  run.lines = end.empty() ? 0 : 1;
  return run;
}
