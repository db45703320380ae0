#include "filecommands/destination.h"

#include <cerrno>
#include <cwctype>
#include <string>

#include "foundation/canonical_path.h"
#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/utf8.h"
#include "language/environment.h"
#include "language/typed_path.h"

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

bool hasVariables(const Westring& text) {
  return (text[0] == L'~' && (text[1] == L'/' || text[1] == 0)) || text.find(L'$') >= 0;
}

// Whether the rules of typed text make something else of it than it says.
bool readsDifferently(const Westring& text, const Westring& base) {
  Westring written = text, typed = text;
  return hasVariables(text) || writtenPath(written, &base) != 0 ||
         canonicalPath(typed, &base) != 0 || !sameName(written, typed);
}

// Something new in a directory that is there as it is written, such as "a:b/new": only what stands
// behind the directory is read by the rules of typed text.
bool belowWritten(const Westring& text, const Westring& base, Westring& path, int& error) {
  const int slash = withoutSlashes(text).rfind(L'/');
  if (slash < 1) return false;
  const Westring head = left(text, slash);
  Westring directory;
  if (!readsDifferently(head, base) || !existsAsWritten(head, base, directory)) return false;
  path = mid(text, slash + 1, 0);
  error = canonical(path, directory);
  return true;
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
    if (!existsAsWritten(rest, context.other, path)) error = canonical(path, context.other);
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

Westring expanded(const Westring& text) {
  return sameName(text, Home) ? homeDirectory() : expandPathVariables(text);
}

int resolveTyped(const Westring& text, const DestinationContext& context, Westring& path) {
  int error = 0;
  if (existsAsWritten(text, context.base, path)) return 0;
  if (belowWritten(text, context.base, path, error)) return error;
  path = text;
  error = canonical(path, context.base);
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
  Westring there;
  const Westring typed = existsAsWritten(text, context.base, there) ? text : trim(text);
  result.asDirectory = endsInSlash(typed) || sameName(typed, ParentName);
  int error = 0;
  if (belowOther(typed, context, result.path, error)) return error;
  if (sameName(typed, context.entryName) && !sameName(typed, ParentName)) {
    result.path = absolute(typed, context.base);
    return 0;
  }
  return resolveTyped(typed, context, result.path);
}
