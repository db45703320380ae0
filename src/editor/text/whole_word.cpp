#include "editor/text/whole_word.h"

#include <cwctype>
#include <string>

namespace {

bool isWordByte(char byte) {
  return byte == '_' || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z');
}

bool isWord(wchar_t character) {
  return character == L'_' || (character > 0 && iswalnum(static_cast<wint_t>(character)));
}

}  // namespace

bool standsAlone(std::string_view before, std::string_view behind, const TextEncoding& encoding) {
  if (encoding.format == TextFormat::CodePage) {
    return !(!before.empty() && isWordByte(before.back())) &&
           !(!behind.empty() && isWordByte(behind.front()));
  }
  std::wstring left;
  std::wstring right;
  decodeText(before, encoding, left);
  decodeText(behind, encoding, right);
  return !(!left.empty() && isWord(left.back())) && !(!right.empty() && isWord(right.front()));
}
