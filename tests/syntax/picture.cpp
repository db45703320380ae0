#include "syntax/picture.h"

#include <sstream>

#include "foundation/utf8.h"
#include "syntax/definitions_file.h"
#include "syntax/definitions_reader.h"
#include "syntax/syntax.h"

namespace {

struct ClassLetter {
  const char* name;
  char letter;
};

constexpr ClassLetter Classes[] = {
    {"Comment", 'c'}, {"String", 's'},   {"Character", 'q'}, {"Number", 'n'},
    {"Keyword", 'k'}, {"Type", 't'},     {"Constant", 'o'},  {"Function", 'f'},
    {"Preproc", 'p'}, {"Operator", '='}, {"Tag", '<'},       {"Attribute", 'a'},
    {"Heading", 'h'}, {"Added", '+'},    {"Removed", '-'},   {"Error", '!'}};
constexpr const char* Colours[] = {"black", "blue",    "green",  "cyan",
                                   "red",   "magenta", "yellow", "white"};
constexpr int ColourNumbers = 8;
constexpr int BackgroundShift = 4;
constexpr unsigned char Untouched = 0;

// A colour of its own for each class. They stand before the file's, and the first of two stays.
std::string markedClasses() {
  std::string text = "[Colour Classes]\n";
  int index = 0;
  for (const ClassLetter& known : Classes) {
    text += std::string(known.name) + ":" + Colours[index % ColourNumbers] + " on " +
            Colours[1 + index / ColourNumbers] + "\n";
    ++index;
  }
  return text;
}

char letterOf(unsigned char attr) {
  if (attr == Untouched) return ' ';
  const int background = attr >> BackgroundShift;
  const int index = (background - 1) * ColourNumbers + attr % ColourNumbers;
  const bool isClass = background > 0 && index < static_cast<int>(std::size(Classes));
  return isClass ? Classes[index].letter : '?';
}

std::string withoutBlanksAtEnd(std::string row) {
  row.erase(row.find_last_not_of(' ') + 1);
  return row + "\n";
}

}  // namespace

std::shared_ptr<const SyntaxDefinitions> definitionsFor(const std::string& content,
                                                        const std::string& name,
                                                        const std::string& text,
                                                        unsigned char defaultColour) {
  auto byName = readSyntax(content, decodeFileName(name.c_str()), defaultColour);
  if (byName != nullptr) return byName;
  const std::string line = text.substr(0, text.find('\n'));
  const Westring interpreter = interpreterOf(decodeFileName(line.c_str()).data());
  return interpreter.empty() ? nullptr : readSyntax(content, L"." + interpreter, defaultColour);
}

std::string syntaxPicture(const std::string& content, const std::string& name,
                          const std::string& text) {
  CSyntax engine;
  engine.use(definitionsFor(markedClasses() + content, name, text, Untouched));
  if (!engine.active()) return "";
  std::string result;
  std::istringstream lines(text);
  CellString cells;
  for (std::string line; std::getline(lines, line);) {
    engine.colour(decodeFileName(line.c_str()).data(), cells);
    std::string shown;
    std::string letters;
    for (int i = 0; i < cells.length(); ++i) {
      const wchar_t character[] = {cells[i].ch, 0};
      shown += toDisplayUtf8(character).data();
      letters += letterOf(cells[i].attr);
    }
    result += withoutBlanksAtEnd(shown) + withoutBlanksAtEnd(letters);
  }
  return result;
}
