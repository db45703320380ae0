#include "tools/help_file.h"

#include <gtest/gtest.h>

#include <random>

#include "foundation/utf8.h"

namespace {

using Lines = std::vector<std::string>;

std::string word(int value) {
  return {static_cast<char>(value & 255), static_cast<char>(value >> 8 & 255)};
}

std::string record(int number, const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\0';
  return word(number) + word(static_cast<int>(text.size()) + 4) + text;
}

Lines topic(const std::string& file, int number) {
  Lines result;
  for (const Westring& line : HelpFile(file).topic(number)) result.push_back(toUtf8(line).data());
  return result;
}

const std::string twoTopics = record(1, {"Panels", "", "second"}) + record(0, {"Index"});
const std::string endRecord = record(HelpFile::EndRecord, {"No help"});

TEST(HelpFile, ATopicIsFoundByItsNumberWhereverItStands) {
  EXPECT_EQ(topic(twoTopics + endRecord, 1), (Lines{"Panels", "", "second"}));
  EXPECT_EQ(topic(twoTopics + endRecord, 0), Lines{"Index"});
}

TEST(HelpFile, WithoutTheTopicTheEndRecordIsShown) {
  EXPECT_EQ(topic(twoTopics + endRecord, 77), Lines{"No help"});
  EXPECT_EQ(topic(twoTopics + endRecord + record(77, {"behind the end"}), 77), Lines{"No help"});
}

TEST(HelpFile, AFileOfOnlyTheEndRecordGivesAnEmptyTopicForAnyNumber) {
  for (int number : {0, 1, 2, 103, HelpFile::EndRecord, -1}) {
    EXPECT_EQ(topic(record(HelpFile::EndRecord, {}), number), Lines{}) << number;
  }
}

TEST(HelpFile, WithoutAnEndRecordAMissingTopicIsEmpty) {
  EXPECT_EQ(topic(twoTopics, 77), Lines{});
  EXPECT_EQ(topic("", 1), Lines{});
  EXPECT_EQ(topic("abc", 1), Lines{});
}

TEST(HelpFile, ASizeBelowItsHeaderEndsTheFile) {
  for (int size : {0, 3, -1, -32768}) {
    EXPECT_EQ(topic(word(5) + word(size) + twoTopics + endRecord, 1), Lines{}) << size;
    EXPECT_EQ(topic(word(1) + word(size) + "text" + endRecord, 1), Lines{}) << size;
  }
}

TEST(HelpFile, ASizeBeyondTheFileEndsIt) {
  const std::string last = record(1, {"Panels"});
  EXPECT_EQ(topic(last, 1), Lines{"Panels"});
  EXPECT_EQ(topic(last.substr(0, last.size() - 1), 1), Lines{});
  EXPECT_EQ(topic(twoTopics + word(2) + word(32767) + "text", 1), (Lines{"Panels", "", "second"}));
}

TEST(HelpFile, LinesEndWithTheirRecordAndAreCutAtTheWidthOfTheWindow) {
  const std::string open = word(1) + word(8) + "text" + endRecord;
  EXPECT_EQ(topic(open, 1), Lines{"text"});
  const std::string columns(HelpFile::LongestLine, 'x');
  EXPECT_EQ(topic(record(1, {columns + "y", columns}), 1), (Lines{columns, columns}));
}

TEST(HelpFile, BytesAreOfCodePage850) {
  EXPECT_EQ(topic(record(1, {"\x84\xC4\x9C"}), 1), Lines{"ä─£"});
}

TEST(HelpFile, DamagedFilesGiveLinesWithinTheWindow) {
  constexpr int copies = 1000, seed = 3;
  std::mt19937 random(seed);
  const std::string whole = twoTopics + endRecord;
  for (int copy = 0; copy < copies; ++copy) {
    std::string bytes = whole;
    bytes[random() % bytes.size()] = static_cast<char>(random());
    for (int number : {0, 1, 2}) {
      for (const Westring& line : HelpFile(bytes).topic(number)) {
        EXPECT_LE(line.length(), HelpFile::LongestLine) << "seed " << seed << ", copy " << copy;
      }
    }
  }
}

}  // namespace
