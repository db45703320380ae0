// Milliseconds of a key in a text of 1,000,000 lines and 82 MB with colours, on the display of
// DISPLAY; of the slowest of three places, its start, middle and end.
// usage: bench_editor FILE type|pixels|return|line|join       until the cells are complete, or the
//                                                             pixels
//        bench_editor FILE repaint COLUMNS ROWS               of all cells to pixels, at the end of
//                                                             the text
// FILE holds the definitions of the colours.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench_support.h"
#include "console/console.h"
#include "editor/window/editor_painter.h"
#include "editor/window/editor_screen.h"
#include "foundation/regular_file.h"
#include "foundation/utf8.h"
#include "syntax/definitions_reader.h"

namespace {

constexpr int Runs = 51;
constexpr int Lines = 1'000'000;
constexpr size_t LineBytes = 82, LargestFile = 4 * 1024 * 1024;
constexpr unsigned char PlainText = 0x1B;

std::string text() {
  const char* const pieces[] = {
      "  if (count > 0x20 && text[at] != '\\n') return static_cast<int>(at); // end of it",
      "  const std::string name = \"a \\\"quoted\\\" text\" + std::to_string(index * 17);",
      "/* a comment that goes on for the whole line and into the next, as long ones do",
      "   and ends in the middle of it */ for (int i = 0; i < 100; ++i) total += v[i];",
      "#define BIGGER(a, b) ((a) > (b) ? (a) : (b))   // what the preprocessor knows of",
      "      while (!queue.empty()) { auto next = queue.front(); queue.pop(); see(next); }"};
  std::string all;
  all.reserve(Lines * LineBytes);
  for (int i = 0; i < Lines; ++i) {
    std::string line = pieces[static_cast<size_t>(i) % std::size(pieces)];
    line.resize(LineBytes - 1, ' ');
    all += line + "\n";
  }
  return all;
}

// A key as the loop of the screen takes it.
class TimedScreen : public EditorScreen {
 public:
  using EditorScreen::EditorScreen;
  void press(Key::Code key) {
    onKey(key, 0);
    BatchScope batch;
    draw();
  }
};

bool loadColours(CTextEditor& editor, const char* file) {
  std::string content;
  if (readRegularFile(decodeFileName(file), content, LargestFile) != 0) return false;
  editor.painter().syntax().use(readSyntax(content, L"text.cpp", PlainText));
  return editor.painter().syntax().active();
}

// The key pressed in one line after the other, from each of the places on.
double slowestKey(CTextEditor& editor, TimedScreen& screen, Key::Code key, bool toPixels) {
  double slowest = 0;
  for (int64_t line : {0, Lines / 2, Lines - 2 * Runs}) {
    screen.press(Key::ctrl('l'));
    slowest = std::max(slowest, medianMs(Runs, [&] {
                         const int64_t end = editor.document.lineLength(line);
                         editor.moveTo({line++, key == Key::Delete ? end : 4});
                         screen.press(key);
                         if (toPixels) console->completePainting();
                       }));
  }
  return slowest;
}

double repaint(TimedScreen& screen) {
  screen.press(Key::CtrlPageDown);
  return medianMs(Runs, [&] {
    console->fillBlank(0, 0, console->columns(), console->rows(), 0);
    screen.press(Key::ctrl('l'));
    console->completePainting();
  });
}

double measure(CTextEditor& editor, const std::string& what) {
  TimedScreen screen(editor);
  if (what == "repaint") return repaint(screen);
  if (what == "return") return slowestKey(editor, screen, Key::Enter, false);
  if (what == "line") return slowestKey(editor, screen, Key::ctrl('y'), false);
  if (what == "join") return slowestKey(editor, screen, Key::Delete, false);
  return slowestKey(editor, screen, L'x', what == "pixels");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 5) return 2;
  if (!initToolkit(&argc, &argv)) return 1;
  CConsole screen;
  if (argc == 5) screen.setGeometry(std::atoi(argv[3]), std::atoi(argv[4]), Estring(), 0);
  CTextEditor editor(L"text.cpp");
  editor.document.load(text(), {TextFormat::Utf8});
  if (!loadColours(editor, argv[1])) return 1;
  editor.redraw();
  editor.paint();
  printf("%.3f\n", measure(editor, argv[2]));
  fflush(stdout);
  _Exit(0);
}
