#include <gtest/gtest.h>

#include <iterator>
#include <random>

#include "foundation/fold.h"
#include "foundation/string_collections.h"
#include "foundation/utf8.h"
#include "foundation/wild_match.h"
#include "support/exact_text.h"

// Many inputs made by chance from a fixed seed: what must hold for every text.

namespace {
constexpr unsigned Seed = 20240229;

class TextMaker {
 public:
  unsigned below(size_t limit) { return static_cast<unsigned>(random_() % limit); }

  std::string bytes(size_t longest) {
    std::string result(below(longest + 1), 'x');
    for (char& byte : result) byte = static_cast<char>(1 + below(255));
    return result;
  }
  std::string of(const std::string& alphabet, size_t longest) {
    std::string result(below(longest + 1), 'x');
    for (char& byte : result) byte = alphabet[below(alphabet.size())];
    return result;
  }
  // Mostly well-formed sequences, some of them cut or damaged.
  std::string nearlyUtf8(size_t pieces) {
    const wchar_t edges[] = {1,      0x7F,   0x80,   0x7FF,  0x800,   0xD7FF,
                             0xD800, 0xDFFF, 0xE000, 0xFFFF, 0x10000, 0x10FFFF};
    std::string result;
    for (unsigned i = below(pieces + 1); i > 0; --i) {
      std::string piece = toUtf8(Westring(edges[below(std::size(edges))], 1)).data();
      if (below(8) == 0) piece.resize(below(piece.size() + 1));
      if (below(8) == 0 && !piece.empty())
        piece[below(piece.size())] = static_cast<char>(1 + below(255));
      result += piece;
    }
    return result;
  }

 private:
  std::mt19937 random_{Seed};
};

// The mask rules once more, as plain recursion over the elements: slow, and easy to check by eye.
class PlainMatch {
 public:
  static bool matches(const wchar_t* p, const wchar_t* t) {
    if (*p == 0) return *t == 0;
    if (*p == L'*') return p[1] == 0 || starMatches(p + 1, t);
    if (*p == L'{' && p[1] != L'}' && listMatches(p, t)) return true;
    return *t != 0 && holds(p, *t) && matches(behind(p), t + 1);
  }

 private:
  static bool starMatches(const wchar_t* p, const wchar_t* t) {
    for (;; ++t) {
      if (matches(p, t)) return true;
      if (*t == 0) return false;
    }
  }
  static const wchar_t* behind(const wchar_t* p) {
    const wchar_t* end = *p == L'[' ? wcschr(p + 1, L']') : nullptr;
    return end != nullptr ? end + 1 : p + 1;
  }
  static bool holds(const wchar_t* p, wchar_t character) {
    if (*p == L'?') return true;
    if (behind(p) == p + 1) return foldChar(*p) == foldChar(character);
    return setHolds(p + 1, foldChar(character & 0xFF));
  }
  static bool setHolds(const wchar_t* p, wchar_t target) {
    std::vector<char> flags(65536, *p == L'^');
    bool negate = *p == L'^';
    uint32_t previous = 0;
    for (p += negate ? 1 : 0; *p != L']'; ++p) {
      auto first = static_cast<uint32_t>(*p);
      if (*p == L'^') {
        negate = !negate;
        continue;
      }
      uint32_t last = first;
      if (*p == L'-') {
        first = previous;
        last = p[1] == L']' ? 255 : static_cast<uint32_t>(*++p);
        if (first > last) continue;
        previous = last + 1;
      } else {
        previous = first;
      }
      for (uint32_t code = first; code <= last && code < flags.size(); ++code) {
        flags[static_cast<size_t>(foldChar(static_cast<wchar_t>(code)))] = !negate;
      }
    }
    return flags[static_cast<size_t>(target)] != 0;
  }
  static bool listMatches(const wchar_t* p, const wchar_t* t) {
    const wchar_t* close = p + 1;
    while (*close != 0 && *close != L'}') close = behind(close);
    if (*close == 0) return false;
    for (const wchar_t* start = p + 1; start < close;) {
      const wchar_t* rest = t;
      bool agrees = true;
      for (; start < close && *start != L','; start = behind(start)) {
        agrees = agrees && *rest != 0 && holds(start, *rest);
        if (agrees) ++rest;
      }
      if (agrees && matches(close + 1, rest)) return true;
      ++start;
    }
    return false;
  }
};

// A field as the list reader gives it back.
std::string asField(const std::string& text) {
  std::string result;
  for (char character : text) {
    if (character == '\n') {
      result += "\\010";
    } else if (character == ',' || character == '"' || character == '\\') {
      result += std::string("\\") + character;
    } else {
      result += character;
    }
  }
  return result;
}
}  // namespace

