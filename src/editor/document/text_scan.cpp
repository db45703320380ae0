// The one pass over the bytes of a text that finds its lines.
#include <algorithm>
#include <bit>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "editor/document/text_run.h"
#include "editor/document/valid_utf8.h"

namespace {
// How far a line end is looked for between two looks at the progress.
constexpr size_t LookBytes = size_t{4} << 20;

constexpr size_t StretchBytes = 64;

bool endsLine(char byte) {
  return byte == '\n' || byte == '\r' || byte == 0;
}

// A bit for each of StretchBytes bytes, the first the lowest: whether it ends a line.
#ifdef __SSE2__
uint64_t lineEndBits(const char* bytes) {
  uint64_t bits = 0;
  for (size_t at = 0; at < StretchBytes; at += sizeof(__m128i)) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at));
    const __m128i lf = _mm_cmpeq_epi8(block, _mm_set1_epi8('\n'));
    const __m128i cr = _mm_cmpeq_epi8(block, _mm_set1_epi8('\r'));
    const __m128i nul = _mm_cmpeq_epi8(block, _mm_setzero_si128());
    const __m128i ends = _mm_or_si128(_mm_or_si128(lf, cr), nul);
    bits |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(ends))) << at;
  }
  return bits;
}
#else
uint64_t lineEndBits(const char* bytes) {
  uint64_t bits = 0;
  for (size_t i = 0; i < StretchBytes; ++i) bits |= uint64_t{endsLine(bytes[i])} << i;
  return bits;
}
#endif

class Scanner {
 public:
  Scanner(const BytesBlock& block, size_t from, const TextStorage& storage,
          const ScanProgress& progress)
      : all_(block.bytes),
        at_(from),
        storage_(storage),
        progress_(progress),
        searched_(from),
        marked_(from),
        lookAt_(from + LookBytes) {}

  // False when it was stopped.
  bool run(std::vector<size_t>& marks) {
    marks.push_back(at_);
    if (unitBytes(storage_.unitFormat()) == 1 && !scanStretches(marks)) return false;
    for (;;) {
      LineEnd end;
      if (!findEnd(end)) return false;
      if (end.length == 0) break;
      addLine(end, marks);
    }
    countInvalid(all_.size());
    return true;
  }

  size_t restBegin() const { return at_; }
  int64_t lines() const { return lines_; }
  LineEndStyle style() const { return style_; }
  int64_t invalidLines() const { return invalidLines_; }

 private:
  void addLine(const LineEnd& end, std::vector<size_t>& marks) {
    if (style_ == LineEndStyle::Unknown) style_ = styleOf(all_.substr(end.at, end.length));
    at_ = end.at + end.length;
    if (++lines_ % MarkedLines != 0) return;
    marks.push_back(at_);
    countInvalid(at_);
  }

  // Texts with units of one byte, as far as there are whole stretches. False when it was stopped.
  bool scanStretches(std::vector<size_t>& marks) {
    for (; searched_ + StretchBytes <= all_.size(); searched_ += StretchBytes) {
      uint64_t bits = lineEndBits(all_.data() + searched_);
      for (; bits != 0; bits &= bits - 1) {
        const size_t at = searched_ + static_cast<size_t>(std::countr_zero(bits));
        if (at < at_) continue;  // a part of the line end before
        const bool isAlone = at + 1 < all_.size() && !endsLine(all_[at + 1]);
        addLine(isAlone ? LineEnd{at, 1} : findLineEnd(all_, at, TextFormat::Utf8), marks);
      }
      if (searched_ < lookAt_) continue;
      lookAt_ = searched_ + LookBytes;
      if (progress_ && !progress_(static_cast<int64_t>(searched_))) return false;
    }
    return true;
  }

  // A line may be as long as the file: looks for its end a stretch at a time.
  bool findEnd(LineEnd& end) {
    size_t from = std::max(at_, searched_);
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
    if (isValidUtf8(lines)) return;
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
  size_t searched_;  // up to where there are no more line ends than those that were added
  size_t marked_;    // up to where lines were counted
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
