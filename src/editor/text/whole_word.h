#pragma once

#include <string_view>

#include "editor/text/text_encoding.h"

// The bytes that one character takes at most, so that many decide whether a text stands alone.
inline constexpr int LongestCharacter = 4;

// Whether a text between these bytes is no part of a longer word: letters, digits and '_' make
// words, in a code page those of ASCII alone. Nothing on a side is the file's beginning or end.
bool standsAlone(std::string_view before, std::string_view behind, const TextEncoding& encoding);
