#include "viewer/line_cells.h"

#include <climits>

#include "options/options.h"
#include "support/temp_dir.h"

namespace {

// A file of one line, and the line.
struct OneLine {
  explicit OneLine(const std::string& bytes, const TextEncoding& encoding = {TextFormat::Utf8}) {
    dir.write("file", bytes);
    EXPECT_EQ(file.open(dir.wide("file"), encoding), 0);
    line = file.lineAt(file.textStart());
  }

  TempDir dir;
  ViewedFile file;
  ViewedLine line;
  LineCells cells{file};
};

}  // namespace

TEST(LineCells, ATabGoesToTheNextMultiple) {
  GlobalOptions::TabWidth = 8;
  OneLine one("a\tbc\t\td\n");
  EXPECT_EQ(one.cells.length(one.line, INT64_MAX), 25);
  EXPECT_EQ(one.cells.length(one.line, 10), 10);
  EXPECT_EQ(one.cells.text(one.line, 0, 100), L"a       bc              d");
  EXPECT_EQ(one.cells.text(one.line, 7, 4), L" bc ");
  struct {
    int64_t position, cell;
  } const rows[] = {{0, 0}, {1, 1}, {2, 8}, {3, 9}, {4, 10}, {5, 16}, {6, 24}, {7, 25}};
  for (const auto& row : rows) {
    EXPECT_EQ(one.cells.cellOf(one.line, row.position), row.cell) << row.position;
    EXPECT_EQ(one.cells.positionOf(one.line, row.cell), row.position) << row.cell;
  }
  EXPECT_EQ(one.cells.positionOf(one.line, 7), 1) << "inside a tab";
  EXPECT_EQ(one.cells.positionOf(one.line, 99), 7) << "behind the text";
  GlobalOptions::TabWidth = 2;
  EXPECT_EQ(one.cells.length(one.line, INT64_MAX), 9) << "another width counts at once";
  GlobalOptions::TabWidth = 8;
}

TEST(LineCells, FarIntoALongLineIsAsRightAsAtItsStart) {
  GlobalOptions::TabWidth = 8;
  std::string bytes;
  std::wstring shown;
  std::vector<int64_t> positions;  // by cell, of the character that covers it
  for (int i = 0; shown.size() < 30'000; ++i) {
    const auto at = static_cast<int64_t>(bytes.size());
    if (i % 17 == 0) {
      bytes += '\t';
      do shown += L' ';
      while (shown.size() % 8 != 0);
    } else if (i % 5 == 0) {
      bytes += "\xE2\x82\xAC";
      shown += L'\u20AC';
    } else if (i % 7 == 0) {
      bytes += "\xF0\x9F\x98\x80";
      shown += L'\U0001F600';
    } else {
      bytes += static_cast<char>('a' + i % 26);
      shown += static_cast<wchar_t>('a' + i % 26);
    }
    positions.resize(shown.size(), at);
  }
  OneLine one(bytes);
  ASSERT_EQ(one.cells.length(one.line, INT64_MAX), static_cast<int64_t>(shown.size()));
  for (size_t cell = 0; cell < shown.size(); cell += 333) {
    EXPECT_EQ(one.cells.text(one.line, static_cast<int64_t>(cell), 80), shown.substr(cell, 80));
    const int64_t position = one.cells.positionOf(one.line, static_cast<int64_t>(cell));
    EXPECT_EQ(position, positions[cell]) << cell;
    EXPECT_LE(one.cells.cellOf(one.line, position), static_cast<int64_t>(cell));
  }
}

TEST(LineCells, CharactersThatPartsCutAreWhole) {
  struct {
    TextEncoding encoding;
    const wchar_t* pair;
  } const rows[] = {
      {{TextFormat::Utf8}, L"\u20AC\U0001F600"},       {{TextFormat::Utf16Le}, L"a\U0001F600"},
      {{TextFormat::Utf16Be}, L"a\U0001F600"},         {{TextFormat::Utf32Be}, L"a\U0001F600"},
      {{TextFormat::CodePage, 932}, L"\u65E5\u672C "}, {{TextFormat::CodePage, 1252}, L"a\u20AC"},
  };
  for (const auto& row : rows) {
    for (int shift = 0; shift < 4; ++shift) {
      std::wstring text(static_cast<size_t>(shift), L'x');
      while (text.size() < 20'000) text += row.pair;
      std::string bytes;
      ASSERT_EQ(encodeText(text, row.encoding, bytes), AllEncoded);
      OneLine one(bytes, row.encoding);
      EXPECT_TRUE(one.file.text(one.line, INT64_MAX) == text) << formatName(row.encoding).data();
      EXPECT_EQ(one.file.characters(one.line.start, one.line.textEnd),
                static_cast<int64_t>(text.size()));
      EXPECT_EQ(one.cells.length(one.line, INT64_MAX), static_cast<int64_t>(text.size()));
      EXPECT_EQ(one.file.text(one.line, 5), text.substr(0, 5));
    }
  }
}

TEST(LineCells, BytesThatAreNoCharactersHaveACellEach) {
  std::string bytes;
  for (int i = 0; i < 9000; ++i) bytes += static_cast<char>(0x80 + i % 64);
  OneLine one(bytes);
  EXPECT_EQ(one.cells.length(one.line, INT64_MAX), 9000);
  EXPECT_EQ(one.cells.positionOf(one.line, 8999), 8999);
}

TEST(LineCells, ALineThatCannotBeReadHasNone) {
  ViewedFile file;
  LineCells cells(file);
  const ViewedLine line{0, 0, 4096, EIO};
  EXPECT_EQ(cells.length(line, INT64_MAX), 0);
  EXPECT_EQ(cells.text(line, 0, 80), L"");
  EXPECT_EQ(cells.positionOf(line, 5), 0);
}
