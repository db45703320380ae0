#include "terminal/pseudo_terminal.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <cerrno>

namespace {

constexpr cc_t EraseByte = 8;  // what the BackSpace key sends

winsize windowOf(GridSize size) {
  winsize window{};
  window.ws_col = static_cast<unsigned short>(size.columns);
  window.ws_row = static_cast<unsigned short>(size.rows);
  return window;
}

bool applySettings(int slave) {
  termios settings{};
  if (tcgetattr(slave, &settings) != 0) return false;
  settings.c_cc[VERASE] = EraseByte;
  settings.c_iflag |= IUTF8;
  return tcsetattr(slave, TCSANOW, &settings) == 0;
}

}  // namespace

int PseudoTerminal::open(GridSize size) {
  const winsize window = windowOf(size);
  int master = -1, slave = -1;
  if (openpty(&master, &slave, nullptr, nullptr, &window) != 0) return errno;
  master_ = Descriptor(master);
  slave_ = Descriptor(slave);
  const bool ready = fcntl(master, F_SETFD, FD_CLOEXEC) == 0 &&
                     fcntl(slave, F_SETFD, FD_CLOEXEC) == 0 &&
                     fcntl(master, F_SETFL, O_RDWR | O_NONBLOCK) == 0 && applySettings(slave);
  return ready ? 0 : errno;
}

void PseudoTerminal::setSize(GridSize size) {
  const winsize window = windowOf(size);
  ioctl(master_.get(), TIOCSWINSZ, &window);
}
