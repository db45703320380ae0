#include "shell/visual_change.h"

#include <string>

#include "foundation/canonical_path.h"
#include "foundation/names.h"
#include "foundation/regular_file.h"
#include "foundation/utf8.h"
#include "language/shell_quote.h"
#include "language/temporary_names.h"
#include "panels/commands/change_directory.h"
#include "panels/picture/panel_draw.h"
#include "shell/run_in_shell.h"

namespace {

constexpr wchar_t HelperProgram[] = L"vcdpgm.exe ";
constexpr wchar_t RecordName[] = L"td2cd.$$$";
constexpr size_t LongestRecord = 16384;
constexpr int LeastDriveLength = 2;

// The lines of a text, without what ends them.
Westring lineOf(const std::string& text, int number) {
  size_t start = 0;
  for (; number > 0; --number) {
    start = text.find('\n', start);
    if (start == std::string::npos) return Westring();
    ++start;
  }
  std::string line = text.substr(start, text.find('\n', start) - start);
  if (line.ends_with('\r')) line.pop_back();
  return decodeFileName(line.c_str());
}

Westring chosenDirectory(const Westring& record) {
  const auto text = readBeginning(toUtf8(record).data(), LongestRecord);
  return text ? directoryOfRecord(lineOf(*text, 0), lineOf(*text, 1)) : Westring();
}

}  // namespace

Westring directoryOfRecord(const Westring& drive, const Westring& command) {
  if (drive.length() < LeastDriveLength) return Westring();
  const int open = command.find(L'"');
  const int close = open < 0 ? -1 : command.find(Westring(L"\""), open + 1);
  if (close < 0) return Westring();
  Westring path = left(drive, 1) + mid(left(command, close), open + 1, 0);
  return writtenPath(path) == 0 ? path : Westring();
}

int changeVisually(const Westring& argument, Panel& panel, const Westring& echo, unsigned flags) {
  Westring directory;
  if (const int error = makeTemporaryDirectory(directory); error != 0) return -error;
  const Westring record = joinPath(directory, RecordName);
  const Westring command = HelperProgram + argument + L" > " + quoteForShell(record);
  const int result = runInShell(command, panel, echo, flags);
  const Westring chosen = chosenDirectory(record);
  removeTemporaries();
  if (!chosen.empty() && changeDirectoryExact(panel, chosen)) enterNewPath(panel);
  panel.needsRead = true;
  return result;
}
