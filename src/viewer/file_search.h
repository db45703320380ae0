#pragma once

#include <cstdint>
#include <functional>

#include "editor/text/search_values.h"
#include "viewer/viewed_file.h"

struct SearchHit {
  enum class Result { Found, NotFound, Stopped };

  Result result = Result::NotFound;
  int64_t position = 0;  // of its first byte
  int64_t length = 0;    // bytes

  int64_t end() const { return position + length; }
};

// Asked often while something long runs; true stops it.
using StopAsked = std::function<bool()>;

// Searches the bytes of a file for the text, as the file's encoding writes it.
// Forward: the first hit that begins at or behind `from`. With `values.reverse` the last one that
// ends at or before it. With whole words no word character stands at either side: of the ASCII
// bytes in a code page, of all letters and digits otherwise. What can't be read holds no hit.
SearchHit searchFile(ViewedFile& file, const SearchValues& values, int64_t from,
                     const StopAsked& stopAsked);
