// The file of the histories: whatever it holds, what is read from it and written reads the same
// again.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "history/history_lines.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t most = 5;
  const std::string content(reinterpret_cast<const char*>(data), size);
  const std::string written = historyText(readHistoryLines(content, most));
  const HistoryContent again = readHistoryLines(written, most);
  if (again.commandLines > most || historyText(again) != written) abort();
  return 0;
}
