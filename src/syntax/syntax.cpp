#include "syntax/syntax.h"

#include <algorithm>
#include <utility>

#include "foundation/utf8.h"
#include "options/colours.h"
#include "options/options.h"

namespace {

constexpr wchar_t Bell = 7;
constexpr wchar_t Backspace = 8;
constexpr wchar_t FirstPrintable = 32;
constexpr wchar_t Delete = 127;

// What a cell shows for a character other than a tab.
wchar_t shownCharacter(wchar_t character) {
  if (character >= FirstPrintable && character < Delete) return character;
  if (character == 0 || character == Bell || character == Backspace) return L' ';
  return mapControl(displayCharacter(character));
}

void put(CellString& out, wchar_t character, unsigned char attr) {
  if (character != L'\t') {
    out.append(shownCharacter(character), attr);
    return;
  }
  const int width = std::max(GlobalOptions::TabWidth, 1);
  for (int blanks = width - out.length() % width; blanks > 0; --blanks) out.append(L' ', attr);
}

// A protected character goes out as it is, unless cells and columns of the text would part.
void putProtected(CellString& out, wchar_t character, unsigned char attr) {
  if (character == L'\t' || character == 0) {
    put(out, character, attr);
  } else {
    out.append(character, attr);
  }
}

void put(CellString& out, std::wstring_view text, unsigned char attr) {
  for (wchar_t character : text) put(out, character, attr);
}

// How much a line may cost, in characters that are compared, and in lists that are asked for a
// word: a file of definitions may hold so many rules that trying them all at each character would
// take minutes. No line of a sensible file comes near.
constexpr int64_t CostOfAnyLine = 65536;
constexpr int64_t CostOfACharacter = 256;

// One line on its way through the rules.
class LineWalk {
 public:
  // What the line opens is kept in `opened` until its end: most of it is closed by then, and only
  // the rest is worth nodes of the stack. Once `out` has `cells`, only the state is wanted.
  LineWalk(const std::shared_ptr<const SyntaxDefinitions>& definitions, CContextStack& state,
           std::vector<const CSyntaxElement*>& opened, std::wstring_view line, CellString& out,
           int cells)
      : definitions_(definitions),
        state_(state),
        opened_(opened),
        line_(line),
        out_(out),
        cells_(cells),
        left_(CostOfAnyLine + CostOfACharacter * static_cast<int64_t>(line.size())) {
    opened_.clear();
    seeTop();
  }

  void run() {
    while (at_ < line_.size() && left_ > 0) {
      if (!wantsCells()) passOver();
      if (at_ == line_.size()) break;
      if (endTop()) continue;
      const unsigned char traits = tables_->traits(line_[at_]);
      if ((traits & SyntaxTables::Opens) != 0 && openOrChange()) continue;
      if ((traits & SyntaxTables::Word) != 0) {
        takeWord();
      } else if ((traits & SyntaxTables::Symbol) != 0 || isEscape(line_[at_])) {
        takeCharacter(traits);
      } else {
        takePlain();
      }
    }
    take(line_.size() - at_, definitions_->defaultColour);
    endLine();
    for (const CSyntaxElement* element : opened_) state_.push(element, definitions_);
  }

 private:
  void seeTop() {
    top_ = opened_.empty() ? state_.top() : opened_.back();
    scope_ = top_ ? top_->scope : &definitions_->outside();
    tables_ = &definitions_->tables(*scope_);
    colour_ = top_ ? top_->colour : definitions_->defaultColour;
  }

  void push(const CSyntaxElement* element) {
    if (state_.depth() + static_cast<int>(opened_.size()) >= CContextStack::Deepest) return;
    opened_.push_back(element);
    seeTop();
  }

  void pop() {
    if (opened_.empty()) {
      state_.pop();
    } else {
      opened_.pop_back();
    }
    seeTop();
  }

  size_t wantedCells() const { return static_cast<size_t>(std::max(cells_ - out_.length(), 0)); }
  bool wantsCells() const { return out_.length() < cells_; }

  // The next `count` characters go out.
  void take(size_t count, unsigned char attr) {
    put(out_, line_.substr(at_, std::min(count, wantedCells())), attr);
    at_ += count;
  }

  bool standsHere(const SyntaxText& text) {
    if (!text.beginsWith(line_[at_])) return false;
    left_ -= static_cast<int64_t>(text.length());
    return text.standsAt(line_, at_);
  }

  bool endTop() {
    if (top_ == nullptr || !standsHere(top_->end)) return false;
    take(top_->end.length(), top_->colour);
    pop();
    return true;
  }

  bool openOrChange() {
    const size_t key = SyntaxTables::triggerKey(line_[at_]);
    for (uint32_t i = tables_->firstTrigger[key]; i < tables_->firstTrigger[key + 1]; ++i) {
      const SyntaxTrigger& trigger = tables_->triggers[i];
      if (left_-- <= 0) return false;
      if (!standsHere(*trigger.text)) continue;
      if (trigger.element != nullptr) {
        take(trigger.text->length(), trigger.element->colour);
        push(trigger.element);
      } else {
        take(trigger.text->length(), trigger.change->colour);
        change(*trigger.change);
      }
      return true;
    }
    return false;
  }

