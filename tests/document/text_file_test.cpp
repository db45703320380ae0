#include "editor/text/text_file.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace {

constexpr size_t TrialBytes = 32768;

TextFormat formatOf(const std::string& bytes) {
  return CTextFile::detect(bytes).encoding.format;
}

std::string inFormat(const std::wstring& text, TextFormat format) {
  std::string bytes;
  EXPECT_EQ(encodeText(text, {format}, bytes), AllEncoded);
  return bytes;
}

TEST(TextFile, AMarkTellsTheFormat) {
  const struct {
    std::string bytes;
    TextFormat format;
    size_t start;
  } rows[] = {
      {"\xFF\xFE\0\0"s, TextFormat::Utf32Le, 4}, {"\0\0\xFE\xFF"s, TextFormat::Utf32Be, 4},
      {"\xFF\xFE", TextFormat::Utf16Le, 2},      {"\xFF\xFE\0"s, TextFormat::Utf16Le, 2},
      {"\xFE\xFF", TextFormat::Utf16Be, 2},      {"\xEF\xBB\xBF", TextFormat::Utf8, 3},
      {"\xEF\xBB\xBF\xFF", TextFormat::Utf8, 3},
  };
  for (const auto& row : rows) {
    const CTextFile found = CTextFile::detect(row.bytes);
    EXPECT_EQ(found.encoding.format, row.format);
    EXPECT_TRUE(found.hasMark());
    EXPECT_EQ(found.textStart, row.start);
  }
}

TEST(TextFile, AMarkMustLieInsideTheFile) {
  for (const std::string bytes : {"\xFE", "\xFF", "\xEF\xBB"}) {
    const CTextFile found = CTextFile::detect(bytes);
    EXPECT_EQ(found.encoding.format, TextFormat::CodePage);
    EXPECT_FALSE(found.hasMark());
    EXPECT_EQ(found.textStart, 0u);
  }
}

TEST(TextFile, AMarkWinsOverTheChosenFormatAndThatOverTheLook) {
  const TextEncoding chosen{TextFormat::CodePage, 1252};
  EXPECT_EQ(CTextFile::detect("\xEF\xBB\xBFx", chosen).encoding.format, TextFormat::Utf8);
  EXPECT_EQ(CTextFile::detect("\xC3\xA9", chosen).encoding, chosen);
  EXPECT_EQ(CTextFile::detect("\xC3\xA9").encoding.format, TextFormat::Utf8);
}

TEST(TextFile, ABinaryFileThatBeginsWithTheMarkIsUtf16) {
  EXPECT_EQ(formatOf("\xFF\xFE\x01\x02\x03\xFF"), TextFormat::Utf16Le);
}

TEST(TextFile, AsciiAndNothingAreUtf8) {
  EXPECT_EQ(formatOf(""), TextFormat::Utf8);
  EXPECT_EQ(formatOf("a"), TextFormat::Utf8);
  EXPECT_EQ(formatOf(std::string(100000, 'a')), TextFormat::Utf8);
}

TEST(TextFile, AByteOfLatin1IsSeenInTheFirst32768Bytes) {
  std::string text(40000, 'a');
  for (const auto& [place, format] : {std::pair{size_t{10}, TextFormat::CodePage},
                                      {TrialBytes - 1, TextFormat::CodePage},
                                      {TrialBytes, TextFormat::Utf8}}) {
    std::string bytes = text;
    bytes[place] = '\xE9';
    EXPECT_EQ(formatOf(bytes), format) << place;
    EXPECT_EQ(formatOf(bytes.substr(0, CTextFile::DetectionBytes)), format) << place;
  }
}

TEST(TextFile, ASequenceThatBeginsInTheTrialIsReadToItsEnd) {
  const std::string head(TrialBytes - 1, 'a');
  EXPECT_EQ(formatOf((head + "\xF0\x9F\x98\x80zz").substr(0, CTextFile::DetectionBytes)),
            TextFormat::Utf8);
  EXPECT_EQ(formatOf((head + "\xF0\x9F\x98zz").substr(0, CTextFile::DetectionBytes)),
            TextFormat::CodePage);
}

