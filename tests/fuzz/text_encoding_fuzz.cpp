// Any file: whatever it holds, an encoding is found for it, its line ends are found one after the
// other, and what is decoded in any encoding is encoded to the same bytes again.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "editor/text/line_ends.h"
#include "editor/text/text_encoding.h"
#include "editor/text/text_file.h"

namespace {

void checkGivenBack(std::string_view bytes, const TextEncoding& encoding) {
  std::wstring text;
  decodeText(bytes, encoding, text);
  if (text.size() > bytes.size()) abort();
  std::string again;
  if (encodeText(text, encoding, again, CutUnit::AllowedAtTheEnd) != AllEncoded) abort();
  if (again != bytes) abort();
}

void checkLines(std::string_view bytes, const TextEncoding& encoding) {
  const auto width = static_cast<size_t>(unitBytes(encoding.format));
  for (size_t at = 0; at < bytes.size();) {
    const LineEnd end = findLineEnd(bytes, at, encoding.format);
    if (end.at < at || end.at + end.length > bytes.size()) abort();
    if (end.length > 3 * width || end.length % width != 0) abort();
    if (end.length == 0 && end.at != bytes.size()) abort();
    checkGivenBack(bytes.substr(at, end.at - at), encoding);
    at = end.at + end.length;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const CTextFile found = CTextFile::detect(bytes.substr(0, CTextFile::DetectionBytes));
  if (found.encoding.format == TextFormat::Undetermined || found.textStart > size) abort();
  checkLines(bytes.substr(found.textStart), found.encoding);
  for (int format = 0; format <= static_cast<int>(TextFormat::Utf8); ++format) {
    checkGivenBack(bytes, {static_cast<TextFormat>(format)});
  }
  for (const int page : {437, 932, 1252, 1258}) {
    checkLines(bytes, {TextFormat::CodePage, page});
  }
  return 0;
}
