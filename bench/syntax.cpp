// Definitions and colours, on the definitions that come with the program.
// usage: bench_syntax read FILE       prints the milliseconds to read a file of definitions and to
//                                     choose those of C++
//        bench_syntax colour FILE     for 1,000 lines of 82 characters of C++
//        bench_syntax skip FILE       the same lines, of which only the state is wanted

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "bench_support.h"
#include "foundation/regular_file.h"
#include "foundation/utf8.h"
#include "syntax/definitions_reader.h"
#include "syntax/syntax.h"

namespace {

constexpr int Runs = 51;
constexpr int Lines = 1000;
constexpr size_t Length = 82;
constexpr size_t LargestFile = 4 * 1024 * 1024;
constexpr unsigned char PlainText = 0x1B;

std::vector<std::wstring> sourceLines() {
  const wchar_t* const pieces[] = {
      L"  if (count > 0x20 && text[at] != L'\\n') return static_cast<int>(at); // end of it",
      L"  const std::string name = \"a \\\"quoted\\\" text\" + std::to_string(index * 17 + 4);",
      L"/* a comment that goes on for the whole line and into the next, as long ones do here",
      L"   and ends in the middle of it */ for (int i = 0; i < 100; ++i) total += values[i];",
      L"#define BIGGER(a, b) ((a) > (b) ? (a) : (b))   // what the preprocessor knows of it",
      L"      while (!queue.empty()) { auto next = queue.front(); queue.pop(); visit(next); }"};
  std::vector<std::wstring> lines;
  for (int i = 0; i < Lines; ++i) {
    std::wstring line = pieces[static_cast<size_t>(i) % std::size(pieces)];
    line.resize(Length, L' ');
    lines.push_back(line);
  }
  return lines;
}

double colouring(CSyntax engine, const std::vector<std::wstring>& lines) {
  CellString cells;
  return medianMs(Runs, [&] {
    engine.reset();
    for (const std::wstring& line : lines) engine.colour(line, cells);
  });
}

double skipping(CSyntax engine, const std::vector<std::wstring>& lines) {
  return medianMs(Runs, [&] {
    engine.reset();
    for (const std::wstring& line : lines) engine.skip(line);
  });
}

std::shared_ptr<const SyntaxDefinitions> readFor(const Westring& file, const wchar_t* name) {
  std::string content;
  if (readRegularFile(file, content, LargestFile) != 0) return nullptr;
  return readSyntax(content, name, PlainText);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const Westring file = decodeFileName(argv[2]);
  CSyntax engine;
  engine.use(readFor(file, L"a.cpp"));
  if (!engine.active()) return 1;
  double taken = 0;
  if (strcmp(argv[1], "read") == 0) {
    taken = medianMs(Runs, [&] { engine.use(readFor(file, L"a.cpp")); });
  } else if (strcmp(argv[1], "colour") == 0) {
    taken = colouring(engine, sourceLines());
  } else {
    taken = skipping(engine, sourceLines());
  }
  printf("%.3f\n", taken);
  return 0;
}
