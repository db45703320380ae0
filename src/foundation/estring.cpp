#include "foundation/estring.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>

#include "foundation/fold.h"
#include "foundation/string_pieces.h"

namespace {
constexpr int FormatLimit = 1024;  // bytes of one formatted text, terminator included

int lengthOf(const char* text) {
  return checkedLength(strlen(text));
}

const char* orEmpty(const char* text) {
  return text != nullptr ? text : "";
}

int compare(const char* a, const char* b) {
  return compareWords(orEmpty(a), orEmpty(b));
}

bool isSpace(char character) {
  return isspace(static_cast<unsigned char>(character)) != 0;
}
}  // namespace

Estring::Estring() : data_(inlineBuf_), capacity_(InlineSize) {
  inlineBuf_[0] = 0;
}

Estring::Estring(const char* text) : Estring() {
  if (text == nullptr) return;
  int count = lengthOf(text);
  if (count >= InlineSize) {
    int capacity = checkedCapacity(2LL * count + 1);
    adopt(new char[capacity], capacity);
  }
  memcpy(data_, text, static_cast<size_t>(count) + 1);
}

Estring::Estring(const Estring& other) : Estring(other.data_) {}

Estring::Estring(Estring&& other) noexcept : Estring() {
  *this = static_cast<Estring&&>(other);
}

Estring::Estring(long value) : Estring() {
  snprintf(inlineBuf_, sizeof inlineBuf_, "%ld", value);
}

Estring::Estring(char character, int count) : Estring(withRoom(count)) {
  int repeated = std::max(count, 0);
  memset(data_, character, static_cast<size_t>(repeated));
  data_[repeated] = 0;
}

Estring::~Estring() {
  if (data_ != inlineBuf_) delete[] data_;
}

Estring Estring::withRoom(int characters) {
  Estring result;
  if (characters >= InlineSize) {
    int capacity = checkedCapacity(characters + 1LL);
    result.adopt(new char[capacity], capacity);
    result.data_[0] = 0;
  }
  return result;
}

Estring Estring::fromField(const char* bytes, int count) {
  return ::rtrim(StringPieces::copyOf<Estring>(bytes, count));
}

Estring& Estring::operator=(const char* text) {
  assign(orEmpty(text), lengthOf(orEmpty(text)));
  return *this;
}

Estring& Estring::operator=(const Estring& other) {
  assign(other.data_, other.length());
  return *this;
}

Estring& Estring::operator=(Estring&& other) noexcept {
  if (this == &other) return *this;
  if (other.isInline()) {
    // An inline text always fits, whatever this string holds.
    memcpy(data_, other.inlineBuf_, InlineSize);
    other.inlineBuf_[0] = 0;
    return *this;
  }
  adopt(other.data_, other.capacity_);
  other.data_ = other.inlineBuf_;
  other.capacity_ = InlineSize;
  other.inlineBuf_[0] = 0;
  return *this;
}

void Estring::format(const char* pattern, ...) {
  char buffer[FormatLimit] = {};
  va_list arguments;
  va_start(arguments, pattern);
  vsnprintf(buffer, sizeof buffer, pattern, arguments);
  va_end(arguments);
  *this = buffer;
}

int Estring::length() const {
  return checkedLength(strlen(data_));
}

char& Estring::operator[](int index) {
  return data_[std::min(index, capacity_ - 1)];
}

char Estring::operator[](int index) const {
  return data_[std::min(index, capacity_ - 1)];
}

Estring& Estring::operator+=(char character) {
  int count = length();
  if (count + 2 > capacity_) {
    int capacity = checkedCapacity(2LL * count + 1);
    char* buffer = new char[capacity];
    memcpy(buffer, data_, static_cast<size_t>(count));
    adopt(buffer, capacity);
  }
  data_[count] = character;
  data_[count + 1] = 0;
  return *this;
}

Estring& Estring::operator+=(const char* text) {
  if (text != nullptr) append(text, lengthOf(text));
  return *this;
}

Estring& Estring::operator+=(const Estring& other) {
  append(other.data_, other.length());
  return *this;
}

int Estring::find(char character) const {
  if (character == 0) return -1;
  const char* hit = strchr(data_, character);
  return hit != nullptr ? static_cast<int>(hit - data_) : -1;
}

int Estring::rfind(char character) const {
  if (character == 0) return -1;
  const char* hit = strrchr(data_, character);
  return hit != nullptr ? static_cast<int>(hit - data_) : -1;
}

void Estring::expandTabs(int width) {
  *this = ::expandTabs(*this, width);
}

void Estring::stripSlash() {
  int count = length();
  if (StringPieces::hasSlashToStrip(*this, count)) data_[count - 1] = 0;
}

void Estring::addSlash() {
  int count = length();
  if (count > 0 && data_[count - 1] != '/') *this += '/';
}

// `text` may lie inside this string, so the old buffer ends only after the copy.
void Estring::assign(const char* text, int count) {
  if (capacity_ < count + 1) {
    int capacity = checkedCapacity(count * 13LL / 10 + 1);
    char* buffer = new char[capacity];
    memcpy(buffer, text, static_cast<size_t>(count));
    adopt(buffer, capacity);
  } else {
    memmove(data_, text, static_cast<size_t>(count));
  }
  data_[count] = 0;
}

