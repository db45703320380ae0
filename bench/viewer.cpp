// The viewer's work on a large file, without a screen.
// usage: bench_viewer search FILE TEXT exact|folded   looks for a text to the end
//        bench_viewer scan FILE TEXT                  the same by a bare loop of read and memmem
//        bench_viewer line FILE NUMBER                goes to a line
//        bench_viewer page FILE STEP                  prints the milliseconds of one step to all
//        cells
//                                                     of a screen of 80 by 25: open, end, home,
//                                                     pageup, row (down, wrapped); colours: the
//                                                     slowest with them
//        bench_viewer memory FILE                     prints the MiB that these steps take at most
// Colours are those of the definitions in the directory TD_SHARE.

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "foundation/utf8.h"
#include "options/options.h"
#include "viewer/file_search.h"
#include "viewer/line_counter.h"
#include "viewer/page_painter.h"
#include "viewer/view_colours.h"

namespace {

constexpr int Columns = 80;
constexpr int Rows = 23;

bool never() {
  return false;
}

int search(const char* path, const char* text, bool exact) {
  ViewedFile file;
  if (file.open(decodeFileName(path)) != 0) return 1;
  SearchValues values;
  values.text = decodeFileName(text);
  values.caseSensitive = exact;
  const SearchHit hit = searchFile(file, values, 0, never);
  printf("%lld\n",
         hit.result == SearchHit::Result::Found ? static_cast<long long>(hit.position) : -1);
  return 0;
}

// No look over the borders: that would only make it slower.
int scan(const char* path, const char* text) {
  constexpr size_t Piece = 1 << 20;
  std::vector<char> buffer(Piece);
  const int fd = open(path, O_RDONLY);
  int found = 0;
  for (;;) {
    const ssize_t count = read(fd, buffer.data(), Piece);
    if (count <= 0) break;
    found += memmem(buffer.data(), static_cast<size_t>(count), text, strlen(text)) != nullptr;
  }
  close(fd);
  printf("%d\n", found);
  return 0;
}

int line(const char* path, const char* number) {
  ViewedFile file;
  if (file.open(decodeFileName(path)) != 0) return 1;
  LineCounter counter(file);
  const LineCounter::Place place = counter.find(std::stoll(number), never);
  printf("%lld %lld\n", static_cast<long long>(place.position),
         static_cast<long long>(place.lines));
  return 0;
}

// A viewer without a window.
class Viewing {
 public:
  explicit Viewing(const char* path) : path_(decodeFileName(path)) {}

  void open() {
    file_.open(path_);
    page_.home();
    draw();
  }
  void draw() { painter_.rows(Hit()); }
  void step(const std::string& name) {
    if (name == "open") {
      file_.close();
      open();
    }
    if (name == "end") page_.end();
    if (name == "home") page_.home();
    if (name == "pageup") page_.pageUp();
    if (name == "row") page_.down();
    draw();
  }
  // As those of a C++ file. False when there are no definitions of it.
  bool useColours() {
    colours_.load(L"lines.cpp");
    return colours_.active();
  }

 private:
  Westring path_;
  ViewedFile file_;
  ViewPage page_{file_, Columns, Rows};
  ViewColours colours_{file_};
  PagePainter painter_{file_, page_, colours_};
};

double msOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
  return taken.count();
}

double msWithColours(Viewing& viewing) {
  double slowest = 0;
  for (const char* const each : {"open", "end", "pageup", "home"}) {
    slowest = std::max(slowest, msOf([&] { viewing.step(each); }));
  }
  return slowest;
}

int page(const char* path, const std::string& step) {
  GlobalOptions::ViewerWrap = step == "row";
  Viewing viewing(path);
  viewing.open();
  double ms = 0;
  if (step == "colours") {
    if (!viewing.useColours()) return 1;
    ms = msWithColours(viewing);
  } else {
    if (step != "end" && step != "open") viewing.step("end");
    if (step == "row") viewing.step("pageup");
    ms = msOf([&] { viewing.step(step); });
  }
  printf("%.3f\n", ms);
  return 0;
}

long memoryKib(const char* field) {
  FILE* const status = fopen("/proc/self/status", "r");
  char text[256];
  long result = 0;
  while (fgets(text, sizeof text, status) != nullptr) {
    if (strncmp(text, field, strlen(field)) == 0) {
      result = strtol(text + strlen(field) + 1, nullptr, 10);
    }
  }
  fclose(status);
  return result;
}

int memory(const char* path) {
  const long before = memoryKib("VmRSS");
  Viewing viewing(path);
  viewing.open();
  if (!viewing.useColours()) return 1;
  for (const char* const step : {"end", "pageup", "home", "row", "end"}) {
    viewing.step(step);
  }
  printf("%.2f\n", static_cast<double>(memoryKib("VmHWM") - before) / 1024);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  if (what == "search" && argc == 5) return search(argv[2], argv[3], strcmp(argv[4], "exact") == 0);
  if (what == "scan" && argc == 4) return scan(argv[2], argv[3]);
  if (what == "line" && argc == 4) return line(argv[2], argv[3]);
  if (what == "page" && argc == 4) return page(argv[2], argv[3]);
  if (what == "memory" && argc == 3) return memory(argv[2]);
  fprintf(stderr, "see the head of bench/viewer.cpp\n");
  return 2;
}
