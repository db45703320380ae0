#include "editor/text/text_encoding.h"

#include <gtest/gtest.h>

#include <random>

#include "document/document_support.h"
#include "foundation/code_page.h"
#include "foundation/utf8.h"

using namespace std::string_literals;

namespace {

constexpr int ByteCount = 256;
const TextEncoding Utf16Le{TextFormat::Utf16Le};
const TextEncoding Utf16Be{TextFormat::Utf16Be};
const TextEncoding Utf32Le{TextFormat::Utf32Le};
const TextEncoding Utf32Be{TextFormat::Utf32Be};
const std::vector<TextEncoding> WideFormats{Utf16Le, Utf16Be, Utf32Le, Utf32Be};

TextEncoding codePage(int number) {
  return {TextFormat::CodePage, number};
}

bool isValid(std::string_view bytes, const TextEncoding& encoding) {
  std::wstring text;
  return decodeText(bytes, encoding, text);
}

size_t refusedAt(const std::wstring& text, const TextEncoding& encoding,
                 CutUnit cut = CutUnit::Refused) {
  std::string bytes;
  return encodeText(text, encoding, bytes, cut);
}

void expectGivenBack(const std::string& bytes, const TextEncoding& encoding) {
  std::string back;
  ASSERT_EQ(encodeText(decoded(bytes, encoding), encoding, back, CutUnit::AllowedAtTheEnd),
            AllEncoded);
  ASSERT_EQ(back, bytes) << toUtf8(formatName(encoding)).data();
}

std::string randomBytes(std::mt19937& random, size_t most) {
  // Few different bytes, so that sequences, pairs and units that look like bytes are met often.
  static const std::string common("\xFF\xFE\xD8\xDC\x81\x40\xC3\xA9\xF0\x9F\x8E\0a\n", 14);
  std::string bytes(random() % most, '\0');
  for (char& byte : bytes) {
    byte = random() % 2 ? common[random() % common.size()] : static_cast<char>(random());
  }
  return bytes;
}

TEST(TextEncoding, FormatsHaveTheirUnitsMarksAndNames) {
  EXPECT_EQ(unitBytes(TextFormat::Utf32Be), 4);
  EXPECT_EQ(unitBytes(TextFormat::Utf16Le), 2);
  EXPECT_EQ(unitBytes(TextFormat::CodePage), 1);
  EXPECT_EQ(markOf(TextFormat::Utf32Le), std::string_view("\xFF\xFE\0\0", 4));
  EXPECT_EQ(markOf(TextFormat::Utf32Be), std::string_view("\0\0\xFE\xFF", 4));
  EXPECT_EQ(markOf(TextFormat::Utf16Le), "\xFF\xFE");
  EXPECT_EQ(markOf(TextFormat::Utf16Be), "\xFE\xFF");
  EXPECT_EQ(markOf(TextFormat::Utf8), "\xEF\xBB\xBF");
  EXPECT_EQ(markOf(TextFormat::CodePage), "");
  EXPECT_STREQ(formatName(Utf32Be).data(), L"UTF-32");
  EXPECT_STREQ(formatName(Utf16Le).data(), L"UTF-16");
  EXPECT_STREQ(formatName(Utf8).data(), L"UTF-8");
  EXPECT_STREQ(formatName(codePage(1252)).data(), L"CP1252");
  EXPECT_STREQ(formatName({}).data(), L"");
}

TEST(TextEncoding, PageZeroIsTheDefaultPage) {
  EXPECT_EQ(codePage(0), codePage(FallbackCodePage));
  EXPECT_NE(codePage(0), codePage(437));
  EXPECT_STREQ(formatName(codePage(0)).data(), L"CP850");
  EXPECT_EQ(decoded("\x84", codePage(0)), L"\u00E4");
}

TEST(TextEncoding, ThePageOfAnotherFormatDoesNotCount) {
  EXPECT_EQ((TextEncoding{TextFormat::Utf8, 1252}), (TextEncoding{TextFormat::Utf8, 437}));
}

TEST(TextEncoding, ValidTextIsDecodedInEachFormat) {
  const std::wstring text = L"a\u00E9\u20AC\U0001F600z";
  for (const TextEncoding& encoding : {Utf8, Utf16Le, Utf16Be, Utf32Le, Utf32Be}) {
    const std::string bytes = encoded(text, encoding);
    EXPECT_EQ(decoded(bytes, encoding), text);
    EXPECT_TRUE(isValid(bytes, encoding));
  }
  EXPECT_EQ(encoded(text, Utf8), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z");
  EXPECT_EQ(encoded(L"\U0001F600", Utf16Le), "\x3D\xD8\x00\xDE"s);
  EXPECT_EQ(encoded(L"\U0001F600", Utf16Be), "\xD8\x3D\xDE\x00"s);
  EXPECT_EQ(encoded(L"a", Utf32Be), "\0\0\0a"s);
}

TEST(TextEncoding, DecodingAppends) {
  std::wstring text = L"before ";
  decodeText("\xC3\xA9", Utf8, text);
  EXPECT_EQ(text, L"before \u00E9");
  std::string bytes = "x";
  encodeText(L"\u00E9", Utf8, bytes);
  EXPECT_EQ(bytes, "x\xC3\xA9");
}

TEST(TextEncoding, InvalidUtf8IsRawBytes) {
  const struct {
    const char* bytes;
    std::wstring text;
  } rows[] = {
      {"\xFF", {wchar_t(-1)}},
      {"\xC3(", {wchar_t(-61), L'('}},
      {"\xC0\x80", {wchar_t(-64), wchar_t(-128)}},                    // overlong
      {"\xED\xA0\x80", {wchar_t(-19), wchar_t(-96), wchar_t(-128)}},  // surrogate
      {"\xE2\x82", {wchar_t(-30), wchar_t(-126)}},                    // cut by the end
  };
  for (const auto& row : rows) {
    EXPECT_EQ(decoded(row.bytes, Utf8), row.text);
    EXPECT_FALSE(isValid(row.bytes, Utf8));
    EXPECT_EQ(encoded(row.text, Utf8), row.bytes);
  }
}

TEST(TextEncoding, EveryByteOfASingleBytePageIsGivenBack) {
  std::string bytes;
  for (int i = 0; i < ByteCount; ++i) bytes += static_cast<char>(i);
  for (const int page : {37, 437, 850, 874, 1250, 1252, 1253, 1255, 1256, 1257, 1258, 9999}) {
    const std::wstring text = decoded(bytes, codePage(page));
    EXPECT_EQ(text.size(), bytes.size()) << page;
    expectGivenBack(bytes, codePage(page));
  }
}

TEST(TextEncoding, BytesThatAPageLacksAreRaw) {
  EXPECT_EQ(decoded("a\x81z", codePage(1252)), (std::wstring{L'a', wchar_t(-127), L'z'}));
  EXPECT_FALSE(isValid("\x81", codePage(1252)));
  EXPECT_TRUE(isValid("\xE9", codePage(1252)));
}

TEST(TextEncoding, APageOfTwoBytesIsReadByCharacters) {
  EXPECT_EQ(decoded("a\x82\xA0\xB1z", codePage(932)), L"a\u3042\uFF71z");
  EXPECT_EQ(encoded(L"a\u3042\uFF71z", codePage(932)), "a\x82\xA0\xB1z");
  EXPECT_EQ(decoded("\x82", codePage(932)), std::wstring{wchar_t(0x82 - 256)});
}

TEST(TextEncoding, EveryPairOfBytesOfAPageOfTwoBytesIsGivenBack) {
  for (const int page : {932, 936, 949, 950}) {
    std::string bytes;
    for (int first = 0; first < ByteCount; ++first) {
      for (int second = 0; second < ByteCount; ++second) {
        bytes += static_cast<char>(first);
        bytes += static_cast<char>(second);
      }
    }
    expectGivenBack(bytes, codePage(page));
  }
}

TEST(TextEncoding, AnUnknownPageHasAsciiAndRawBytesOnly) {
  EXPECT_FALSE(codePageExists(9999));
  EXPECT_FALSE(codePageExists(-1));
  EXPECT_TRUE(codePageExists(0));
  EXPECT_TRUE(codePageExists(1252));
  EXPECT_EQ(decoded("a\t\x80", codePage(9999)), (std::wstring{L'a', L'\t', wchar_t(-128)}));
  EXPECT_EQ(refusedAt(L"a\u00E9", codePage(9999)), 1u);
}

TEST(TextEncoding, LoneSurrogatesStayUnits) {
  const std::string bytes = "\x00\xDC\x3D\xD8\x3D\xD8\x00\xDE\x3D\xD8"s;
  EXPECT_EQ(decoded(bytes, Utf16Le), (std::wstring{0xDC00, 0xD83D, wchar_t(0x1F600), 0xD83D}));
  expectGivenBack(bytes, Utf16Le);
}

TEST(TextEncoding, AllBitsOfAUnitOfUtf32AreKept) {
  for (const std::string& bytes :
       {"\x00\x00\x11\x00"s, "\xFF\xFF\xFF\x7F"s, "\x00\x00\x00\x80"s, "\xFF\xFE\xFF\xFF"s,
        "\xFF\xFF\xFF\xFF"s, "\x80\xFF\xFF\xFF"s, "\xFF\xFF\xFF\x80"s}) {
    expectGivenBack(bytes, Utf32Le);
    expectGivenBack(bytes, Utf32Be);
    expectGivenBack("a\0\0\0"s + bytes + "z\0\0\0"s, Utf32Le);
  }
}

TEST(TextEncoding, ATailShorterThanAUnitComesAsRawBytes) {
  EXPECT_EQ(decoded("a\0b"s, Utf16Le), (std::wstring{L'a', L'b' - 256}));
  EXPECT_EQ(decoded("\0\0\0a\0\xFF"s, Utf32Be), (std::wstring{L'a', wchar_t(-256), wchar_t(-1)}));
  EXPECT_FALSE(isValid("a\0b"s, Utf16Le));
  expectGivenBack("a\0b"s, Utf16Le);
  expectGivenBack("\0\0\0a\0\xFF\n"s, Utf32Be);
}

TEST(TextEncoding, ATailGoesOutAtTheEndOfATextOnly) {
  const std::wstring tail{L'a', wchar_t(-1)};
  for (const TextEncoding& encoding : WideFormats) {
    EXPECT_EQ(refusedAt(tail, encoding), 1u);
    EXPECT_EQ(refusedAt(tail, encoding, CutUnit::AllowedAtTheEnd), AllEncoded);
    EXPECT_EQ(refusedAt(tail + L"z", encoding, CutUnit::AllowedAtTheEnd), 1u);
  }
}

TEST(TextEncoding, WhatAFormatLacksIsRefusedAtItsIndex) {
  EXPECT_EQ(refusedAt(L"ab\u0416", codePage(1252)), 2u);
  EXPECT_EQ(refusedAt(L"ab\u0416", codePage(1251)), AllEncoded);
  EXPECT_EQ(refusedAt({L'a', wchar_t(0x110000)}, Utf8), 1u);
  EXPECT_EQ(refusedAt({L'a', wchar_t(0xD800)}, Utf8), 1u);
  EXPECT_EQ(refusedAt({L'a', wchar_t(0x110000)}, Utf16Le), 1u);
  EXPECT_EQ(refusedAt({L'a', wchar_t(-300)}, Utf16Le), 1u);
  for (const TextEncoding& encoding : WideFormats) {
    EXPECT_EQ(refusedAt({L'a', wchar_t(-23), L'z'}, encoding), 1u);
  }
}

TEST(TextEncoding, AnyBytesAreGivenBackInEachFormat) {
  std::mt19937 random(7);
  for (int round = 0; round < 4000; ++round) {
    const std::string bytes = randomBytes(random, 40);
    for (const TextEncoding& encoding :
         {Utf8, Utf16Le, Utf16Be, Utf32Le, Utf32Be, codePage(850), codePage(932), codePage(1258),
          codePage(930), codePage(936)}) {
      expectGivenBack(bytes, encoding);
    }
  }
}

}  // namespace
