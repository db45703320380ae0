// The journal of an edit: what is read from any bytes is, written again, what they begin with.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "editor/text/journal_format.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const auto content = readJournal(bytes);
  if (!content) return 0;
  if (content->wholeBytes > size) abort();
  std::string again = journalHead(content->base);
  for (const JournalStep& step : content->steps) appendRecord(step, again);
  const auto second = readJournal(again);
  if (!second || second->steps != content->steps || second->wholeBytes != again.size()) abort();
  if (second->base.path != content->base.path || !(second->base.stamp == content->base.stamp)) {
    abort();
  }
  return 0;
}
