#include "history/history_lines.h"

#include <gtest/gtest.h>

#include "foundation/utf8.h"

namespace {

using TextViews = std::vector<std::string_view>;
constexpr size_t Many = 500;

// The result looks at the content, which stays until the next call.
HistoryContent read(std::string content, size_t most = Many) {
  static std::string read;
  read = std::move(content);
  return readHistoryLines(read, most);
}

TEST(HistoryLines, ACommandIsItsOwnLine) {
  EXPECT_EQ(historyLineOfCommand(L"ls -l"), "ls -l");
  EXPECT_EQ(historyLineOfCommand(L"echo \u20ac"), "echo \xe2\x82\xac");
  EXPECT_EQ(historyLineOfCommand(decodeFileName("cat \xff")), "cat \xff");
}

TEST(HistoryLines, AFieldsEntryHasItsNumberBefore) {
  EXPECT_EQ(historyLineOfField(0, L"a"),
            "0\x19"
            "a");
  EXPECT_EQ(historyLineOfField(11, L" b "), "11\x19 b ");
}

TEST(HistoryLines, WhatWouldNotComeBackIsNotWritten) {
  for (const wchar_t* text : {L"", L"a\nb", L"a\tb", L"a\x19", L"\x7f", L"a\rb", L"1\x19x"}) {
    EXPECT_EQ(historyLineOfCommand(text), "");
    EXPECT_EQ(historyLineOfField(3, text), "");
  }
  EXPECT_EQ(historyLineOfCommand(Westring(L'x', 4095)).size(), 4095u);
  EXPECT_EQ(historyLineOfCommand(Westring(L'x', 4096)), "");
  EXPECT_EQ(historyLineOfCommand(Westring(L'\u00e9', 2048)), "") << "bytes count";
  EXPECT_EQ(historyLineOfField(5, Westring(L'x', 4093)).size(), 4095u);
  EXPECT_EQ(historyLineOfField(5, Westring(L'x', 4094)), "");
}

TEST(HistoryLines, TheMarkMakesAFieldOnlyWithinTheFirstThreeBytes) {
  const HistoryContent content = read(
      "abc\x19"
      "d\n1\x19one\n11\x19two\n123\x19three\n");
  EXPECT_EQ(content.commands, (TextViews{"abc\x19"
                                         "d",
                                         "123\x19three"}));
  EXPECT_EQ(content.fields[1], TextViews{"one"});
  EXPECT_EQ(content.fields[11], TextViews{"two"});
}

TEST(HistoryLines, ANumberThatIsNoFieldsDropsItsLine) {
  const HistoryContent content =
      read("12\x19x\n99\x19x\n\x19x\na\x19x\n1a\x19x\n-1\x19x\n 1\x19x\n3\x19\n03\x19y\n");
  EXPECT_EQ(content.commands, TextViews{});
  for (int i = 0; i < FieldHistoryCount; ++i) {
    EXPECT_EQ(content.fields[i], i == 3 ? TextViews{"y"} : TextViews{}) << i;
  }
}

TEST(HistoryLines, ARepeatedCommandStandsAtItsLastPlace) {
  const HistoryContent content = read("make\r\nls\r\n  make\r\nMake\r\n\r\n   \r\n");
  EXPECT_EQ(content.commands, (TextViews{"ls", "make", "Make"}));
  EXPECT_EQ(content.commandLines, 4u);
}

TEST(HistoryLines, EntriesOfAFieldCompareWithoutCase) {
  const HistoryContent content = read("7\x19*.C\n7\x19*.h\n7\x19*.c\n8\x19*.C\n");
  EXPECT_EQ(content.fields[7], (TextViews{"*.h", "*.c"}));
  EXPECT_EQ(content.fields[8], TextViews{"*.C"});
}

TEST(HistoryLines, OnlyTheNewestCommandsStay) {
  const HistoryContent content = read("a\nb\na\nc\nb\nd\n", 3);
  EXPECT_EQ(content.commands, (TextViews{"c", "b", "d"}));
  EXPECT_EQ(content.commandLines, 6u);
}

TEST(HistoryLines, ALongLineCountsToItsLimitAndItsRestIsNoCommand) {
  for (const size_t length : {4095, 4096, 4097}) {
    const HistoryContent content = read(std::string(length, 'x') + "\nls\n");
    ASSERT_EQ(content.commands.size(), 2u) << length;
    EXPECT_EQ(content.commands[0].size(), std::min<size_t>(length, 4096));
  }
}

TEST(HistoryLines, WrittenAnewEachFieldHasItsNewestTwenty) {
  std::string lines = "ls\nmake\n";
  for (int i = 0; i < 25; ++i) lines += "4\x19text" + std::to_string(i) + "\n";
  const std::string text = historyText(read(lines));
  EXPECT_TRUE(text.starts_with("ls\r\nmake\r\n4\x19text5\r\n")) << text;
  EXPECT_TRUE(text.ends_with("4\x19text24\r\n"));
  EXPECT_EQ(historyText(read(text)), text);
}

TEST(HistoryLines, AHundredThousandDifferentLinesTakeNoSquareOfTime) {
  std::string lines;
  for (int i = 0; i < 100000; ++i) {
    lines += "command number " + std::to_string(i) + "\r\n5\x19text " + std::to_string(i) + "\r\n";
  }
  const HistoryContent content = read(lines, 100000);
  EXPECT_EQ(content.commands.size(), 100000u);
  EXPECT_EQ(content.fields[5].size(), 100000u);
}

}  // namespace
