#include "foundation/westring.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

#include "foundation/code_page.h"
#include "foundation/string_pieces.h"
#include "foundation/utf8.h"

namespace {
int lengthOf(const wchar_t* text) {
  return checkedLength(wcslen(text));
}

const wchar_t* orEmpty(const wchar_t* text) {
  return text != nullptr ? text : L"";
}

bool isSpace(wchar_t character) {
  return iswspace(static_cast<wint_t>(character)) != 0;
}

template <class Map>
Westring mapped(const Westring& text, Map map) {
  Westring result(text);
  for (wchar_t* p = result.data(); *p != 0; ++p) {
    *p = static_cast<wchar_t>(map(static_cast<wint_t>(*p)));
  }
  return result;
}
}  // namespace

Westring::Westring() : data_(inlineBuf_), capacity_(InlineSize) {
  inlineBuf_[0] = 0;
}

Westring::Westring(const wchar_t* text) : Westring() {
  if (text != nullptr) assign(text, lengthOf(text));
}

Westring::Westring(const char* utf8) : Westring() {
  if (utf8 != nullptr) decodeUtf8(utf8, *this);
}

Westring::Westring(const char* bytes, int codePage) : Westring() {
  if (bytes != nullptr) fromCodePage(bytes, codePage, *this);
}

Westring::Westring(const Estring& ascii) : Westring(withRoom(ascii.length())) {
  // With the terminator, which ends this text too.
  std::copy_n(ascii.data(), ascii.length() + 1, data_);
}

Westring::Westring(wchar_t character, int count) : Westring(withRoom(count)) {
  int repeated = std::max(count, 0);
  std::fill_n(data_, repeated, character);
  data_[repeated] = 0;
}

Westring::Westring(const Westring& other) : Westring(other.data_) {}

Westring::Westring(Westring&& other) noexcept : Westring() {
  *this = static_cast<Westring&&>(other);
}

Westring::~Westring() {
  if (data_ != inlineBuf_) delete[] data_;
}

Westring Westring::withRoom(int characters) {
  Westring result;
  if (characters >= InlineSize) {
    int capacity = checkedCapacity(characters + 1LL);
    result.adopt(new wchar_t[static_cast<size_t>(capacity)], capacity);
    result.data_[0] = 0;
  }
  return result;
}

Westring& Westring::operator=(const wchar_t* text) {
  assign(orEmpty(text), lengthOf(orEmpty(text)));
  return *this;
}

Westring& Westring::operator=(const Westring& other) {
  assign(other.data_, other.length());
  return *this;
}

Westring& Westring::operator=(Westring&& other) noexcept {
  if (this == &other) return *this;
  if (other.isInline()) {
    // An inline text always fits, whatever this string holds.
    wmemcpy(data_, other.inlineBuf_, InlineSize);
    other.inlineBuf_[0] = 0;
    return *this;
  }
  adopt(other.data_, other.capacity_);
  other.data_ = other.inlineBuf_;
  other.capacity_ = InlineSize;
  other.inlineBuf_[0] = 0;
  return *this;
}

int Westring::length() const {
  return checkedLength(wcslen(data_));
}

wchar_t& Westring::operator[](int index) {
  return data_[std::min(index, capacity_ - 1)];
}

wchar_t Westring::operator[](int index) const {
  return data_[std::min(index, capacity_ - 1)];
}

Westring& Westring::operator+=(wchar_t character) {
  int count = length();
  growKeeping(count, count + 1);
  data_[count] = character;
  data_[count + 1] = 0;
  return *this;
}

Westring& Westring::operator+=(char character) {
  return *this += static_cast<wchar_t>(character);
}

Westring& Westring::operator+=(const wchar_t* text) {
  if (text != nullptr) append(text, lengthOf(text));
  return *this;
}

Westring& Westring::operator+=(const Westring& other) {
  append(other.data_, other.length());
  return *this;
}

int Westring::find(wchar_t character) const {
  if (character == 0) return -1;
  const wchar_t* hit = wcschr(data_, character);
  return hit != nullptr ? static_cast<int>(hit - data_) : -1;
}

int Westring::rfind(wchar_t character) const {
  if (character == 0) return -1;
  const wchar_t* hit = wcsrchr(data_, character);
  return hit != nullptr ? static_cast<int>(hit - data_) : -1;
}

int Westring::find(const Westring& text) const {
  return find(text, 0);
}

int Westring::find(const Westring& text, int from) const {
  int start = std::max(from, 0);
  if (start > length()) return -1;
  const wchar_t* hit = wcsstr(data_ + start, text.data_);
  return hit != nullptr ? static_cast<int>(hit - data_) : -1;
}

int Westring::findNoCase(const Westring& text) const {
  return upper(*this).find(upper(text));
}

int Westring::findNth(wchar_t character, int n) const {
  if (n < 1) return -1;
  int seen = 0;
  for (const wchar_t* p = data_; *p != 0; ++p) {
    if (*p == character && ++seen == n) return static_cast<int>(p - data_);
  }
  return -1;
}

