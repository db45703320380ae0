#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "editor/document/document.h"
#include "editor/document/undo.h"

enum class SearchCase { Ignored, Respected };
enum class SearchDirection { Forward, Backward };
enum class SearchWords { Any, WholeOnly };

struct SearchQuery {
  std::wstring text;  // a line end in it is found nowhere
  SearchCase letters = SearchCase::Ignored;
  SearchDirection direction = SearchDirection::Forward;
  SearchWords words = SearchWords::Any;
};

enum class SearchEnd { Found, NotFound, Stopped };

// The first hit that begins at `place` or lies behind it in the direction of the query (before it
// when backward; then `place` may be one with index -1, which begins with the line above). On a hit
// `place` is its start; else it is unchanged.
SearchEnd findText(const Document& document, const SearchQuery& query, TextPlace& place,
                   const StopAsked& stop = {});
// Whether the text at `place` is a hit.
bool isHit(const Document& document, const SearchQuery& query, TextPlace place);
// Where a repeated search goes on: one character further in the direction, so that the same hit
// isn't found again.
TextPlace stepOn(TextPlace place, SearchDirection direction);

// Replaces the hit of the query at `place` and pushes the step. Returns where the search goes on:
// behind the replacement, or one before the hit when backward.
TextPlace replaceHit(Document& document, EditHistory& history, const SearchQuery& query,
                     const TextSpan& replacement, TextPlace place, int64_t command = 0);

struct ReplaceAllResult {
  int64_t count = 0;
  SearchEnd end = SearchEnd::NotFound;  // Stopped, or NotFound when the text ran out
};
// All hits from `place` on. `command`, below 0 and not that of an earlier one, makes the steps one.
ReplaceAllResult replaceAll(Document& document, EditHistory& history, const SearchQuery& query,
                            const TextSpan& replacement, TextPlace place, int64_t command,
                            const StopAsked& stop = {});
