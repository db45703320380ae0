// Text of a code page read as another one.
#include "editor/document/run_builder.h"
#include "editor/document/text_span.h"

namespace {
// Characters that the old page lacks are read by no page.
std::wstring recodedText(std::wstring_view text, const TextEncoding& from, const TextEncoding& to) {
  std::wstring result;
  std::string bytes;
  while (!text.empty()) {
    bytes.clear();
    const size_t refused = encodeText(text, from, bytes);
    decodeText(bytes, to, result);
    if (refused == AllEncoded) break;
    result += text[refused];
    text.remove_prefix(refused + 1);
  }
  return result;
}

// A run of a file's own bytes only changes what they stand for.
bool standsIn(const TextRun& run, const TextEncoding& encoding) {
  return !run.storage.isWide && run.storage.encoding == encoding;
}
}  // namespace

TextSpan TextSpan::recoded(const TextEncoding& from, const TextEncoding& to) const {
  RunBuilder lines;
  lines_.forEach([&](const TextRun& run) {
    if (standsIn(run, from)) {
      TextRun other = run;
      other.storage.encoding = to;
      lines.addRun(other);
      return true;
    }
    for (LineWalk walk(run); walk.next();)
      lines.addLine(recodedText(walk.text(), from, to), walk.lineEnd());
    return true;
  });
  TextRun last = last_;
  if (standsIn(last, from)) {
    last.storage.encoding = to;
  } else {
    last = newRun(recodedText(last.wholeText(), from, to));
  }
  return {lines.finish(), std::move(last)};
}

bool TextSpan::needsCodePage() const {
  const auto isFree = [](const TextRun& run) {
    return run.storage.isWide || run.storage.encoding.format != TextFormat::CodePage;
  };
  return !isFree(last_) || !lines_.forEach(isFree);
}
