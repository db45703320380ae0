#include "foundation/utf8.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "foundation/string_pieces.h"

namespace {
constexpr int OneByteLimit = 0x80;
constexpr int TwoByteLimit = 0x800;
constexpr int ThreeByteLimit = 0x10000;
constexpr int LastCharacter = 0x10FFFF;
constexpr int FirstSurrogate = 0xD800;
constexpr int LastSurrogate = 0xDFFF;
constexpr int FirstRawByte = -128;  // how a byte 0x80 of a file name is kept; 0xFF is -1
constexpr wchar_t OverlongNul = -1;
constexpr wchar_t House = 0x2302;

bool isSurrogate(wchar_t value) {
  return value >= FirstSurrogate && value <= LastSurrogate;
}

bool isContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

// Bytes of the sequence that `bytes` begins with, 0 when it is not well formed; `value` is its
// number. Looks at no byte behind the first that doesn't belong to it.
int readSequence(const unsigned char* bytes, wchar_t& value) {
  unsigned char lead = bytes[0];
  if (!isContinuation(bytes[1])) return 0;
  if ((lead & 0xE0) == 0xC0) {
    value = (lead & 0x1F) << 6 | (bytes[1] & 0x3F);
    return 2;
  }
  if (!isContinuation(bytes[2])) return 0;
  if ((lead & 0xF0) == 0xE0) {
    value = (lead & 0x0F) << 12 | (bytes[1] & 0x3F) << 6 | (bytes[2] & 0x3F);
    return 3;
  }
  if (!isContinuation(bytes[3]) || (lead & 0xF8) != 0xF0) return 0;
  value =
      (lead & 0x07) << 18 | (bytes[1] & 0x3F) << 12 | (bytes[2] & 0x3F) << 6 | (bytes[3] & 0x3F);
  return 4;
}

// The same with everything refused that the encoder would not give back as the same bytes, and what
// is no character at all.
int readStrictSequence(const unsigned char* bytes, wchar_t& value) {
  int length = readSequence(bytes, value);
  if (length == 2 && value >= OneByteLimit) return length;
  if (length == 3 && value >= TwoByteLimit && !isSurrogate(value)) return length;
  if (length == 4 && value >= ThreeByteLimit && value <= LastCharacter) return length;
  return 0;
}

int encodedLength(wchar_t value) {
  if (value < OneByteLimit) return 1;
  if (value < TwoByteLimit) return 2;
  return value < ThreeByteLimit ? 3 : 4;
}

char continuation(wchar_t value, int shift) {
  return static_cast<char>(0x80 | ((value >> shift) & 0x3F));
}

char* encode(wchar_t value, char* out) {
  switch (encodedLength(value)) {
    case 1:
      *out++ = static_cast<char>(value);
      return out;
    case 2:
      *out++ = static_cast<char>(0xC0 | value >> 6);
      break;
    case 3:
      *out++ = static_cast<char>(0xE0 | value >> 12);
      *out++ = continuation(value, 6);
      break;
    default:
      *out++ = static_cast<char>(0xF0 | (value >> 18 & 0x07));
      *out++ = continuation(value, 12);
      *out++ = continuation(value, 6);
  }
  *out++ = continuation(value, 0);
  return out;
}

template <class Map>
Estring encodeMapped(const wchar_t* text, Map map) {
  size_t bytes = 0;
  for (const wchar_t* p = text; *p != 0; ++p) bytes += static_cast<size_t>(encodedLength(map(*p)));
  Estring result = Estring::withRoom(checkedLength(bytes));
  char* out = result.data();
  for (const wchar_t* p = text; *p != 0; ++p) out = encode(map(*p), out);
  *out = 0;
  return result;
}
}  // namespace

Estring toUtf8(const wchar_t* text) {
  return encodeMapped(text, [](wchar_t value) { return value; });
}

Estring toUtf8(const Westring& text) {
  return toUtf8(text.data());
}

size_t decodeCharacter(std::string_view bytes, wchar_t& character) {
  unsigned char sequence[5] = {};  // ends in a NUL, which belongs to no sequence
  std::copy_n(bytes.begin(), std::min<size_t>(bytes.size(), 4), sequence);
  character = sequence[0];
  if (character < OneByteLimit) return 1;
  wchar_t value = 0;
  const int length = readSequence(sequence, value);
  if (length > 0) character = value != 0 ? value : OverlongNul;
  return static_cast<size_t>(std::max(length, 1));
}

bool decodeUtf8(const char* bytes, Westring& result) {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes);
  bool valid = true;
  int count = 0;
  while (*p != 0) {
    wchar_t value = *p;
    int length = 1;
    if (value >= OneByteLimit) {
      wchar_t sequence = 0;
      length = readSequence(p, sequence);
      if (length > 0) value = sequence != 0 ? sequence : OverlongNul;
      if (length == 0 || sequence == 0) valid = false;
      length = std::max(length, 1);
    }
    result.growKeeping(count, count + 1);
    result.data_[count++] = value;
    p += length;
  }
  result.data_[count] = 0;
  return valid;
}

Westring fromUtf8(const char* bytes) {
  Westring result;
  decodeUtf8(bytes, result);
  return result;
}

Westring decodeFileName(const char* bytes) {
  // Names are short: the bytes are an upper limit of the characters, and the exact length is kept.
  constexpr size_t StackBuffer = 512;
  size_t length = strlen(bytes);
  if (length < StackBuffer) {
    wchar_t buffer[StackBuffer];
    int count = decodeFileName(bytes, buffer);
    return StringPieces::copyOf<Westring>(buffer, count);
  }
  Westring result = Westring::withRoom(checkedLength(length));
  decodeFileName(bytes, result.data());
  return result;
}

int decodeFileName(const char* bytes, wchar_t* buffer) {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes);
  wchar_t* out = buffer;
  while (*p != 0) {
    wchar_t value = *p;
    int length = 1;
    if (value >= OneByteLimit) {
      length = readStrictSequence(p, value);
      if (length == 0) {
        value = static_cast<signed char>(*p);
        length = 1;
      }
    }
    *out++ = value;
    p += length;
  }
  *out = 0;
  return static_cast<int>(out - buffer);
}

size_t decodeExactCharacter(std::string_view bytes, wchar_t& character) {
  unsigned char sequence[5] = {};  // ends in a NUL, which belongs to no sequence
  std::copy_n(bytes.begin(), std::min<size_t>(bytes.size(), 4), sequence);
  character = sequence[0];
  if (character < OneByteLimit) return 1;
  const int length = readStrictSequence(sequence, character);
  if (length == 0) character = static_cast<signed char>(sequence[0]);
  return static_cast<size_t>(std::max(length, 1));
}

void appendUtf8(wchar_t character, std::string& out) {
  char bytes[4];
  out.append(bytes, encode(character, bytes));
}

wchar_t displayCharacter(wchar_t character) {
  if (character >= FirstRawByte && character < 0) return character & 0xFF;
  bool shown = character > 0 && character <= LastCharacter && !isSurrogate(character);
  return shown ? character : House;
}

Estring toDisplayUtf8(const wchar_t* text) {
  return encodeMapped(text, displayCharacter);
}

Estring narrow(const Westring& text) {
  int length = text.length();
  Estring result = Estring::withRoom(length);
  std::transform(text.data(), text.data() + length + 1, result.data(),
                 [](wchar_t character) { return static_cast<char>(character); });
  return result;
}
