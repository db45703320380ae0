// The one pass over the bytes of a text that finds its lines.
#include <algorithm>
#include <cstring>

#include "editor/document/text_run.h"
#include "foundation/utf8.h"

namespace {
// How far a line end is looked for between two looks at the progress.
constexpr size_t LookBytes = size_t{4} << 20;

bool hasHighBit(std::string_view bytes) {
  constexpr uint64_t HighBits = 0x8080808080808080;
  uint64_t all = 0;
  size_t at = 0;
  for (; at + sizeof all <= bytes.size(); at += sizeof all) {
    uint64_t eight;
    std::memcpy(&eight, bytes.data() + at, sizeof eight);
    all |= eight;
  }
  for (; at < bytes.size(); ++at) all |= static_cast<unsigned char>(bytes[at]);
  return (all & HighBits) != 0;
}

bool isValidUtf8(std::string_view bytes) {
  for (size_t at = 0; at < bytes.size();) {
    if (static_cast<signed char>(bytes[at]) >= 0) {
      ++at;
      continue;
    }
    wchar_t character;
    at += decodeExactCharacter(bytes.substr(at, 4), character);
    if (character < 0) return false;
  }
  return true;
}

class Scanner {
 public:
  Scanner(const BytesBlock& block, size_t from, const TextStorage& storage,
          const ScanProgress& progress)
      : all_(block.bytes),
        at_(from),
        storage_(storage),
        progress_(progress),
        marked_(from),
        lookAt_(from + LookBytes) {}

  // False when it was stopped.
  bool run(std::vector<size_t>& marks) {
    marks.push_back(at_);
    for (;;) {
      LineEnd end;
      if (!findEnd(end)) return false;
      if (end.length == 0) break;
      if (style_ == LineEndStyle::Unknown) style_ = styleOf(all_.substr(end.at, end.length));
      at_ = end.at + end.length;
      if (++lines_ % MarkedLines != 0) continue;
      marks.push_back(at_);
      countInvalid(at_);
    }
    countInvalid(all_.size());
    return true;
  }

  size_t restBegin() const { return at_; }
  int64_t lines() const { return lines_; }
  LineEndStyle style() const { return style_; }
  int64_t invalidLines() const { return invalidLines_; }

 private:
  // A line may be as long as the file: looks for its end a stretch at a time.
  bool findEnd(LineEnd& end) {
    size_t from = at_;
    for (;;) {
      const size_t limit = std::min(std::max(lookAt_, from), all_.size());
      end = findLineEnd(all_.substr(0, limit), from, storage_.unitFormat());
      if (end.at + end.length < limit || limit == all_.size()) return true;
      if (progress_ && !progress_(static_cast<int64_t>(limit))) return false;
      from = end.at;
      lookAt_ = limit + LookBytes;
    }
  }

  void countInvalid(size_t behind) {
    if (storage_.isWide || storage_.encoding.format != TextFormat::Utf8) return;
    std::string_view lines = all_.substr(marked_, behind - marked_);
    marked_ = behind;
    if (!hasHighBit(lines)) return;
    while (!lines.empty()) {
      const LineEnd end = findLineEnd(lines, 0, TextFormat::Utf8);
      if (!isValidUtf8(lines.substr(0, end.at))) ++invalidLines_;
      lines.remove_prefix(end.at + end.length);
    }
  }

  std::string_view all_;
  size_t at_;
  TextStorage storage_;
  const ScanProgress& progress_;
  size_t marked_;  // up to where lines were counted
  size_t lookAt_;
  int64_t lines_ = 0;
  int64_t invalidLines_ = 0;
  LineEndStyle style_ = LineEndStyle::Unknown;
};
}  // namespace

ScannedText scanText(std::string bytes, size_t from, const TextStorage& storage,
                     const ScanProgress& progress) {
  auto* block = new BytesBlock;
  ScannedText result;
  result.lines.block = SharedBlock(block);
  block->bytes = std::move(bytes);
  Scanner scanner(*block, std::min(from, block->bytes.size()), storage, progress);
  result.isStopped = !scanner.run(block->marks);
  if (scanner.lines() < MarkedLines) block->marks = {};
  result.lines.storage = storage;
  result.lines.begin = std::min(from, block->bytes.size());
  result.lines.length = scanner.restBegin() - result.lines.begin;
  result.lines.lines = scanner.lines();
  result.rest = result.lines;
  result.rest.begin = scanner.restBegin();
  result.rest.length = block->bytes.size() - scanner.restBegin();
  result.rest.lines = 0;
  result.rest.firstLine = scanner.lines();
  result.style = scanner.style();
  result.invalidLines = scanner.invalidLines();
  return result;
}
