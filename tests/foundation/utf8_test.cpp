#include "foundation/utf8.h"

#include <gtest/gtest.h>

#include "support/exact_text.h"

namespace {
wchar_t rawByte(unsigned char byte) {
  return static_cast<wchar_t>(static_cast<signed char>(byte));
}

std::wstring text(std::initializer_list<wchar_t> characters) {
  return std::wstring(characters);
}
}  // namespace

TEST(Utf8, EveryLengthIsEncodedAndDecoded) {
  const std::pair<wchar_t, const char*> rows[] = {{0x01, "\x01"},
                                                  {0x7F, "\x7F"},
                                                  {0x80, "\xC2\x80"},
                                                  {0x7FF, "\xDF\xBF"},
                                                  {0x800, "\xE0\xA0\x80"},
                                                  {0x2302, "\xE2\x8C\x82"},
                                                  {0xFFFF, "\xEF\xBF\xBF"},
                                                  {0x10000, "\xF0\x90\x80\x80"},
                                                  {0x1F600, "\xF0\x9F\x98\x80"},
                                                  {0x10FFFF, "\xF4\x8F\xBF\xBF"}};
  for (const auto& [character, bytes] : rows) {
    EXPECT_EQ(exact(toUtf8(Westring(character, 1))), bytes);
    Westring decoded;
    EXPECT_TRUE(decodeUtf8(bytes, decoded));
    EXPECT_EQ(exact(decoded), text({character}));
    EXPECT_EQ(exact(decodeFileName(bytes)), text({character}));
  }
}

TEST(Utf8, ANegativeValueIsOneByte) {
  EXPECT_EQ(exact(toUtf8(Westring(static_cast<wchar_t>(-1), 1))), "\xFF");
  EXPECT_EQ(exact(toUtf8(Westring(rawByte(0x80), 1))), "\x80");
}

TEST(Utf8, SurrogatesAndValuesBeyondTheLastCharacterAreNotChecked) {
  EXPECT_EQ(exact(toUtf8(Westring(static_cast<wchar_t>(0xD800), 1))), "\xED\xA0\x80");
  EXPECT_EQ(exact(toUtf8(Westring(static_cast<wchar_t>(0x1FFFFF), 1))), "\xF7\xBF\xBF\xBF");
  Westring decoded;
  EXPECT_TRUE(decodeUtf8("\xED\xA0\x80", decoded));
  EXPECT_EQ(decoded[0], 0xD800);
  EXPECT_TRUE(decodeUtf8("\xF7\xBF\xBF\xBF", decoded));
  EXPECT_EQ(decoded[0], 0x1FFFFF);
}

TEST(Utf8, ALeadByteWithoutContinuationIsALatin1Character) {
  Westring decoded;
  EXPECT_FALSE(decodeUtf8("\xC3\x28", decoded));
  EXPECT_EQ(exact(decoded), text({0xC3, L'('}));
}

TEST(Utf8, AnOverlongNulIsMinusOne) {
  Westring decoded;
  for (const char* bytes : {"\xC0\x80", "\xE0\x80\x80", "\xF0\x80\x80\x80"}) {
    EXPECT_FALSE(decodeUtf8(bytes, decoded));
    EXPECT_EQ(exact(decoded), text({-1}));
    EXPECT_EQ(exact(toUtf8(decoded)), "\xFF");
  }
}

TEST(Utf8, OtherOverlongFormsAreTakenByTheGeneralDecoder) {
  Westring decoded;
  EXPECT_TRUE(decodeUtf8("\xC1\x81", decoded));
  EXPECT_EQ(exact(decoded), L"A");
  EXPECT_TRUE(decodeUtf8("\xE0\x81\x81", decoded));
  EXPECT_EQ(exact(decoded), L"A");
}

TEST(Utf8, InvalidBytesAreTakenOneByOne) {
  Westring decoded;
  EXPECT_FALSE(decodeUtf8("a\x80\xFE\xE2\x82z", decoded));
  EXPECT_EQ(exact(decoded), text({L'a', 0x80, 0xFE, 0xE2, 0x82, L'z'}));
  EXPECT_FALSE(decodeUtf8("\xE2\x82", decoded));
  EXPECT_EQ(exact(decoded), text({0xE2, 0x82}));
  EXPECT_FALSE(decodeUtf8("\xF0\x9F\x98", decoded));
  EXPECT_EQ(decoded.length(), 3);
  EXPECT_FALSE(decodeUtf8("\xC3", decoded));
  EXPECT_EQ(exact(decoded), text({0xC3}));
  EXPECT_FALSE(decodeUtf8("\xF8\x88\x80\x80\x80", decoded));
  EXPECT_EQ(decoded.length(), 5);
}