TEST(TextFile, WhatIsNoUtf8IsACodePage) {
  for (const std::string& bytes :
       {"\xC3"s, "\xC3("s, "\x80"s, "\xFF"s, "\xF8\x80\x80\x80\x80"s, "a\0b"s}) {
    EXPECT_EQ(formatOf(bytes), TextFormat::CodePage);
  }
}

TEST(TextFile, Utf16WithoutAMarkNeedsABlankAndALineFeed) {
  for (const TextFormat format : {TextFormat::Utf16Le, TextFormat::Utf16Be}) {
    EXPECT_EQ(formatOf(inFormat(L"one two\n", format)), format);
    EXPECT_EQ(formatOf(inFormat(L"one two", format)), TextFormat::CodePage);
    EXPECT_EQ(formatOf(inFormat(L"one\ntwo", format)), TextFormat::CodePage);
    EXPECT_EQ(formatOf(inFormat(std::wstring(TrialBytes / 2 - 2, L'a') + L" \n", format)), format);
    EXPECT_EQ(formatOf(inFormat(std::wstring(TrialBytes / 2 - 1, L'a') + L" \n", format)),
              TextFormat::CodePage);
  }
}

TEST(TextFile, AnImplausibleUnitIsNoUtf16) {
  for (const wchar_t unit : {2043, 2304, 6688, 7296, 11263, 42648, 43002, 43519, 44031, 63743}) {
    EXPECT_NE(formatOf(inFormat(std::wstring{unit} + L" \n", TextFormat::Utf16Le)),
              TextFormat::Utf16Le);
  }
  for (const wchar_t unit : {2042, 2305, 6687, 6912, 11264, 42647, 44032, 55203, 63744}) {
    EXPECT_EQ(formatOf(inFormat(std::wstring{unit} + L" \n", TextFormat::Utf16Le)),
              TextFormat::Utf16Le)
        << static_cast<int>(unit);
  }
}

TEST(TextFile, Utf32WithoutAMarkNeedsABlankOrALineFeed) {
  for (const TextFormat format : {TextFormat::Utf32Le, TextFormat::Utf32Be}) {
    EXPECT_EQ(formatOf(inFormat(L"one two", format)), format);
    EXPECT_EQ(formatOf(inFormat(L"one\n", format)), format);
    EXPECT_NE(formatOf(inFormat(L"one", format)), format);
    EXPECT_NE(formatOf(inFormat(L"one " + std::wstring{0x110000}, format)), format);
    EXPECT_EQ(formatOf(inFormat(L"one \U0010FFFF", format)), format);
  }
}

TEST(TextFile, OnlyWholeUnitsCount) {
  EXPECT_EQ(formatOf(inFormat(L"one two\n", TextFormat::Utf16Le) + "\xFF"), TextFormat::Utf16Le);
  EXPECT_EQ(formatOf(inFormat(L"one two", TextFormat::Utf32Be) + "\xFF\xFF\xFF"),
            TextFormat::Utf32Be);
}

TEST(TextFile, TheTextStartsBehindTheMarkOfTheFormatThatItIsReadIn) {
  EXPECT_EQ(CTextFile::readAs({TextFormat::Utf8}, "\xEF\xBB\xBFx").textStart, 3u);
  EXPECT_EQ(CTextFile::readAs({TextFormat::Utf16Le}, "\xEF\xBB\xBFx").textStart, 0u);
  EXPECT_EQ(CTextFile::readAs({TextFormat::CodePage}, "\xEF\xBB\xBFx").textStart, 0u);
  EXPECT_EQ(CTextFile::readAs({TextFormat::Utf16Le}, "\xFF\xFE\0\0"s).textStart, 2u);
}

}  // namespace
