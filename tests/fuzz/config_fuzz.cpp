// The configuration file: whatever it holds, what is read from it can be written, and reads the
// same again.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "config/config_reader.h"
#include "config/config_writer.h"
#include "options/colours.h"
#include "options/options.h"

namespace {

void take(const std::string& content) {
  GlobalOptions::setDefaultOptions();
  defaultColours();
  takeConfiguration(content, ConfigScope::Everything, [](const std::string&) { return true; });
  GlobalOptions::correctNumbers();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  take(std::string(reinterpret_cast<const char*>(data), size));
  const std::string written = configurationText();
  take(written);
  if (configurationText() != written) abort();
  return 0;
}
