#include "editor/document/text_span.h"

#include <cstring>

namespace {
std::wstring endOf(LineEndStyle style) {
  return style == LineEndStyle::Lf ? L"\n" : L"\r\n";
}

// At the start of `text`, at most one each of CR, LF and NUL.
size_t groupLength(std::wstring_view text) {
  bool seen[3] = {};
  size_t length = 0;
  for (; length < text.size(); ++length) {
    const wchar_t c = text[length];
    const int kind = c == L'\r' ? 0 : c == L'\n' ? 1 : c == 0 ? 2 : -1;
    if (kind < 0 || seen[kind]) break;
    seen[kind] = true;
  }
  return length;
}
}  // namespace

TextSpan TextSpan::fromText(std::wstring_view text, LineEndStyle style) {
  std::vector<Line> lines(1);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == 0) continue;
    if (text[i] != L'\r' && text[i] != L'\n') {
      lines.back().text += text[i];
      continue;
    }
    if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') ++i;
    lines.back().end = endOf(style);
    lines.emplace_back();
  }
  TextSpan span;
  span.lines_ = std::make_shared<const std::vector<Line>>(std::move(lines));
  return span;
}

TextSpan TextSpan::lineEnd(std::wstring_view end) {
  TextSpan span;
  span.lines_ =
      std::make_shared<const std::vector<Line>>(std::vector<Line>{{L"", std::wstring(end)}, {}});
  return span;
}

int64_t TextSpan::lineEnds() const {
  return lines_ ? static_cast<int64_t>(lines_->size()) - 1 : 0;
}
int64_t TextSpan::firstLength() const {
  return lines_ ? static_cast<int64_t>(lines_->front().text.size()) : 0;
}
int64_t TextSpan::lastLength() const {
  return lines_ ? static_cast<int64_t>(lines_->back().text.size()) : 0;
}

std::wstring TextSpan::text() const {
  std::wstring text;
  if (!lines_) return text;
  for (const Line& line : *lines_) {
    text += line.text;
    if (&line != &lines_->back()) text += L'\n';
  }
  return text;
}

std::string TextSpan::stored() const {
  std::wstring text;
  if (lines_)
    for (const Line& line : *lines_) text.append(line.text).append(line.end);
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

TextSpan TextSpan::fromStored(std::string_view bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), 0);
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  std::vector<Line> lines(1);
  for (size_t i = 0; i < text.size();) {
    const size_t length = groupLength(std::wstring_view(text).substr(i));
    if (length == 0) {
      lines.back().text += text[i++];
    } else {
      lines.back().end = text.substr(i, length);
      lines.emplace_back();
      i += length;
    }
  }
  TextSpan span;
  span.lines_ = std::make_shared<const std::vector<Line>>(std::move(lines));
  return span;
}

TextSpan TextSpan::joined(const TextSpan& other) const {
  if (!other.lines_) return *this;
  if (!lines_) return other;
  std::vector<Line> lines = *lines_;
  lines.back().text += other.lines_->front().text;
  lines.back().end = other.lines_->front().end;
  lines.insert(lines.end(), other.lines_->begin() + 1, other.lines_->end());
  TextSpan span;
  span.lines_ = std::make_shared<const std::vector<Line>>(std::move(lines));
  return span;
}

TextSpan TextSpan::changed(const LineChange& change) const {
  if (!lines_) return {};
  std::vector<Line> lines = *lines_;
  for (Line& line : lines)
    if (std::optional<std::wstring> text = change(line.text)) line.text = std::move(*text);
  TextSpan span;
  span.lines_ = std::make_shared<const std::vector<Line>>(std::move(lines));
  return span;
}
