#include "foundation/file_mode_mask.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <optional>

#include "foundation/system.h"

namespace {

constexpr char StatusFile[] = "/proc/self/status";
constexpr char MaskLine[] = "\nUmask:";
constexpr int Octal = 8;

// As the system shows it to everybody, without touching it.
std::optional<mode_t> shownMask() {
  const Descriptor status(System::open(StatusFile, O_RDONLY | O_CLOEXEC));
  char text[4096];
  const ssize_t length = status.valid() ? System::read(status.get(), text, sizeof text - 1) : -1;
  if (length <= 0) return {};
  text[length] = 0;
  const char* line = strstr(text, MaskLine);
  if (!line) return {};
  const char* digits = line + strlen(MaskLine);
  char* end = nullptr;
  const unsigned long mask = strtoul(digits, &end, Octal);
  if (end == digits) return {};
  return static_cast<mode_t>(mask);
}

mode_t askedMask() {
  constexpr mode_t Strictest = 0777;
  const mode_t present = ::umask(Strictest);
  ::umask(present);
  return present;
}

}  // namespace

mode_t fileModeMask() {
  static const mode_t mask = [] {
    const auto shown = shownMask();
    return shown ? *shown : askedMask();
  }();
  return mask;
}
