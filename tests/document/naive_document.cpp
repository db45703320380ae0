#include "document/naive_document.h"

#include "document/document_support.h"

namespace {
bool endsLine(wchar_t c) {
  return c == L'\r' || c == L'\n' || c == L'\0';
}

// One each of CR, LF and NUL at most.
size_t endLength(std::wstring_view text) {
  size_t length = 0;
  while (length < text.size() && endsLine(text[length]) &&
         text.substr(0, length).find(text[length]) == std::wstring_view::npos) {
    ++length;
  }
  return length;
}

std::wstring styleEnd(LineEndStyle style) {
  return style == LineEndStyle::Lf ? L"\n" : L"\r\n";
}

}  // namespace

void NaiveDocument::load(std::string_view bytes, const TextEncoding& encoding) {
  const std::wstring text = decoded(bytes, encoding);
  lines.assign(1, {});
  style = LineEndStyle::Unknown;
  for (size_t i = 0; i < text.size();) {
    const size_t length = endLength(std::wstring_view(text).substr(i));
    if (length == 0) {
      lines.back().text += text[i++];
      continue;
    }
    std::wstring end = text.substr(i, length);
    if (style == LineEndStyle::Unknown && end.find(L'\n') != std::wstring::npos)
      style = end.find(L'\r') == std::wstring::npos ? LineEndStyle::Lf : LineEndStyle::CrLf;
    lines.back().end = std::move(end);
    lines.emplace_back();
    i += length;
  }
  if (style == LineEndStyle::Unknown) style = LineEndStyle::Lf;
}

std::string NaiveDocument::bytes(const TextEncoding& encoding) const {
  std::string all;
  std::wstring before;
  for (const NaiveLine& line : lines) {
    std::wstring end = line.end;
    // Read again, an empty line must still be one.
    if (line.text.empty() && !before.empty() && !end.empty() &&
        endLength(before + end) != before.size()) {
      end = before;
    }
    const CutUnit cut = &line == &lines.back() ? CutUnit::AllowedAtTheEnd : CutUnit::Refused;
    if (encodeText(line.text, encoding, all, cut) != AllEncoded) return "refused";
    if (encodeText(end, encoding, all) != AllEncoded) return "refused";
    before = end;
  }
  return all;
}

TextPlace NaiveDocument::end() const {
  return {static_cast<int64_t>(lines.size()) - 1, static_cast<int64_t>(lines.back().text.size())};
}

NaiveText NaiveDocument::cut(TextPlace from, TextPlace to) const {
  NaiveText piece(lines.begin() + from.line, lines.begin() + to.line + 1);
  piece.back().text.resize(static_cast<size_t>(to.index));
  piece.back().end.clear();
  piece.front().text.erase(0, static_cast<size_t>(from.index));
  return piece;
}

TextPlace NaiveDocument::replace(TextPlace from, TextPlace to, const NaiveText& text) {
  NaiveText put = text;
  const NaiveLine last = lines[static_cast<size_t>(to.line)];
  put.front().text.insert(0, lines[static_cast<size_t>(from.line)].text, 0,
                          static_cast<size_t>(from.index));
  const TextPlace place{from.line + static_cast<int64_t>(put.size()) - 1,
                        static_cast<int64_t>(put.back().text.size())};
  put.back().text += last.text.substr(static_cast<size_t>(to.index));
  put.back().end = last.end;
  const auto start = lines.erase(lines.begin() + from.line, lines.begin() + to.line + 1);
  lines.insert(start, put.begin(), put.end());
  return place;
}

void NaiveDocument::setLineEnds(LineEndStyle newStyle) {
  style = newStyle;
  for (size_t i = 0; i + 1 < lines.size(); ++i) lines[i].end = styleEnd(style);
}

void NaiveDocument::recode(int from, int to) {
  for (NaiveLine& line : lines) {
    std::wstring text;
    for (size_t i = 0; i < line.text.size();) {
      // As many characters as the old page holds are bytes of the new one.
      std::string bytes;
      const std::wstring_view rest = std::wstring_view(line.text).substr(i);
      const size_t refused = encodeText(rest, {TextFormat::CodePage, from}, bytes);
      text += decoded(bytes, {TextFormat::CodePage, to});
      if (refused == AllEncoded) break;
      text += rest[refused];
      i += refused + 1;
    }
    line.text = text;
  }
}

NaiveText naiveText(std::wstring_view text, LineEndStyle style) {
  NaiveText lines(1);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'\0') continue;
    if (!endsLine(text[i])) {
      lines.back().text += text[i];
      continue;
    }
    if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') ++i;
    lines.back().end = styleEnd(style);
    lines.emplace_back();
  }
  return lines;
}
