#include "commander/arguments.h"

#include "foundation/canonical_path.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/utf8.h"

namespace {

constexpr char UsageText[] =
    "Usage:\ttd [ini_file] [-v|-e file_name] [-l|-r directory]\n"
    "\t-v: invoke internal viewer\n"
    "\t-e: invoke internal editor\n"
    "\t-l: specify left panel's directory\n"
    "\t-r: specify right panel's directory";
constexpr char NoFileText[] = "No file specified";
constexpr wchar_t DefaultProgramPath[] = L"/td";
constexpr int UsageStatus = 1;

enum class Value { Required, Optional };

struct Option {
  char letter;
  Westring Arguments::*field;
  Value value;
};

// -x is left out of the usage text on purpose: shell wrappers use it, people don't.
constexpr Option Options[] = {
    {'e', &Arguments::fileToEdit, Value::Required},
    {'v', &Arguments::fileToView, Value::Required},
    {'l', &Arguments::leftDirectory, Value::Optional},
    {'r', &Arguments::rightDirectory, Value::Optional},
    {'x', &Arguments::exitScript, Value::Optional},
};

const Option* findOption(char letter) {
  const char folded =
      letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  for (const Option& option : Options) {
    if (option.letter == folded) return &option;
  }
  return nullptr;
}

bool isOption(const char* argument) {
  return argument[0] == '-' || argument[0] == '\\';
}

bool isPlainPath(const Westring& path) {
  struct stat info;
  return statPath(path, info) == 0 && !S_ISDIR(info.st_mode);
}

// The absolute path of an existing file; "" for a directory and for what doesn't exist.
Westring acceptedConfiguration(const char* argument) {
  Westring written = decodeFileName(argument);
  Westring typed = written;
  if (writtenPath(written) == 0 && isPlainPath(written)) return written;
  if (canonicalPath(typed) == 0 && isPlainPath(typed)) return typed;
  return Westring();
}

void stop(Arguments& result, const char* message) {
  result.outcome = Arguments::Outcome::Exit;
  result.exitStatus = UsageStatus;
  result.message = message;
}

}  // namespace

Arguments parseArguments(int argc, const char* const* argv) {
  Arguments result;
  for (int i = 1; i < argc && result.outcome == Arguments::Outcome::Continue; ++i) {
    if (!isOption(argv[i])) {
      const Westring accepted = acceptedConfiguration(argv[i]);
      if (!accepted.empty()) result.configurationFile = accepted;
      continue;
    }
    const Option* option = findOption(argv[i][1]);
    if (!option) {
      stop(result, UsageText);
      continue;
    }
    const Westring value = ++i < argc ? decodeFileName(argv[i]) : Westring();
    if (value.empty() && option->value == Value::Required) stop(result, NoFileText);
    result.*option->field = value;
  }
  return result;
}

Westring programPathOf(int argc, const char* const* argv) {
  if (argc < 1 || !argv[0] || !*argv[0]) return Westring(DefaultProgramPath);
  Westring path = decodeFileName(argv[0]);
  return canonicalPath(path) == 0 ? path : joinPath(L"/", lastComponent(path));
}
