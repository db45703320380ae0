// Output in a console of 120 by 40 cells on the display of DISPLAY.
// usage: bench_terminal buffer FILE     prints the milliseconds from the first byte of a file to
// the
//                                       last cell, without a child: the emulator and the painting
//        bench_terminal command TEXT    runs a command, which measures itself

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "bench_support.h"
#include "console/console.h"
#include "foundation/path_info.h"
#include "terminal/ansi_emulator.h"
#include "terminal/run_command.h"

namespace {

constexpr int Columns = 120, Rows = 40;
constexpr int Runs = 3;
constexpr size_t Piece = 64 * 1024;  // what the pump reads at most at once

std::string contentOf(const char* file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

double fromBuffer(const char* file) {
  const std::string content = contentOf(file);
  ChildInput input(-1);
  CAnsiTerminalEmulator emulator(*console, input);
  return medianMs(Runs, [&] {
    for (size_t at = 0; at < content.size(); at += Piece) {
      emulator.write(std::string_view(content).substr(at, Piece));
    }
    console->completePainting();
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 || !initToolkit(&argc, &argv)) return 2;
  auto* screen = new CConsole;
  screen->setGeometry(Columns, Rows, "", 0);
  int failed = 0;
  if (strcmp(argv[1], "buffer") == 0) {
    printf("%.3f\n", fromBuffer(argv[2]));
    fflush(stdout);
  } else {
    failed = runCommand(Westring(argv[2]), currentDir(), 0);
  }
  _Exit(failed != 0);
}
