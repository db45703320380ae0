#pragma once

#include <array>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "syntax/syntax_rules.h"

// What can begin at a character: an element or a state change, one of both.
struct SyntaxTrigger {
  const SyntaxText* text;
  const CSyntaxElement* element;
  const CSyntaxStateChange* change;
};

// A scope's answers for each character at once, so that most places of a line cost one look.
struct SyntaxTables {
  enum Trait : unsigned char { Word = 1, Opens = 2, Symbol = 4 };

  // What a character may be, by Trait. Above 255 the low byte tells of words and symbols.
  unsigned char traits(wchar_t character) const {
    const unsigned char found = ofLowByte[syntaxIndex(character)];
    if (static_cast<uint32_t>(character) < SyntaxTableSize) return found;
    const size_t key = triggerKey(character);
    const bool opens = firstTrigger[key] != firstTrigger[key + 1];
    return static_cast<unsigned char>((found & ~Opens) | (opens ? Opens : 0));
  }
  bool isWord(wchar_t character) const { return (ofLowByte[syntaxIndex(character)] & Word) != 0; }
  static size_t triggerKey(wchar_t character) { return syntaxIndex(foldChar(character)); }

  std::array<unsigned char, SyntaxTableSize> ofLowByte{};
  std::array<unsigned char, SyntaxTableSize> symbolColour{};  // where Symbol is set
  // The triggers sorted by key, those of one key in the order of the tries: elements as they stand
  // in the file, then state changes.
  std::vector<SyntaxTrigger> triggers;
  std::array<uint32_t, SyntaxTableSize + 1> firstTrigger{};
};

// The rules that are active in the elements of one name, or outside all, each kind in the order of
// the file.
struct SyntaxScope {
  std::vector<const SyntaxWordList*> wordLists;
  std::vector<const SyntaxSymbolList*> symbolLists;
  std::vector<const CSyntaxElement*> elements;
  std::vector<const CSyntaxStateChange*> changes;
  const SyntaxNumber* number = nullptr;  // the last one
  // Made when the scope is first entered: a file may name more states than a text ever opens.
  mutable std::unique_ptr<const SyntaxTables> tables;
};

// All that one file of definitions says about one text. Filled by the reader, then finished, never
// changed again. Application thread.
class SyntaxDefinitions {
 public:
  explicit SyntaxDefinitions(unsigned char defaultColour);
  SyntaxDefinitions(const SyntaxDefinitions&) = delete;
  SyntaxDefinitions& operator=(const SyntaxDefinitions&) = delete;

  SyntaxFlags wordCharacters;   // letters and digits of ASCII from the start
  unsigned char defaultColour;  // of text that no rule touches
  std::deque<SyntaxWordList> wordLists;
  std::deque<SyntaxSymbolList> symbolLists;
  std::deque<SyntaxNumber> numbers;
  std::deque<CSyntaxElement> elements;
  std::deque<CSyntaxStateChange> changes;

  void finish();  // resolves the targets and hands each rule to the scopes it is active in

  const SyntaxScope& outside() const { return outside_; }
  const SyntaxTables& tables(const SyntaxScope& scope) const;

 private:
  template <class Rules, class Take>
  void handOut(const Rules& rules, Take take);
  std::unique_ptr<const SyntaxTables> makeTables(const SyntaxScope& scope) const;

  SyntaxScope outside_;
  std::unordered_map<std::string, SyntaxScope> scopes_;  // by the name of an element
};
