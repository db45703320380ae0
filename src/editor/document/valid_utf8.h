#pragma once

#include <string_view>

// Whether all of it is UTF-8, which has no overlong forms, no surrogates and nothing behind
// U+10FFFF. Nothing may be cut at either end.
bool isValidUtf8(std::string_view bytes);
