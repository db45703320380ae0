#include "fileops/new_file_mode.h"

#include <sys/stat.h>

mode_t fileModeMask() {
  static const mode_t mask = [] {
    constexpr mode_t Strictest = 0777;
    const mode_t present = ::umask(Strictest);
    ::umask(present);
    return present;
  }();
  return mask;
}