int Westring::findUnquoted(wchar_t character) const {
  bool quoted = false;
  for (const wchar_t* p = data_; *p != 0; ++p) {
    if (*p == L'"') {
      quoted = !quoted;
    } else if (!quoted && *p == character) {
      return static_cast<int>(p - data_);
    }
  }
  return -1;
}

bool Westring::replaceFirst(const Westring& from, const Westring& to) {
  int hit = from.empty() ? -1 : find(from);
  if (hit < 0) return false;
  *this = left(*this, hit) + to + (data_ + hit + from.length());
  return true;
}

bool Westring::replaceAll(const Westring& from, const Westring& to) {
  int fromLength = from.length();
  if (fromLength == 0) return false;
  int toLength = to.length();
  long long hits = 0;
  for (const wchar_t* p = wcsstr(data_, from.data_); p != nullptr;
       p = wcsstr(p + fromLength, from.data_))
    ++hits;
  if (hits == 0) return false;
  Westring result = withRoom(checkedCapacity(length() + hits * (toLength - fromLength)));
  wchar_t* out = result.data_;
  const wchar_t* rest = data_;
  while (const wchar_t* hit = wcsstr(rest, from.data_)) {
    out = std::copy(rest, hit, out);
    out = std::copy_n(to.data_, toLength, out);
    rest = hit + fromLength;
  }
  wcscpy(out, rest);
  *this = static_cast<Westring&&>(result);
  return true;
}

// `text` may lie inside this string, so the old buffer ends only after the copy.
void Westring::assign(const wchar_t* text, int count) {
  if (capacity_ <= count) {
    int capacity = checkedCapacity(count + 1LL);
    wchar_t* buffer = new wchar_t[static_cast<size_t>(capacity)];
    wmemcpy(buffer, text, static_cast<size_t>(count));
    adopt(buffer, capacity);
  } else {
    wmemmove(data_, text, static_cast<size_t>(count));
  }
  data_[count] = 0;
}

void Westring::append(const wchar_t* text, int count) {
  int old = length();
  int total = checkedCapacity(static_cast<long long>(old) + count);
  bool own = text >= data_ && text <= data_ + old;
  auto offset = own ? text - data_ : 0;
  growKeeping(old, total);
  wmemmove(data_ + old, own ? data_ + offset : text, static_cast<size_t>(count));
  data_[total] = 0;
}

void Westring::growKeeping(int count, int length) {
  if (capacity_ > length) return;
  int capacity = checkedCapacity(static_cast<long long>(length) + length / 4 + 1);
  wchar_t* buffer = new wchar_t[static_cast<size_t>(capacity)];
  wmemcpy(buffer, data_, static_cast<size_t>(count));
  adopt(buffer, capacity);
}

void Westring::adopt(wchar_t* buffer, int capacity) {
  if (data_ != inlineBuf_) delete[] data_;
  inlineBuf_[0] = 0;  // unused while the text lies elsewhere
  data_ = buffer;
  capacity_ = capacity;
}

Westring operator+(const Westring& a, const wchar_t* b) {
  int lengthA = a.length();
  int lengthB = lengthOf(orEmpty(b));
  return StringPieces::concatenate<Westring>(a.data(), lengthA, orEmpty(b), lengthB,
                                             static_cast<long long>(lengthA) + lengthB);
}

Westring operator+(const wchar_t* a, const Westring& b) {
  int lengthA = lengthOf(orEmpty(a));
  int lengthB = b.length();
  return StringPieces::concatenate<Westring>(orEmpty(a), lengthA, b.data(), lengthB,
                                             static_cast<long long>(lengthA) + lengthB);
}

Westring operator+(const Westring& a, const Westring& b) {
  return a + b.data();
}

bool operator==(const Westring& a, const wchar_t* b) {
  return wcscasecmp(a.data(), orEmpty(b)) == 0;
}
bool operator==(const Westring& a, const Westring& b) {
  return a == b.data();
}
bool operator!=(const Westring& a, const wchar_t* b) {
  return !(a == b);
}
bool operator!=(const Westring& a, const Westring& b) {
  return !(a == b.data());
}

Westring left(const Westring& text, int count) {
  return StringPieces::left(text, count);
}

Westring right(const Westring& text, int count) {
  return StringPieces::right(text, count);
}

Westring mid(const Westring& text, int position, int count) {
  return StringPieces::mid(text, position, count);
}

Westring dropRight(const Westring& text, int count) {
  return StringPieces::dropRight(text, count);
}

Westring padLeft(const Westring& text, int width, wchar_t fill) {
  return StringPieces::padLeft(text, width, fill);
}

Westring padRight(const Westring& text, int width, wchar_t fill) {
  return StringPieces::padRight(text, width, fill);
}

Westring ltrim(const Westring& text) {
  return StringPieces::trim(text, StringPieces::TrimSide::Left, isSpace);
}

Westring rtrim(const Westring& text) {
  return StringPieces::trim(text, StringPieces::TrimSide::Right, isSpace);
}

Westring trim(const Westring& text) {
  return StringPieces::trim(text, StringPieces::TrimSide::Both, isSpace);
}

Westring lower(const Westring& text) {
  return mapped(text, towlower);
}

Westring upper(const Westring& text) {
  return mapped(text, towupper);
}
