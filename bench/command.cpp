// Milliseconds from the Enter key behind a typed "true" to both panels complete again, on the
// display of DISPLAY, with DIRECTORY in both panels.
// usage: bench_command DIRECTORY

#include <cstdio>

#include "bench_support.h"
#include "commander/main_loop.h"
#include "console/console.h"
#include "foundation/utf8.h"
#include "panel_fill.h"
#include "panels/commands/change_directory.h"
#include "ui/help_window.h"

namespace {

constexpr int Runs = 101;

void queueKey(Key::Code key) {
  TEvent event;
  event.key = key;
  console->events().put(event);
}

// Ends the loop at F1, which comes to its turn when the loop waits for a key again.
class LoopEnd : public HelpWindow {
 public:
  explicit LoopEnd(MainLoop& loop) : loop_(loop) { helpWindow().connect(*this); }
  ~LoopEnd() override { helpWindow().disconnect(); }
  LoopEnd(const LoopEnd&) = delete;
  LoopEnd& operator=(const LoopEnd&) = delete;

  void show(HelpTopic) override { loop_.leaving = true; }

 private:
  MainLoop& loop_;
};

void runTyped(MainLoop& loop) {
  const LoopEnd end(loop);
  loop.line.setText(L"true");
  loop.leaving = false;
  queueKey(Key::Enter);
  queueKey(Key::F1);
  runMainLoop(loop);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || !openPanels(argc, argv, 1)) return 2;
  for (Panel& panel : panelPair().side) goToPath(panel, decodeFileName(argv[1]));
  MainLoop loop;
  runTyped(loop);
  printf("%.3f\n", medianMs(Runs, [&] { runTyped(loop); }));
  fflush(stdout);
  _Exit(0);
}
