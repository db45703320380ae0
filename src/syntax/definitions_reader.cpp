#include "syntax/definitions_reader.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "foundation/utf8.h"
#include "foundation/wild_match.h"
#include "options/colours.h"
#include "syntax/definition_lines.h"

namespace {

constexpr std::string_view ClassesHead = "colour classes";
constexpr char CaseFlag = 'i';
constexpr char LineFlag = 'l';
constexpr wchar_t Tab = L'\t';

std::string lowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lowerAscii<char>);
  return result;
}

std::wstring wide(std::string_view bytes) {
  return decodeFileName(std::string(bytes).c_str()).data();
}

wchar_t firstCharacter(std::string_view field) {
  const std::wstring text = wide(field);
  return text.empty() ? L'\0' : text.front();
}

SyntaxCase caseOf(const RuleLine& rule) {
  return rule.hasFlag(CaseFlag) ? SyntaxCase::Ignored : SyntaxCase::Exact;
}

LineBound lineBoundOf(const RuleLine& rule) {
  return rule.hasFlag(LineFlag) ? LineBound::Yes : LineBound::No;
}

class DefinitionsReader {
 public:
  DefinitionsReader(const Westring& baseName, unsigned char defaultColour)
      : baseName_(baseName), result_(std::make_shared<SyntaxDefinitions>(defaultColour)) {}

  void take(std::string_view line) {
    if (line.starts_with('[')) {
      takeHead(line);
    } else if (section_ == Section::Classes) {
      takeClass(line);
    } else if (section_ == Section::Rules) {
      takeRule(line);
    }
  }

  std::shared_ptr<const SyntaxDefinitions> result() {
    if (!hasMatched_) return nullptr;
    result_->finish();
    return result_;
  }

 private:
  enum class Section { Other, Classes, Rules };
  struct Keyword {
    std::string_view name;
    void (DefinitionsReader::*take)(const RuleLine& rule);
  };
  static const Keyword Keywords[];

  void takeHead(std::string_view line) {
    section_ = Section::Other;
    if (line.size() < 2 || line.back() != ']') return;
    const std::string_view head = line.substr(1, line.size() - 2);
    if (lowered(head) == ClassesHead) {
      section_ = Section::Classes;
      return;
    }
    const size_t colon = head.find(':');
    if (colon == std::string_view::npos) return;
    if (!wildMatch(wide(head.substr(colon + 1)).c_str(), baseName_.data())) return;
    section_ = Section::Rules;
    hasMatched_ = true;
  }

  // The first of two classes of a name stays.
  void takeClass(std::string_view line) {
    const size_t colon = line.find(':');
    if (colon == std::string_view::npos) return;
    classes_.emplace(lowered(trimmed(line.substr(0, colon))),
                     std::string(trimmed(line.substr(colon + 1))));
  }

  void takeRule(std::string_view line) {
    RuleLine rule;
    if (!splitRule(line, rule)) return;
    const std::string word = lowered(rule.keyword);
    for (const Keyword* keyword = Keywords; !keyword->name.empty(); ++keyword) {
      if (keyword->name == word) (this->*keyword->take)(rule);
    }
  }

  unsigned char colourOf(std::string_view className) const {
    const auto found = classes_.find(lowered(trimmed(className)));
    const bool isClass = found != classes_.end() && !found->second.empty();
    const std::wstring phrase = wide(isClass ? std::string_view(found->second) : className);
    return colourFromText(phrase.c_str(), result_->defaultColour);
  }

  template <class Rule>
  Rule made(const RuleLine& line) const {
    Rule rule;
    rule.contexts = CSyntaxContext(line.states);
    rule.colour = colourOf(line.className);
    return rule;
  }

  // An element or a change whose text is empty would be met again and again at one place.
  void addElement(const RuleLine& line, std::string_view name, SyntaxText begin, SyntaxText end,
                  LineBound bound, wchar_t escape = 0) {
    if (begin.empty()) return;
    auto element = made<CSyntaxElement>(line);
    element.name = lowered(name);
    element.begin = std::move(begin);
    element.end = std::move(end);
    element.lineBound = bound;
    element.escape = escape;
    result_->elements.push_back(std::move(element));
  }

  // A tab is never part of a word: it has a width of its own.
  void takeWordCharacters(const RuleLine& line) {
    for (wchar_t character : wide(line.className)) {
      if (syntaxIndex(character) != Tab) result_->wordCharacters.set(syntaxIndex(character));
    }
  }

