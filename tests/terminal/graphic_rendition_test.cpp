#include "terminal/graphic_rendition.h"

#include <gtest/gtest.h>

namespace {
struct Outcome {
  int attr;
  std::vector<int> unknown;
};

// Sequences of final byte m, without "ESC [" and m, one after the other.
Outcome apply(const std::vector<std::string>& sequences) {
  Rendition rendition;
  Outcome result{};
  for (const std::string& arguments : sequences) {
    for (int argument : applyRendition(*readControlSequence(arguments + "m"), rendition)) {
      result.unknown.push_back(argument);
    }
  }
  result.attr = rendition.attr;
  return result;
}

int attrAfter(const std::vector<std::string>& sequences) {
  return apply(sequences).attr;
}

TEST(GraphicRendition, AnsiColoursBecomePcColours) {
  const int pc[] = {0, 4, 2, 6, 1, 5, 3, 7};
  for (int colour = 0; colour < 8; ++colour) {
    const std::string digit = std::to_string(colour);
    EXPECT_EQ(attrAfter({"3" + digit}), pc[colour]) << colour;
    EXPECT_EQ(attrAfter({"4" + digit}), 7 | pc[colour] << 4) << colour;
    EXPECT_EQ(attrAfter({"9" + digit}), pc[colour] | 8) << colour;
    EXPECT_EQ(attrAfter({"10" + digit}), 7 | (pc[colour] | 8) << 4) << colour;
  }
}

TEST(GraphicRendition, StylesAreColours) {
  const std::pair<std::vector<std::string>, int> rows[] = {
      {{"1"}, 0x0F},
      {{"4"}, 0x87},
      {{"7"}, 0x70},
      {{"7", "7"}, 0x07},
      {{"31", "1"}, 0x0C},
      {{"44;4"}, 0x97},
      {{"31;44;7"}, 0x41},
      {{"1", "22"}, 0x07},
      {{"4", "24"}, 0x07},
      {{"7", "27"}, 0x07},
      {{"27"}, 0x07},
      {{"31;44", "27"}, 0x14},
      {{"7", "0", "27"}, 0x07},
      {{"31;44;1;4", "0"}, 0x07},
      {{"31;44;1;4", ""}, 0x07},
      {{"31;44", "39"}, 0x17},
      {{"31;44", "99"}, 0x17},
      {{"31;44", "49"}, 0x04},
      {{"31;44", "109"}, 0x04},
      // A ';' at the end opens an argument of 0.
      {{"31;"}, 0x07},
  };
  for (const auto& [sequences, attr] : rows) {
    EXPECT_EQ(attrAfter(sequences), attr) << sequences.front();
  }
}

// Elsewhere bold outlives a colour: here the colour sets the whole nibble, and that is meant so.
TEST(GraphicRendition, AColourAfterBoldIsNotBright) {
  EXPECT_EQ(attrAfter({"1;34"}), 0x01);
  EXPECT_EQ(attrAfter({"34;1"}), 0x09);
}

TEST(GraphicRendition, WhatHasNoPictureIsSilent) {
  for (const char* silent : {"2", "3", "5", "8", "9", "10", "23", "25", "28", "29"}) {
    const Outcome outcome = apply({"31;44", silent});
    EXPECT_EQ(outcome.attr, 0x14) << silent;
    EXPECT_TRUE(outcome.unknown.empty()) << silent;
  }
}

TEST(GraphicRendition, WhatIsNotUnderstoodIsGivenBackAndTheRestIsDone) {
  const Outcome outcome = apply({"6;31;21;38;1;50;98;65535;44"});
  EXPECT_EQ(outcome.attr, 0x14);
  EXPECT_EQ(outcome.unknown, (std::vector<int>{6, 21, 50, 98, 65535}));
}

TEST(GraphicRendition, ElevenAndTenSwitchTheHighBytes) {
  Rendition rendition;
  applyRendition(*readControlSequence("11m"), rendition);
  EXPECT_EQ(rendition.highBytes, Rendition::HighBytes::CodePage437);
  applyRendition(*readControlSequence("0m"), rendition);
  EXPECT_EQ(rendition.highBytes, Rendition::HighBytes::CodePage437);
  applyRendition(*readControlSequence("10m"), rendition);
  EXPECT_EQ(rendition.highBytes, Rendition::HighBytes::Utf8);
}

TEST(GraphicRendition, ExtendedColoursTakeTheNearestOfSixteenAndTheirOperands) {
  const std::pair<const char*, int> rows[] = {
      {"38;5;1", 0x04},
      {"38;5;4", 0x01},
      {"38;5;9", 0x0C},
      {"38;5;12;1", 0x09},
      {"48;5;1", 0x47},
      {"48;5;10;31", 0xA4},
      {"38;5;16", 0x00},
      {"38;5;231", 0x0F},
      {"38;5;196", 0x0C},
      {"38;5;21", 0x09},
      {"38;5;28", 0x02},
      {"38;5;232", 0x00},
      {"38;5;238", 0x08},
      {"38;5;244", 0x07},
      {"38;5;255", 0x0F},
      {"38;5;65535", 0x0F},
      {"38;2;255;0;0", 0x0C},
      {"38;2;120;130;0;44", 0x16},
      {"38;2;255;255;255", 0x0F},
      {"38;2;999;0;999", 0x0D},
      {"48;2;0;0;250", 0x97},
      // Operands that are missing count as 0.
      {"38;5", 0x00},
      {"38;2;255", 0x0C},
      {"38", 0x07},
  };
  for (const auto& [sequence, attr] : rows) {
    const Outcome outcome = apply({sequence});
    EXPECT_EQ(outcome.attr, attr) << sequence;
    EXPECT_TRUE(outcome.unknown.empty()) << sequence;
  }
}
}  // namespace
