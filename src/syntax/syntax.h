#pragma once

#include <climits>
#include <memory>
#include <string_view>
#include <vector>

#include "console/cell_string.h"
#include "syntax/context_stack.h"
#include "syntax/definitions_file.h"
#include "syntax/syntax_definitions.h"

// Colours the lines of one text, given in order. It remembers no places: whoever wants to go on
// elsewhere keeps a state, which is what is open before a line. Application thread.
class CSyntax {
 public:
  // The part of a line that is coloured, in characters. Behind it everything has the default
  // colour, and the state there is the one at the line's end.
  static constexpr size_t ColouredCharacters = 65536;

  // Off, outside all states.
  CSyntax() = default;

  // Chooses the definitions for a text by its file name (a path or a name) or, when none fits that,
  // by its first line; off when there are none. Outside all states then.
  SyntaxLoad load(const Westring& textPath, std::wstring_view firstLine = {});
  // Takes definitions that were read elsewhere; null is off.
  void use(std::shared_ptr<const SyntaxDefinitions> definitions);
  void off() { isActive_ = false; }
  bool active() const { return isActive_; }
  unsigned char defaultColour() const;  // of all text when off

  // The cells of a line, which replace what `out` holds. Tabs and characters without a picture are
  // resolved; a line has no line end. Leaves the state as the next line needs it. Who wants only
  // the first `cells` gets those and perhaps a few more, which is much cheaper for a long line.
  void colour(std::wstring_view line, CellString& out, int cells = INT_MAX);
  // The same for whoever wants only the state; characters beyond ColouredCharacters aren't looked
  // at.
  void skip(std::wstring_view line);

  const CContextStack& state() const { return state_; }
  // A state from before a load counts as empty: its elements are those of other definitions.
  void setState(const CContextStack& state);
  void reset() { state_ = CContextStack(); }  // outside all states

 private:
  std::shared_ptr<const SyntaxDefinitions> definitions_;
  bool isActive_ = false;
  CContextStack state_;
  std::vector<const CSyntaxElement*> opened_;  // room for what a line opens, kept between lines
};
