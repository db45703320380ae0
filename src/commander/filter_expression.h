#pragma once

#include "foundation/entry.h"
#include "foundation/westring.h"

// The language of panel filters, group selection, association keys and colour sections:
//   expression = term { '|' term }, term = factor { '&' factor },
//   factor = '!' factor | '(' expression ')' | predicate | name pattern.
// Predicates: %size %date %age %attrib %owner %group with < > = != <= >=. A faulty expression still gives
// a result. Application thread.
bool evaluateFilter(const wchar_t* expression, const entry* item);
// The same on a blank entry that has only this name.
bool matchName(const wchar_t* expression, const wchar_t* name);
// An empty or blank text or "*" filters nothing.
bool filtersNothing(const wchar_t* expression);
