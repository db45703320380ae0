#include "panels/picture/directory_info.h"

#include <algorithm>

#include "foundation/names.h"
#include "foundation/regular_file.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "options/options.h"

namespace {

constexpr wchar_t NoteTitle[] = L" Dir Info ";
constexpr int NoteColumn = 1;
constexpr int NoteMargin = 3;
constexpr size_t LongestLine = 500;     // bytes
constexpr size_t LongestNote = 131072;  // bytes: more than the largest panel can show

Westring tabsExpanded(const Westring& line) {
  const auto tabWidth = static_cast<size_t>(std::max(GlobalOptions::TabWidth, 1));
  std::wstring result;
  for (const wchar_t* p = line.data(); *p != 0; ++p) {
    if (*p == L'\t') {
      result.append(tabWidth - result.size() % tabWidth, L' ');
    } else {
      result += *p;
    }
  }
  return Westring(result.c_str());
}

}  // namespace

std::vector<Westring> noteLines(const std::string& content, int width, int mostLines) {
  std::vector<Westring> lines;
  for (size_t at = 0; at < content.size() && static_cast<int>(lines.size()) < mostLines;) {
    const size_t end = std::min(content.find('\n', at), content.size());
    std::string line = content.substr(at, std::min(end - at, LongestLine));
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(left(tabsExpanded(fromUtf8(line.c_str())), width));
    at = end + 1;
  }
  return lines;
}

void DirectoryInfo(Win& window, const Westring& directory, int row) {
  const Westring path = joinPath(directory, NoteFileName);
  const auto content = readBeginning(toUtf8(path).data(), LongestNote);
  if (!content || row >= window.innerHeight()) return;
  window.putCentred(row, NoteTitle, colourOf(Colour::Tagged));
  for (const Westring& line :
       noteLines(*content, window.innerWidth() - NoteMargin, window.innerHeight() - row - 1)) {
    window.put(NoteColumn, ++row, line);
  }
}
