#include "viewer/line_finder.h"

#include <random>

#include "support/temp_dir.h"
#include "viewer/naive_lines.h"
#include "viewer/random_text.h"
#include "viewer/read_hook.h"
#include "viewer/viewed_file.h"

namespace {

std::vector<int64_t> forwardStarts(ViewedFile& file) {
  std::vector<int64_t> starts;
  for (int64_t at = file.textStart(); at < file.size(); at = file.nextLine(at)) {
    starts.push_back(at);
  }
  return starts;
}

std::vector<int64_t> backwardStarts(ViewedFile& file) {
  std::vector<int64_t> starts;
  int64_t at = file.size();
  while (at > file.textStart()) {
    at = file.previousLine(at);
    starts.push_back(at);
  }
  return {starts.rbegin(), starts.rend()};
}

std::vector<int64_t> startsOfAll(ViewedFile& file) {
  std::vector<int64_t> starts;
  for (int64_t at = file.textStart(); at < file.size(); ++at) {
    const int64_t start = file.startOf(at);
    if (starts.empty() || starts.back() != start) starts.push_back(start);
  }
  return starts;
}

// Forward, backward and from every byte; `bytes` on the disk as a whole.
void expectLines(const std::string& bytes, TextFormat format, int64_t block, int64_t searched,
                 const std::string& what) {
  TempDir dir;
  dir.write("file", bytes);
  ViewedFile file({block, searched});
  ASSERT_EQ(file.open(dir.wide("file"), {format}), 0);
  const NaiveLines naive(bytes, format, file.textStart(), searched);
  EXPECT_EQ(forwardStarts(file), naive.starts()) << "forward, " << what;
  EXPECT_EQ(backwardStarts(file), naive.starts()) << "backward, " << what;
  EXPECT_EQ(startsOfAll(file), naive.starts()) << "from every byte, " << what;
}

}  // namespace

TEST(LineFinder, FindsTheSameLinesForwardBackwardAndFromEveryByte) {
  struct {
    const char* what;
    std::string bytes;
  } const rows[] = {
      {"empty", ""},
      {"one end", "\n"},
      {"no end", "abc"},
      {"end at the end", "abc\n"},
      {"LF", "a\nbc\n\nd"},
      {"CR LF", "a\r\nbc\r\n\r\nd\r\n"},
      {"LF CR", "a\n\rbc\n\rd"},
      {"CR", "a\rb\r\rc"},
      {"all mixed", "a\n\r\nb\r\r\n\n\rc\r\n\r\r\n"},
      {"NUL ends nothing", std::string("a\0b\n\0\0\nc", 8)},
  };
  for (const auto& row : rows) expectLines(row.bytes, TextFormat::Utf8, 8, 16, row.what);
}

TEST(LineFinder, EveryFormatHasItsOwnLineEnds) {
  for (int format = 0; format <= static_cast<int>(TextFormat::CodePage); ++format) {
    std::string bytes;
    // U+0D0A and U+0A00 have the bytes of line ends.
    for (const uint32_t c : {0x61u, 0x0Du, 0x0Au, 0x62u, 0x0Au, 0x0Du, 0x0Du, 0x63u}) {
      appendUnit(bytes, c, static_cast<TextFormat>(format));
    }
    if (format < static_cast<int>(TextFormat::Utf8)) {
      appendUnit(bytes, 0x0D0A, static_cast<TextFormat>(format));
      appendUnit(bytes, 0x0A00, static_cast<TextFormat>(format));
    }
    expectLines(bytes, static_cast<TextFormat>(format), 8, 32, std::to_string(format));
  }
}

TEST(LineFinder, ALongLineBeginsAnewAtMultiplesWithNoEndBefore) {
  expectLines(std::string(100, 'x') + "\n" + std::string(70, 'y'), TextFormat::Utf8, 8, 16, "x, y");
  std::string wide;
  while (wide.size() < 200)
    wide +=
        "\xF0\x9F\x98\x80"
        "\xE2\x82\xAC"
        "\xC3\xA9";
  expectLines(wide, TextFormat::Utf8, 8, 16, "characters over the multiples");
  expectLines(std::string(100, '\x80'), TextFormat::Utf8, 8, 16, "nothing but tails");
}

TEST(LineFinder, EndsByTurnsAreCutAtMultiples) {
  for (size_t before = 0; before < 4; ++before) {
    std::string bytes(before, 'x');
    for (int i = 0; i < 90; ++i) bytes += i % 2 ? '\n' : '\r';
    expectLines(bytes + "tail", TextFormat::Utf8, 8, 16, std::to_string(before));
  }
}

TEST(LineFinder, FindsWhatTheNaiveReaderFinds) {
  const unsigned seed = 7;
  std::mt19937 random(seed);
  int files = 0;
  for (int round = 0; round < 120; ++round) {
    const auto format = static_cast<TextFormat>(round % 6);
    const int64_t block = 4 << (random() % 6);
    const int64_t searched = 16 << (random() % 3);
    const std::string bytes = randomText(random, format, 200 + random() % 600);
    expectLines(bytes, format, block, searched,
                "seed " + std::to_string(seed) + " round " + std::to_string(round));
    ++files;
  }
  EXPECT_EQ(files, 120);
}

TEST(LineFinder, WhatCannotBeReadIsALineOfItsOwn) {
  std::string bytes;
  while (bytes.size() < 100'000) bytes += "line " + std::to_string(bytes.size()) + "\r\n";
  TempDir dir;
  dir.write("file", bytes);
  ViewedFile file({256 * 1024, 1 << 20});
  ReadHook hook(1, EIO);
  ASSERT_EQ(file.open(dir.wide("file"), {TextFormat::Utf8}), 0);
  const std::vector<int64_t> starts = forwardStarts(file);
  EXPECT_EQ(hook.reads(), 2);
  const NaiveLines naive(bytes, TextFormat::Utf8, 0, int64_t{1} << 20, {{0, FileBytes::PieceSize}});
  EXPECT_EQ(starts, naive.starts());
  EXPECT_EQ(backwardStarts(file), naive.starts());
  const ViewedLine line = file.lineAt(0);
  EXPECT_EQ(line.error, EIO);
  EXPECT_EQ(line.next, FileBytes::PieceSize);
  EXPECT_EQ(file.text(line, 100), L"");
}
