#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "foundation/westring.h"

// How the text of a file is written in bytes. The numbers are those of a file's record.
enum class TextFormat : int { Utf32Le, Utf32Be, Utf16Le, Utf16Be, Utf8, CodePage, Undetermined };

// What ends a line that has no end of its own yet. Unknown is written as CR LF.
enum class LineEndStyle : int { CrLf, Lf, Unknown };

// `page` counts for a code page only; 0 is the default page.
struct TextEncoding {
  TextFormat format = TextFormat::Undetermined;
  int page = 0;
};
bool operator==(const TextEncoding& a, const TextEncoding& b);
int resolvedPage(int page);  // the default page for 0

// How a text stands in a file.
struct TextForm {
  TextEncoding encoding;
  bool hasMark = false;  // a byte order mark stands before it
};

int unitBytes(TextFormat format);            // 4, 2 or 1
bool isBigEndian(TextFormat format);         // of more than one byte a unit, high byte first
std::string_view markOf(TextFormat format);  // the byte order mark; "" where there is none
Westring formatName(const TextEncoding& encoding);
bool codePageExists(int page);  // whether the system knows it; 0 always exists

// In memory a byte that is no part of a character of its format is the negative value whose low 8
// bits are that byte, -256 to -1, and goes out as that byte. Whatever bytes were decoded, encoding
// the characters in the same encoding gives the same bytes again.
bool isRawByte(wchar_t character);

// Appends what `bytes` hold. False when some of them are no character; all are there nevertheless.
// A tail that is shorter than a unit comes as raw bytes, and so does a unit of UTF-32 that would
// look like one. Surrogates that belong together become one character, a lone one stays.
bool decodeText(std::string_view bytes, const TextEncoding& encoding, std::wstring& out);

// Whether a text may end in less than a unit, as the tail of a file does. Anywhere else a single
// byte would move all units behind it.
enum class CutUnit { Refused, AllowedAtTheEnd };

inline constexpr size_t AllEncoded = static_cast<size_t>(-1);

// Appends the bytes of `text`. AllEncoded, or the index of the first character that the format
// can't hold; what came before it has been appended then.
size_t encodeText(std::wstring_view text, const TextEncoding& encoding, std::string& out,
                  CutUnit cut = CutUnit::Refused);
