#pragma once

#include "editor/document/document_search.h"
#include "editor/text/search_values.h"

class CTextEditor;

// The search that `values` ask for.
SearchQuery queryOf(const SearchValues& values);
