#include "editor/window/load_file.h"

#include <algorithm>
#include <cerrno>
#include <new>

#include "editor/text/text_file.h"
#include "editor/window/edit_record.h"
#include "editor/window/editor_painter.h"
#include "editor/window/file_work.h"
#include "editor/window/recovery.h"
#include "editor/window/text_editor.h"
#include "foundation/path_info.h"
#include "foundation/status.h"
#include "ui/alert.h"

namespace {

constexpr char Reading[] = "Reading File";

void tell(const Westring& text, const Westring& name) {
  alert(text, name, AlertButtons::Ok, AlertColour::Error);
}

bool createFile(CTextEditor& editor, const Westring& path, FileContent& content) {
  if (alert("File does not exist, Create?", editor.file.name, AlertButtons::OkCancel) !=
      Answer::Yes) {
    return false;
  }
  const int error = editor.file.created.create(path, content);
  editor.file.isNew = error == 0;
  if (error == 0) return true;
  tell(L"Unable to create file: " + errorText(error), editor.file.name);
  return false;
}

int readContent(const Westring& path, FileContent& content) {
  FileWork work(Reading);
  return readFileContent(path, content, work.progress());
}

// 0 with the content; errors were told.
bool openContent(CTextEditor& editor, const Westring& path, FileContent& content) {
  const int error = readContent(path, content);
  if (error == ENOENT) return createFile(editor, path, content);
  if (error != 0 && error != ECANCELED) tell(errorText(error), editor.file.name);
  return error == 0;
}

// What the record says of the encoding; a byte order mark stands above it.
TextEncoding rememberedEncoding(const HISTREC* record) {
  return record ? TextEncoding{record->format, record->page} : TextEncoding{};
}

void goToOffset(CTextEditor& editor, int64_t offset, int64_t selection) {
  const Document::BytePlace place = editor.document.lineOfByte(offset);
  const TextPlace from = editor.document.clamped({place.line, place.bytesBefore});
  editor.moveTo(from);
  editor.scrollTo(from.line);
  if (selection <= 0) return;
  const int64_t rest = editor.document.lineLength(from.line) - from.index;
  editor.setBlock(from, {from.line, from.index + std::min(selection, rest)},
                  TextBlock::CursorAt::Start);
}

void goToStart(CTextEditor& editor, const EditStart& start, const HISTREC* record) {
  editor.makeSafe();
  int64_t offset = start.offset;
  if (offset < 0 && record) offset = record->viewerPosition;
  if (offset >= 0) return goToOffset(editor, offset, start.selection);
  if (record) takeView(editor, *record);
}

// 0, ECANCELED on Esc, or Status::TooLarge without memory for what is known of the lines.
int loadText(CTextEditor& editor, FileContent& content, const CTextFile& text) {
  FileWork work(Reading);
  const int64_t size = std::ssize(content.bytes);
  const auto progress = [&work, size](int64_t bytes) { return work.report(bytes, size); };
  try {
    return editor.document.load(std::move(content.bytes), text.encoding, text.textStart, progress)
               ? 0
               : ECANCELED;
  } catch (const std::bad_alloc&) {
    return Status::TooLarge;
  }
}

// The text of a file that was read; false with everything as it was when there is none: the user
// was told why, or wanted it so.
bool takeText(CTextEditor& editor, FileContent& content, const CTextFile& text) {
  if (const int error = loadText(editor, content, text)) {
    if (error != ECANCELED) tell(errorText(error), editor.file.name);
    return false;
  }
  editor.file.isReadOnly = content.isReadOnly;
  editor.file.hasMark = text.hasMark();
  return true;
}

}  // namespace

bool loadFile(CTextEditor& editor, const EditStart& start) {
  const Westring path = FileStatusStore::keyOfPath(editor.file.name);
  FileContent content;
  if (!openContent(editor, path, content)) return false;
  editor.file.saver.opened(path, content);
  const HISTREC* record = findRecord(editor);
  const CTextFile text = CTextFile::detect(content.bytes, rememberedEncoding(record));
  if (!takeText(editor, content, text)) return false;
  editor.file.saver.witness = &editor.file.journal.savings();
  beginJournal(editor);
  if (record) takeSteps(editor, *record);
  goToStart(editor, start, record);
  editor.painter().syntax().load(editor.file.name, editor.document);
  editor.redraw();
  return true;
}

bool reloadFile(CTextEditor& editor, const TextEncoding& encoding) {
  FileContent content;
  const int error = readContent(editor.file.saver.path(), content);
  if (error != 0) {
    if (error != ECANCELED) tell(errorText(error), editor.file.name);
    return false;
  }
  if (!takeText(editor, content, CTextFile::readAs(encoding, content.bytes))) return false;
  editor.file.saver.opened(editor.file.saver.path(), content);
  editor.dropBlock();
  editor.history.clearSteps();
  editor.stepsAreForeign = false;
  editor.view = EditorView();
  editor.makeSafe();
  if (const HISTREC* record = findRecord(editor)) {
    takeSteps(editor, *record);
    if (record->viewerPosition >= 0) goToOffset(editor, record->viewerPosition, 0);
  }
  editor.isModified = false;
  beginJournal(editor);
  editor.painter().syntax().load(editor.file.name, editor.document);
  return true;
}

void warnOfInvalidLines(const CTextEditor& editor) {
  const int64_t count = editor.document.invalidLines();
  if (count == 0) return;
  const std::string text = "Warning: Invalid encoding found on " + std::to_string(count) +
                           " lines. Their bytes are kept as they are";
  alert(text.c_str(), L"");
}
