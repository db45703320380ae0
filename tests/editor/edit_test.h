#pragma once

#include <string>

#include "editor/document/edit_clipboard.h"
#include "editor/text/search_values.h"
#include "editor/window/editor_screen.h"
#include "editor/window/text_editor.h"
#include "ui/ui_test.h"

// The screen of an edit, given its keys one by one.
class EditorKeys : public EditorScreen {
 public:
  using EditorScreen::EditorScreen;
  void key(Key::Code code, int state = 0) {
    draw();
    onKey(code, state);
    draw();
  }
};

// An edit of a text in memory on a real console. What a command asks is answered by keys that are
// queued before.
class EditTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    searchValues() = SearchValues();
    editClipboard().set({});
  }

  // The text of the edit, lines joined with LF.
  static std::string textOf(const CTextEditor& editor) {
    std::string text;
    editor.document.write({TextFormat::Utf8}, [&text](std::string_view bytes) {
      text += bytes;
      return 0;
    });
    return text;
  }

  struct Edit {
    explicit Edit(const std::string& text) : editor(L"/tmp/text"), screen(editor) {
      editor.document.load(text, {TextFormat::Utf8});
      editor.makeSafe();
    }
    CTextEditor editor;
    EditorKeys screen;

    void key(Key::Code code, int state = 0) { screen.key(code, state); }
    void keys(std::initializer_list<Key::Code> codes) {
      for (Key::Code code : codes) key(code);
    }
    std::string text() const { return textOf(editor); }
    void mark(TextPlace start, TextPlace end) {
      editor.moveTo(end);
      editor.setBlock(start, end, TextBlock::CursorAt::End);
    }
    std::string marked() const {
      if (!editor.block.active) return "-";
      const std::wstring wide = editor.blockText().text();
      return toUtf8(wide.c_str()).data();
    }
  };
};
