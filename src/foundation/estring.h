#pragma once

#include <cstdarg>

class Westring;

// 8-bit text: UTF-8 on its way to the system, code-page bytes, configuration lines. Keeps its
// length nowhere; every operation that needs it measures the text. All comparison operators ignore
// the case of ASCII letters, in every locale, so paths and names are never compared with them (see
// names.h).
class Estring {
 public:
  static constexpr int InlineSize = 21;

  Estring();
  Estring(const char* text);  // null gives the empty string
  Estring(const Estring& other);
  Estring(Estring&& other) noexcept;
  explicit Estring(long value);        // decimal
  Estring(char character, int count);  // a negative count gives the empty string
  ~Estring();

  // An empty string whose buffer holds `characters` characters and the terminator.
  static Estring withRoom(int characters);
  // `count` bytes of a fixed-width record field, terminated and right-trimmed.
  static Estring fromField(const char* bytes, int count);

  Estring& operator=(const char* text);
  Estring& operator=(const Estring& other);
  Estring& operator=(Estring&& other) noexcept;

  // At most 1023 characters survive; the rest is cut.
  void format(const char* pattern, ...) __attribute__((format(printf, 2, 3)));

  int length() const;
  bool empty() const { return data_[0] == 0; }
  int capacity() const { return capacity_; }
  const char* data() const { return data_; }
  char* data() { return data_; }
  bool isInline() const { return data_ == inlineBuf_; }

  // At or beyond `capacity` this is the buffer's last cell, so a stray write stays inside.
  char& operator[](int index);
  char operator[](int index) const;

  // Each call measures the whole text first: a text of many pieces is measured once, made by
  // withRoom and filled through data(), or the time grows with the square of its length.
  Estring& operator+=(char character);
  Estring& operator+=(const char* text);
  Estring& operator+=(const Estring& other);

  int find(char character) const;   // index or -1
  int rfind(char character) const;  // index or -1

  void expandTabs(int width);  // see expandTabs(text, width)
  void stripSlash();
  void addSlash();

 private:
  void assign(const char* text, int count);
  void append(const char* text, int count);
  void adopt(char* buffer, int capacity);  // takes `buffer` over, ends the old one

  char* data_;
  int capacity_;  // bytes, terminator included
  char inlineBuf_[InlineSize];
};

Estring operator+(const Estring& a, const char* b);
Estring operator+(const char* a, const Estring& b);
Estring operator+(const Estring& a, const Estring& b);

bool operator==(const Estring& a, const char* b);
bool operator==(const Estring& a, const Estring& b);
bool operator!=(const Estring& a, const char* b);
bool operator!=(const Estring& a, const Estring& b);
bool operator<(const Estring& a, const char* b);
bool operator<(const Estring& a, const Estring& b);
bool operator<=(const Estring& a, const char* b);
bool operator<=(const Estring& a, const Estring& b);
bool operator>(const Estring& a, const char* b);
bool operator>(const Estring& a, const Estring& b);
bool operator>=(const Estring& a, const char* b);
bool operator>=(const Estring& a, const Estring& b);

Estring left(const Estring& text, int count);
Estring right(const Estring& text, int count);
Estring mid(const Estring& text, int position, int count);  // count 0: to the end
Estring dropRight(const Estring& text, int count);
Estring padLeft(const Estring& text, int width, char fill = ' ');   // keeps the last characters
Estring padRight(const Estring& text, int width, char fill = ' ');  // keeps the first characters
Estring ltrim(const Estring& text);
Estring rtrim(const Estring& text);
Estring trim(const Estring& text);
// Tab stops fall one column before the multiples of `width`; a tab in the last column vanishes. The
// text viewers line up with it.
Estring expandTabs(const Estring& text, int width);
Estring stripSlash(const Estring& path);
Estring addSlash(const Estring& path);
