#include <fcntl.h>

#include <filesystem>

#include "editor/file_edit_test.h"
#include "editor/scarce_memory.h"
#include "support/as_user.h"
#include "support/fault_hook.h"

namespace {

class LoadFile : public FileEditTest {
 protected:
  // The file can't be edited, and the screen says why.
  void expectRefused(const std::string& name, const std::string& why) {
    bool loaded = true;
    answering({{why, {Key::Enter}}}, [&] { loaded = FileEdit(path(name)).loaded; });
    EXPECT_FALSE(loaded);
  }
};

}  // namespace

TEST_F(LoadFile, AWholeEditWithoutAChangeLeavesTheFileAlone) {
  const std::string name = file("a.txt", "one\ntwo\n");
  const struct stat before = statusOf(name);
  answering({{"Edit: ", {Key::Down, Key::Esc}}}, [&] { editFile(decodeFileName(name.c_str())); });
  EXPECT_EQ(readFile(name), "one\ntwo\n");
  EXPECT_EQ(statusOf(name).st_mtim.tv_nsec, before.st_mtim.tv_nsec);
  EXPECT_EQ(statusOf(name).st_ino, before.st_ino);
  EXPECT_EQ(charAt(0, 0), L'.');  // the screen is what it was
}

TEST_F(LoadFile, AnEmptyFileIsOneEmptyLineAndAnEndedOneTwo) {
  FileEdit empty(file("empty", ""));
  EXPECT_TRUE(empty.loaded);
  EXPECT_EQ(empty.editor.document.lineCount(), 1);
  EXPECT_EQ(empty.editor.document.lineEndStyle(), LineEndStyle::Lf);
  FileEdit two(file("two", "a\n"));
  EXPECT_EQ(two.editor.document.lineCount(), 2);
}

TEST_F(LoadFile, AFileThatDoesNotExistIsMadeOnlyWhenThatIsWanted) {
  bool loaded = true;
  answering({{"File does not exist, Create?", {Key::Esc}}},
            [&] { loaded = FileEdit(path("new")).loaded; });
  EXPECT_FALSE(loaded);
  EXPECT_FALSE(existsAt(path("new")));
  answering({{"File does not exist, Create?", {Key::Enter}}}, [&] {
    FileEdit edit(path("new"));
    EXPECT_TRUE(edit.loaded);
    EXPECT_TRUE(edit.editor.file.isNew);
    EXPECT_TRUE(existsAt(path("new")));
    EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf8);
    edit.typeText("x");
    edit.key(Key::Enter);
    EXPECT_TRUE(saveFile(edit.editor));
    EXPECT_EQ(readFile(path("new")), "x\n");
  });
  EXPECT_EQ(readFile(path("new")), "x\n");
}

TEST_F(LoadFile, ANewFileThatWasNeverSavedGoesAgain) {
  answering({{"Create?", {Key::Enter}}, {"Edit: ", {'x', Key::Esc}}, {"unsaved", {'d'}}},
            [&] { editFile(decodeFileName(path("new").c_str())); });
  EXPECT_FALSE(existsAt(path("new")));
  answering({{"Create?", {Key::Enter}}, {"Edit: ", {Key::Esc}}},
            [&] { editFile(decodeFileName(path("new").c_str())); });
  EXPECT_FALSE(existsAt(path("new")));
  // One that another program has used by now stays.
  answering({{"Create?", {Key::Enter}}}, [&] {
    FileEdit edit(path("used"));
    writeFile(path("used"), "theirs");
  });
  EXPECT_EQ(readFile(path("used")), "theirs");
}

TEST_F(LoadFile, ALinkThatLeadsNowhereStaysALinkAndItsFileIsMade) {
  dir.link("target", "link");
  answering({{"Create?", {Key::Enter}}, {"Edit: ", {'x', Key::F2, Key::Esc}}},
            [&] { editFile(decodeFileName(path("link").c_str())); });
  EXPECT_EQ(readFile(path("target")), "x");
  EXPECT_EQ(std::filesystem::read_symlink(path("link")), "target");
}

TEST_F(LoadFile, AFileThatCannotBeMadeSaysWhy) {
  bool loaded = true;
  answering({{"Create?", {Key::Enter}}, {"Unable to create file: No such file", {Key::Enter}}},
            [&] { loaded = FileEdit(path("missing/new")).loaded; });
  EXPECT_FALSE(loaded);
}

TEST_F(LoadFile, OnlyRegularFilesAreEdited) {
  dir.makeDir("sub");
  expectRefused("sub", "Is a directory");
  ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
  expectRefused("fifo", "Not a regular file");
}

TEST_F(LoadFile, AFileThatIsTooLargeIsRefusedBeforeItIsRead) {
  file("large", "");
  ASSERT_EQ(truncate(path("large").c_str(), off_t{1} << 31), 0);
  expectRefused("large", "File is too large to edit");
}

