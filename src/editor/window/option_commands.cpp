#include "editor/window/edit_command.h"
#include "editor/window/editor_painter.h"
#include "editor/window/help_topic.h"
#include "editor/window/text_editor.h"
#include "options/options.h"

namespace {

void toggle(bool& option) {
  option = !option;
}

void toggleOverStrike(CTextEditor&) {
  toggle(GlobalOptions::OverStrike);
}

void toggleAutoIndent(CTextEditor&) {
  toggle(GlobalOptions::AutoIndent);
}

template <int Width>
void setTabWidth(CTextEditor& editor) {
  GlobalOptions::TabWidth = Width;
  editor.redraw();
}

void toggleLineEnds(CTextEditor& editor) {
  const bool isLf = editor.document.lineEndStyle() == LineEndStyle::Lf;
  editor.document.setLineEnds(isLf ? LineEndStyle::CrLf : LineEndStyle::Lf);
  editor.isModified = true;
}

void toggleColours(CTextEditor& editor) {
  EditorSyntax& syntax = editor.painter().syntax();
  if (syntax.active()) {
    syntax.off();
  } else {
    syntax.load(editor.file.name, editor.document);
  }
  editor.redraw();
}

void help(CTextEditor& editor) {
  helpWindow()->show(helpTopicOf(editor.file.name));
}

void repaint(CTextEditor& editor) {
  editor.redraw();
}

}  // namespace

EditCommands editOptionCommands() {
  return {
      {"Help", {Key::F1}, help, {.block = BlockUse::Keeps, .asks = Asks::Yes}},
      {"Repaint", {Key::ctrl('l')}, repaint, {.block = BlockUse::Keeps}},
      {"OverStrike", {Key::Insert}, toggleOverStrike},
      {"AutoIndent", {Key::alt('i')}, toggleAutoIndent},
      {"Line ends", {Key::alt('u')}, toggleLineEnds},
      {"Colours", {Key::alt('h')}, toggleColours},
      {"Tab width 1", {Key::alt('1')}, setTabWidth<1>},
      {"Tab width 2", {Key::alt('2')}, setTabWidth<2>},
      {"Tab width 3", {Key::alt('3')}, setTabWidth<3>},
      {"Tab width 4", {Key::alt('4')}, setTabWidth<4>},
      {"Tab width 5", {Key::alt('5')}, setTabWidth<5>},
      {"Tab width 6", {Key::alt('6')}, setTabWidth<6>},
      {"Tab width 7", {Key::alt('7')}, setTabWidth<7>},
      {"Tab width 8", {Key::alt('8')}, setTabWidth<8>},
  };
}
