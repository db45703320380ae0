#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "editor/document/document.h"

inline constexpr TextEncoding Utf8{TextFormat::Utf8, 0};
// Each format, and code pages of one byte, with gaps, and of two.
inline constexpr TextEncoding Encodings[] = {
    {TextFormat::Utf32Le, 0},    {TextFormat::Utf32Be, 0},     {TextFormat::Utf16Le, 0},
    {TextFormat::Utf16Be, 0},    {TextFormat::Utf8, 0},        {TextFormat::CodePage, 850},
    {TextFormat::CodePage, 874}, {TextFormat::CodePage, 1252}, {TextFormat::CodePage, 932}};

inline std::wstring decoded(std::string_view bytes, const TextEncoding& encoding) {
  std::wstring text;
  decodeText(bytes, encoding, text);
  return text;
}
inline std::string encoded(std::wstring_view text, const TextEncoding& encoding) {
  std::string bytes;
  EXPECT_EQ(encodeText(text, encoding, bytes), AllEncoded);
  return bytes;
}

// All bytes that a save would write.
inline std::string writtenBytes(const Document& document, const TextEncoding& encoding) {
  std::string all;
  const Document::Written written =
      document.write(encoding, [&all](std::string_view bytes) { return all += bytes, 0; });
  return written.error != 0 || written.refused ? std::string("refused") : all;
}
inline std::string writtenBytes(const Document& document) {
  return writtenBytes(document, document.encoding());
}

inline TextSpan spanOf(std::wstring_view text, LineEndStyle style = LineEndStyle::Lf) {
  return TextSpan::fromText(text, style);
}