TEST(RandomText, AnyFileNameComesBackByteForByte) {
  TextMaker make;
  for (int i = 0; i < 20000; ++i) {
    std::string name = i % 2 == 0 ? make.bytes(40) : make.nearlyUtf8(20);
    Westring decoded = decodeFileName(name.c_str());
    ASSERT_EQ(exact(toUtf8(decoded)), name);
    ASSERT_LE(decoded.length(), static_cast<int>(name.size()));
  }
}

TEST(RandomText, ValidTextIsDecodedAlikeByBothDecoders) {
  TextMaker make;
  int valid = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string bytes = make.nearlyUtf8(12);
    Westring general;
    bool whole = decodeUtf8(bytes.c_str(), general);
    Westring name = decodeFileName(bytes.c_str());
    bool raw = false;
    for (int k = 0; k < name.length(); ++k) raw = raw || name[k] < 0;
    if (!raw) {
      ASSERT_TRUE(whole);
      ASSERT_EQ(exact(general), exact(name));
      ++valid;
    }
    if (!whole) {
      ASSERT_TRUE(raw);
    }
  }
  EXPECT_GT(valid, 1000);
}

TEST(RandomText, WhatIsShownIsAlwaysValid) {
  TextMaker make;
  for (int i = 0; i < 5000; ++i) {
    Westring text;
    for (unsigned k = make.below(20); k > 0; --k) {
      text += static_cast<wchar_t>(make.below(2) == 0 ? make.below(0x120000) + 1
                                                      : make.below(0xFFFFFFFF) + 1);
    }
    Estring shown = toDisplayUtf8(text.data());
    Westring back;
    ASSERT_TRUE(decodeUtf8(shown.data(), back));
    ASSERT_EQ(back.length(), text.length());
    ASSERT_EQ(exact(decodeFileName(shown.data())), exact(back));
  }
}

TEST(RandomText, MasksMatchAsThePlainRecursionDoes) {
  TextMaker make;
  int matched = 0;
  for (int i = 0; i < 60000; ++i) {
    Westring pattern(make.of("aAbc.*?[]{},^-", 12).c_str());
    Westring text(make.of("aBbc.{},-^", 8).c_str());
    bool result = wildMatch(pattern.data(), text.data());
    ASSERT_EQ(result, PlainMatch::matches(pattern.data(), text.data()))
        << toUtf8(pattern).data() << " on " << toUtf8(text).data();
    ASSERT_EQ(wildMatch(toUtf8(pattern).data(), toUtf8(text).data()), result)
        << toUtf8(pattern).data() << " on " << toUtf8(text).data();
    matched += result;
  }
  EXPECT_GT(matched, 1000);
}

TEST(RandomText, AnyBytesAreAMaskAndAText) {
  TextMaker make;
  for (int i = 0; i < 5000; ++i) {
    std::string pattern = make.of("*?[]{},^-\xE4\x80\xFF z", 30);
    std::string text = make.bytes(60);
    wildMatch(pattern.c_str(), text.c_str());
    Westring widePattern = decodeFileName(pattern.c_str());
    Westring wideText = decodeFileName(text.c_str());
    ASSERT_EQ(wildMatch(widePattern.data(), wideText.data()),
              PlainMatch::matches(widePattern.data(), wideText.data()));
  }
}

TEST(RandomText, FieldsOfAListComeBack) {
  TextMaker make;
  for (int i = 0; i < 5000; ++i) {
    std::vector<std::string> fields(1 + make.below(5));
    std::string list;
    for (std::string& field : fields) {
      field = i % 2 == 0 ? make.bytes(12) : make.of("a1,\"\\\n", 8);
      list += asField(field) + ",";
    }
    const char* cursor = list.c_str();
    for (const std::string& field : fields) ASSERT_EQ(exact(nextField(cursor)), field) << list;
    ASSERT_EQ(*cursor, 0);
  }
}

TEST(RandomText, AnyBytesAreAList) {
  TextMaker make;
  for (int i = 0; i < 5000; ++i) {
    std::string list = make.of("ab019,,\"\"\\\\\n", 30);
    const char* cursor = list.c_str();
    const char* end = cursor + list.size();
    while (*cursor != 0) {
      const char* before = cursor;
      Estring field = nextField(cursor);
      ASSERT_GT(cursor, before);
      ASSERT_LE(cursor, end);
      ASSERT_LE(field.length(), cursor - before);
    }
    StringCollection collection;
    collection.addList(list.c_str());
  }
}
