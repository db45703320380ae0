#pragma once

#include "foundation/westring.h"

// Paths and file names as wide text. The functions of the first group split at '/' and at '\' and
// serve what a user typed; those of the second split at '/' only and serve real names.

Westring dirPart(const Westring& path);
Westring namePart(const Westring& path);
// "/" becomes "", while "//" and "///" stay; callers that can hold the root test for it.
Westring stripSlash(const Westring& path);
bool endsInSlash(const Westring& path);
Westring withoutSlashes(const Westring& path);  // at the end; the root stays what it is
Westring addSlash(const Westring& path);        // "" stays ""

// The target name that `mask` makes of `source`.
Westring applyRenameMask(const wchar_t* source, const wchar_t* mask);
bool hasWildcard(const wchar_t* text);  // '*' or '?'

Westring parentOf(const Westring& path);       // "/a/b" -> "/a", "/a" -> "/", "/" -> "/"
Westring lastComponent(const Westring& path);  // "/a/b" -> "b", "/" -> ""
Westring joinPath(const Westring& directory, const wchar_t* name);
inline Westring joinPath(const Westring& directory, const Westring& name) {
  return joinPath(directory, name.data());
}

bool sameName(const wchar_t* a, const wchar_t* b);  // exact
inline bool sameName(const Westring& a, const Westring& b) {
  return sameName(a.data(), b.data());
}
inline bool sameName(const Westring& a, const wchar_t* b) {
  return sameName(a.data(), b);
}
bool isDotOrDotDot(const wchar_t* name);
inline constexpr wchar_t ParentName[] = L"..";
inline constexpr char DescriptionFileName[] = "descript.ion";

// Longest path that the program holds, in wide characters; longer ones are refused with
// ENAMETOOLONG.
inline constexpr int MaxPathLength = 4096;