void Estring::append(const char* text, int count) {
  int old = length();
  long long total = static_cast<long long>(old) + count;
  if (total + 1 > capacity_) {
    int capacity = checkedCapacity(2 * total + 1);
    char* buffer = new char[capacity];
    memcpy(buffer, data_, static_cast<size_t>(old));
    memcpy(buffer + old, text, static_cast<size_t>(count));
    adopt(buffer, capacity);
  } else {
    memmove(data_ + old, text, static_cast<size_t>(count));
  }
  data_[total] = 0;
}

void Estring::adopt(char* buffer, int capacity) {
  if (data_ != inlineBuf_) delete[] data_;
  inlineBuf_[0] = 0;  // unused while the text lies elsewhere
  data_ = buffer;
  capacity_ = capacity;
}

Estring operator+(const Estring& a, const char* b) {
  int lengthA = a.length();
  int lengthB = lengthOf(orEmpty(b));
  return StringPieces::concatenate<Estring>(a.data(), lengthA, orEmpty(b), lengthB,
                                            lengthA + lengthB + 1LL);
}

Estring operator+(const char* a, const Estring& b) {
  int lengthA = lengthOf(orEmpty(a));
  int lengthB = b.length();
  return StringPieces::concatenate<Estring>(orEmpty(a), lengthA, b.data(), lengthB,
                                            lengthA + lengthB + 1LL);
}

Estring operator+(const Estring& a, const Estring& b) {
  int lengthA = a.length();
  int lengthB = b.length();
  return StringPieces::concatenate<Estring>(a.data(), lengthA, b.data(), lengthB,
                                            static_cast<long long>(lengthA) + lengthB);
}

bool operator==(const Estring& a, const char* b) {
  return compare(a.data(), b) == 0;
}
bool operator==(const Estring& a, const Estring& b) {
  return a == b.data();
}
bool operator!=(const Estring& a, const char* b) {
  return compare(a.data(), b) != 0;
}
bool operator!=(const Estring& a, const Estring& b) {
  return a != b.data();
}
bool operator<(const Estring& a, const char* b) {
  return compare(a.data(), b) < 0;
}
bool operator<(const Estring& a, const Estring& b) {
  return a < b.data();
}
bool operator<=(const Estring& a, const char* b) {
  return compare(a.data(), b) <= 0;
}
bool operator<=(const Estring& a, const Estring& b) {
  return a <= b.data();
}
bool operator>(const Estring& a, const char* b) {
  return compare(a.data(), b) > 0;
}
bool operator>(const Estring& a, const Estring& b) {
  return a > b.data();
}
bool operator>=(const Estring& a, const char* b) {
  return compare(a.data(), b) >= 0;
}
bool operator>=(const Estring& a, const Estring& b) {
  return a >= b.data();
}

Estring left(const Estring& text, int count) {
  return StringPieces::left(text, count);
}

Estring right(const Estring& text, int count) {
  return StringPieces::right(text, count);
}

Estring mid(const Estring& text, int position, int count) {
  return StringPieces::mid(text, position, count);
}

Estring dropRight(const Estring& text, int count) {
  return StringPieces::dropRight(text, count);
}

Estring padLeft(const Estring& text, int width, char fill) {
  return StringPieces::padLeft(text, width, fill);
}

Estring padRight(const Estring& text, int width, char fill) {
  return StringPieces::padRight(text, width, fill);
}

Estring ltrim(const Estring& text) {
  return StringPieces::trim(text, StringPieces::TrimSide::Left, isSpace);
}

Estring rtrim(const Estring& text) {
  return StringPieces::trim(text, StringPieces::TrimSide::Right, isSpace);
}

Estring trim(const Estring& text) {
  return StringPieces::trim(text, StringPieces::TrimSide::Both, isSpace);
}

namespace {
// Calls put(character, count) for each run of the expanded text.
template <class Put>
void walkTabs(const char* text, int width, Put put) {
  int columns = std::max(width, 1);
  int column = 0;
  for (; *text != 0; ++text) {
    if (*text == '\t') {
      int blanks = columns - 1 - column % columns;
      put(' ', blanks);
      column += blanks;
    } else {
      put(*text, 1);
      ++column;
    }
  }
}
}  // namespace

Estring expandTabs(const Estring& text, int width) {
  long long needed = 0;
  walkTabs(text.data(), width, [&](char, int count) { needed += count; });
  Estring result = Estring::withRoom(checkedCapacity(needed));
  char* out = result.data();
  walkTabs(text.data(), width,
           [&](char character, int count) { out = std::fill_n(out, count, character); });
  *out = 0;
  return result;
}

Estring stripSlash(const Estring& path) {
  int length = path.length();
  return left(path, StringPieces::hasSlashToStrip(path, length) ? length - 1 : length);
}

Estring addSlash(const Estring& path) {
  Estring result(path);
  result.addSlash();
  return result;
}
