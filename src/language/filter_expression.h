#pragma once

#include <ctime>

#include "foundation/entry.h"
#include "foundation/westring.h"

// The language of panel filters, group selection, association keys and colour sections:
//   expression = term { '|' term }, term = factor { '&' factor },
//   factor = '!' factor | '(' expression ')' | predicate | name pattern.
// Predicates: %size %date %age %attrib %owner %group with < > = != <= >=. A faulty expression still
// gives a result. Any thread.
bool evaluateFilter(const wchar_t* expression, const entry* item);
// The same on a blank entry that has only this name.
bool matchName(const wchar_t* expression, const wchar_t* name);
// What the name alone decides, before anything else of a file is known: Depends where it is up to a
// predicate.
enum class NameVerdict { No, Depends, Yes };
NameVerdict filterByName(const wchar_t* expression, const wchar_t* name);
// That blank entry: only the name is set, all other fields are 0.
EntryPtr blankEntry(const wchar_t* name);
// An empty or blank text or "*" filters nothing.
bool filtersNothing(const wchar_t* expression);

struct FilterResult {
  bool matches = false;
  bool faulty = false;  // a missing ')', an unknown predicate or too deep a nesting; never shown
};
// evaluateFilter with the time from which %age counts.
FilterResult runFilter(const wchar_t* expression, const entry* item, time_t now);

// Deepest nesting of '(' and '!'; what lies deeper counts as false.
inline constexpr int MaxFilterDepth = 200;
