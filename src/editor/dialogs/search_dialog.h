#pragma once

#include "editor/text/search_values.h"

namespace TDEditor {

enum class SearchDialogUse { Search, Replace };

// Asks what to search, and what to put in its place. False on Esc and at the end of the program,
// with `values` as they were. The texts go into their histories. Application thread.
bool askSearch(SearchValues& values, SearchDialogUse use);

}  // namespace TDEditor
