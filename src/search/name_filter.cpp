#include "search/name_filter.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "foundation/fold.h"
#include "foundation/utf8.h"

namespace {

constexpr std::wstring_view Special = L"\"&!()%[]{}";

bool isAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
}

// '*' and '?' alone, ASCII alone: a star goes back to where it stood last only.
bool fits(std::string_view mask, std::string_view name) {
  size_t m = 0;
  size_t n = 0;
  size_t star = std::string_view::npos;
  size_t behindStar = 0;
  while (n < name.size()) {
    if (m < mask.size() && mask[m] == '*') {
      star = m++;
      behindStar = n;
    } else if (m < mask.size() && (mask[m] == '?' || mask[m] == lowerAscii(name[n]))) {
      ++m;
      ++n;
    } else if (star != std::string_view::npos) {
      m = star + 1;
      n = ++behindStar;
    } else {
      return false;
    }
  }
  while (m < mask.size() && mask[m] == '*') ++m;
  return m == mask.size();
}

}  // namespace

NameFilter::NameFilter(const Westring& expression) : expression_(expression), plain_(compile()) {}

bool NameFilter::compile() {
  const std::wstring_view text(expression_.data());
  if (text.find_first_of(Special) != std::wstring_view::npos) return false;
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find(L'|', start), text.size());
    if (!addMask(text.substr(start, end - start))) return false;
    start = end + 1;
  }
  return true;
}

bool NameFilter::addMask(std::wstring_view mask) {
  constexpr std::wstring_view Blanks = L" \t";
  const size_t first = mask.find_first_not_of(Blanks);
  if (first != std::wstring_view::npos) {
    mask = mask.substr(first, mask.find_last_not_of(Blanks) + 1 - first);
  } else {
    mask = {};
  }
  std::string bytes;
  for (const wchar_t character : mask) {
    if (character < 1 || character >= 0x80) return false;
    bytes += lowerAscii(static_cast<char>(character));
  }
  masks_.push_back(bytes);
  return true;
}

NameVerdict NameFilter::verdict(const char* name) const {
  // Some letters beyond ASCII fold to letters of ASCII.
  if (!plain_ || !isAscii(name)) {
    return filterByName(expression_.data(), decodeFileName(name).data());
  }
  const bool any = std::any_of(masks_.begin(), masks_.end(),
                               [name](const std::string& mask) { return fits(mask, name); });
  return any ? NameVerdict::Yes : NameVerdict::No;
}

bool NameFilter::matches(const entry* item) const {
  return evaluateFilter(expression_.data(), item);
}
