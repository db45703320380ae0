#include "foundation/names.h"

#include <algorithm>
#include <cwchar>

#include "foundation/string_pieces.h"

namespace {
// Index of the last separator of a typed path, -1 without one.
int lastTypedSeparator(const Westring& path) {
  return std::max(path.rfind(L'/'), path.rfind(L'\\'));
}

// Length of the path without the slashes at its end; the root keeps one.
int lengthWithoutSlashes(const Westring& path) {
  int length = path.length();
  while (length > 1 && path[length - 1] == L'/') --length;
  return length;
}

// Index behind the last '/' in the first `length` characters, 0 without one.
int startOfLastComponent(const Westring& path, int length) {
  int start = length;
  while (start > 0 && path[start - 1] != L'/') --start;
  return start;
}
}  // namespace

Westring dirPart(const Westring& path) {
  constexpr int DriveLength = 3;  // "X:/" keeps its slash
  int separator = lastTypedSeparator(path);
  if (separator < 0) return Westring();
  if (separator == DriveLength - 1 && path[1] == L':') return left(path, DriveLength);
  return left(path, separator);
}

Westring namePart(const Westring& path) {
  return Westring(path.data() + lastTypedSeparator(path) + 1);
}

Westring stripSlash(const Westring& path) {
  int length = path.length();
  return left(path, StringPieces::hasSlashToStrip(path, length) ? length - 1 : length);
}

bool endsInSlash(const Westring& path) {
  const int length = path.length();
  return length > 0 && path[length - 1] == L'/';
}

Westring withoutSlashes(const Westring& path) {
  int length = path.length();
  while (length > 1 && path[length - 1] == L'/') --length;
  return left(path, length);
}

Westring addSlash(const Westring& path) {
  return path.empty() || endsInSlash(path) ? path : path + L"/";
}

Westring applyRenameMask(const wchar_t* source, const wchar_t* mask) {
  Westring result = Westring::withRoom(checkedLength(wcslen(source) + wcslen(mask)));
  wchar_t* out = result.data();
  for (; *mask != 0; ++mask) {
    switch (*mask) {
      case L'*':
        while (*source != 0 && *source != L'.') *out++ = *source++;
        break;
      case L'?':
        if (*source != 0) *out++ = *source++;
        break;
      case L'.':
        while (*source != 0 && *source != L'.') ++source;
        *out++ = L'.';
        if (*source == L'.') ++source;
        break;
      default:
        *out++ = *mask;
    }
  }
  *out = 0;
  return result;
}

bool hasWildcard(const wchar_t* text) {
  return wcspbrk(text, L"*?") != nullptr;
}

Westring parentOf(const Westring& path) {
  int start = startOfLastComponent(path, lengthWithoutSlashes(path));
  while (start > 1 && path[start - 1] == L'/') --start;
  return left(path, start);
}

Westring lastComponent(const Westring& path) {
  int length = lengthWithoutSlashes(path);
  int start = startOfLastComponent(path, length);
  return left(Westring(path.data() + start), length - start);
}

Westring joinPath(const Westring& directory, const wchar_t* name) {
  int length = directory.length();
  if (length == 0) return Westring(name);
  int nameLength = checkedLength(wcslen(name));
  int slash = directory[length - 1] == L'/' ? 0 : 1;
  Westring result =
      Westring::withRoom(checkedCapacity(static_cast<long long>(length) + nameLength + 1));
  wchar_t* out = std::copy_n(directory.data(), length, result.data());
  out = std::fill_n(out, slash, L'/');
  out = std::copy_n(name, nameLength, out);
  *out = 0;
  return result;
}

bool sameName(const wchar_t* a, const wchar_t* b) {
  return wcscmp(a, b) == 0;
}

bool isDotOrDotDot(const wchar_t* name) {
  if (name[0] != L'.') return false;
  return name[1] == 0 || (name[1] == L'.' && name[2] == 0);
}
