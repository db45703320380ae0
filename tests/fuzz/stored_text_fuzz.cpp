// Pieces of text as records and journals keep them: whatever the bytes are, the text that they give
// is stored to bytes that give the same text.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "editor/document/text_span.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const TextSpan span = TextSpan::fromStored({reinterpret_cast<const char*>(data), size});
  const TextSpan again = TextSpan::fromStored(span.stored());
  if (again.text() != span.text() || again.lineEnds() != span.lineEnds()) abort();
  return 0;
}
