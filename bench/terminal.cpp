// Milliseconds from the first byte of a file to the last cell of it, in a console of 120 by 40
// cells on the display of DISPLAY. usage: bench_terminal buffer|command FILE
//   buffer   the emulator alone, fed with the file in pieces as a pseudo-terminal gives them
//   command  a child's "cat FILE" on a pseudo-terminal, timed by the child

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "bench_support.h"
#include "console/console.h"
#include "terminal/ansi_emulator.h"

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
  printf("%.3f\n", fromBuffer(argv[2]));
  fflush(stdout);
  _Exit(0);
}
