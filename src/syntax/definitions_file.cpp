#include "syntax/definitions_file.h"

#include <cerrno>
#include <string>
#include <vector>

#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "foundation/regular_file.h"
#include "options/colours.h"
#include "syntax/definitions_reader.h"

namespace {

constexpr size_t LargestFile = 4 * 1024 * 1024;
constexpr wchar_t PlainName[] = L"syntax.ini";
constexpr wchar_t ShippedName[] = L"tdsyntax.ini";
constexpr std::wstring_view ScriptMark = L"#!";
constexpr std::wstring_view Blanks = L" \t\r";
constexpr std::wstring_view VersionCharacters = L"0123456789.-";
constexpr std::wstring_view Environment = L"env";

// Where definitions may lie, in the order in which they are looked for. The shipped file comes last
// under its own name: a program that runs with another configuration has it too.
std::vector<Westring> candidates() {
  std::vector<Westring> result;
  for (DataPlace place : {DataPlace::PerUser, DataPlace::Shared}) {
    const Westring named = dataFilePath(DataFile::SyntaxDefinitions, place);
    if (named.empty()) continue;
    result.push_back(named);
    result.push_back(joinPath(parentOf(named), PlainName));
  }
  result.push_back(sharedDirectory() + ShippedName);
  return result;
}

// The first of them that is there. 0 with `path` empty when none is.
int readDefinitions(Westring& path, std::string& content) {
  for (const Westring& candidate : candidates()) {
    const int status = readRegularFile(candidate, content, LargestFile, Links::Follow);
    if (status == ENOENT || status == ENOTDIR) continue;
    path = candidate;
    return status;
  }
  return 0;
}

std::wstring_view cutWord(std::wstring_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
  const std::wstring_view word = text.substr(0, text.find_first_of(Blanks));
  text.remove_prefix(word.size());
  return word;
}

std::wstring_view lastPart(std::wstring_view path) {
  return path.substr(path.rfind(L'/') + 1);
}

// The program among the words behind "env": what stands before it are options, an option's value
// and settings.
std::wstring_view programOfEnvironment(std::wstring_view& words) {
  for (;;) {
    const std::wstring_view word = cutWord(words);
    if (word == L"-u" || word == L"-C") {
      cutWord(words);
    } else if (!word.starts_with(L'-') && word.find(L'=') == std::wstring_view::npos) {
      return lastPart(word);
    }
  }
}

}  // namespace

Westring interpreterOf(std::wstring_view firstLine) {
  if (!firstLine.starts_with(ScriptMark)) return Westring();
  firstLine.remove_prefix(ScriptMark.size());
  std::wstring_view program = lastPart(cutWord(firstLine));
  if (program == Environment) program = programOfEnvironment(firstLine);
  program = program.substr(0, program.find_last_not_of(VersionCharacters) + 1);
  const std::wstring name(program);
  return Westring(name.c_str());
}

SyntaxLoad loadSyntax(const Westring& textPath, std::wstring_view firstLine) {
  SyntaxLoad result;
  std::string content;
  result.status = readDefinitions(result.file, content);
  if (result.status != 0 || result.file.empty()) return result;
  const unsigned char colour = colourOf(Colour::FileViewer);
  result.definitions = readSyntax(content, lastComponent(textPath), colour);
  if (result.definitions != nullptr) return result;
  const Westring interpreter = interpreterOf(firstLine);
  if (!interpreter.empty()) result.definitions = readSyntax(content, L"." + interpreter, colour);
  return result;
}
