#include "editor/text/line_ends.h"

#include <gtest/gtest.h>

#include <random>

using namespace std::string_literals;

namespace {

const std::vector<TextFormat> Formats{TextFormat::Utf32Le, TextFormat::Utf32Be,
                                      TextFormat::Utf16Le, TextFormat::Utf16Be,
                                      TextFormat::Utf8,    TextFormat::CodePage};

// `text`, ASCII and NUL, in units of the format.
std::string inUnits(const std::string& text, TextFormat format) {
  std::string bytes;
  encodeText(std::wstring(text.begin(), text.end()), {format, 850}, bytes);
  return bytes;
}

// The letter of the rule, one unit after the other.
LineEnd naiveLineEnd(const std::string& text, size_t from) {
  const std::string kinds("\r\n\0", 3);
  LineEnd result{from, 0};
  while (result.at < text.size() && kinds.find(text[result.at]) == std::string::npos) ++result.at;
  std::string seen;
  for (size_t at = result.at; at < text.size(); ++at) {
    if (kinds.find(text[at]) == std::string::npos || seen.find(text[at]) != std::string::npos) {
      break;
    }
    seen += text[at];
  }
  result.length = seen.size();
  return result;
}

TEST(LineEnds, EachKindEndsALineOnce) {
  const struct {
    std::string text;
    size_t at, length;
  } rows[] = {{"ab", 2, 0},          {"", 0, 0},
              {"ab\ncd", 2, 1},      {"ab\r\ncd", 2, 2},
              {"ab\n\rcd", 2, 2},    {"ab\rcd", 2, 1},
              {"ab\0cd"s, 2, 1},     {"ab\n\ncd", 2, 1},
              {"ab\r\rcd", 2, 1},    {"ab\r\n\0cd"s, 2, 3},
              {"ab\0\r\n\0"s, 2, 3}, {"\n", 0, 1},
              {"ab\r\n\r\n", 2, 2}};
  for (const auto& row : rows) {
    for (const TextFormat format : Formats) {
      const size_t width = static_cast<size_t>(unitBytes(format));
      const LineEnd found = findLineEnd(inUnits(row.text, format), 0, format);
      EXPECT_EQ(found.at, row.at * width) << row.text;
      EXPECT_EQ(found.length, row.length * width) << row.text;
    }
  }
}

TEST(LineEnds, AUnitWithAByteOfALineEndIsNone) {
  const std::string bytes = "\x0A\x01\x01\x0D\x00\x20"s;
  EXPECT_EQ(findLineEnd(bytes, 0, TextFormat::Utf16Le).at, bytes.size());
  EXPECT_EQ(findLineEnd(bytes, 0, TextFormat::Utf16Be).at, bytes.size());
}

TEST(LineEnds, ATailShorterThanAUnitEndsNoLine) {
  const std::string bytes = "a\0\n"s;
  EXPECT_EQ(findLineEnd(bytes, 0, TextFormat::Utf16Le).at, bytes.size());
  EXPECT_EQ(findLineEnd("a\0\0\0\n\0\0"s, 0, TextFormat::Utf32Le).length, 0u);
  EXPECT_EQ(findLineEnd("\r\0\n"s, 0, TextFormat::Utf16Le).length, 2u);
}

TEST(LineEnds, SearchingBehindTheEndFindsNone) {
  EXPECT_EQ(findLineEnd("ab\n", 3, TextFormat::Utf8).at, 3u);
  EXPECT_EQ(findLineEnd("ab\n", 9, TextFormat::Utf8).at, 3u);
}

TEST(LineEnds, WhereverTheEndStandsItIsFound) {
  std::mt19937 random(3);
  for (int round = 0; round < 3000; ++round) {
    std::string text(random() % 100, 'x');
    for (size_t i = 0; i < text.size(); ++i) {
      if (random() % 20 == 0) text[i] = "\r\n\0\n"[random() % 4];
    }
    const size_t from = text.empty() ? 0 : random() % text.size();
    const LineEnd wanted = naiveLineEnd(text, from);
    for (const TextFormat format : Formats) {
      const size_t width = static_cast<size_t>(unitBytes(format));
      const LineEnd found = findLineEnd(inUnits(text, format), from * width, format);
      ASSERT_EQ(found.at, wanted.at * width);
      ASSERT_EQ(found.length, wanted.length * width);
    }
  }
}

TEST(LineEnds, TheStyleIsThatOfAnEndWithAnLf) {
  EXPECT_EQ(styleOf("\n"), LineEndStyle::Lf);
  EXPECT_EQ(styleOf("\r\n"), LineEndStyle::CrLf);
  EXPECT_EQ(styleOf("\n\r"), LineEndStyle::CrLf);
  EXPECT_EQ(styleOf("\r"), LineEndStyle::Unknown);
  EXPECT_EQ(styleOf("\0"s), LineEndStyle::Unknown);
  EXPECT_EQ(styleOf("\0\n"s), LineEndStyle::Lf);
  EXPECT_EQ(styleOf("\r\0\n\0"s), LineEndStyle::CrLf);
  EXPECT_EQ(styleOf(""), LineEndStyle::Unknown);
}

TEST(LineEnds, NewEndsAreWrittenInUnits) {
  EXPECT_EQ(lineEndBytes(LineEndStyle::Lf, TextFormat::Utf8), "\n");
  EXPECT_EQ(lineEndBytes(LineEndStyle::CrLf, TextFormat::CodePage), "\r\n");
  EXPECT_EQ(lineEndBytes(LineEndStyle::Unknown, TextFormat::Utf8), "\r\n");
  EXPECT_EQ(lineEndBytes(LineEndStyle::Lf, TextFormat::Utf16Be), "\0\n"s);
  EXPECT_EQ(lineEndBytes(LineEndStyle::CrLf, TextFormat::Utf32Le), "\r\0\0\0\n\0\0\0"s);
}

}  // namespace
