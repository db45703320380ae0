#include "editor/text/text_encoding.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "editor/text/code_page_codec.h"
#include "foundation/code_page.h"
#include "foundation/utf8.h"

namespace {

constexpr int FirstNonAscii = 0x80;
constexpr int LastCharacter = 0x10FFFF;
constexpr int FirstHighSurrogate = 0xD800;
constexpr int FirstLowSurrogate = 0xDC00;
constexpr int LastLowSurrogate = 0xDFFF;
constexpr int FirstBehindUnit16 = 0x10000;
constexpr int SurrogateBits = 10;
constexpr int SurrogateMask = (1 << SurrogateBits) - 1;
constexpr wchar_t FirstRaw = -256;
constexpr size_t TableStretch = 16;
constexpr uint64_t HighBits = 0x8080808080808080;

wchar_t rawByte(char byte) {
  return static_cast<unsigned char>(byte) + FirstRaw;
}

bool isHighSurrogate(uint32_t unit) {
  return unit >= FirstHighSurrogate && unit < FirstLowSurrogate;
}

bool isLowSurrogate(uint32_t unit) {
  return unit >= FirstLowSurrogate && unit <= LastLowSurrogate;
}

// How many bytes from `at` on are below 0x80.
size_t asciiLength(std::string_view bytes, size_t at) {
  const size_t start = at;
  for (; at + sizeof(uint64_t) <= bytes.size(); at += sizeof(uint64_t)) {
    uint64_t eight;
    memcpy(&eight, bytes.data() + at, sizeof eight);
    if ((eight & HighBits) != 0) break;
  }
  while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) < FirstNonAscii) ++at;
  return at - start;
}

void widen(std::string_view bytes, wchar_t*& out) {
  for (const char byte : bytes) *out++ = static_cast<unsigned char>(byte);
}

// The decoders write behind `out`, where there is room for one character a byte.

bool decodeUtf8Text(std::string_view bytes, wchar_t*& out) {
  bool valid = true;
  for (size_t at = 0; at < bytes.size();) {
    const size_t ascii = asciiLength(bytes, at);
    widen(bytes.substr(at, ascii), out);
    at += ascii;
    while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) >= FirstNonAscii) {
      at += decodeExactCharacter(bytes.substr(at, 4), *out);
      valid = valid && *out >= 0;
      ++out;
    }
  }
  return valid;
}

bool decodeTable(std::string_view bytes, const CodePageCodec& codec, wchar_t*& out) {
  const std::array<wchar_t, 256>& table = *codec.table();
  wchar_t lowest = 0;
  for (size_t at = 0; at < bytes.size();) {
    const size_t ascii = codec.hasAscii() ? asciiLength(bytes, at) : 0;
    widen(bytes.substr(at, ascii), out);
    at += ascii;
    // One byte in any case, and what comes with it in another script.
    const size_t end = std::min(at + TableStretch, bytes.size());
    for (; at < end; ++at) {
      *out = table[static_cast<unsigned char>(bytes[at])];
      lowest = std::min(lowest, *out++);
    }
  }
  return lowest >= 0;
}

bool decodePage(std::string_view bytes, int page, wchar_t*& out) {
  CodePageCodec& codec = CodePageCodec::of(page);
  if (codec.table() != nullptr) return decodeTable(bytes, codec, out);
  bool valid = true;
  for (size_t at = 0; at < bytes.size();) {
    const size_t ascii = codec.hasAscii() ? asciiLength(bytes, at) : 0;
    widen(bytes.substr(at, ascii), out);
    at += ascii;
    if (at == bytes.size()) break;
    at += codec.decode(bytes.substr(at), *out);
    valid = valid && *out >= 0;
    ++out;
  }
  return valid;
}

template <class Unit>
Unit unitAt(std::string_view bytes, size_t at, bool swaps) {
  Unit unit;
  memcpy(&unit, bytes.data() + at, sizeof unit);
  if constexpr (sizeof unit == 2) return swaps ? __builtin_bswap16(unit) : unit;
  return swaps ? __builtin_bswap32(unit) : unit;
}

bool decodeRaw(std::string_view bytes, wchar_t*& out) {
  for (const char byte : bytes) *out++ = rawByte(byte);
  return bytes.empty();
}

