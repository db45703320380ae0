#include "shell/built_ins.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include "foundation/canonical_path.h"
#include "foundation/names.h"
#include "foundation/utf8.h"
#include "foundation/wild_match.h"
#include "language/environment.h"
#include "language/filter_expression.h"
#include "language/shell_quote.h"
#include "language/typed_path.h"
#include "panels/commands/change_directory.h"
#include "panels/model/directory_tree.h"
#include "panels/picture/panel_draw.h"
#include "shell/run_in_shell.h"
#include "shell/visual_change.h"
#include "ui/alert.h"

namespace {

constexpr wchar_t ChangeDirectoryPattern[] = L"cd[\\. ]*";
constexpr wchar_t VisualPattern[] = L"vcd|vcd[\\ ]*";
constexpr wchar_t SetPattern[] = L"set *=*";
constexpr int CdLength = 2, VcdLength = 3, SetLength = 4;

// ---- cd

Westring withoutQuotes(const Westring& typed) {
  Westring argument = typed;
  argument.replaceAll(L"\"", L"");
  return argument;
}

// The directories that the argument may name, in the ways a user may have meant it. Names that were
// put on the line are quoted as for a shell, and a name that is there comes before any variable.
std::vector<Westring> argumentMeanings(const Westring& typed, const Westring& base) {
  const Westring bare = withoutQuotes(typed), word = unquoteShellWord(typed);
  std::vector<Westring> meanings;
  auto add = [&](int (*read)(Westring&, const Westring*), const Westring& text) {
    Westring path = text;
    if (!text.empty() && read(path, &base) == 0) meanings.push_back(path);
  };
  add(writtenPath, typed);
  add(writtenPath, bare);
  add(writtenPath, word);
  add(canonicalPath, bare);
  add(canonicalPath, word);
  for (const Westring& path : pathMeanings(expandPathVariables(word), base))
    meanings.push_back(path);
  return meanings;
}

// What has been explained isn't tried in another meaning, which may be the same place.
Arrival goToArgument(Panel& panel, const Westring& typed) {
  Arrival arrival;
  for (const Westring& path : argumentMeanings(typed, shownPath(panel))) {
    arrival = changeDirectoryExact(panel, path);
    if (!arrival.isUnexplained()) break;
  }
  if (arrival) enterNewPath(panel);
  return arrival;
}

Westring argumentOf(const Westring& command) {
  return ltrim(mid(command, CdLength, 0));
}

void showGone(Panel& panel) {
  panel.type = PanelType::Files;
  drawPanel(panel);
}

// More than one command: the shell knows what that means.
bool isSeveralCommands(const Westring& text) {
  wchar_t quote = 0;
  for (const wchar_t* p = text.data(); *p != 0; ++p) {
    if (*p == L'\\' && quote != L'\'') {
      if (p[1] != 0) ++p;
    } else if (quote != 0) {
      if (*p == quote) quote = 0;
    } else if (*p == L'\'' || *p == L'"') {
      quote = *p;
    } else if (*p == L';' || *p == L'&' || *p == L'|') {
      return true;
    }
  }
  return false;
}

Arrival goTo(Panel& panel, const Westring& typed) {
  const Arrival arrival = goToArgument(panel, typed);
  if (!arrival.isUnexplained()) return arrival;
  Westring name = withoutQuotes(typed);
  name.replaceAll(L"\\", L"/");
  const Westring found = directoryTree()->find(panel, name);
  return found.empty() ? arrival : goToPath(panel, found);
}

int tellNoDirectory(const Panel& panel, const Westring& typed) {
  Westring argument = withoutQuotes(typed);
  argument.replaceAll(L"\\", L"/");
  Westring path = argument;
  const bool valid = canonicalPath(path, &shownPath(panel)) == 0;
  alert(valid ? "Invalid directory" : "Invalid path", valid ? path : argument, AlertButtons::Ok,
        AlertColour::Error);
  return -ENOENT;
}

// ---- set

bool isName(const Westring& text) {
  const auto isLetter = [](wchar_t ch) {
    return (ch >= L'a' && ch <= L'z') || (ch >= L'A' && ch <= L'Z') || ch == L'_';
  };
  const wchar_t* p = text.data();
  if (!isLetter(*p)) return false;
  while (isLetter(*p) || (*p >= L'0' && *p <= L'9')) ++p;
  return *p == 0;
}

// False when it is a `set` of the shell's.
bool setVariable(const Westring& command) {
  const Westring pair = trim(mid(command, SetLength, 0));
  const int equals = pair.find(L'=');
  if (equals < 0) return false;
  const Westring name = left(pair, equals);
  if (!isName(name)) return false;
  const Estring key = toUtf8(name), value = toUtf8(mid(pair, equals + 1, 0));
  if (value.empty()) {
    sessionEnvironment().hide(key.data());
  } else {
    sessionEnvironment().set(key.data(), value.data());
  }
  return true;
}

}  // namespace

bool isChangeDirectory(const Westring& command) {
  return wildMatch(ChangeDirectoryPattern, command.data());
}

bool isChangeDirectoryAlone(const Westring& command) {
  return isChangeDirectory(command) && !isSeveralCommands(argumentOf(command));
}

bool changeDirectoryAsWritten(Panel& panel, const Westring& command) {
  Westring path = argumentOf(command);
  if (writtenPath(path, &shownPath(panel)) != 0) return false;
  const Arrival arrival = changeDirectoryExact(panel, path);
  if (arrival) {
    enterNewPath(panel);
    showGone(panel);
  }
  return !arrival.isUnexplained();
}

int runBuiltinOrShell(const Westring& command, int side, const Westring& echo, unsigned flags) {
  Panel& panel = panelPair().side[side];
  if (isChangeDirectory(command)) {
    const Westring typed = argumentOf(command);
    const Arrival arrival = goTo(panel, typed);
    if (arrival) {
      showGone(panel);
      return 0;
    }
    if (!arrival.isUnexplained()) return -ENOENT;
    if (!isSeveralCommands(typed)) return tellNoDirectory(panel, typed);
  } else if (matchName(VisualPattern, command.data())) {
    return changeVisually(ltrim(mid(command, VcdLength, 0)), panel, echo, flags);
  } else if (wildMatch(SetPattern, command.data()) && setVariable(command)) {
    return 0;
  }
  return runInShell(command, panel, echo, flags);
}
