#include "editor/document/run_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {
constexpr int64_t Lines = 20000;

RunTree treeOf(int64_t lines) {
  std::string bytes;
  for (int64_t i = 0; i < lines; ++i) bytes += std::to_string(i) + "\n";
  return RunTree({scanText(std::move(bytes), 0, {}).lines});
}

std::wstring textOf(const RunTree& tree, int64_t line) {
  const RunTree::Found found = tree.find(line);
  return found.run->text(line - found.linesBefore);
}

int64_t runsOf(const RunTree& tree) {
  int64_t runs = 0;
  tree.forEach([&runs](const TextRun&) { return ++runs > 0; });
  return runs;
}

void expectFlat(const RunTree& tree) {
  const auto runs = static_cast<double>(runsOf(tree));
  EXPECT_LE(tree.depth(), 1.45 * std::log2(runs + 2) + 1) << runs << " runs";
}
}  // namespace

TEST(RunTree, StaysFlatWhateverLinesAreSet) {
  std::mt19937 random(1);
  RunTree tree = treeOf(Lines);
  std::vector<std::wstring> lines;
  for (int64_t i = 0; i < Lines; ++i) lines.push_back(std::to_wstring(i));
  for (int64_t i = 0; i < 5000; ++i) {
    // Upwards, downwards and anywhere.
    const int64_t line = i % 3 == 0   ? i
                         : i % 3 == 1 ? Lines - 1 - i
                                      : static_cast<int64_t>(random() % Lines);
    lines[static_cast<size_t>(line)] = L"changed " + std::to_wstring(i);
    tree.setLine(line, newRun(lines[static_cast<size_t>(line)], L"\n"));
  }
  expectFlat(tree);
  ASSERT_EQ(tree.lines(), Lines);
  for (int64_t i = 0; i < Lines; i += 3) ASSERT_EQ(textOf(tree, i), lines[static_cast<size_t>(i)]);
}

TEST(RunTree, StaysFlatWhateverIsCutAndPutTogether) {
  std::mt19937 random(2);
  RunTree tree = treeOf(Lines);
  std::vector<int64_t> lines(Lines);
  for (int64_t i = 0; i < Lines; ++i) lines[static_cast<size_t>(i)] = i;
  for (int i = 0; i < 500; ++i) {
    const auto at = static_cast<int64_t>(random() % (Lines + 1));
    RunTree behind = tree.cutFrom(at);
    ASSERT_EQ(tree.lines(), at);
    behind.append(std::move(tree));
    tree = std::move(behind);
    std::rotate(lines.begin(), lines.begin() + at, lines.end());
  }
  expectFlat(tree);
  ASSERT_EQ(tree.lines(), Lines);
  for (int64_t i = 0; i < Lines; i += 3)
    ASSERT_EQ(textOf(tree, i), std::to_wstring(lines[static_cast<size_t>(i)]));
}

TEST(RunTree, ACopyKeepsItsLinesWhenTheOtherChanges) {
  RunTree tree = treeOf(1000);
  for (int64_t i = 0; i < 1000; i += 10) tree.setLine(i, newRun(L"first", L"\n"));
  const RunTree copy = tree;
  for (int64_t i = 0; i < 1000; i += 5) tree.setLine(i, newRun(L"second", L"\n"));
  tree.cutFrom(500);
  ASSERT_EQ(copy.lines(), 1000);
  for (int64_t i = 0; i < 1000; ++i)
    ASSERT_EQ(textOf(copy, i), i % 10 == 0 ? L"first" : std::to_wstring(i));
}

TEST(RunTree, FindsTheLineOfEachByte) {
  RunTree tree = treeOf(300);
  for (int64_t i = 0; i < 300; i += 7) tree.setLine(i, newRun(L"xyz", L"\n"));
  size_t offset = 0;
  for (int64_t line = 0; line < 300; ++line) {
    const size_t length = textOf(tree, line).size() + 1;
    for (size_t i = 0; i < length; ++i, ++offset) {
      const RunTree::Found found = tree.findByte(offset);
      ASSERT_EQ(found.linesBefore + found.run->lineOf(offset - found.bytesBefore), line);
    }
  }
  EXPECT_EQ(tree.bytes(), offset);
}
