#pragma once

#include <string>
#include <string_view>

#include "editor/document/document.h"

inline constexpr TextEncoding Utf8{TextFormat::Utf8, 0};

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
