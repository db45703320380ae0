#include "editor/document/document.h"

#include <algorithm>
#include <cerrno>

#include "editor/text/line_ends.h"

Document::Document() : lines_(1) {}
Document::~Document() = default;

bool Document::load(std::string bytes, const TextEncoding& encoding, size_t textStart,
                    const Progress& progress) {
  lines_.clear();
  encoding_ = encoding;
  style_ = LineEndStyle::Unknown;
  invalidLines_ = 0;
  textStart_ = textStart;
  const std::string_view all(bytes);
  size_t at = textStart;
  for (;;) {
    const LineEnd end = findLineEnd(all, at, encoding.format);
    Line line;
    const bool valid = decodeText(all.substr(at, end.at - at), encoding, line.text);
    if (!valid && encoding.format == TextFormat::Utf8) ++invalidLines_;
    const std::string_view group = all.substr(end.at, end.length);
    decodeText(group, encoding, line.end);
    if (style_ == LineEndStyle::Unknown) style_ = styleOf(group);
    lines_.push_back(std::move(line));
    if (end.length == 0) break;
    at = end.at + end.length;
    if (progress && !progress(static_cast<int64_t>(at))) {
      lines_.assign(1, {});
      return false;
    }
  }
  if (style_ == LineEndStyle::Unknown) style_ = LineEndStyle::Lf;
  return true;
}

int64_t Document::lineCount() const {
  return static_cast<int64_t>(lines_.size());
}

std::wstring Document::text(int64_t line) const {
  return line < 0 || line >= lineCount() ? std::wstring() : lines_[static_cast<size_t>(line)].text;
}

int64_t Document::lineLength(int64_t line) const {
  return static_cast<int64_t>(text(line).size());
}

std::wstring Document::slice(int64_t line, int64_t from, int64_t count) const {
  const std::wstring whole = text(line);
  const size_t start = std::min(static_cast<size_t>(std::max<int64_t>(from, 0)), whole.size());
  return whole.substr(start, static_cast<size_t>(std::max<int64_t>(count, 0)));
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

Document::BytePlace Document::lineOfByte(int64_t offset) const {
  auto start = static_cast<int64_t>(textStart_);
  for (size_t i = 0; i < lines_.size(); ++i) {
    std::string bytes;
    encodeText(lines_[i].text + lines_[i].end, encoding_, bytes);
    const auto length = static_cast<int64_t>(bytes.size());
    if (start + length > offset || i + 1 == lines_.size())
      return {static_cast<int64_t>(i), std::clamp<int64_t>(offset - start, 0, length)};
    start += length;
  }
  return {};
}

int64_t Document::columnOf(TextPlace place, int tabWidth) const {
  int64_t column = 0;
  for (const wchar_t c : slice(place.line, 0, place.index))
    column += c == L'\t' ? tabWidth - column % tabWidth : 1;
  return column;
}

int64_t Document::indexAt(int64_t line, int64_t column, int tabWidth) const {
  int64_t at = 0;
  int64_t index = 0;
  if (column <= 0) return 0;
  for (const wchar_t c : text(line)) {
    at += c == L'\t' ? tabWidth - at % tabWidth : 1;
    if (at >= column) return c == L'\t' && at > column ? index : index + 1;
    ++index;
  }
  return index;
}

int64_t Document::widthOf(int64_t line, int tabWidth) const {
  return columnOf({line, lineLength(line)}, tabWidth);
}

TextSpan Document::span(TextPlace from, TextPlace to) const {
  from = clamped(from);
  to = std::max(clamped(to), from);
  std::vector<Line> lines(lines_.begin() + from.line, lines_.begin() + to.line + 1);
  lines.back().text.resize(static_cast<size_t>(to.index));
  lines.back().end.clear();
  lines.front().text.erase(0, static_cast<size_t>(from.index));
  TextSpan span;
  span.lines_ = std::make_shared<const std::vector<Line>>(std::move(lines));
  return span;
}

Document::Replaced Document::replace(TextPlace from, TextPlace to, const TextSpan& text) {
  from = clamped(from);
  to = std::max(clamped(to), from);
  Replaced result;
  result.removed = span(from, to);
  std::vector<Line> put = text.lines_ ? *text.lines_ : std::vector<Line>(1);
  const Line& last = lines_[static_cast<size_t>(to.line)];
  put.front().text.insert(0, lines_[static_cast<size_t>(from.line)].text, 0,
                          static_cast<size_t>(from.index));
  result.end = {from.line + static_cast<int64_t>(put.size()) - 1,
                static_cast<int64_t>(put.back().text.size())};
  put.back().text.append(last.text, static_cast<size_t>(to.index), std::wstring::npos);
  put.back().end = last.end;
  const auto start = lines_.erase(lines_.begin() + from.line, lines_.begin() + to.line + 1);
  lines_.insert(start, std::make_move_iterator(put.begin()), std::make_move_iterator(put.end()));
  if (observer_) observer_->onReplaced(from, to, text);
  return result;
}

void Document::setLineEnds(LineEndStyle style) {
  style_ = style == LineEndStyle::CrLf ? style : LineEndStyle::Lf;
  for (size_t i = 0; i + 1 < lines_.size(); ++i)
    lines_[i].end = style_ == LineEndStyle::Lf ? L"\n" : L"\r\n";
  if (observer_) observer_->onLineEnds(style_);
}

void Document::recode(int page) {
  const TextEncoding to{TextFormat::CodePage, page};
  for (Line& line : lines_) {
    std::string bytes;
    if (encodeText(line.text, encoding_, bytes) != AllEncoded) continue;
    line.text.clear();
    decodeText(bytes, to, line.text);
  }
  encoding_ = to;
}

Document::Written Document::write(const TextEncoding& encoding, const Sink& sink,
                                  const Progress& progress) const {
  std::string bytes;
  int64_t done = 0;
  for (size_t i = 0; i < lines_.size(); ++i) {
    bytes.clear();
    const CutUnit cut = i + 1 == lines_.size() ? CutUnit::AllowedAtTheEnd : CutUnit::Refused;
    const size_t refused = encodeText(lines_[i].text + lines_[i].end, encoding, bytes, cut);
    if (refused != AllEncoded)
      return {0, true, {static_cast<int64_t>(i), static_cast<int64_t>(refused)}};
    if (const int error = sink(bytes)) return {error, false, {}};
    done += static_cast<int64_t>(bytes.size());
    if (progress && !progress(done)) return {ECANCELED, false, {}};
  }
  return {};
}
