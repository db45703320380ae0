#include "viewer/view_percent.h"

#include <cwchar>

namespace {
constexpr int Whole = 10'000;  // hundredths of a per cent
}

Westring viewPercent(int64_t bottom, int64_t size, EndShows end) {
  __extension__ using Wide = __int128;
  int hundredths = Whole;
  if (size >= 1 && end == EndShows::No) {
    hundredths = static_cast<int>(static_cast<Wide>(bottom) * Whole / size);
  }
  wchar_t text[16];
  swprintf(text, 16, L"%3d.%02d%%", hundredths / 100, hundredths % 100);
  return text;
}
