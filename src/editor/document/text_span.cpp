#include "editor/document/text_span.h"

#include <algorithm>

#include "editor/document/run_builder.h"

namespace {
std::wstring withoutNuls(std::wstring_view text) {
  std::wstring plain(text);
  plain.erase(std::remove(plain.begin(), plain.end(), L'\0'), plain.end());
  return plain;
}

// Calls `visit` with a walk that stands on each line in turn.
template <class Visit>
void forEachLine(const RunTree& lines, Visit visit) {
  lines.forEach([&](const TextRun& run) {
    for (LineWalk walk(run); walk.next();) visit(walk);
    return true;
  });
}
}  // namespace

TextSpan TextSpan::fromText(std::wstring_view text, LineEndStyle style) {
  if (text.find(L'\0') != std::wstring_view::npos) return fromText(withoutNuls(text), style);
  RunBuilder lines;
  for (;;) {
    const auto at =
        std::find_if(text.begin(), text.end(), [](wchar_t c) { return c == L'\r' || c == L'\n'; });
    if (at == text.end()) break;
    const auto end = static_cast<size_t>(at - text.begin());
    lines.addLine(text.substr(0, end), lineEndText(style));
    const bool isPair = text[end] == L'\r' && end + 1 < text.size() && text[end + 1] == L'\n';
    text.remove_prefix(end + (isPair ? 2 : 1));
  }
  return {lines.finish(), newRun(text)};
}

TextSpan TextSpan::lineEnd(std::wstring_view end) {
  RunBuilder lines;
  lines.addLine({}, end);
  return {lines.finish(), {}};
}

int64_t TextSpan::firstLength() const {
  if (lines_.empty()) return lastLength();
  return static_cast<int64_t>(lines_.find(0).run->text(0).size());
}

int64_t TextSpan::lastLength() const {
  return static_cast<int64_t>(last_.wholeText().size());
}

std::wstring TextSpan::text() const {
  std::wstring text;
  forEachLine(lines_, [&text](const LineWalk& line) {
    text += line.text();
    text += L'\n';
  });
  return text + last_.wholeText();
}

TextSpan TextSpan::joined(const TextSpan& other) const {
  if (other.lines_.empty()) return {lines_, joinedRuns({last_, other.last_})};
  TextSpan result(lines_, other.last_);
  RunTree more = other.lines_;
  if (last_.length != 0) {
    const TextRun& first = *more.find(0).run;
    more.setLine(0, joinedRuns({last_, first.textOf(first.lineAt(0).text)}, first.lineEnd(0)));
  }
  result.lines_.append(std::move(more));
  return result;
}

TextSpan TextSpan::changed(size_t mostBytes, const LineChange& change) const {
  RunBuilder lines;
  forEachLine(lines_, [&](const LineWalk& line) {
    const bool isLong = line.bytes().text.size() > mostBytes;
    const std::optional<std::wstring> text = isLong ? std::nullopt : change(line.text());
    if (text) {
      lines.addLine(*text, line.lineEnd());
    } else {
      lines.addRun(line.asRun());
    }
  });
  if (last_.length > mostBytes) return {lines.finish(), last_};
  const std::optional<std::wstring> last = change(last_.wholeText());
  return {lines.finish(), last ? newRun(*last) : last_};
}
