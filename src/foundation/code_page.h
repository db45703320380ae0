#pragma once

#include "foundation/westring.h"

// Numbered code pages, through iconv with the names "CP%d" and "wchar_t".

inline constexpr int FallbackCodePage = 850;

// The process-wide page: that of the configuration, or 850 while none is set.
int defaultCodePage();
void setDefaultCodePage(int page);  // 0 restores 850

// Stops in silence at the first character that the page doesn't hold; single-byte pages only.
Estring toCodePage(const Westring& text, int page = defaultCodePage());

// A byte without a character becomes U+2302. True when every byte converted. Where the system lacks
// the page, bytes 32..126 stand for themselves and all others become U+2302 (result false).
bool fromCodePage(const char* bytes, int page, Westring& result);
Westring fromCodePage(const char* bytes, int page = defaultCodePage());

// 256 translation bytes from one code page to another; entry 0 is 0. For pairs that map completely.
class CodePageTable {
 public:
  CodePageTable(int from, int to);
  unsigned char operator[](int index) const { return table_[index & 255]; }
  Estring map(const char* text) const;

 private:
  unsigned char table_[256];
};

void translateInPlace(Estring& text, int from, int to);