TEST(Utf8, DecodingGrowsAsAppendingDoes) {
  EXPECT_EQ(fromUtf8("12345678901234567890").capacity(), 21);
  EXPECT_EQ(fromUtf8("123456789012345678901").capacity(), 27);
  std::string many(100000, 'x');
  EXPECT_EQ(fromUtf8(many.c_str()).length(), 100000);
}

TEST(FileName, EachByteOutsideValidUtf8IsKept) {
  EXPECT_EQ(exact(decodeFileName("a\xFFz")), text({L'a', rawByte(0xFF), L'z'}));
  EXPECT_EQ(exact(decodeFileName("\xE2\x82")), text({rawByte(0xE2), rawByte(0x82)}));
  EXPECT_EQ(exact(decodeFileName("\xC3\x28")), text({rawByte(0xC3), L'('}));
}

TEST(FileName, WhatTheEncoderWouldChangeCountsAsInvalid) {
  for (std::string bytes : {"\xC0\x80", "\xC1\x81", "\xE0\x81\x81", "\xF0\x80\x81\x81",
                            "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF7\xBF\xBF\xBF"}) {
    Westring name = decodeFileName(bytes.c_str());
    ASSERT_EQ(name.length(), static_cast<int>(bytes.size()));
    for (int i = 0; i < name.length(); ++i) {
      EXPECT_EQ(name[i], rawByte(static_cast<unsigned char>(bytes[static_cast<size_t>(i)])));
    }
    EXPECT_EQ(exact(toUtf8(name)), bytes);
  }
}

TEST(FileName, EveryPairOfBytesComesBackAsItWas) {
  for (int first = 1; first < 256; ++first) {
    for (int second = 1; second < 256; ++second) {
      char bytes[] = {static_cast<char>(first), static_cast<char>(second), 0};
      ASSERT_EQ(exact(toUtf8(decodeFileName(bytes))), bytes) << first << ' ' << second;
    }
  }
}

TEST(FileName, ANameOfAnyLengthFitsExactly) {
  for (size_t length :
       {size_t{20}, size_t{21}, size_t{255}, size_t{511}, size_t{512}, size_t{5000}}) {
    std::string bytes(length, 'n');
    Westring name = decodeFileName(bytes.c_str());
    EXPECT_EQ(name.length(), static_cast<int>(length));
    EXPECT_EQ(name.capacity(), length > 20 ? static_cast<int>(length) + 1 : 21);
  }
}

TEST(FileName, TheBufferFormGivesTheLength) {
  wchar_t buffer[8];
  EXPECT_EQ(decodeFileName("\xC3\xA4\xFF", buffer), 2);
  EXPECT_EQ(buffer[0], 0xE4);
  EXPECT_EQ(buffer[1], rawByte(0xFF));
  EXPECT_EQ(buffer[2], 0);
}

TEST(DisplayText, ARawByteShowsAsItsLatin1Character) {
  EXPECT_EQ(displayCharacter(rawByte(0xE4)), 0xE4);
  EXPECT_EQ(displayCharacter(rawByte(0x80)), 0x80);
  EXPECT_EQ(exact(toDisplayUtf8(decodeFileName("\xE4z").data())), "\xC3\xA4z");
}

TEST(DisplayText, WhatIsNoCharacterShowsAsTheHouse) {
  for (wchar_t character : {wchar_t{0}, wchar_t{-129}, wchar_t{0xD800}, wchar_t{0xDFFF},
                            wchar_t{0x110000}, wchar_t{0x7FFFFFFF}, wchar_t{-0x7FFFFFFF}}) {
    EXPECT_EQ(displayCharacter(character), 0x2302) << static_cast<long>(character);
  }
  EXPECT_EQ(exact(toDisplayUtf8(Westring(static_cast<wchar_t>(0xD800), 1).data())), "\xE2\x8C\x82");
}

TEST(DisplayText, CharactersAndControlsStayAsTheyAre) {
  for (wchar_t character : {wchar_t{1}, wchar_t{0x10}, wchar_t{0x7F}, wchar_t{0x2302},
                            wchar_t{0xD7FF}, wchar_t{0xE000}, wchar_t{0x10FFFF}}) {
    EXPECT_EQ(displayCharacter(character), character);
  }
}

TEST(Narrow, KeepsTheLowByteOfEachCharacter) {
  EXPECT_EQ(exact(narrow(Westring(L"a\u0142"))), "aB");
  EXPECT_EQ(exact(narrow(Westring(L"\u00E4"))), "\xE4");
  EXPECT_EQ(narrow(Westring(L"a\u0100z")).length(), 1);
}
