#include "foundation/bounded_lines.h"

namespace {
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
}  // namespace

BoundedLines::BoundedLines(std::string_view content) : rest_(content) {
  if (rest_.starts_with(ByteOrderMark)) rest_.remove_prefix(ByteOrderMark.size());
}

bool BoundedLines::next(std::string_view& line) {
  if (rest_.empty()) return false;
  const size_t end = rest_.find('\n');
  hadEnd_ = end != std::string_view::npos;
  std::string_view found = rest_.substr(0, end);
  rest_.remove_prefix(hadEnd_ ? end + 1 : rest_.size());
  if (found.ends_with('\r')) found.remove_suffix(1);
  wasCut_ = found.size() > LongestLine;
  line = found.substr(0, LongestLine);
  return true;
}

bool BoundedLines::next(std::string& line) {
  std::string_view found;
  if (!next(found)) return false;
  line = found;
  return true;
}
