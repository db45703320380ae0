#include "viewer/viewed_file.h"

#include <algorithm>

#include "editor/text/text_file.h"

namespace {

// Bytes of a character that may be missing at the end of a part, in any encoding.
constexpr int64_t LongestMark = 4;
constexpr size_t LongestCut = 3;
constexpr int64_t PartCharacters = 4096;
constexpr int64_t LeastPart = 64;
constexpr char LeastTrailByte = 0x30;  // in every code page of several bytes a character

bool isHighSurrogate(wchar_t character) {
  return character >= 0xD800 && character < 0xDC00;
}

// What was decoded last may be the beginning of a character that goes on behind `out`: takes that
// away. Returns how many bytes.
size_t dropCutCharacter(std::wstring& out, size_t before, const TextEncoding& encoding) {
  const size_t kept = out.size();
  if (encoding.format == TextFormat::Utf16Le || encoding.format == TextFormat::Utf16Be) {
    if (kept <= before + 1 || !isHighSurrogate(out.back())) return 0;
    out.pop_back();
    return 2;
  }
  size_t dropped = 0;
  while (dropped < LongestCut && out.size() > before + 1 && isRawByte(out.back())) {
    out.pop_back();
    ++dropped;
  }
  return dropped;
}

// A part of a text in a code page, shortened so that it ends between two characters, if it can be
// seen where that is.
std::string_view cutBetween(std::string_view bytes) {
  for (size_t end = bytes.size(); end > bytes.size() / 2; --end) {
    if (bytes[end - 1] >= 0 && bytes[end - 1] < LeastTrailByte) return bytes.substr(0, end);
  }
  return bytes;
}

}  // namespace

int ViewedFile::open(const Westring& path, const TextEncoding& remembered) {
  const int result = bytes_.open(path);
  if (result) return result;
  int error;
  const std::string beginning = bytesAt(0, static_cast<int64_t>(CTextFile::DetectionBytes), error);
  setEncoding(CTextFile::detect(beginning, remembered).encoding);
  return 0;
}

void ViewedFile::close() {
  bytes_.close();
}

FileChange ViewedFile::refresh() {
  const FileChange change = bytes_.refresh();
  if (change != FileChange::None) {
    lines_.begin(encoding_.format, textStart());
    ++version_;
    if (change != FileChange::Grown) ++rewrites_;
  }
  return change;
}

void ViewedFile::setEncoding(const TextEncoding& encoding) {
  encoding_ = encoding;
  int error;
  const std::string beginning = bytesAt(0, LongestMark, error);
  const size_t start = CTextFile::readAs(encoding, beginning).textStart;
  lines_.begin(encoding.format, static_cast<int64_t>(start));
  ++version_;
  ++rewrites_;
}

std::wstring ViewedFile::text(const ViewedLine& line, int64_t most) {
  std::wstring result;
  if (line.error) return result;
  int64_t position = line.start;
  while (position < line.textEnd && static_cast<int64_t>(result.size()) < most) {
    const int64_t missing = most - static_cast<int64_t>(result.size());
    const int64_t next = appendText(position, line.textEnd, missing, result);
    if (next == position) break;
    position = next;
  }
  if (static_cast<int64_t>(result.size()) > most) result.resize(static_cast<size_t>(most));
  return result;
}

int64_t ViewedFile::characters(int64_t from, int64_t to) {
  std::wstring part;
  int64_t count = 0;
  while (from < to) {
    part.clear();
    const int64_t next = appendText(from, to, PartCharacters, part);
    if (next == from) break;
    count += static_cast<int64_t>(part.size());
    from = next;
  }
  return count;
}

int64_t ViewedFile::appendText(int64_t from, int64_t to, int64_t most, std::wstring& out) {
  // A character takes a unit at least.
  const int64_t unit = unitBytes(encoding_.format);
  const int64_t wanted = std::min(to - from, std::clamp(most, LeastPart, PartCharacters) * unit);
  std::string joined;
  std::string_view bytes = bytesTogether(from, wanted, joined);
  if (bytes.empty()) return from;
  if (encoding_.format == TextFormat::CodePage && wanted < to - from) bytes = cutBetween(bytes);
  const size_t before = out.size();
  decodeText(bytes, encoding_, out);
  int64_t end = from + static_cast<int64_t>(bytes.size());
  if (end < to) end -= static_cast<int64_t>(dropCutCharacter(out, before, encoding_));
  std::replace(out.begin() + static_cast<ptrdiff_t>(before), out.end(), L'\0', L' ');
  return end;
}

// As bytesAt. What lies together in memory stays there, good until the next call but one; else it
// is in `joined`.
std::string_view ViewedFile::bytesTogether(int64_t position, int64_t count, std::string& joined) {
  const Stretch stretch = bytes_.from(position);
  if (!stretch.error && stretch.length >= count) {
    return stretch.text().substr(0, static_cast<size_t>(count));
  }
  int error;
  joined = bytesAt(position, count, error);
  return joined;
}

std::string ViewedFile::bytesAt(int64_t position, int64_t count, int& error) {
  std::string result;
  error = 0;
  while (static_cast<int64_t>(result.size()) < count) {
    const Stretch stretch = bytes_.from(position + static_cast<int64_t>(result.size()));
    error = stretch.error;
    if (stretch.error || stretch.length == 0) break;
    const int64_t missing = count - static_cast<int64_t>(result.size());
    result += stretch.text().substr(0, static_cast<size_t>(missing));
  }
  return result;
}