TEST_F(LoadFile, EscEndsALongLoadAndThereIsNothingToEdit) {
  file("long", "");
  ASSERT_EQ(truncate(path("long").c_str(), off_t{1} << 27), 0);  // each NUL ends a line
  queueKey(Key::Esc);
  FileEdit edit(path("long"));
  EXPECT_FALSE(edit.loaded);
  EXPECT_EQ(console->eventCount(), 0);
}

class LoadFileFaults : public LoadFile {};

TEST_F(LoadFileFaults, WithoutMemoryForItsLinesAFileIsTooLarge) {
  constexpr size_t Size = size_t{2} << 20, Least = size_t{1} << 17;
  file("lines", std::string(Size, '\n'));
  const std::string name = file("a.txt", "one");
  {
    const ScarceMemory memory(Least, Size);  // the bytes themselves find room
    expectRefused("lines", "File is too large to edit");
  }
  EXPECT_TRUE(ScarceMemory::hasRefused());
  // A text that stands there stays.
  FileEdit edit(name);
  writeFile(name, std::string(Size, '\n'));
  answering({{"File is too large to edit", {Key::Enter}}}, [&] {
    const ScarceMemory memory(Least, Size);
    EXPECT_FALSE(reloadFile(edit.editor, {TextFormat::CodePage, 1252}));
  });
  EXPECT_EQ(edit.text(), "one");
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf8);
}

TEST_F(LoadFile, AFileThatDoesNotTellItsSizeIsReadToItsEnd) {
  FileEdit edit("/proc/self/status");
  EXPECT_TRUE(edit.loaded);
  EXPECT_GT(edit.editor.document.lineCount(), 10);
}

TEST_F(LoadFile, AnErrorInTheMiddleOfReadingLeavesNothingToEdit) {
  file("a.txt", std::string(1 << 20, 'x'));
  const FaultHook hook("readAt", EIO);
  const FaultHook* used = &hook;
  expectRefused("a.txt", "Input/output error");
  EXPECT_TRUE(used->hit());
}

TEST_F(LoadFile, EncodingsAreRecognised) {
  const auto formatOf = [this](const std::string& content) {
    FileEdit edit(file("f", content));
    return edit.editor.document.encoding().format;
  };
  EXPECT_EQ(formatOf("plain"), TextFormat::Utf8);
  EXPECT_EQ(formatOf(std::string("\xFF\xFE\x01\x02\x99", 5)), TextFormat::Utf16Le);
  EXPECT_EQ(formatOf("Gr\xFC\xDF"
                     "e\n"),
            TextFormat::CodePage);
  EXPECT_EQ(formatOf(std::string("a\0 \0\n\0", 6)), TextFormat::Utf16Le);
  EXPECT_EQ(formatOf(std::string("a\0b\0\n\0", 6)), TextFormat::CodePage);  // no blank in it
}

TEST_F(LoadFile, InvalidLinesAreToldAndSavedAsTheyWere) {
  const std::string content = std::string(32800, 'x') +
                              "\nGr\xFC\xDF"
                              "e\nend\n";
  const std::string name = file("late", content);
  answering({{"Warning: Invalid encoding found on 1 lines", {Key::Enter}},
             {"Edit: ", {Key::F2, Key::Esc}}},
            [&] { editFile(decodeFileName(name.c_str())); });
  EXPECT_EQ(readFile(name), content);
}

TEST_F(LoadFile, AnOffsetPutsTheCursorThereAndMarks) {
  FileEdit edit(file("a.txt", "\xEF\xBB\xBFone\ntwo three\nfour"), {3 + 4 + 4, 5});
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{1, 4}));
  EXPECT_EQ(edit.editor.view.top, 1);
  EXPECT_EQ(edit.marked(), "three");
  FileEdit longer(path("a.txt"), {3 + 4 + 4, 500});
  EXPECT_EQ(longer.marked(), "three");
  FileEdit behind(path("a.txt"), {5000, 0});
  EXPECT_EQ(behind.editor.cursor().line, 2);
}

TEST_F(LoadFile, ASecondEditBeginsWhereTheFirstWasLeft) {
  std::string text;
  for (int i = 1; i <= 100; ++i) text += std::to_string(i) + " words\n";
  const std::string name = file("a.txt", text);
  {
    FileEdit edit(name);
    edit.editor.moveTo({60, 3});
    edit.key(Key::ctrlDigit(3) | Key::ShiftedKey);
    edit.typeText("x");
    edit.key(Key::F2);
    edit.key(Key::Esc);
    EXPECT_TRUE(edit.editor.hasEnded());
  }
  FileEdit again(name);
  EXPECT_EQ(again.editor.cursor(), (TextPlace{60, 4}));
  EXPECT_EQ(again.editor.history.bookmarks[3], (TextPlace{60, 3}));
  EXPECT_EQ(again.editor.history.undo.size(), 1);
  EXPECT_FALSE(again.editor.stepsAreForeign);
  again.key(Key::AltBackspace);
  EXPECT_EQ(again.text(), text);
}

