#include "viewer/line_counter.h"

#include <algorithm>
#include <random>

#include "support/temp_dir.h"
#include "viewer/naive_lines.h"
#include "viewer/random_text.h"
#include "viewer/read_hook.h"

namespace {

void expectFinds(LineCounter& counter, const std::vector<int64_t>& starts,
                 const std::string& what) {
  const auto lines = static_cast<int64_t>(starts.size());
  // Some, in no order: what is kept and what isn't.
  for (int64_t i = 0; i < lines; i += 1 + lines / 23) {
    const int64_t line = i * 7919 % lines;
    const LineCounter::Place place = counter.find(line, never);
    ASSERT_EQ(place.result, LineCounter::Place::Result::Found) << line << what;
    ASSERT_EQ(place.position, starts[static_cast<size_t>(line)]) << line << what;
  }
  const LineCounter::Place behind = counter.find(std::max<int64_t>(lines, 1), never);
  EXPECT_EQ(behind.result, LineCounter::Place::Result::TooFew) << what;
  EXPECT_EQ(behind.lines, lines) << what;
}

void expectCounts(const std::string& bytes, TextFormat format, const ViewLimits& limits,
                  const std::string& what) {
  TempDir dir;
  dir.write("file", bytes);
  ViewedFile file(limits);
  ASSERT_EQ(file.open(dir.wide("file"), {format}), 0);
  const NaiveLines naive(bytes, format, file.textStart(), limits.searched);
  LineCounter counter(file);
  expectFinds(counter, naive.starts(), what);
  expectFinds(counter, naive.starts(), what + ", again");
}

}  // namespace

TEST(LineCounter, FindsWhatTheNaiveReaderFinds) {
  const unsigned seed = 11;
  std::mt19937 random(seed);
  for (int round = 0; round < 150; ++round) {
    const auto format = static_cast<TextFormat>(round % 6);
    const int64_t searched = 64 << (random() % 3);
    const ViewLimits limits{searched >> (random() % 3), searched};
    const std::string bytes = randomText(random, format, 300 + random() % 900);
    expectCounts(bytes, format, limits, "seed 11 round " + std::to_string(round));
  }
}

TEST(LineCounter, PlainFilesOfEachLineEnd) {
  for (const char* const end : {"\n", "\r\n", "\r", "\n\r", "\r\n\r\n", "\n\n", "\r\r\n"}) {
    for (size_t shift = 0; shift < 3; ++shift) {
      std::string bytes(shift, 'x');
      for (int i = 0; i < 400; ++i) bytes += std::string(static_cast<size_t>(i % 9), 'y') + end;
      for (int i = 0; i < 200; ++i) bytes += end;
      expectCounts(bytes, TextFormat::Utf8, {64, 256}, std::to_string(shift));
    }
  }
}

TEST(LineCounter, TheFirstLineIsThereInAnEmptyFile) {
  TempDir dir;
  dir.write("file", "");
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("file")), 0);
  LineCounter counter(file);
  EXPECT_EQ(counter.find(0, never).result, LineCounter::Place::Result::Found);
  const LineCounter::Place second = counter.find(1, never);
  EXPECT_EQ(second.result, LineCounter::Place::Result::TooFew);
  EXPECT_EQ(second.lines, 0);
}

TEST(LineCounter, CountsAFileOnce) {
  TempDir dir;
  std::string bytes;
  while (bytes.size() < (3 << 20)) bytes += "a line of text\n";
  dir.write("file", bytes);
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("file")), 0);
  LineCounter counter(file);
  ASSERT_EQ(counter.find(190'000, never).position, 190'000 * 15);
  const ReadHook hook;
  EXPECT_EQ(counter.find(100'000, never).position, 100'000 * 15);
  EXPECT_LE(hook.reads(), 16) << "only the MiB of the line";
}

TEST(LineCounter, ACountThatIsStoppedGoesOnWhereItWas) {
  TempDir dir;
  std::string bytes;
  while (bytes.size() < 10'000) bytes += "line\r\n";
  dir.write("file", bytes);
  ViewedFile file({256, 1024});
  ASSERT_EQ(file.open(dir.wide("file")), 0);
  LineCounter counter(file);
  int asked = 0;
  const auto soon = [&] { return ++asked > 5; };
  EXPECT_EQ(counter.find(1500, soon).result, LineCounter::Place::Result::Stopped);
  const NaiveLines naive(bytes, TextFormat::Utf8, 0, 1024);
  expectFinds(counter, naive.starts(), "");
}

TEST(LineCounter, CountsWhatCannotBeReadAsLines) {
  std::string bytes;
  while (bytes.size() < 150'000) bytes += "line " + std::to_string(bytes.size()) + "\n";
  TempDir dir;
  dir.write("file", bytes);
  ViewedFile file({64 * 1024, 64 * 1024});
  ASSERT_EQ(file.open(dir.wide("file"), {TextFormat::Utf8}), 0);
  {
    const ReadHook hook(1, EIO);
    EXPECT_EQ(file.bytesFrom(65536).error, EIO) << "the block stays in memory with its gap";
  }
  const NaiveLines naive(bytes, TextFormat::Utf8, 0, 64 * 1024,
                         {{65536, 65536 + FileBytes::PieceSize}});
  const ReadHook hook(2, EIO);  // the count comes to the same block
  LineCounter counter(file);
  const LineCounter::Place behind = counter.find(INT64_MAX, never);
  EXPECT_EQ(behind.lines, static_cast<int64_t>(naive.starts().size()));
  expectFinds(counter, naive.starts(), "a gap");
}

TEST(LineCounter, AChangedFileIsCountedAnew) {
  TempDir dir;
  dir.write("file", "1\n2\n3\n");
  ViewedFile file;
  ASSERT_EQ(file.open(dir.wide("file")), 0);
  LineCounter counter(file);
  EXPECT_EQ(counter.find(3, never).lines, 3);
  dir.write("file", "1\n2\n3\n4\n5");
  file.refresh();
  EXPECT_EQ(counter.find(4, never).position, 8);
  EXPECT_EQ(counter.find(5, never).lines, 5);
}
