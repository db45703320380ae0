#include "filecommands/destination.h"

#include <cerrno>
#include <cwctype>
#include <string>

#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/utf8.h"
#include "language/environment.h"

namespace {

constexpr wchar_t Home[] = L"~";

Westring absolute(const Westring& path, const Westring& base) {
  return path[0] == L'/' ? path : joinPath(base, path);
}

int canonical(Westring& path, const Westring& base) {
  errno = 0;
  if (canonicalPath(path, &base) == 0) return 0;
  return errno ? errno : EINVAL;
}

// A path below a real directory that the text spells out: only what stands behind it was typed.
bool belowOther(const Westring& text, const DestinationContext& context, Westring& path,
                int& error) {
  const Westring prefix = addSlash(context.other);
  if (prefix.empty() || !sameName(left(text, prefix.length()), prefix)) return false;
  Westring rest(text.data() + prefix.length());
  error = 0;
  if (rest.empty()) {
    path = context.other;
  } else if (sameName(rest, context.entryName)) {
    path = joinPath(context.other, rest);
  } else {
    while (rest[0] == L'/') rest = Westring(rest.data() + 1);
    path = rest;
    error = canonical(path, context.other);
  }
  return true;
}

bool isNameCharacter(wchar_t character) {
  return iswalnum(static_cast<wint_t>(character)) || character == L'_';
}

// A '$' that stands for nothing is part of a name.
bool namesOnlySetVariables(const Westring& text) {
  const wchar_t* at = text.data();
  while ((at = wcschr(at, L'$')) != nullptr) {
    const wchar_t* end = ++at;
    while (isNameCharacter(*end)) ++end;
    const std::wstring name(at, end);
    const char* value = sessionEnvironment().get(toUtf8(name.c_str()).data());
    if (!value || !*value) return false;
    at = end;
  }
  return true;
}

bool hasVariables(const Westring& text) {
  return (text[0] == L'~' && (text[1] == L'/' || text[1] == 0)) || text.find(L'$') >= 0;
}

Westring expanded(const Westring& text) {
  return sameName(text, Home) ? homeDirectory() : expandPathVariables(text);
}

int resolveTyped(const Westring& text, const DestinationContext& context, Westring& path) {
  path = text;
  const int error = canonical(path, context.base);
  const bool found = error == 0 && pathExists(path);
  if (found || !hasVariables(text) || !namesOnlySetVariables(text)) return error;
  Westring other = expanded(text);
  if (canonical(other, context.base) != 0) return error;
  path = other;
  return 0;
}

}  // namespace

int resolveDestination(const Westring& text, const DestinationContext& context,
                       Destination& result) {
  if (sameName(text, context.proposed) && !sameName(text, ParentName) && !text.empty()) {
    result.asDirectory = endsInSlash(text);
    result.path = withoutSlashes(absolute(text, context.base));
    return result.path.length() < MaxPathLength ? 0 : ENAMETOOLONG;
  }
  const Westring typed = trim(text);
  result.asDirectory = endsInSlash(typed) || sameName(typed, ParentName);
  int error = 0;
  if (belowOther(typed, context, result.path, error)) return error;
  if (sameName(typed, context.entryName) && !sameName(typed, ParentName)) {
    result.path = absolute(typed, context.base);
    return 0;
  }
  return resolveTyped(typed, context, result.path);
}
