#include "foundation/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <cwchar>

#include "foundation/checked_capacity.h"

namespace {
constexpr char WideName[] = "wchar_t";
constexpr wchar_t House = 0x2302;
constexpr int FirstPlain = 32;  // what every code page has in common
constexpr int LastPlain = 126;

std::atomic<int> currentPage{FallbackCodePage};

Estring pageName(int page) {
  Estring name;
  name.format("CP%d", page);
  return name;
}

// One open conversion. Not valid when the system lacks one of the two.
class Conversion {
 public:
  Conversion(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  ~Conversion() {
    if (valid()) iconv_close(handle_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  bool valid() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  // False when it stopped before the end of the input. The pointers and counts move along.
  bool run(char*& in, size_t& inBytes, char*& out, size_t& outBytes) {
    return iconv(handle_, &in, &inBytes, &out, &outBytes) != static_cast<size_t>(-1);
  }

  // Writes what the conversion holds back: some pages wait for an accent behind each letter.
  void flush(char*& out, size_t& outBytes) { iconv(handle_, nullptr, nullptr, &out, &outBytes); }

 private:
  iconv_t handle_;
};

void convertPlain(const char* bytes, wchar_t* out) {
  for (; *bytes != 0; ++bytes) {
    *out++ = *bytes >= FirstPlain && *bytes <= LastPlain ? static_cast<wchar_t>(*bytes) : House;
  }
  *out = 0;
}
}  // namespace

int defaultCodePage() {
  return currentPage.load(std::memory_order_relaxed);
}

void setDefaultCodePage(int page) {
  currentPage.store(page == 0 ? FallbackCodePage : page, std::memory_order_relaxed);
}

Estring toCodePage(const Westring& text, int page) {
  int length = text.length();
  Conversion conversion(pageName(page).data(), WideName);
  if (!conversion.valid()) return Estring();
  // Zeroed, so that a conversion which stops early ends the text there.
  Estring result('\0', length);
  Westring input(text);
  char* in = reinterpret_cast<char*>(input.data());
  size_t inBytes = static_cast<size_t>(length) * sizeof(wchar_t);
  char* out = result.data();
  size_t outBytes = static_cast<size_t>(length);
  conversion.run(in, inBytes, out, outBytes);
  return result;
}

bool fromCodePage(const char* bytes, int page, Westring& result) {
  Estring input(bytes);
  int length = input.length();
  Westring output(L'\0', length);
  bool whole = true;
  Conversion conversion(WideName, pageName(page).data());
  if (conversion.valid()) {
    char* in = input.data();
    size_t inBytes = static_cast<size_t>(length);
    wchar_t* out = output.data();
    size_t room = static_cast<size_t>(length) * sizeof(wchar_t);
    while (inBytes > 0) {
      char* outByte = reinterpret_cast<char*>(out);
      bool done = conversion.run(in, inBytes, outByte, room);
      conversion.flush(outByte, room);
      out = reinterpret_cast<wchar_t*>(outByte);
      if (done || inBytes == 0 || room < sizeof(wchar_t)) break;
      *out++ = House;
      ++in;
      --inBytes;
      room -= sizeof(wchar_t);
      whole = false;
    }
  } else {
    convertPlain(bytes, output.data());
    whole = false;
  }
  result = static_cast<Westring&&>(output);
  return whole;
}

Westring fromCodePage(const char* bytes, int page) {
  Westring result;
  fromCodePage(bytes, page, result);
  return result;
}

CodePageTable::CodePageTable(int from, int to) {
  constexpr size_t Mapped = sizeof table_ - 1;  // entry 0 stays 0
  for (size_t i = 0; i < sizeof table_; ++i) table_[i] = static_cast<unsigned char>(i);
  Conversion conversion(pageName(to).data(), pageName(from).data());
  if (!conversion.valid()) return;
  char input[sizeof table_];
  char output[sizeof table_];
  memcpy(input, table_, sizeof table_);
  memcpy(output, table_ + 1, Mapped);
  char* in = input + 1;
  size_t inBytes = Mapped;
  char* out = output;
  size_t outBytes = sizeof output;
  conversion.run(in, inBytes, out, outBytes);
  memcpy(table_ + 1, output, Mapped);
}

Estring CodePageTable::map(const char* text) const {
  Estring result(text);
  for (char* p = result.data(); *p != 0; ++p) {
    *p = static_cast<char>(table_[static_cast<unsigned char>(*p)]);
  }
  return result;
}

void translateInPlace(Estring& text, int from, int to) {
  text = CodePageTable(from, to).map(text.data());
}
