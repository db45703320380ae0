#include "console/cell_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {
std::wstring text(const CellString& cells) {
  std::wstring result;
  for (int i = 0; i < cells.length(); ++i) result += cells[i].ch;
  return result;
}

TEST(CellString, BeginsEmptyWithRoomForTwenty) {
  const CellString cells(0x1E);
  EXPECT_EQ(cells.length(), 0);
  EXPECT_EQ(cells.capacity(), 20);
  EXPECT_EQ(cells.attr(), 0x1E);
}

TEST(CellString, TakesAWideStringInOneAttribute) {
  const CellString cells(L"ab", 0x30);
  EXPECT_EQ(text(cells), L"ab");
  EXPECT_EQ(cells[0].attr, 0x30);
  EXPECT_EQ(cells[1].attr, 0x30);
  EXPECT_EQ(cells.attr(), 0x30);
}

TEST(CellString, GrowsByHalfOfWhatIsNeeded) {
  CellString cells;
  cells.append(std::wstring(21, L'x').c_str(), 7);
  EXPECT_EQ(cells.capacity(), 21 + 10);
  EXPECT_EQ(text(cells), std::wstring(21, L'x'));
}

TEST(CellString, AssignmentBeyondTheCapacityAllocatesExactly) {
  const CellString source(std::wstring(33, L'y').c_str(), 1);
  CellString target;
  target = source;
  EXPECT_EQ(target.capacity(), 33);
  EXPECT_EQ(text(target), text(source));
  EXPECT_EQ(target.attr(), 1);
}

TEST(CellString, AssignmentWithinTheCapacityKeepsTheBuffer) {
  CellString target = CellString::withRoom(50);
  EXPECT_EQ(target.capacity(), 50);
  target = CellString(std::wstring(30, L'z').c_str(), 2);
  EXPECT_EQ(text(target), std::wstring(30, L'z'));
}

TEST(CellString, RoomForFewerThanTwentyStaysInline) {
  EXPECT_EQ(CellString::withRoom(3).capacity(), 20);
  EXPECT_EQ(CellString::withRoom(-3).capacity(), 20);
}

TEST(CellString, AppendTakesAtMostTheGivenNumberAndAllWhenNegative) {
  CellString cells;
  cells.append(L"abcdef", 1, 2).append(L"xyz", 2, -1).append(L"q", 3, 0).append(L"r", 4, 9);
  EXPECT_EQ(text(cells), L"abxyzr");
  EXPECT_EQ(cells[1].attr, 1);
  EXPECT_EQ(cells[2].attr, 2);
  EXPECT_EQ(cells[5].attr, 4);
}

TEST(CellString, TextWithoutAnAttributeTakesTheStringsOwn) {
  CellString cells(0x4F);
  cells.append(L"a");
  EXPECT_EQ(cells[0].attr, 0x4F);
}

TEST(CellString, MidClampsThePositionAndTakesTheRest) {
  const CellString cells(L"abcdef", 7);
  EXPECT_EQ(text(mid(cells, 2, 3)), L"cde");
  EXPECT_EQ(text(mid(cells, -5, 2)), L"ab");
  EXPECT_EQ(text(mid(cells, 4, -1)), L"ef");
  EXPECT_EQ(text(mid(cells, 4, INT_MAX)), L"ef");
  EXPECT_EQ(text(mid(cells, 99, 1)), L"");
}

TEST(CellString, LeftIsMidFromTheStart) {
  EXPECT_EQ(text(left(CellString(L"abc", 7), 2)), L"ab");
  EXPECT_EQ(text(left(CellString(L"abc", 7), 9)), L"abc");
}

TEST(CellString, PaddedFillsInItsAttributeAndCutsWhatIsLonger) {
  CellString cells(L"abc", 0x1B);
  const CellString wide = padded(cells, 5);
  EXPECT_EQ(text(wide), L"abc  ");
  EXPECT_EQ(wide[4].attr, 0x1B);
  EXPECT_EQ(text(padded(cells, 2)), L"ab");
  EXPECT_EQ(text(padded(cells, 0)), L"");
  EXPECT_EQ(text(padded(cells, -4)), L"");
}

TEST(CellString, ConcatenationKeepsEachPartsColours) {
  const CellString sum = CellString(L"a", 1) + CellString(L"b", 2);
  EXPECT_EQ(text(sum), L"ab");
  EXPECT_EQ(sum[0].attr, 1);
  EXPECT_EQ(sum[1].attr, 2);
  EXPECT_EQ(sum.attr(), 1);
}

TEST(CellString, MayBeAppendedAndAssignedToItself) {
  CellString cells(std::wstring(15, L'a').c_str(), 3);
  cells.append(cells);
  EXPECT_EQ(text(cells), std::wstring(30, L'a'));
  CellString& same = cells;
  cells = same;
  EXPECT_EQ(text(cells), std::wstring(30, L'a'));
}

TEST(CellString, MovesFromTheHeapAndFromInside) {
  CellString big(std::wstring(40, L'b').c_str(), 5);
  CellString moved(std::move(big));
  EXPECT_EQ(text(moved), std::wstring(40, L'b'));
  CellString small(L"s", 6);
  moved = std::move(small);
  EXPECT_EQ(text(moved), L"s");
  EXPECT_EQ(moved.attr(), 6);
}
}  // namespace
