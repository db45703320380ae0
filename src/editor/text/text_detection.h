#pragma once

#include <cstddef>
#include <string_view>

#include "editor/text/text_encoding.h"

// How many bytes from the start of a file detection wants to see; of a shorter file all. The last
// character that it looks at begins inside the first 32,768 bytes.
inline constexpr size_t DetectionBytes = 32768 + 3;

struct DetectedText {
  TextEncoding encoding;
  bool hasMark = false;
  size_t textStart = 0;  // behind the byte order mark
};

// The encoding of a file by its beginning: that of its mark; else `chosen`, unless Undetermined;
// else what the bytes look like. Never Undetermined. A code page is the default one.
DetectedText detectText(std::string_view beginning, const TextEncoding& chosen = {});

// Where the text starts when it is read in this format: behind its mark, if the file has it.
size_t textStartIn(TextFormat format, std::string_view beginning);
