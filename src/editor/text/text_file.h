#pragma once

#include <cstddef>
#include <string_view>

#include "editor/text/text_encoding.h"

// How the bytes of a file are a text: what the editor, which has all of them in memory, and the
// viewer, which has a few, need to know before they decode and look for lines.
struct CTextFile {
  // How many bytes from the start of a file detection wants to see; of a shorter file all. The last
  // character that it looks at begins inside the first 32,768 bytes.
  static constexpr size_t DetectionBytes = 32768 + 3;

  TextEncoding encoding;
  size_t textStart = 0;  // behind the byte order mark, where the file has that of its format

  bool hasMark() const { return textStart > 0; }

  // By the beginning of the file: the encoding of its mark; else `chosen`, unless Undetermined;
  // else what the bytes look like. Never Undetermined. A code page is the default one.
  static CTextFile detect(std::string_view beginning, const TextEncoding& chosen = {});
  // Read in this encoding, whatever it looks like.
  static CTextFile readAs(const TextEncoding& encoding, std::string_view beginning);
};
