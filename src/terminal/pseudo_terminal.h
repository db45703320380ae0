#pragma once

#include "console/console.h"
#include "foundation/system.h"

// Both ends of a pseudo-terminal. The master, from which output is read and to which keys are
// written, never blocks. The slave is what a command has as its terminal; as long as this end of
// it is open too, the master gives no end of file and the terminal isn't hung up, whatever the
// command closes. Neither is inherited by a program that is started.
class PseudoTerminal {
 public:
  // With the settings of a terminal that counts in UTF-8 and erases by byte 8. 0 or errno.
  int open(GridSize size);
  // Tells a new size; the foreground processes get SIGWINCH when it is another one.
  void setSize(GridSize size);

  int master() const { return master_.get(); }
  int slave() const { return slave_.get(); }

 private:
  Descriptor master_;
  Descriptor slave_;
};
