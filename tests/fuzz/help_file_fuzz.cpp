#include <cstdint>
#include <cstdlib>

#include "tools/help_file.h"

// Whatever a help file holds: each topic has lines that fit the window, and no more than the file
// has bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const HelpFile file(std::string(reinterpret_cast<const char*>(data), size));
  for (int number : {0, 1, 2, 103, HelpFile::EndRecord}) {
    const std::vector<Westring> lines = file.topic(number);
    if (lines.size() > size) abort();
    for (const Westring& line : lines) {
      if (line.length() > HelpFile::LongestLine) abort();
    }
  }
  return 0;
}
