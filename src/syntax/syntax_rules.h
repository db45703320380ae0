#pragma once

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/fold.h"

// The rules that definitions are made of. Names of states ignore the case of ASCII letters.

struct SyntaxScope;

// Tables of characters are indexed by the low 8 bits alone: a character above 255 takes the flag of
// its low byte.
inline constexpr int SyntaxTableSize = 256;
using SyntaxFlags = std::bitset<SyntaxTableSize>;
inline unsigned char syntaxIndex(wchar_t character) {
  return static_cast<unsigned char>(character);
}

enum class SyntaxCase { Exact, Ignored };

// A text that begins or ends something.
class SyntaxText {
 public:
  SyntaxText() = default;
  SyntaxText(std::wstring text, SyntaxCase how);

  bool empty() const { return text_.empty(); }
  size_t length() const { return text_.size(); }
  wchar_t first() const { return text_.front(); }  // as foldChar gives it where case is ignored
  bool beginsWith(wchar_t character) const {
    return !text_.empty() && same(character, text_.front());
  }
  // Whether `line` goes on with it at `at`, a place in the line. An empty text is nowhere.
  bool standsAt(std::wstring_view line, size_t at) const;

 private:
  bool same(wchar_t character, wchar_t wanted) const {
    return (case_ == SyntaxCase::Exact ? character : foldChar(character)) == wanted;
  }

  std::wstring text_;
  SyntaxCase case_ = SyntaxCase::Exact;
};

// Where a rule applies: the names of states, and whether it does outside all of them.
class CSyntaxContext {
 public:
  CSyntaxContext() = default;  // outside only
  // A comma list as nextField cuts it; an empty field stands for the outside, and so does an empty
  // list.
  explicit CSyntaxContext(std::string_view list);

  bool outside() const { return outside_; }
  const std::vector<std::string>& names() const { return names_; }  // in lower case, each once

 private:
  bool outside_ = true;
  std::vector<std::string> names_;
};

struct SyntaxRule {
  CSyntaxContext contexts;
  unsigned char colour = 0;
};

// A number that is the same for words that differ only in the case of ASCII letters.
class WordHash {
 public:
  void add(wchar_t character) {
    value_ = (value_ ^ static_cast<uint32_t>(lowerAscii(character))) * Prime;
  }
  uint32_t value() const { return value_ ^ value_ >> Half; }
  static uint32_t of(std::wstring_view word);

 private:
  static constexpr uint32_t Prime = 16777619;
  static constexpr int Half = 16;
  uint32_t value_ = 2166136261;
};

// A set of words that is asked once for each word of a text.
class WordCollection {
 public:
  explicit WordCollection(SyntaxCase how = SyntaxCase::Exact) : case_(how) {}

  void add(std::wstring_view word);  // words that are there already change nothing
  bool holds(std::wstring_view word, uint32_t hash) const;  // the hash is that of the word
  bool empty() const { return words_.empty(); }

 private:
  struct Word {
    std::wstring text;
    uint32_t hash;
  };

  bool same(std::wstring_view a, std::wstring_view b) const;
  void place(uint32_t index);
  void grow();

  SyntaxCase case_;
  std::vector<Word> words_;
  std::vector<uint32_t> slots_;  // index into words_ + 1, 0 for a free one; a power of 2, half free
};

struct SyntaxWordList : SyntaxRule {
  WordCollection words;
};

struct SyntaxSymbolList : SyntaxRule {
  SyntaxFlags characters;
};

struct SyntaxNumber : SyntaxRule {};

enum class LineBound { No, Yes };

// A comment, a string or a state: what stands on the stack while it is open.
struct CSyntaxElement : SyntaxRule {
  std::string name;  // in lower case
  SyntaxText begin;  // never empty
  SyntaxText end;    // empty: only a state change or the line's end closes it
  LineBound lineBound = LineBound::No;
  wchar_t escape = 0;                  // protects the character behind it; 0 for none
  const SyntaxScope* scope = nullptr;  // the rules that are active in it
};

struct CSyntaxStateChange : SyntaxRule {
  enum class Action { Push, Pop, Switch };

  SyntaxText text;  // never empty
  Action action = Action::Switch;
  std::string targetName;                  // in lower case
  const CSyntaxElement* target = nullptr;  // the first element of that name; null without one
};