bool decodeUtf16(std::string_view bytes, bool swaps, wchar_t*& out) {
  constexpr size_t width = sizeof(uint16_t);
  size_t at = 0;
  for (; at + width <= bytes.size(); at += width) {
    wchar_t character = unitAt<uint16_t>(bytes, at, swaps);
    if (isHighSurrogate(static_cast<uint32_t>(character)) && at + 2 * width <= bytes.size()) {
      const uint16_t second = unitAt<uint16_t>(bytes, at + width, swaps);
      if (isLowSurrogate(second)) {
        character = FirstBehindUnit16 + ((character & SurrogateMask) << SurrogateBits) +
                    (second & SurrogateMask);
        at += width;
      }
    }
    *out++ = character;
  }
  return decodeRaw(bytes.substr(at), out);
}

bool decodeUtf32(std::string_view bytes, bool swaps, wchar_t*& out) {
  constexpr size_t width = sizeof(uint32_t);
  bool valid = true;
  size_t at = 0;
  for (; at + width <= bytes.size(); at += width) {
    const auto character = static_cast<wchar_t>(unitAt<uint32_t>(bytes, at, swaps));
    if (isRawByte(character)) {
      valid = decodeRaw(bytes.substr(at, width), out);
    } else {
      *out++ = character;
    }
  }
  return decodeRaw(bytes.substr(at), out) && valid;
}

bool swapsUnits(TextFormat format) {
  return isBigEndian(format) != (std::endian::native == std::endian::big);
}

template <class Unit>
void appendUnit(Unit unit, bool swaps, std::string& out) {
  if constexpr (sizeof unit == 2) {
    if (swaps) unit = __builtin_bswap16(unit);
  } else {
    if (swaps) unit = __builtin_bswap32(unit);
  }
  out.append(reinterpret_cast<const char*>(&unit), sizeof unit);
}

void appendRaw(std::wstring_view text, std::string& out) {
  for (const wchar_t character : text) out += static_cast<char>(character);
}

size_t encodeUtf8(std::wstring_view text, std::string& out) {
  for (size_t i = 0; i < text.size(); ++i) {
    const wchar_t character = text[i];
    if (character >= 0 && character < FirstNonAscii) {
      out += static_cast<char>(character);
      continue;
    }
    const bool isSurrogate = character >= FirstHighSurrogate && character <= LastLowSurrogate;
    if (character < FirstRaw || character > LastCharacter || isSurrogate) return i;
    appendUtf8(character, out);
  }
  return AllEncoded;
}

size_t encodePage(std::wstring_view text, int page, std::string& out) {
  CodePageCodec& codec = CodePageCodec::of(page);
  const bool hasAscii = codec.hasAscii();
  for (size_t i = 0; i < text.size(); ++i) {
    const wchar_t character = text[i];
    if (isRawByte(character) || (hasAscii && character >= 0 && character < FirstNonAscii)) {
      out += static_cast<char>(character);
    } else if (character < 0 || !codec.encode(character, out)) {
      return i;
    }
  }
  return AllEncoded;
}

// Raw bytes at `at` that are less than a unit and the end of the text.
bool isCutUnit(std::wstring_view text, size_t at, size_t width, CutUnit cut) {
  const std::wstring_view rest = text.substr(at);
  return cut == CutUnit::AllowedAtTheEnd && rest.size() < width &&
         std::all_of(rest.begin(), rest.end(), isRawByte);
}

size_t encodeUtf16(std::wstring_view text, bool swaps, CutUnit cut, std::string& out) {
  for (size_t i = 0; i < text.size(); ++i) {
    const wchar_t character = text[i];
    if (isRawByte(character) && isCutUnit(text, i, sizeof(uint16_t), cut)) {
      appendRaw(text.substr(i), out);
      return AllEncoded;
    }
    if (character < 0 || character > LastCharacter) return i;
    if (character < FirstBehindUnit16) {
      appendUnit(static_cast<uint16_t>(character), swaps, out);
      continue;
    }
    const wchar_t offset = character - FirstBehindUnit16;
    appendUnit(static_cast<uint16_t>(FirstHighSurrogate + (offset >> SurrogateBits)), swaps, out);
    appendUnit(static_cast<uint16_t>(FirstLowSurrogate + (offset & SurrogateMask)), swaps, out);
  }
  return AllEncoded;
}

// Four raw bytes that decodeUtf32 made of one unit.
bool isRawUnit(std::wstring_view text, bool swaps) {
  if (text.size() < sizeof(uint32_t)) return false;
  const std::wstring_view unit = text.substr(0, sizeof(uint32_t));
  if (!std::all_of(unit.begin(), unit.end(), isRawByte)) return false;
  std::string bytes;
  appendRaw(unit, bytes);
  return isRawByte(static_cast<wchar_t>(unitAt<uint32_t>(bytes, 0, swaps)));
}

