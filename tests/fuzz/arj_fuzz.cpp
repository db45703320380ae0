#include "fuzz/archive_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  readAnyBytes(readArj, data, size);
  return 0;
}
