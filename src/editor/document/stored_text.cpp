// Spans as bytes for files and records: a piece for each run, a head and the run's own bytes.
#include <cstring>
#include <vector>

#include "editor/document/text_span.h"

namespace {
struct PieceHead {
  int32_t format;  // a TextFormat, or WideFormat
  int32_t page;
  int64_t ends;  // a LineEndStyle, or OwnEnds
  int64_t length;
};
constexpr int32_t WideFormat = 7;
constexpr int64_t OwnEnds = -1;

void appendPiece(const TextRun& run, std::string& bytes) {
  if (run.length == 0) return;
  const PieceHead head{
      run.storage.isWide ? WideFormat : static_cast<int32_t>(run.storage.encoding.format),
      resolvedPage(run.storage.encoding.page), run.ends ? static_cast<int64_t>(*run.ends) : OwnEnds,
      static_cast<int64_t>(run.length)};
  bytes.append(reinterpret_cast<const char*>(&head), sizeof head);
  bytes += run.bytes();
}

bool isKnown(const PieceHead& head) {
  if (head.length <= 0 || head.ends < OwnEnds ||
      head.ends > static_cast<int64_t>(LineEndStyle::Lf)) {
    return false;
  }
  if (head.format == WideFormat) return head.length % sizeof(wchar_t) == 0;
  return head.format >= 0 && head.format < static_cast<int32_t>(TextFormat::Undetermined);
}

TextStorage storageOf(const PieceHead& head) {
  TextStorage storage;
  storage.isWide = head.format == WideFormat;
  if (!storage.isWide) storage.encoding = {static_cast<TextFormat>(head.format), head.page};
  return storage;
}
}  // namespace

std::string TextSpan::stored() const {
  std::string bytes;
  lines_.forEach([&bytes](const TextRun& run) {
    appendPiece(run, bytes);
    return true;
  });
  appendPiece(last_, bytes);
  return bytes;
}

TextSpan TextSpan::fromStored(std::string_view bytes) {
  TextSpan result;
  PieceHead head;
  while (bytes.size() >= sizeof head) {
    std::memcpy(&head, bytes.data(), sizeof head);
    bytes.remove_prefix(sizeof head);
    if (!isKnown(head) || static_cast<uint64_t>(head.length) > bytes.size()) break;
    const std::string_view piece = bytes.substr(0, static_cast<size_t>(head.length));
    bytes.remove_prefix(piece.size());
    ScannedText scanned = scanText(std::string(piece), 0, storageOf(head));
    if (head.ends != OwnEnds) scanned.lines.ends = static_cast<LineEndStyle>(head.ends);
    std::vector<TextRun> runs;
    if (scanned.lines.lines > 0) runs.push_back(scanned.lines);
    if (scanned.rest.length == 0) scanned.rest = {};
    result = result.joined({RunTree(runs), scanned.rest});
  }
  return result;
}
