#include "ui/word_motion.h"

#include <algorithm>
#include <cwctype>

#include "options/options.h"

bool isWordCharacter(wchar_t character) {
  if (character < 0) return false;
  return character == L'_' || std::iswalnum(static_cast<wint_t>(character)) != 0;
}

WordRightStop configuredWordRightStop() {
  return GlobalOptions::BriefWordRight ? WordRightStop::WordEnd : WordRightStop::NextStart;
}

int wordLeft(const Westring& text, int from) {
  const wchar_t* chars = text.data();
  int at = std::clamp(from, 0, text.length());
  while (at > 0 && !isWordCharacter(chars[at - 1])) --at;
  while (at > 0 && isWordCharacter(chars[at - 1])) --at;
  return at;
}

int wordRight(const Westring& text, int from, WordRightStop stop) {
  const wchar_t* chars = text.data();
  const int length = text.length();
  int at = std::clamp(from, 0, length);
  auto skip = [&](bool word) {
    while (at < length && isWordCharacter(chars[at]) == word) ++at;
  };
  if (stop == WordRightStop::WordEnd) {
    skip(false);
    skip(true);
  } else {
    if (at < length) ++at;
    skip(true);
    skip(false);
  }
  return at;
}
