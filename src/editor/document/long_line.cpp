#include "editor/document/long_line.h"

#include <algorithm>

#include "editor/text/code_page_codec.h"

namespace {
constexpr size_t MarkedBytes = 4096;

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

namespace {
// How many bytes the first piece of a text has: it ends where a character does.
size_t firstStretch(const TextRun& text) {
  const std::string_view bytes = text.bytes();
  size_t next = MarkedBytes;
  if (next >= bytes.size()) return bytes.size();
  if (text.storage.isWide) return next;
  if (text.storage.encoding.format == TextFormat::Utf8) {
    // Nothing reaches over more than three of them.
    for (int i = 0; i < 3 && next < bytes.size() && isContinuation(bytes[next]); ++i) ++next;
    return next;
  }
  if (unitBytes(text.storage.encoding.format) != 2) return next;
  // Two units may be one character: the stretch ends where it doesn't cut one.
  std::wstring around;
  decodeText(bytes.substr(next - 2, 4), text.storage.encoding, around);
  return around.size() == 1 && next + 2 <= bytes.size() ? next + 2 : next;
}

TextRun takeFront(TextRun& text, size_t bytes) {
  TextRun front = text;
  front.length = bytes;
  text.begin += bytes;
  text.length -= bytes;
  return front;
}

int64_t nextStop(int64_t column, int tabWidth) {
  return column + tabWidth - column % tabWidth;
}

// Runs that go on in their block become one.
void addRun(const TextRun& run, std::vector<TextRun>& runs) {
  if (run.length == 0) return;
  if (!runs.empty() && runs.back().goesOnWith(run)) {
    runs.back().length += run.length;
  } else {
    runs.push_back(run);
  }
}
}  // namespace

LongLine::LongLine(const TextRun& text)
    : rest_(hasStarts(text.storage) ? text : newRun(text.wholeText())),
      bytes_(static_cast<int64_t>(rest_.length)) {}

LongLine::Piece LongLine::measured(const TextRun& run, const std::wstring& text) const {
  Piece piece{run, static_cast<int64_t>(text.size())};
  const size_t tab = text.find(L'\t');
  piece.lead = tab == std::wstring::npos ? piece.characters : static_cast<int64_t>(tab);
  if (piece.lead < piece.characters)
    piece.behind = columnBehind(std::wstring_view(text).substr(tab + 1), 0, tabWidth_);
  return piece;
}

void LongLine::setTabWidth(int tabWidth) {
  if (tabWidth == tabWidth_) return;
  tabWidth_ = tabWidth;
  for (Piece& piece : pieces_)
    if (piece.lead < piece.characters) piece = measured(piece.run, piece.run.wholeText());
  marks_.resize(1);
}

LongLine::Piece LongLine::takePiece(TextRun& text) const {
  const TextRun front = takeFront(text, firstStretch(text));
  return measured(front, front.wholeText());
}

// Makes a piece of what isn't in pieces yet; false when there is no more.
bool LongLine::addPiece() {
  if (rest_.length == 0) return false;
  pieces_.push_back(takePiece(rest_));
  characters_ += pieces_.back().characters;
  return true;
}

// Goes one piece further; false at the end of the line.
bool LongLine::addMark() {
  if (marks_.size() > pieces_.size() && !addPiece()) return false;
  const Piece& piece = pieces_[marks_.size() - 1];
  Mark mark = marks_.back();
  mark.index += piece.characters;
  mark.column += piece.lead;
  if (piece.lead < piece.characters) mark.column = nextStop(mark.column, tabWidth_) + piece.behind;
  marks_.push_back(mark);
  return true;
}

// The piece that holds the character, or their number at the end of the line.
size_t LongLine::pieceOf(int64_t index) {
  while (marks_.back().index <= index && addMark()) {
  }
  const auto behind = std::upper_bound(marks_.begin(), marks_.end(), index,
                                       [](int64_t i, const Mark& mark) { return i < mark.index; });
  return static_cast<size_t>(behind - marks_.begin()) - 1;
}

int64_t LongLine::length() {
  while (addPiece()) {
  }
  return characters_;
}

// The characters of a piece that lie between those of the line.
std::wstring LongLine::piecePart(size_t number, int64_t from, int64_t to) const {
  if (number == pieces_.size()) return {};
  const int64_t start = marks_[number].index;
  const auto first = static_cast<size_t>(std::max<int64_t>(from - start, 0));
  const auto last = static_cast<size_t>(std::min(to - start, pieces_[number].characters));
  std::wstring text = pieces_[number].run.wholeText();
  text.resize(last);
  return first == 0 ? text : text.substr(first);
}

std::wstring LongLine::slice(int64_t from, int64_t count) {
  const int64_t to = count > INT64_MAX - from ? INT64_MAX : from + count;
  std::wstring result;
  for (size_t number = pieceOf(from); marks_[number].index < to; ++number) {
    if (number + 1 == marks_.size() && !addMark()) break;
    result += piecePart(number, from, to);
  }
  return result;
}

int64_t LongLine::columnOf(int64_t index, int tabWidth) {
  setTabWidth(tabWidth);
  const size_t number = pieceOf(index);
  const Mark& mark = marks_[number];
  if (index == mark.index) return mark.column;
  return columnBehind(piecePart(number, mark.index, index), mark.column, tabWidth);
}

int64_t LongLine::indexAt(int64_t column, int tabWidth) {
  setTabWidth(tabWidth);
  while (marks_.back().column <= column && addMark()) {
  }
  const auto behind =
      std::upper_bound(marks_.begin(), marks_.end(), column,
                       [](int64_t wanted, const Mark& mark) { return wanted < mark.column; });
  const auto number = static_cast<size_t>(behind - marks_.begin()) - 1;
  const Mark& mark = marks_[number];
  return mark.index + static_cast<int64_t>(charactersTo(piecePart(number, mark.index, INT64_MAX),
                                                        mark.column, column, tabWidth));
}

std::vector<TextRun> LongLine::runsBetween(int64_t from, int64_t to) {
  std::vector<TextRun> runs;
  const size_t last = pieceOf(to);
  for (size_t number = pieceOf(from); number <= last && number < pieces_.size(); ++number) {
    const Piece& piece = pieces_[number];
    const int64_t start = marks_[number].index;
    const bool isWhole = from <= start && start + piece.characters <= to;
    addRun(isWhole ? piece.run : newRun(piecePart(number, from, to)), runs);
  }
  return runs;
}

void LongLine::addPieces(std::wstring_view text, std::vector<Piece>& pieces) const {
  while (!text.empty()) {
    const std::wstring part(
        text.substr(0, text.size() > 2 * MarkedBytes ? MarkedBytes : text.size()));
    pieces.push_back(measured(newRun(part), part));
    text.remove_prefix(part.size());
  }
}

int64_t LongLine::replace(int64_t from, int64_t to, const TextRun& text) {
  size_t first = pieceOf(from);
  const size_t last = pieceOf(to);
  if (first == pieces_.size() && first > 0) --first;
  const int64_t start = marks_[first].index;
  const std::wstring head = piecePart(first, start, from);
  const std::wstring tail = piecePart(last, to, INT64_MAX);
  std::vector<Piece> pieces;
  if (text.length <= MarkedBytes || !hasStarts(text.storage)) {
    addPieces(head + text.wholeText() + tail, pieces);
  } else {
    addPieces(head, pieces);
    for (TextRun left = text; left.length > 0;) pieces.push_back(takePiece(left));
    addPieces(tail, pieces);
  }
  const int64_t before = characters_;
  exchange(first, std::min(last + 1, pieces_.size()), std::move(pieces));
  return characters_ - before + (to - from);
}

// Puts pieces in the place of others.
void LongLine::exchange(size_t first, size_t behind, std::vector<Piece> pieces) {
  const auto count = [this](const Piece& piece, int sign) {
    bytes_ += sign * static_cast<int64_t>(piece.run.length);
    characters_ += sign * piece.characters;
  };
  for (size_t i = first; i < behind; ++i) count(pieces_[i], -1);
  for (const Piece& piece : pieces) count(piece, 1);
  const auto place = [this](size_t number) {
    return pieces_.begin() + static_cast<std::ptrdiff_t>(number);
  };
  const size_t common = std::min(pieces.size(), behind - first);
  const auto rest = pieces.begin() + static_cast<std::ptrdiff_t>(common);
  std::move(pieces.begin(), rest, place(first));
  pieces_.erase(place(first + common), place(behind));
  pieces_.insert(place(first + common), std::make_move_iterator(rest),
                 std::make_move_iterator(pieces.end()));
  marks_.resize(first + 1);
}

TextRun LongLine::gathered(std::wstring_view end) {
  std::vector<TextRun> runs;
  for (const Piece& piece : pieces_) addRun(piece.run, runs);
  addRun(rest_, runs);
  TextRun all = joinedRuns(runs, end);
  TextRun text = all;
  text.lines = 0;
  text.length = bytes();
  const bool isSame = std::all_of(
      runs.begin(), runs.end(), [&all](const TextRun& run) { return run.storage == all.storage; });
  if (!isSame) return all;
  for (Piece& piece : pieces_) piece.run = takeFront(text, piece.run.length);
  rest_ = text;
  return all;
}
