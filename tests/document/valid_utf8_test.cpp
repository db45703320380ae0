#include "editor/document/valid_utf8.h"

#include <gtest/gtest.h>

#include <random>

#include "editor/text/text_encoding.h"

namespace {
// What the decoder says, which goes byte by byte.
bool decodesWhole(const std::string& bytes) {
  std::wstring text;
  return decodeText(bytes, {TextFormat::Utf8, 0}, text);
}

const std::string Pieces[] = {"a",
                              "\x7F",
                              "\xC2\x80",
                              "\xDF\xBF",
                              "\xE0\xA0\x80",
                              "\xED\x9F\xBF",
                              "\xEE\x80\x80",
                              "\xEF\xBF\xBF",
                              "\xF0\x90\x80\x80",
                              "\xF4\x8F\xBF\xBF",
                              std::string(1, '\0')};
// A byte too many, one missing, overlong forms, surrogates, what lies behind the last character.
const std::string Faults[] = {"\x80",
                              "\xBF",
                              "\xC2",
                              "\xC0\x80",
                              "\xC1\xBF",
                              "\xE0\x9F\xBF",
                              "\xE1\x80",
                              "\xED\xA0\x80",
                              "\xED\xBF\xBF",
                              "\xE1\x80\x80\x80",
                              "\xF0\x8F\xBF\xBF",
                              "\xF0\x90\x80",
                              "\xF4\x90\x80\x80",
                              "\xF5\x80\x80\x80",
                              "\xFE",
                              "\xFF"};
}  // namespace

TEST(ValidUtf8, AFaultIsSeenAtEveryPlaceOfATextOfAnyLength) {
  for (const std::string& fault : Faults) {
    for (size_t before = 0; before < 70; ++before) {
      for (const size_t behind : {0, 1, 2, 3, 31, 32, 33, 64}) {
        const std::string bytes = std::string(before, 'a') + fault + std::string(behind, 'b');
        ASSERT_FALSE(isValidUtf8(bytes)) << before << ' ' << behind;
      }
    }
  }
}

TEST(ValidUtf8, EveryCharacterIsOneAtEveryPlace) {
  EXPECT_TRUE(isValidUtf8(""));
  for (const std::string& piece : Pieces) {
    for (size_t before = 0; before < 70; ++before) {
      for (const size_t behind : {0, 1, 2, 3, 31, 32, 33, 64}) {
        const std::string bytes = std::string(before, 'a') + piece + std::string(behind, 'b');
        ASSERT_TRUE(isValidUtf8(bytes)) << before << ' ' << behind;
      }
    }
  }
}

TEST(ValidUtf8, SaysWhatTheDecoderSaysOfRandomBytes) {
  std::mt19937 random(5);
  int valid = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string bytes;
    const size_t size = random() % 120;
    while (bytes.size() < size) bytes += Pieces[random() % std::size(Pieces)];
    const unsigned damage = random() % 3;
    if (damage == 1 && !bytes.empty()) bytes[random() % bytes.size()] = static_cast<char>(random());
    if (damage == 2) bytes.resize(random() % (bytes.size() + 1));
    ASSERT_EQ(isValidUtf8(bytes), decodesWhole(bytes));
    valid += isValidUtf8(bytes) ? 1 : 0;
  }
  EXPECT_GT(valid, 5000);
  EXPECT_LT(valid, 19000);
}
