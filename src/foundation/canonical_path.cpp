#include "foundation/canonical_path.h"

#include <cerrno>
#include <climits>
#include <string>

#include "foundation/names.h"
#include "foundation/path_info.h"

namespace {

constexpr int DrivePlace = 1;  // where a colon is allowed: behind a drive letter

bool hasStrayColon(const wchar_t* path) {
  for (int i = 0; path[i]; ++i) {
    if (path[i] == L':' && i != DrivePlace) return true;
  }
  return false;
}

// The number of dots when [begin, end) holds nothing else, otherwise 0.
int dotsOnly(const wchar_t* begin, const wchar_t* end) {
  for (const wchar_t* at = begin; at < end; ++at) {
    if (*at != L'.') return 0;
  }
  return static_cast<int>(end - begin);
}

// Takes the last component off `built`, an absolute path without a slash at its end. False at the
// root.
bool goUp(std::wstring& built) {
  const size_t slash = built.rfind(L'/');
  if (slash == std::wstring::npos) return false;
  built.resize(slash);
  return true;
}

// A run of more dots than this is a name, unless a user typed it.
constexpr int ParentDots = 2;

bool appendComponents(std::wstring& built, const wchar_t* path, int mostDots) {
  const wchar_t* at = path;
  while (*at) {
    const wchar_t* end = at;
    while (*end && *end != L'/') ++end;
    int dots = dotsOnly(at, end);
    if (dots > mostDots) dots = 0;
    for (int level = 1; level < dots; ++level) {
      if (!goUp(built)) return false;
    }
    if (end > at && dots == 0) built.append(1, L'/').append(at, end);
    at = *end ? end + 1 : end;
  }
  return true;
}

// The directory that a relative path starts at, without a slash at its end; false when there is
// none.
bool startDirectory(const Westring* base, std::wstring& start) {
  if (base && (*base)[0] == L'/') {
    start = base->data();
  } else {
    start = currentDir().data();
    if (start.empty()) return false;
    if (base && !base->empty()) start.append(1, L'/').append(base->data());
  }
  while (!start.empty() && start.back() == L'/') start.pop_back();
  return true;
}

int refuse(int error) {
  errno = error;
  return -1;
}

int makeAbsolute(Westring& path, const Westring& text, const Westring* base, int mostDots) {
  std::wstring built;
  if (text[0] != L'/' && !startDirectory(base, built)) return refuse(ENOENT);
  if (!appendComponents(built, text.data(), mostDots)) return refuse(EINVAL);
  if (built.empty()) built = L"/";
  if (built.size() >= size_t{MaxPathLength}) return refuse(ENAMETOOLONG);
  path = built.c_str();
  return 0;
}

}  // namespace

int canonicalPath(Westring& path, const Westring* base) {
  Westring typed = path;
  for (wchar_t* at = typed.data(); *at; ++at) {
    if (*at == L'\\') *at = L'/';
  }
  if (hasStrayColon(typed.data())) return refuse(EINVAL);
  return makeAbsolute(path, typed, base, INT_MAX);
}

int writtenPath(Westring& path, const Westring* base) {
  const Westring written = path;
  return makeAbsolute(path, written, base, ParentDots);
}
