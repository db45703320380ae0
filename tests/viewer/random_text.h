#pragma once

#include <random>
#include <string>

#include "editor/text/text_encoding.h"

inline void appendUnit(std::string& bytes, uint32_t character, TextFormat format) {
  const std::wstring text(1, static_cast<wchar_t>(character));
  encodeText(text, {format}, bytes);
}

// Stretches of text, of each line end and of mixtures, in lengths around those that matter.
inline std::string randomText(std::mt19937& random, TextFormat format, size_t size) {
  static const uint32_t Characters[] = {'a', ' ', 0, 0xE9, 0x20AC, 0x1F600, 'z', '\t'};
  std::string bytes;
  while (bytes.size() < size) {
    const unsigned kind = random() % 8;
    const unsigned count = random() % 4 == 0 ? random() % 200 : random() % 12;
    for (unsigned i = 0; i < count; ++i) {
      const uint32_t turns[] = {'\r', '\n'};
      if (kind < 5) appendUnit(bytes, Characters[random() % 8], format);
      if (kind == 5) appendUnit(bytes, turns[random() % 2], format);
      if (kind == 6) appendUnit(bytes, turns[i % 2], format);
      if (kind == 7) appendUnit(bytes, '\n', format);
    }
    if (random() % 3 == 0) appendUnit(bytes, '\n', format);
  }
  bytes.resize(size);  // may end in less than a unit
  return bytes;
}
