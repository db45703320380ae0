#include "foundation/text_format.h"

#include <algorithm>

#include "foundation/locale_settings.h"
#include "foundation/names.h"

namespace {
constexpr wchar_t Ellipsis[] = L"...";
constexpr int EllipsisLength = 3;
constexpr int GroupDigits = 3;
constexpr wchar_t UnitLetters[] = L"KMGT";
constexpr int UnitCount = 4;
constexpr int UnitBits = 10;    // each unit is 1024 of the one below
constexpr int MostDigits = 19;  // 10 to this power fits into the value

unsigned long long powerOfTen(int exponent) {
  unsigned long long power = 1;
  for (int i = 0; i < std::clamp(exponent, 0, MostDigits); ++i) power *= 10;
  return power;
}

Westring decimal(unsigned long long value) {
  wchar_t digits[MostDigits + 2];
  wchar_t* p = digits + MostDigits + 1;
  *p = 0;
  do {
    *--p = static_cast<wchar_t>(L'0' + value % 10);
    value /= 10;
  } while (value != 0);
  return Westring(p);
}

struct ScaledValue {
  unsigned long long value;
  wchar_t unit;
};

// `value` in the smallest unit from K on in which it is below `limit`. Beyond T it is cut to the
// largest value that the place holds.
ScaledValue scale(unsigned long long value, unsigned long long limit) {
  for (int unit = 0; unit < UnitCount; ++unit) {
    value >>= UnitBits;
    if (value < limit) return {value, UnitLetters[unit]};
  }
  return {limit - 1, UnitLetters[UnitCount - 1]};
}

// A column of one cell has no room for digit and unit: then the unit stands alone.
Westring inWidth(const Westring& text, int width) {
  return right(text, width);
}
}  // namespace

Westring cutText(const Westring& text, int width) {
  if (text.length() <= width) return text;
  if (width < 1) return Westring();
  return left(text, width - 1) + Westring(CutMark, 1);
}

Westring shortenPath(const Westring& path, int width) {
  int length = path.length();
  if (length <= width) return path;
  int slash = path.findNth(L'/', path[0] == L'/' ? 2 : 1);
  int kept = slash + 1;
  if (slash < 0 || kept + EllipsisLength > width) return cutText(path, width);
  return left(path, kept) + Ellipsis + right(path, width - kept - EllipsisLength);
}

Westring groupDigits(unsigned long long value) {
  Westring digits = decimal(value);
  int length = digits.length();
  Westring result = Westring::withRoom(length + length / GroupDigits);
  wchar_t* out = result.data();
  for (int i = 0; i < length; ++i) {
    if (i > 0 && (length - i) % GroupDigits == 0) *out++ = localeSettings.thousandSeparator;
    *out++ = digits[i];
  }
  *out = 0;
  return result;
}

Westring formatSize(unsigned long long value, int width) {
  constexpr int GroupCells = GroupDigits + 1;
  constexpr int DigitLimit = 18;
  if (width < 1) return Westring();
  unsigned long long limit = powerOfTen(std::min(width - width / GroupCells, DigitLimit));
  if (value < limit) return groupDigits(value);
  // Where the width is no multiple of a group the unit takes the cell of a digit, else that of a
  // separator that isn't needed in front.
  if (width % GroupCells != 0) limit /= 10;
  ScaledValue scaled = scale(value, std::max(limit, 1ULL));
  return inWidth(groupDigits(scaled.value) + Westring(scaled.unit, 1), width);
}

Westring formatPlainSize(unsigned long long value, int width) {
  if (width < 1) return Westring();
  if (width > MostDigits || value < powerOfTen(width)) return decimal(value);
  ScaledValue scaled = scale(value, powerOfTen(width - 1));
  return inWidth(decimal(scaled.value) + Westring(scaled.unit, 1), width);
}
