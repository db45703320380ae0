#pragma once

#include <cstddef>
#include <string_view>

// How many bytes at the end of `bytes` are the beginning of a multibyte character of UTF-8 whose
// rest hasn't come yet: 0 to 3. Bytes that begin no valid character count as whole.
size_t unfinishedUtf8(std::string_view bytes);
