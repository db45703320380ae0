#include "fileops/progress.h"

#include <algorithm>

#include "foundation/text_format.h"

namespace {

constexpr wchar_t FilledCell = 0x2588;
constexpr wchar_t EmptyCell = 0x2591;
constexpr int SecondsPerMinute = 60;
constexpr int SpeedWidth = 7;
constexpr int LeastWidth = 35;
constexpr int CopyPathWidth = 70;
constexpr int MovePathWidth = 72;
constexpr double LongestTime = 1e9;  // seconds; more is no time anybody waits for

struct MinutesSeconds {
  int minutes;
  int seconds;
};

MinutesSeconds split(double seconds) {
  const int whole = static_cast<int>(std::clamp(seconds, 0.0, LongestTime));
  return {whole / SecondsPerMinute, whole % SecondsPerMinute};
}

}  // namespace

int filledCells(int width, int64_t done, int64_t total) {
  if (total <= 0 || width <= 0 || done <= 0) return 0;
  if (done >= total) return width;
  return static_cast<int>(static_cast<double>(width) * static_cast<double>(done) /
                          static_cast<double>(total));
}

Westring progressBar(int width, int filled) {
  return Westring(FilledCell, filled) + Westring(EmptyCell, std::max(width - filled, 0));
}

Westring progressStatistics(double elapsed, int64_t done, int64_t total) {
  unsigned long long speed = 0;
  double remaining = 0;
  if (elapsed > 0 && done > 0) {
    speed = static_cast<unsigned long long>(static_cast<double>(done) / elapsed);
    // Directories that were not counted make the total too small.
    const int64_t known = std::max(total, done);
    remaining = elapsed / static_cast<double>(done) * static_cast<double>(known - done);
  }
  const MinutesSeconds time = split(elapsed);
  const MinutesSeconds eta = split(remaining);
  Estring start;
  Estring end;
  start.format("Time: %d:%02d  BPS: ", time.minutes, time.seconds);
  end.format("  ETA: %d:%02d", eta.minutes, eta.seconds);
  return Westring(start) + padLeft(formatPlainSize(speed, SpeedWidth), SpeedWidth) + Westring(end);
}

int progressWidth(const Westring& source, const Westring& target, const Westring& count) {
  const int widest = std::max({LeastWidth, source.length(), target.length(), count.length()});
  return widest + (widest & 1) + 2;
}

Westring progressPath(const Westring& path, PathCut cut) {
  return cut == PathCut::Middle ? shortenPath(path, CopyPathWidth) : right(path, MovePathWidth);
}

Westring progressCount(int index, int count) {
  if (count <= 1) return Westring();
  Estring text;
  text.format("(%d of %d)", index, count);
  return Westring(text);
}
