// Random walks of a small page over files of all kinds, beside a list of all their rows.

#include "viewer/view_page.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "options/options.h"
#include "support/temp_dir.h"
#include "viewer/hex_row.h"
#include "viewer/random_text.h"

namespace {

constexpr int Columns = 10, Rows = 7;

struct Row {
  int64_t line;
  int64_t cell;
};

class ViewPageTest : public testing::Test {
 protected:
  void SetUp() override {
    GlobalOptions::setDefaultOptions();
    GlobalOptions::TabWidth = 4;
  }

  void open(const std::string& bytes, TextFormat format) {
    dir.write("file", bytes);
    ASSERT_EQ(file.open(dir.wide("file"), {format}), 0);
    size = static_cast<int64_t>(bytes.size());
  }
  void listRows() {
    rows.clear();
    LineCells cells(file);
    for (int64_t at = file.textStart(); at < size; at = file.nextLine(at)) {
      const int64_t length = cells.length(file.lineAt(at), INT64_MAX);
      int64_t cell = 0;
      do {
        rows.push_back({at, cell});
        cell += Columns;
      } while (GlobalOptions::ViewerWrap && cell < length);
    }
  }
  // The row that shows a byte.
  int64_t rowOf(int64_t position) {
    const ViewedLine line = file.lineAt(file.startOf(position));
    const int64_t cell = LineCells(file).cellOf(line, position);
    int64_t result = 0;
    for (size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].line == line.start && rows[i].cell <= cell) result = static_cast<int64_t>(i);
    }
    return result;
  }

  // One random move; the row that must be at the top after it.
  int64_t move(ViewPage& page, std::mt19937& random, int64_t top) {
    const auto total = static_cast<int64_t>(rows.size());
    const bool endShows = top + Rows >= total;
    const int64_t position = static_cast<int64_t>(random() % static_cast<uint64_t>(size));
    switch (random() % 8) {
      case 0:
        page.up();
        return std::max<int64_t>(top - 1, 0);
      case 1:
        page.down();
        return endShows ? top : top + 1;
      case 2:
        page.pageUp();
        return std::max<int64_t>(top - (Rows - 1), 0);
      case 3:
        page.pageDown();
        return endShows ? top : top + Rows - 1;
      case 4:
        page.home();
        return 0;
      case 5:
        page.end();
        return endShows ? top : total - Rows;
      case 6:
        page.goTo(position);
        return rowOf(position);
      default:
        page.show(position, position + 1);
        return std::max<int64_t>(rowOf(position) - 4, 0);
    }
  }

  void expectTop(ViewPage& page, int64_t top) {
    const std::vector<ViewRow>& layout = page.layout();
    const auto total = static_cast<int64_t>(rows.size());
    ASSERT_EQ(static_cast<int64_t>(layout.size()), std::min<int64_t>(Rows, total - top));
    for (size_t i = 0; i < layout.size(); ++i) {
      const Row& row = rows[static_cast<size_t>(top) + i];
      ASSERT_EQ(layout[i].line.start, row.line) << "row " << i;
      ASSERT_EQ(layout[i].cell, row.cell) << "row " << i;
    }
    ASSERT_EQ(page.endShows(), top + Rows >= total);
    ASSERT_EQ(page.top(), rows[static_cast<size_t>(top)].line);
  }

  void walk(TextFormat format, unsigned seed) {
    SCOPED_TRACE("format " + std::to_string(static_cast<int>(format)) + " seed " +
                 std::to_string(seed));
    std::mt19937 random(seed);
    open(randomText(random, format, 1 + random() % 3000), format);
    GlobalOptions::ViewerWrap = random() % 3 != 0;
    listRows();
    ViewPage page(file, Columns, Rows);
    page.home();
    int64_t top = 0;
    for (int step = 0; step < 200; ++step) {
      expectTop(page, top);
      if (HasFatalFailure()) return;
      top = move(page, random, top);
    }
  }

  TempDir dir;
  ViewedFile file{ViewLimits{64, 256}};
  int64_t size = 0;
  std::vector<Row> rows;
};

TEST_F(ViewPageTest, EveryMoveEndsOnTheRowThatAListOfAllRowsSays) {
  for (TextFormat format : {TextFormat::Utf8, TextFormat::CodePage, TextFormat::Utf16Le,
                            TextFormat::Utf16Be, TextFormat::Utf32Le}) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
      walk(format, seed);
      if (HasFatalFailure()) return;
    }
  }
}

TEST_F(ViewPageTest, HexRowsMoveByTheirBytes) {
  std::mt19937 random(7);
  open(std::string(1000, 'x'), TextFormat::Utf8);
  ViewPage page(file, Columns, Rows);
  page.home();
  page.toggleHex();
  int64_t top = 0;
  for (int step = 0; step < 2000; ++step) {
    ASSERT_EQ(page.top(), top) << "step " << step;
    const bool endShows = top + Rows * HexRow::RowBytes >= size;
    ASSERT_EQ(page.endShows(), endShows);
    ASSERT_EQ(page.bottomEnd(), std::min<int64_t>(top + Rows * HexRow::RowBytes, size));
    const int count = static_cast<int>(random() % 60);
    switch (random() % 6) {
      case 0:
        page.up();
        top = std::max<int64_t>(top - HexRow::RowBytes, 0);
        break;
      case 1:
        page.down();
        if (!endShows) top += HexRow::RowBytes;
        break;
      case 2:
        page.left(count);
        top = std::max<int64_t>(top - count, 0);
        break;
      case 3:
        page.right(count);
        top = std::min(top + count, size - 1);
        break;
      case 4:
        page.end();
        if (!endShows) top = size - Rows * HexRow::RowBytes;
        break;
      default:
        page.goTo(static_cast<int64_t>(random()) % size);
        top = page.top();
        break;
    }
  }
}

TEST_F(ViewPageTest, WhatIsInTheFirstRowStaysThereThroughHexAndWrapping) {
  std::mt19937 random(11);
  open(randomText(random, TextFormat::Utf8, 3000), TextFormat::Utf8);
  listRows();
  ViewPage page(file, Columns, Rows);
  for (int step = 0; step < 200; ++step) {
    page.goTo(static_cast<int64_t>(random()) % size);
    const ViewRow before = page.layout().front();
    page.toggleHex();
    page.toggleHex();
    ASSERT_EQ(page.top(), before.line.start);
    ASSERT_EQ(page.layout().front().cell, before.cell);
    page.toggleWrap();
    ASSERT_EQ(page.top(), before.line.start);
    ASSERT_EQ(page.layout().front().cell, 0);
    page.toggleWrap();
  }
}

}  // namespace