TEST_F(LoadFile, StepsOfAFileThatHasChangedSinceAreToldApart) {
  const std::string name = file("a.txt", "one");
  {
    FileEdit edit(name);
    edit.typeText("x");
    edit.keys({Key::F2, Key::Esc});
  }
  writeFile(name, "other");
  FileEdit again(name);
  EXPECT_TRUE(again.editor.stepsAreForeign);
  answering({{"The file has changed since. Undo anyway?", {Key::Esc}}},
            [&] { again.key(Key::ctrl('z')); });
  EXPECT_EQ(again.text(), "other");
  answering({{"The file has changed since. Undo anyway?", {Key::Enter}}},
            [&] { again.key(Key::ctrl('z')); });
  EXPECT_EQ(again.text(), "ther");
}

TEST_F(LoadFile, ARecordIsMadeSafeForAFileThatBecameShorter) {
  const std::string name = file("a.txt", std::string(200, '\n'));
  {
    FileEdit edit(name);
    edit.key(Key::CtrlPageDown);
    edit.key(Key::Esc);
  }
  writeFile(name, "a\nb");
  FileEdit again(name);
  EXPECT_EQ(again.editor.cursor().line, 1);
  EXPECT_EQ(again.editor.view.top, 0);
}

TEST_F(LoadFile, DiscardKeepsTheRecordOfTheLastSave) {
  const std::string name = file("a.txt", "one\ntwo");
  {
    FileEdit edit(name);
    edit.typeText("x");
    edit.key(Key::F2);
    edit.keys({Key::Down, 'y', 'z'});
    queueKey('d');
    edit.key(Key::Esc);
    EXPECT_TRUE(edit.editor.hasEnded());
  }
  EXPECT_EQ(readFile(name), "xone\ntwo");
  FileEdit again(name);
  EXPECT_EQ(again.editor.history.undo.size(), 1);
  again.key(Key::ctrl('z'));
  EXPECT_EQ(again.text(), "one\ntwo");
}

TEST_F(LoadFile, ARecordOfTheViewerForcesNoFormatAndGivesThePlace) {
  const std::string name = file("a.txt", "one\ntwo\nthree");
  HISTREC& record =
      fileStatusStore().record(FileStatusStore::keyOfPath(decodeFileName(name.c_str())));
  record.viewerPosition = 4;
  FileEdit edit(name);
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf8);
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{1, 0}));
  edit.key(Key::Esc);
  EXPECT_EQ(record.viewerPosition, HISTREC::Unset);
}

TEST_F(LoadFile, AnotherEncodingBeginsWhereTheViewerWas) {
  const std::string name = file("a.txt", "one\ntwo\nthree");
  FileEdit edit(name);
  ASSERT_TRUE(reloadFile(edit.editor, {TextFormat::CodePage, 437}));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 0}));
  const Westring key = FileStatusStore::keyOfPath(decodeFileName(name.c_str()));
  fileStatusStore().record(key).viewerPosition = 8;
  ASSERT_TRUE(reloadFile(edit.editor, {TextFormat::Utf8}));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{2, 0}));
  EXPECT_EQ(edit.editor.view.top, 2);
}

TEST_F(LoadFile, EscDuringALongReloadLeavesTheTextAsItWas) {
  const std::string name = file("a.txt", "one\n");
  FileEdit edit(name);
  edit.typeText("x");
  ASSERT_EQ(truncate(name.c_str(), off_t{1} << 27), 0);
  queueKey(Key::Esc);
  EXPECT_FALSE(reloadFile(edit.editor, {TextFormat::CodePage, 437}));
  EXPECT_EQ(edit.text(), "xone\n");
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf8);
}

TEST_F(LoadFile, ARememberedFormatReplacesDetectionButNoMark) {
  const std::string name = file("a.txt", "one\n");
  const Westring key = FileStatusStore::keyOfPath(decodeFileName(name.c_str()));
  fileStatusStore().record(key).format = TextFormat::CodePage;
  fileStatusStore().record(key).page = 437;
  FileEdit edit(name);
  EXPECT_EQ(edit.editor.document.encoding(), (TextEncoding{TextFormat::CodePage, 437}));
  writeFile(name, "\xEF\xBB\xBFone\n");
  FileEdit marked(name);
  EXPECT_EQ(marked.editor.document.encoding().format, TextFormat::Utf8);
  EXPECT_TRUE(marked.editor.file.hasMark);
}

TEST_F(LoadFile, AFileThatMayOnlyBeReadIsMarkedSo) {
  const std::string name = file("a.txt", "one");
  ASSERT_TRUE(giveToUser(dir.path()) && giveToUser(name));
  dir.chmod("a.txt", 0444);
  EXPECT_EQ(runAsUser([&] {
              FileContent content;
              EXPECT_EQ(readFileContent(decodeFileName(name.c_str()), content), 0);
              EXPECT_TRUE(content.isReadOnly);
            }),
            0);
}