size_t encodeUtf32(std::wstring_view text, bool swaps, CutUnit cut, std::string& out) {
  constexpr size_t width = sizeof(uint32_t);
  for (size_t i = 0; i < text.size(); ++i) {
    if (!isRawByte(text[i])) {
      appendUnit(static_cast<uint32_t>(text[i]), swaps, out);
    } else if (isRawUnit(text.substr(i), swaps)) {
      appendRaw(text.substr(i, width), out);
      i += width - 1;
    } else if (isCutUnit(text, i, width, cut)) {
      appendRaw(text.substr(i), out);
      return AllEncoded;
    } else {
      return i;
    }
  }
  return AllEncoded;
}

}  // namespace

bool operator==(const TextEncoding& a, const TextEncoding& b) {
  return a.format == b.format &&
         (a.format != TextFormat::CodePage || resolvedPage(a.page) == resolvedPage(b.page));
}

int resolvedPage(int page) {
  return page == 0 ? defaultCodePage() : page;
}

int unitBytes(TextFormat format) {
  switch (format) {
    case TextFormat::Utf32Le:
    case TextFormat::Utf32Be:
      return 4;
    case TextFormat::Utf16Le:
    case TextFormat::Utf16Be:
      return 2;
    default:
      return 1;
  }
}

bool isBigEndian(TextFormat format) {
  return format == TextFormat::Utf32Be || format == TextFormat::Utf16Be;
}

std::string_view markOf(TextFormat format) {
  switch (format) {
    case TextFormat::Utf32Le:
      return {"\xFF\xFE\0\0", 4};
    case TextFormat::Utf32Be:
      return {"\0\0\xFE\xFF", 4};
    case TextFormat::Utf16Le:
      return "\xFF\xFE";
    case TextFormat::Utf16Be:
      return "\xFE\xFF";
    case TextFormat::Utf8:
      return "\xEF\xBB\xBF";
    default:
      return "";
  }
}

Westring formatName(const TextEncoding& encoding) {
  switch (encoding.format) {
    case TextFormat::Utf32Le:
    case TextFormat::Utf32Be:
      return L"UTF-32";
    case TextFormat::Utf16Le:
    case TextFormat::Utf16Be:
      return L"UTF-16";
    case TextFormat::Utf8:
      return L"UTF-8";
    case TextFormat::CodePage:
      return Westring((L"CP" + std::to_wstring(resolvedPage(encoding.page))).c_str());
    default:
      return L"";
  }
}

bool codePageExists(int page) {
  return page == 0 || (page > 0 && CodePageCodec::of(page).exists());
}

bool isRawByte(wchar_t character) {
  return character >= FirstRaw && character < 0;
}

bool decodeText(std::string_view bytes, const TextEncoding& encoding, std::wstring& out) {
  const size_t before = out.size();
  out.resize(before + bytes.size());
  wchar_t* end = out.data() + before;
  bool valid = true;
  switch (encoding.format) {
    case TextFormat::Utf32Le:
    case TextFormat::Utf32Be:
      valid = decodeUtf32(bytes, swapsUnits(encoding.format), end);
      break;
    case TextFormat::Utf16Le:
    case TextFormat::Utf16Be:
      valid = decodeUtf16(bytes, swapsUnits(encoding.format), end);
      break;
    case TextFormat::CodePage:
      valid = decodePage(bytes, resolvedPage(encoding.page), end);
      break;
    default:
      valid = decodeUtf8Text(bytes, end);
  }
  out.resize(static_cast<size_t>(end - out.data()));
  return valid;
}

size_t encodeText(std::wstring_view text, const TextEncoding& encoding, std::string& out,
                  CutUnit cut) {
  switch (encoding.format) {
    case TextFormat::Utf32Le:
    case TextFormat::Utf32Be:
      return encodeUtf32(text, swapsUnits(encoding.format), cut, out);
    case TextFormat::Utf16Le:
    case TextFormat::Utf16Be:
      return encodeUtf16(text, swapsUnits(encoding.format), cut, out);
    case TextFormat::CodePage:
      return encodePage(text, resolvedPage(encoding.page), out);
    default:
      return encodeUtf8(text, out);
  }
}
