// The text of a document as bytes, and what changes all of it at once.
#include <algorithm>
#include <cerrno>

#include "editor/document/document.h"

namespace {
constexpr size_t PieceBytes = size_t{1} << 20;
constexpr size_t BufferBytes = size_t{64} << 10;

class TextWriter {
 public:
  TextWriter(const TextEncoding& encoding, const Document::Sink& sink,
             const Document::Progress& progress)
      : encoding_(encoding), sink_(sink), progress_(progress) {}

  bool write(const TextRun& run) {
    LineWalk walk(run);
    // An empty line behind another run: line ends that meet there must stay two.
    size_t begin = 0;
    for (;; ++line_) {
      const bool isLine = walk.next();
      if (!isLine) return true;
      const LineBytes line = walk.bytes();
      if (!line.text.empty() || !lineEndsMerge(lastEnd_, walk.lineEnd())) break;
      if (!encode(lastEnd_, CutUnit::Refused)) return false;
      begin += line.end.size();
    }
    lastEnd_ = run.lineEnd(run.lines - 1);
    if (isSame(run) && !run.ends) {
      const int64_t lines = run.lines - walk.line();
      return put(run.bytes().substr(begin), lines);
    }
    do {
      if (!encode(walk.text(), CutUnit::Refused) || !encode(walk.lineEnd(), CutUnit::Refused))
        return false;
      ++line_;
    } while (walk.next());
    return true;
  }

  bool writeLast(const TextRun& run) {
    return (isSame(run) ? put(run.bytes(), 0)
                        : encode(run.wholeText(), CutUnit::AllowedAtTheEnd)) &&
           flush();
  }

  const Document::Written& result() const { return result_; }

 private:
  bool isSame(const TextRun& run) const {
    return !run.storage.isWide && run.storage.encoding == encoding_;
  }

  bool encode(std::wstring_view text, CutUnit cut) {
    const size_t refused = encodeText(text, encoding_, buffer_, cut);
    if (refused != AllEncoded) {
      result_.refused = true;
      result_.place = {line_, static_cast<int64_t>(refused)};
      return false;
    }
    return buffer_.size() < BufferBytes || flush();
  }

  // The bytes of so many lines. Each piece of them counts as its share of the lines: to look where
  // they really end would cost more than to write them.
  bool put(std::string_view bytes, int64_t lines) {
    if (buffer_.size() + bytes.size() < BufferBytes) {
      buffer_ += bytes;
      line_ += lines;
      return true;
    }
    if (!flush()) return false;
    while (!bytes.empty()) {
      const std::string_view piece = bytes.substr(0, PieceBytes);
      const int64_t pieceLines = lines * std::ssize(piece) / std::ssize(bytes);
      lines -= pieceLines;
      line_ += pieceLines;
      bytes.remove_prefix(piece.size());
      if (!pass(piece)) return false;
    }
    return true;
  }

  bool flush() {
    const bool passed = buffer_.empty() || pass(buffer_);
    buffer_.clear();
    return passed;
  }

  bool pass(std::string_view bytes) {
    result_.error = sink_(bytes);
    if (result_.error != 0) return false;
    if (progress_ && !progress_(line_)) result_.error = ECANCELED;
    return result_.error == 0;
  }

  const TextEncoding encoding_;
  const Document::Sink& sink_;
  const Document::Progress& progress_;
  std::string buffer_;
  std::wstring lastEnd_;
  int64_t line_ = 0;
  Document::Written result_;
};

}  // namespace

void Document::recode(int page) {
  store();
  const TextEncoding to{TextFormat::CodePage, page};
  TextSpan text = TextSpan(lines_, last_).recoded(encoding_, to);
  clear();
  lines_ = std::move(text.lines_);
  last_ = std::move(text.last_);
  encoding_ = to;
}

void Document::setLineEnds(LineEndStyle style) {
  store();
  style_ = style == LineEndStyle::CrLf ? style : LineEndStyle::Lf;
  lines_.changeRuns([this](TextRun& run) { run.ends = style_; });
  forgetSeen();
  if (observer_) observer_->onLineEnds(style_);
}

Document::Written Document::write(const TextEncoding& encoding, const Sink& sink,
                                  const Progress& progress) const {
  store();
  TextWriter writer(encoding, sink, progress);
  if (lines_.forEach([&writer](const TextRun& run) { return writer.write(run); }))
    writer.writeLast(last_);
  return writer.result();
}
