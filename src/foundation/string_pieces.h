#pragma once

#include <algorithm>

#include "foundation/checked_capacity.h"

// The operations that Estring and Westring share, written once for both: `Text` is the class,
// `Character` its element. Each builds a new string; counts below 0 count as 0.
namespace StringPieces {

template <class Text, class Character>
Text copyOf(const Character* characters, int count) {
  Text result = Text::withRoom(count);
  std::copy_n(characters, std::max(count, 0), result.data());
  result.data()[std::max(count, 0)] = 0;
  return result;
}

template <class Text>
Text left(const Text& text, int count) {
  return copyOf<Text>(text.data(), std::clamp(count, 0, text.length()));
}

template <class Text>
Text right(const Text& text, int count) {
  int length = text.length();
  int kept = std::clamp(count, 0, length);
  return copyOf<Text>(text.data() + length - kept, kept);
}

template <class Text>
Text mid(const Text& text, int position, int count) {
  int length = text.length();
  int start = std::clamp(position, 0, length);
  int rest = length - start;
  return copyOf<Text>(text.data() + start, count == 0 ? rest : std::clamp(count, 0, rest));
}

template <class Text>
Text dropRight(const Text& text, int count) {
  int length = text.length();
  return copyOf<Text>(text.data(), length - std::clamp(count, 0, length));
}

template <class Text, class Character>
Text padLeft(const Text& text, int width, Character fill) {
  int cells = std::max(width, 0);
  int length = text.length();
  int kept = std::min(length, cells);
  Text result = Text::withRoom(cells);
  std::fill_n(result.data(), cells - kept, fill);
  std::copy_n(text.data() + length - kept, kept, result.data() + cells - kept);
  result.data()[cells] = 0;
  return result;
}

template <class Text, class Character>
Text padRight(const Text& text, int width, Character fill) {
  int cells = std::max(width, 0);
  int kept = std::min(text.length(), cells);
  Text result = Text::withRoom(cells);
  std::copy_n(text.data(), kept, result.data());
  std::fill_n(result.data() + kept, cells - kept, fill);
  result.data()[cells] = 0;
  return result;
}

enum class TrimSide { Left, Right, Both };

template <class Text, class IsSpace>
Text trim(const Text& text, TrimSide side, IsSpace isSpace) {
  const auto* characters = text.data();
  int start = 0;
  int end = text.length();
  if (side != TrimSide::Right) {
    while (start < end && isSpace(characters[start])) ++start;
  }
  if (side != TrimSide::Left) {
    while (end > start && isSpace(characters[end - 1])) --end;
  }
  return copyOf<Text>(characters + start, end - start);
}

template <class Text, class Character>
Text concatenate(const Character* a, int lengthA, const Character* b, int lengthB, long long room) {
  Text result = Text::withRoom(checkedCapacity(room));
  std::copy_n(a, lengthA, result.data());
  std::copy_n(b, lengthB, result.data() + lengthA);
  result.data()[lengthA + lengthB] = 0;
  return result;
}

// Whether stripSlash takes the last character off: "/" becomes "", "//" and "///" stay.
template <class Text>
bool hasSlashToStrip(const Text& path, int length) {
  const auto* characters = path.data();
  if (length == 0 || characters[length - 1] != '/') return false;
  constexpr int LongestRoot = 3;
  return length > LongestRoot || characters[1] != '/';
}

}  // namespace StringPieces
