#include "tools/help_file.h"

#include <cstdint>
#include <string_view>

#include "foundation/code_page.h"

namespace {

constexpr size_t HeaderSize = 4;
constexpr size_t NumberAt = 0, SizeAt = 2;
constexpr int HelpCodePage = 850;  // whatever page the files of the user are in

int signedWord(std::string_view bytes) {
  const auto low = static_cast<unsigned char>(bytes[0]);
  const auto high = static_cast<unsigned char>(bytes[1]);
  return static_cast<int16_t>(low | high << 8);
}

std::vector<Westring> linesOf(std::string_view text) {
  std::vector<Westring> lines;
  while (!text.empty()) {
    const std::string line(text.substr(0, text.find('\0')));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    lines.push_back(fromCodePage(line.substr(0, HelpFile::LongestLine).c_str(), HelpCodePage));
  }
  return lines;
}

}  // namespace

std::vector<Westring> HelpFile::topic(int number) const {
  std::string_view rest = bytes_;
  while (rest.size() >= HeaderSize) {
    const int found = signedWord(rest.substr(NumberAt));
    const int size = signedWord(rest.substr(SizeAt));
    if (size < static_cast<int>(HeaderSize) || static_cast<size_t>(size) > rest.size()) break;
    if (found == number || found == EndRecord) {
      return linesOf(rest.substr(HeaderSize, size - HeaderSize));
    }
    rest.remove_prefix(size);
  }
  return {};
}
