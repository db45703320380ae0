#include "editor/document/long_line.h"

#include <algorithm>

#include "editor/text/code_page_codec.h"

namespace {
constexpr size_t MarkedBytes = 4096;

std::string_view bytesOf(const std::wstring& text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Whether the start of a character can be told from the bytes around it.
bool hasStarts(const TextStorage& storage) {
  return storage.isWide || storage.encoding.format != TextFormat::CodePage ||
         CodePageCodec::of(resolvedPage(storage.encoding.page)).table() != nullptr;
}
}  // namespace

int64_t columnBehind(std::wstring_view text, int64_t column, int tabWidth) {
  for (const wchar_t c : text) column += c == L'\t' ? tabWidth - column % tabWidth : 1;
  return column;
}

size_t charactersTo(std::wstring_view text, int64_t column, int64_t target, int tabWidth) {
  for (size_t i = 0; i < text.size(); ++i) {
    if (column >= target) return i;
    column += text[i] == L'\t' ? tabWidth - column % tabWidth : 1;
    if (column > target) return i;
  }
  return text.size();
}

LongLine::LongLine(std::string_view bytes, const TextStorage& storage)
    : bytes_(bytes), storage_(storage) {
  if (hasStarts(storage)) return;
  decoded_ = decodeBytes(bytes, storage);
  bytes_ = bytesOf(decoded_);
  storage_.isWide = true;
}

// The start of a character a stretch behind `byte`, where one begins.
size_t LongLine::nextStart(size_t byte) const {
  size_t next = byte + MarkedBytes;
  if (next >= bytes_.size()) return bytes_.size();
  if (storage_.isWide) return next;
  if (storage_.encoding.format == TextFormat::Utf8) {
    // Nothing reaches over more than three of them.
    for (int i = 0; i < 3 && next < bytes_.size() && isContinuation(bytes_[next]); ++i) ++next;
    return next;
  }
  const bool isUtf16 = unitBytes(storage_.encoding.format) == 2;
  if (!isUtf16) return next;
  // Two units may be one character: the stretch ends where it doesn't cut one.
  std::wstring around;
  decodeText(bytes_.substr(next - 2, 4), storage_.encoding, around);
  return around.size() == 1 && next + 2 <= bytes_.size() ? next + 2 : next;
}

std::wstring LongLine::piece(size_t mark) const {
  const size_t begin = marks_[mark].byte;
  const size_t end = mark + 1 < marks_.size() ? marks_[mark + 1].byte : nextStart(begin);
  return decodeBytes(bytes_.substr(begin, end - begin), storage_);
}

void LongLine::addMark() {
  const Mark& last = marks_.back();
  const std::wstring text = piece(marks_.size() - 1);
  marks_.push_back({nextStart(last.byte), last.index + static_cast<int64_t>(text.size()),
                    columnBehind(text, last.column, tabWidth_)});
}

void LongLine::setTabWidth(int tabWidth) {
  if (tabWidth == tabWidth_) return;
  tabWidth_ = tabWidth;
  marks_.resize(1);
}

// The last mark at or before the character.
size_t LongLine::markBefore(int64_t index) {
  while (marks_.back().index <= index && !isWhole()) addMark();
  const auto behind = std::upper_bound(marks_.begin(), marks_.end(), index,
                                       [](int64_t i, const Mark& mark) { return i < mark.index; });
  return static_cast<size_t>(behind - marks_.begin()) - 1;
}

int64_t LongLine::length() {
  while (!isWhole()) addMark();
  return marks_.back().index;
}

std::wstring LongLine::slice(int64_t from, int64_t count) {
  size_t mark = markBefore(from);
  auto skip = static_cast<size_t>(from - marks_[mark].index);
  std::wstring result;
  for (; static_cast<int64_t>(result.size()) < count && marks_[mark].byte < bytes_.size(); ++mark) {
    const std::wstring text = piece(mark);
    if (mark + 1 == marks_.size()) addMark();
    if (skip < text.size()) result.append(text, skip);
    skip -= std::min(skip, text.size());
  }
  if (static_cast<int64_t>(result.size()) > count) result.resize(static_cast<size_t>(count));
  return result;
}

int64_t LongLine::columnOf(int64_t index, int tabWidth) {
  setTabWidth(tabWidth);
  const size_t mark = markBefore(index);
  const auto inside = static_cast<size_t>(index - marks_[mark].index);
  if (inside == 0) return marks_[mark].column;
  return columnBehind(std::wstring_view(piece(mark)).substr(0, inside), marks_[mark].column,
                      tabWidth);
}

int64_t LongLine::indexAt(int64_t column, int tabWidth) {
  setTabWidth(tabWidth);
  while (marks_.back().column <= column && !isWhole()) addMark();
  const auto behind =
      std::upper_bound(marks_.begin(), marks_.end(), column,
                       [](int64_t wanted, const Mark& mark) { return wanted < mark.column; });
  const size_t mark = static_cast<size_t>(behind - marks_.begin()) - 1;
  return marks_[mark].index +
         static_cast<int64_t>(charactersTo(piece(mark), marks_[mark].column, column, tabWidth));
}

void LongLine::changedFrom(int64_t index, std::string_view bytes) {
  bytes_ = bytes;
  const auto behind = std::upper_bound(marks_.begin(), marks_.end(), index,
                                       [](int64_t i, const Mark& mark) { return i < mark.index; });
  marks_.erase(std::max(behind, marks_.begin() + 1), marks_.end());
}