  void takeWords(const RuleLine& line) {
    auto rule = made<SyntaxWordList>(line);
    rule.words = WordCollection(caseOf(line));
    std::string_view fields = line.fields;
    const std::wstring text = wide(cutField(fields));
    const wchar_t blanks[] = L" \t";
    for (size_t end = 0, at = 0;
         (at = text.find_first_not_of(blanks, end)) != std::wstring::npos;) {
      end = std::min(text.find_first_of(blanks, at), text.size());
      rule.words.add(std::wstring_view(text).substr(at, end - at));
    }
    if (!rule.words.empty()) result_->wordLists.push_back(std::move(rule));
  }

  void takeSymbols(const RuleLine& line) {
    auto rule = made<SyntaxSymbolList>(line);
    std::string_view fields = line.fields;
    for (wchar_t character : wide(cutField(fields))) rule.characters.set(syntaxIndex(character));
    result_->symbolLists.push_back(std::move(rule));
  }

  void takeLineComment(const RuleLine& line) {
    std::string_view fields = line.fields;
    SyntaxText begin(wide(cutField(fields)), caseOf(line));
    addElement(line, line.keyword, std::move(begin), SyntaxText(), LineBound::Yes);
  }

  void takeBlockComment(const RuleLine& line) {
    std::string_view fields = line.fields;
    if (fields.find(':') == std::string_view::npos) return;
    SyntaxText begin(wide(cutField(fields)), caseOf(line));
    SyntaxText end(wide(cutField(fields)), caseOf(line));
    addElement(line, line.keyword, std::move(begin), std::move(end), lineBoundOf(line));
  }

  void takeString(const RuleLine& line) {
    std::string_view fields = line.fields;
    const auto colons = std::count(fields.begin(), fields.end(), ':');
    if (colons == 0) return;
    auto oneCharacter = [&fields] {
      const wchar_t character = firstCharacter(cutField(fields));
      return SyntaxText(std::wstring(character == 0 ? 0 : 1, character), SyntaxCase::Exact);
    };
    SyntaxText begin = oneCharacter();
    SyntaxText end = oneCharacter();
    const wchar_t escape = colons > 1 ? firstCharacter(cutField(fields)) : defaultEscape_;
    addElement(line, line.keyword, std::move(begin), std::move(end), LineBound::No, escape);
  }

  void takeNumber(const RuleLine& line) { result_->numbers.push_back(made<SyntaxNumber>(line)); }

  void takeEscape(const RuleLine& line) { defaultEscape_ = firstCharacter(line.className); }

  void takeState(const RuleLine& line) {
    std::string_view fields = line.fields;
    if (std::count(fields.begin(), fields.end(), ':') < 2) return;
    const std::string_view name = cutField(fields);
    SyntaxText begin(wide(cutField(fields)), caseOf(line));
    SyntaxText end(wide(cutField(fields)), caseOf(line));
    addElement(line, name, std::move(begin), std::move(end), lineBoundOf(line));
  }

  void takeStateChange(const RuleLine& line) {
    auto rule = made<CSyntaxStateChange>(line);
    std::string_view fields = line.fields;
    rule.text = SyntaxText(wide(cutProtectedField(fields)), caseOf(line));
    if (rule.text.empty()) return;
    const std::string action = lowered(cutProtectedField(fields));
    if (action == "pop") rule.action = CSyntaxStateChange::Action::Pop;
    if (action == "push") rule.action = CSyntaxStateChange::Action::Push;
    rule.targetName = lowered(cutProtectedField(fields));
    result_->changes.push_back(std::move(rule));
  }

  const Westring& baseName_;
  std::shared_ptr<SyntaxDefinitions> result_;
  Section section_ = Section::Other;
  bool hasMatched_ = false;
  std::map<std::string, std::string> classes_;  // colour phrases by name, in lower case
  wchar_t defaultEscape_ = 0;
};

const DefinitionsReader::Keyword DefinitionsReader::Keywords[] = {
    {"wordchars", &DefinitionsReader::takeWordCharacters},
    {"words", &DefinitionsReader::takeWords},
    {"symbols", &DefinitionsReader::takeSymbols},
    {"linecomment", &DefinitionsReader::takeLineComment},
    {"blockcomment", &DefinitionsReader::takeBlockComment},
    {"string", &DefinitionsReader::takeString},
    {"number", &DefinitionsReader::takeNumber},
    {"escape", &DefinitionsReader::takeEscape},
    {"state", &DefinitionsReader::takeState},
    {"statechange", &DefinitionsReader::takeStateChange},
    {}};

}  // namespace

std::shared_ptr<const SyntaxDefinitions> readSyntax(std::string_view content,
                                                    const Westring& baseName,
                                                    unsigned char defaultColour) {
  DefinitionsReader reader(baseName, defaultColour);
  DefinitionLines lines(content);
  std::string_view line;
  while (lines.next(line)) reader.take(line);
  return reader.result();
}
