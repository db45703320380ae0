#pragma once

#include "foundation/estring.h"

// Wide text, one 32-bit character each: everything shown, every file name, every editor line.
// The comparison operators ignore case: they are for texts. Paths and names are compared exactly,
// with sameName of names.h.
class Westring {
 public:
  static constexpr int InlineSize = 21;

  Westring();
  Westring(const wchar_t* text);        // null gives the empty string
  explicit Westring(const char* utf8);  // null gives the empty string; see utf8.h for invalid bytes
  Westring(const char* bytes, int codePage);
  explicit Westring(const Estring& ascii);  // each byte sign-extended: for ASCII text only
  Westring(wchar_t character, int count);
  Westring(const Westring& other);
  Westring(Westring&& other) noexcept;
  ~Westring();

  static Westring withRoom(int characters);

  Westring& operator=(const wchar_t* text);
  Westring& operator=(const Westring& other);
  Westring& operator=(Westring&& other) noexcept;

  int length() const;
  bool empty() const { return data_[0] == 0; }
  int capacity() const { return capacity_; }
  const wchar_t* data() const { return data_; }
  wchar_t* data() { return data_; }
  bool isInline() const { return data_ == inlineBuf_; }

  wchar_t& operator[](int index);
  wchar_t operator[](int index) const;

  // Each call measures the whole text first: a text of many pieces is measured once, made by
  // withRoom and filled through data(), or the time grows with the square of its length.
  Westring& operator+=(wchar_t character);
  Westring& operator+=(char character);  // sign-extended
  Westring& operator+=(const wchar_t* text);
  Westring& operator+=(const Westring& other);

  int find(wchar_t character) const;  // all searches: index or -1
  int rfind(wchar_t character) const;
  int find(const Westring& text) const;
  int find(const Westring& text, int from) const;
  int findNoCase(const Westring& text) const;
  int findNth(wchar_t character, int n) const;  // counted from 1
  int findUnquoted(wchar_t character) const;    // outside double quotes

  bool replaceFirst(const Westring& from, const Westring& to);
  bool replaceAll(const Westring& from, const Westring& to);

 private:
  friend bool decodeUtf8(const char* bytes, Westring& result);

  void assign(const wchar_t* text, int count);
  void append(const wchar_t* text, int count);
  void growKeeping(int count, int length);    // by the rule for appending to a text of `length`
  void adopt(wchar_t* buffer, int capacity);  // takes `buffer` over, ends the old one

  wchar_t* data_;
  int capacity_;  // characters, terminator included
  wchar_t inlineBuf_[InlineSize];
};

Westring operator+(const Westring& a, const wchar_t* b);
Westring operator+(const wchar_t* a, const Westring& b);
Westring operator+(const Westring& a, const Westring& b);

bool operator==(const Westring& a, const wchar_t* b);
bool operator==(const Westring& a, const Westring& b);
bool operator!=(const Westring& a, const wchar_t* b);
bool operator!=(const Westring& a, const Westring& b);

Westring left(const Westring& text, int count);
Westring right(const Westring& text, int count);
Westring mid(const Westring& text, int position, int count);  // count 0: to the end
Westring dropRight(const Westring& text, int count);
Westring padLeft(const Westring& text, int width, wchar_t fill = L' ');
Westring padRight(const Westring& text, int width, wchar_t fill = L' ');
Westring ltrim(const Westring& text);
Westring rtrim(const Westring& text);
Westring trim(const Westring& text);
Westring lower(const Westring& text);  // towlower: follows the locale
Westring upper(const Westring& text);