  void change(const CSyntaxStateChange& rule) {
    if (rule.action != CSyntaxStateChange::Action::Push) pop();
    if (rule.action != CSyntaxStateChange::Action::Pop && rule.target != nullptr) push(rule.target);
  }

  void takeWord() {
    size_t end = at_;
    while (end < line_.size() && tables_->isWord(line_[end])) ++end;
    const size_t length = end - at_;
    take(length, wantsCells() ? wordColour(line_.substr(at_, length)) : colour_);
  }

  unsigned char wordColour(std::wstring_view word) {
    if (word.front() >= L'0' && word.front() <= L'9') {
      return scope_->number != nullptr ? scope_->number->colour : colour_;
    }
    if (scope_->wordLists.empty()) return colour_;
    const uint32_t hash = WordHash::of(word);
    for (const SyntaxWordList* list : scope_->wordLists) {
      if (listsLeft_-- <= 0) break;
      if (list->words.holds(word, hash)) return list->colour;
    }
    return colour_;
  }

  bool isEscape(wchar_t character) const {
    return top_ != nullptr && top_->escape != 0 && top_->escape == character;
  }
  bool mayEndTop(wchar_t character) const {
    return top_ != nullptr && top_->end.beginsWith(character);
  }

  // Where only the state is wanted: the words and characters that leave it as it is.
  void passOver() {
    while (at_ < line_.size()) {
      const wchar_t character = line_[at_];
      const unsigned char traits = tables_->traits(character);
      if ((traits & SyntaxTables::Opens) != 0 || mayEndTop(character) || isEscape(character))
        return;
      ++at_;
      if ((traits & SyntaxTables::Word) == 0) continue;
      while (at_ < line_.size() && tables_->isWord(line_[at_])) ++at_;
    }
  }

  // The characters from here on that no rule has anything to say about; the first one is.
  void takePlain() {
    size_t end = at_ + 1;
    while (end < line_.size() && tables_->traits(line_[end]) == 0 && !isEscape(line_[end]) &&
           !mayEndTop(line_[end])) {
      ++end;
    }
    take(end - at_, colour_);
  }

  void takeCharacter(unsigned char traits) {
    const wchar_t character = line_[at_];
    const bool isSymbol = (traits & SyntaxTables::Symbol) != 0;
    const unsigned char attr = isSymbol ? tables_->symbolColour[syntaxIndex(character)] : colour_;
    if (isEscape(character) && at_ + 1 < line_.size()) {
      takePair(attr);
    } else {
      take(1, attr);
    }
  }

  void takePair(unsigned char attr) {
    if (wantsCells()) {
      putProtected(out_, line_[at_], attr);
      putProtected(out_, line_[at_ + 1], attr);
    }
    at_ += 2;
  }

  // What is bound to its line takes the one beneath it along.
  void endLine() {
    bool goesOn = top_ != nullptr && top_->lineBound == LineBound::Yes;
    while (goesOn && top_ != nullptr) {
      goesOn = top_->lineBound == LineBound::Yes;
      pop();
    }
  }

  const std::shared_ptr<const SyntaxDefinitions>& definitions_;
  CContextStack& state_;
  std::vector<const CSyntaxElement*>& opened_;
  const std::wstring_view line_;
  CellString& out_;
  const int cells_;
  size_t at_ = 0;
  int64_t left_;               // of what the line may cost: the state depends on it
  int64_t listsLeft_ = left_;  // only colours do on this
  // All of these follow from what is open.
  const CSyntaxElement* top_ = nullptr;
  const SyntaxScope* scope_ = nullptr;
  const SyntaxTables* tables_ = nullptr;
  unsigned char colour_ = 0;
};

}  // namespace

SyntaxLoad CSyntax::load(const Westring& textPath, std::wstring_view firstLine) {
  SyntaxLoad result = loadSyntax(textPath, firstLine);
  use(result.definitions);
  return result;
}

void CSyntax::use(std::shared_ptr<const SyntaxDefinitions> definitions) {
  reset();
  definitions_ = std::move(definitions);
  isActive_ = definitions_ != nullptr;
}

unsigned char CSyntax::defaultColour() const {
  return isActive_ ? definitions_->defaultColour : colourOf(Colour::FileViewer);
}

void CSyntax::colour(std::wstring_view line, CellString& out, int cells) {
  const std::wstring_view coloured = isActive_ ? line.substr(0, ColouredCharacters) : L"";
  out = CellString(defaultColour());
  if (isActive_) LineWalk(definitions_, state_, opened_, coloured, out, cells).run();
  const size_t rest = cells > out.length() ? static_cast<size_t>(cells - out.length()) : 0;
  put(out, line.substr(coloured.size(), rest), defaultColour());
}

void CSyntax::skip(std::wstring_view line) {
  if (!isActive_) return;
  CellString none;
  LineWalk(definitions_, state_, opened_, line.substr(0, ColouredCharacters), none, 0).run();
}

void CSyntax::setState(const CContextStack& state) {
  state_ = state.isOf(definitions_.get()) ? state : CContextStack();
}
