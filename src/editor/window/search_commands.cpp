#include "editor/window/search_commands.h"

#include "editor/dialogs/goto_dialogs.h"
#include "editor/dialogs/note_window.h"
#include "editor/dialogs/search_dialog.h"
#include "editor/document/text_rules.h"
#include "editor/window/edit_command.h"
#include "editor/window/mark_commands.h"
#include "editor/window/text_editor.h"
#include "ui/alert.h"

namespace {

constexpr int64_t LinesAboveGoto = 5;

enum class Start { AtCursor, BehindCursor };
enum class Miss { IsTold, IsQuiet };

SearchDirection opposite(SearchDirection direction) {
  return direction == SearchDirection::Forward ? SearchDirection::Backward
                                               : SearchDirection::Forward;
}

// The cursor goes to the hit, which is marked as long as nothing else is being marked.
void showHit(CTextEditor& editor, TextPlace hit, size_t length) {
  const TextPlace behind{hit.line, hit.index + static_cast<int64_t>(length)};
  editor.moveTo(hit);
  editor.makeVisible(hit, behind);
  if (!editor.stickyMark) editor.setBlock(hit, behind, TextBlock::CursorAt::Start);
}

void search(CTextEditor& editor, const SearchQuery& query, Start start, Miss miss) {
  if (query.text.empty()) return;
  TextPlace place = editor.cursor();
  if (start == Start::BehindCursor) place = stepOn(place, query.direction);
  SearchEnd end;
  {
    TDEditor::CSearchWatch watch;
    end = findText(editor.document, query, place, [&watch] { return watch.pressed(); });
  }
  if (end == SearchEnd::Found) showHit(editor, place, query.text.size());
  if (end == SearchEnd::NotFound && miss == Miss::IsTold) alert("String not found", L"");
}

// Whether what is marked at the cursor is what the query looks for.
bool isMarkedHit(const CTextEditor& editor, const SearchQuery& query) {
  if (!editor.hasBlock() || editor.block.start != editor.cursor()) return false;
  if (editor.block.end.line != editor.cursor().line) return false;
  if (editor.block.end.index - editor.cursor().index != std::ssize(query.text)) return false;
  return isHit(editor.document, query, editor.cursor());
}

void searchByDialog(CTextEditor& editor) {
  if (!TDEditor::askSearch(searchValues(), TDEditor::SearchDialogUse::Search)) return;
  const SearchQuery query = queryOf(searchValues());
  search(editor, query, isMarkedHit(editor, query) ? Start::BehindCursor : Start::AtCursor,
         Miss::IsTold);
}

void searchAgain(CTextEditor& editor) {
  search(editor, queryOf(searchValues()), Start::BehindCursor, Miss::IsTold);
}

void searchTheOtherWay(CTextEditor& editor) {
  SearchQuery query = queryOf(searchValues());
  query.direction = opposite(query.direction);
  search(editor, query, Start::BehindCursor, Miss::IsTold);
}

void searchWord(CTextEditor& editor, SearchDirection direction) {
  selectWord(editor);
  if (!editor.hasBlock()) return;
  searchValues().text = editor.blockText().text().c_str();
  SearchQuery query = queryOf(searchValues());
  query.direction = direction;
  query.words = SearchWords::WholeOnly;
  search(editor, query, Start::BehindCursor, Miss::IsQuiet);
}

void searchWordBackward(CTextEditor& editor) {
  searchWord(editor, SearchDirection::Backward);
}

void searchWordForward(CTextEditor& editor) {
  searchWord(editor, SearchDirection::Forward);
}

void gotoLine(CTextEditor& editor) {
  const std::optional<int64_t> line =
      TDEditor::askLine(editor.cursor().line + 1, editor.document.lineCount());
  if (!line) return;
  editor.moveTo({*line - 1, 0});
  editor.scrollTo(std::max<int64_t>(*line - 1 - LinesAboveGoto, 0));
}

}  // namespace

SearchQuery queryOf(const SearchValues& values) {
  return {.text = values.text.data(),
          .letters = values.caseSensitive ? SearchCase::Respected : SearchCase::Ignored,
          .direction = values.reverse ? SearchDirection::Backward : SearchDirection::Forward,
          .words = values.wholeWord ? SearchWords::WholeOnly : SearchWords::Any};
}

EditCommands searchCommands() {
  using namespace Key;
  return {
      {"Search", {F7, ctrl('f')}, searchByDialog, {.block = BlockUse::Jumps, .asks = Asks::Yes}},
      {"Search again", {ShiftF7}, searchAgain, {.block = BlockUse::Jumps}},
      {"Search the other way", {AltF7}, searchTheOtherWay, {.block = BlockUse::Jumps}},
      {"Search the word backward", {alt(',')}, searchWordBackward, {.block = BlockUse::Jumps}},
      {"Search the word forward", {alt('.')}, searchWordForward, {.block = BlockUse::Jumps}},
      {"Goto line", {alt('l')}, gotoLine, {.block = BlockUse::Moves, .asks = Asks::Yes}},
  };
}
