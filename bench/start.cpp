// The whole program from its start to its first complete screen, and out again: the keys that leave
// are queued before the main loop waits for its first one.

#include <cstdlib>
#include <thread>

#include "commander/program.h"
#include "console/console.h"
#include "console/key_codes.h"
#include "foundation/threads.h"

namespace {

void queueKey(Key::Code key) {
  TEvent event;
  event.key = key;
  console->events().put(event);
}

void leaveAtOnce() {
  while (!console) sleepMs(1);
  queueKey(Key::F10);
  queueKey(Key::Enter);
}

}  // namespace

int main(int argc, char** argv) {
  std::thread leaver(leaveAtOnce);
  int status = runProgram(argc, argv);
  if (status != 0) _Exit(status);  // no display: the leaver waits for nothing
  leaver.join();
  return 0;
}
