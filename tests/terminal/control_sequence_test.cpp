#include "terminal/control_sequence.h"

#include <gtest/gtest.h>

#include <sstream>

#include "terminal/utf8_tail.h"

namespace {
// "final length: arguments", or "cut".
std::string read(std::string_view bytes) {
  const auto sequence = readControlSequence(bytes);
  if (!sequence) return "cut";
  std::ostringstream text;
  text << sequence->final << " " << sequence->length << ":";
  for (int i = 0; i < sequence->count; ++i) text << " " << sequence->argument(i, -1);
  return text.str();
}

TEST(ControlSequence, NumbersEndAtSemicolonsAndTheNextByteIsTheFinalOne) {
  const std::pair<const char*, const char*> rows[] = {
      {"m", "m 1:"},
      {"0m", "m 2: 0"},
      {"12;34Hrest", "H 6: 12 34"},
      {"1;m", "m 3: 1 0"},
      {"1;;3m", "m 5: 1 0 3"},
      {"1;;;m", "m 5: 1 0 0 0"},
      {"007A", "A 4: 7"},
      {"?25l", "? 1:"},
      {";5H", "; 1:"},
      {"1:2m", ": 2: 1"},
      {"\x1b[m", "\x1b 1:"},
      {"5\n", "\n 2: 5"},
      {"65535A", "A 6: 65535"},
      {"65536A", "A 6: 65535"},
      {"99999999999999999999A", "A 21: 65535"},
  };
  for (const auto& [bytes, expected] : rows) EXPECT_EQ(read(bytes), expected) << bytes;
}

TEST(ControlSequence, WithoutAFinalByteItIsCut) {
  for (const char* bytes : {"", "1", "1;", "1;2", "123456"}) EXPECT_EQ(read(bytes), "cut");
}

TEST(ControlSequence, KeepsThirtyTwoArgumentsAndReadsOverTheRest) {
  std::string bytes, expected = "m 101:";
  for (int i = 0; i < 50; ++i) bytes += i < 49 ? "7;" : "77";
  bytes += "m";
  for (int i = 0; i < 32; ++i) expected += " 7";
  EXPECT_EQ(read(bytes), expected);
}

TEST(ControlSequence, AnAbsentArgumentIsTheOneAskedFor) {
  const auto none = readControlSequence("A"), zero = readControlSequence("0A");
  EXPECT_EQ(none->argument(0, 1), 1);
  EXPECT_EQ(zero->argument(0, 1), 0);
  EXPECT_EQ(none->atLeastOne(), 1);
  EXPECT_EQ(zero->atLeastOne(), 1);
  EXPECT_EQ(readControlSequence("9;4H")->argument(1, 0), 4);
  EXPECT_EQ(readControlSequence("9H")->argument(1, 0), 0);
}

TEST(Utf8Tail, TellsHowManyBytesOfACutCharacterAreThere) {
  const std::pair<const char*, size_t> rows[] = {
      {"", 0},
      {"a", 0},
      {"\xC3\xA9", 0},
      {"\xC3", 1},
      {"a\xC3", 1},
      {"\xE2", 1},
      {"\xE2\x82", 2},
      {"\xE2\x82\xAC", 0},
      {"\xF0", 1},
      {"\xF0\x9F", 2},
      {"\xF0\x9F\x98", 3},
      {"\xF0\x9F\x98\x80", 0},
      {"\xE2\x82\xAC\xE2\x82", 2},
      // Bytes that begin nothing, and more of them than a character has, are whole.
      {"\x82", 0},
      {"\x82\x82\x82\x82", 0},
      {"\xC3\xA9\xA9", 0},
      {"\xFF", 0},
      {"\xF8", 0},
      {"\xE2\x82\xAC\x82", 0},
  };
  for (const auto& [bytes, tail] : rows) EXPECT_EQ(unfinishedUtf8(bytes), tail) << bytes;
}
}  // namespace
