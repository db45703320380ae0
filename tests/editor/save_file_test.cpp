#include <sys/mount.h>
#include <sys/wait.h>

#include "editor/file_edit_test.h"
#include "editor/text/code_page_list.h"
#include "foundation/data_paths.h"
#include "support/as_user.h"
#include "support/fault_hook.h"

namespace {

class SaveFile : public FileEditTest {
 protected:
  // With a character more than the file.
  struct ChangedEdit : FileEdit {
    explicit ChangedEdit(const std::string& path) : FileEdit(path) { typeText("x"); }
  };

  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (const auto& [name, content] : contents(dir.path())) result.push_back(name);
    return result;
  }
  // The length of what is full of the bar in the box of a save; 0 without one.
  int shownBar() const {
    const std::string text = screenText();
    if (text.find("Saving File") == std::string::npos) return 0;
    int length = 0;
    for (size_t at = 0; (at = text.find("\u2588", at)) != std::string::npos; ++at) ++length;
    return length;
  }
  // F3 with a name typed into the dialog.
  void saveAs(FileEdit& edit, const std::string& name, std::vector<Reply> replies = {}) {
    std::vector<Key::Code> keys;
    for (const char c : name) keys.emplace_back(c);
    keys.push_back(Key::Enter);
    replies.insert(replies.begin(), {" Save As ", keys});
    answering(replies, [&] { edit.key(Key::F3); });
  }
};

constexpr size_t PartSize = size_t{256} << 10;  // that a file is copied by
constexpr int FiveEighths = 22;                 // of the 36 cells of the bar

// Calls `held` in the middle of a copy into a file, between its fifth and its sixth part.
struct HeldCopy {
  FileId file;
  std::function<void()> held;
  int parts = 0;

  static int onCall(const System::Call& call, void* context) {
    auto* self = static_cast<HeldCopy*>(context);
    struct stat info {};
    if (std::string(call.name) != "write" || fstat(call.directory, &info) != 0) return 0;
    if (idOf(info) == self->file && ++self->parts == 6) self->held();
    return 0;
  }
};

}  // namespace

TEST_F(SaveFile, WithoutAChangeEveryFileIsSavedByteByByteAsItWas) {
  std::string everyByte;
  for (int i = 0; i < 256; ++i) everyByte += static_cast<char>(i);
  const std::string files[] = {
      "",
      "a",
      "a\n",
      "\r",
      "a\rb\r",
      "\n\r\n\r",
      "a\r\nb\nc\r",
      everyByte,
      everyByte + everyByte,
      std::string("\0\n\0", 3),
      std::string("\xFF\xFE\x41\x00\x0A\x00\x42", 7),
      std::string("\xFE\xFF\x00\x41\xD8\x00", 6),
      std::string("\xFF\xFE\x00\x00\xFF\xFF\xFF\xFF\x0A\x00\x00\x00\x41", 13),
      "\xEF\xBB\xBF\xC3\xA4\n\xC3",
      std::string("\xEF\xBB\xBF", 3)};
  for (const std::string& content : files) {
    const std::string name = file("f", content);
    FileEdit edit(name);
    EXPECT_TRUE(saveFile(edit.editor));
    EXPECT_EQ(readFile(name), content);
  }
  EXPECT_EQ(names(), std::vector<std::string>{"f"});
}

TEST_F(SaveFile, SaveTakesTheStarAwayAndTheFileHasTheText) {
  const std::string name = file("a.txt", "one\r\ntwo");
  ChangedEdit edit(name);
  edit.key(Key::Enter);
  EXPECT_TRUE(edit.editor.isModified);
  edit.key(Key::F2);
  EXPECT_FALSE(edit.editor.isModified);
  EXPECT_EQ(readFile(name), "x\r\none\r\ntwo");
  edit.typeText("y");
  edit.key(Key::ctrl('s'));
  EXPECT_EQ(readFile(name), "x\r\nyone\r\ntwo");
}

TEST_F(SaveFile, ModeLinksAndInodeOfALinkedFileStay) {
  const std::string name = file("a.txt", "one");
  dir.chmod("a.txt", 0751);
  ASSERT_EQ(link(name.c_str(), path("hard").c_str()), 0);
  dir.link("a.txt", "soft");
  const ino_t inode = statusOf(name).st_ino;
  FileEdit edit(path("soft"));
  edit.typeText("x");
  edit.key(Key::F2);
  EXPECT_EQ(readFile(path("hard")), "xone");
  EXPECT_EQ(statusOf(name).st_ino, inode);
  EXPECT_EQ(dir.mode("a.txt") & 07777, 0751U);
  struct stat info {};
  ASSERT_EQ(lstat(path("soft").c_str(), &info), 0);
  EXPECT_TRUE(S_ISLNK(info.st_mode));
  EXPECT_EQ(names(), (std::vector<std::string>{"a.txt", "hard", "soft"}));
}

TEST_F(SaveFile, AFileThatAnotherProgramChangedIsOverwrittenOnlyWhenThatIsWanted) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  writeFile(name, "theirs, longer");
  answering({{"The file was changed by another program. Overwrite?", {Key::Esc}}},
            [&] { edit.key(Key::F2); });
  EXPECT_EQ(readFile(name), "theirs, longer");
  EXPECT_TRUE(edit.editor.isModified);
  answering({{"The file was changed by another program. Overwrite?", {Key::Enter}}},
            [&] { edit.key(Key::F2); });
  EXPECT_EQ(readFile(name), "xone");
  EXPECT_FALSE(edit.editor.isModified);
  // It is ours now.
  edit.typeText("y");
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), "xyone");
}

TEST_F(SaveFile, AReplacedFileIsAChangedOneAndATouchedOneIsNot) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  setTime(name, 1'000'000'000);
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), "xone");
  writeFile(path("b.txt"), "two");
  ASSERT_EQ(rename(path("b.txt").c_str(), name.c_str()), 0);
  answering({{"changed by another program", {Key::Esc}}}, [&] { edit.key(Key::F2); });
  EXPECT_EQ(readFile(name), "two");
}

TEST_F(SaveFile, AFileThatIsGoneIsWrittenAnew) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  ASSERT_EQ(unlink(name.c_str()), 0);
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), "xone");
}

TEST_F(SaveFile, ADirectoryThatIsGoneGivesTheSystemsText) {
  dir.makeDir("sub");
  const std::string name = file("sub/a.txt", "one");
  ChangedEdit edit(name);
  std::filesystem::remove_all(path("sub"));
  answering({{"Error writing text file: No such file or directory", {Key::Enter}}},
            [&] { edit.key(Key::F2); });
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(edit.text(), "xone");
}

TEST_F(SaveFile, AFullDiskLeavesTheFileAndTheEditAsTheyWere) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  {
    const FaultHook hook("write", ENOSPC);
    answering({{"Error writing text file: No space left on device", {Key::Enter}}},
              [&] { edit.key(Key::F2); });
    EXPECT_TRUE(hook.hit());
  }
  EXPECT_EQ(readFile(name), "one");
  EXPECT_EQ(names(), std::vector<std::string>{"a.txt"});
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(edit.text(), "xone");
  EXPECT_EQ(edit.editor.history.undo.size(), 1);
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), "xone");
}

TEST_F(SaveFile, WhicheverCallFailsTheFileIsTheOldOrTheNewOne) {
  const std::string name = file("a.txt", "old text");
  int calls = 0;
  {
    ChangedEdit edit(name);
    Fault counted;
    System::setPlaceHook(Fault::onCall, &counted);
    EXPECT_TRUE(saveFile(edit.editor));
    System::setPlaceHook(nullptr, nullptr);
    calls = counted.seen;
  }
  EXPECT_GT(calls, 5);
  int failures = 0;
  for (int call = 1; call <= calls; ++call) {
    writeFile(name, "old text");
    fileStatusStore().clear();
    ChangedEdit edit(name);
    Fault fault{.number = call, .error = EIO};
    bool saved = false;
    std::atomic<bool> done{false};
    // Any box that comes up is closed.
    std::thread user([&] {
      while (!done) {
        if (screenText().find("Error") != std::string::npos && console->eventCount() == 0) {
          queueKey(Key::Enter);
        }
        usleep(1000);
      }
    });
    System::setPlaceHook(Fault::onCall, &fault);
    saved = saveFile(edit.editor);
    System::setPlaceHook(nullptr, nullptr);
    done = true;
    user.join();
    drainEvents();
    failures += !saved;
    const std::string content = readFile(name);
    EXPECT_TRUE(content == "xold text" || (!saved && content == "old text"))
        << fault.call << ": " << content;
    EXPECT_EQ(edit.editor.isModified, !saved);
    EXPECT_EQ(edit.text(), "xold text");
  }
  EXPECT_GT(failures, 0);
}

TEST_F(SaveFile, AFailureWhileTheFileItselfIsOverwrittenTellsWhereTheTextIs) {
  const std::string name = file("a.txt", "one");
  ASSERT_EQ(link(name.c_str(), path("hard").c_str()), 0);
  ChangedEdit edit(name);
  {
    const FaultHook hook("truncate", EIO);
    answering({{"All of the text is in", {Key::Enter}}}, [&] { edit.key(Key::F2); });
    EXPECT_TRUE(hook.hit());
  }
  EXPECT_TRUE(edit.editor.isModified);
  bool found = false;
  for (const std::string& left : names()) found = found || readFile(path(left)) == "xone";
  EXPECT_TRUE(found);
  edit.key(Key::F2);
  EXPECT_EQ(readFile(path("hard")), "xone");
  EXPECT_EQ(names(), (std::vector<std::string>{"a.txt", "hard"}));
}

TEST_F(SaveFile, ABarShowsHowFarTheFileItselfIsOverwrittenAndEscDoesNotEndThat) {
  std::string content;
  while (content.size() < 8 * PartSize) content += std::string(63, 'a') + '\n';
  const std::string name = file("a.txt", content);
  ASSERT_EQ(link(name.c_str(), path("hard").c_str()), 0);
  ChangedEdit edit(name);
  HeldCopy copy{.file = idOf(statusOf(name)), .held = [&] {
                  EXPECT_TRUE(waitUntil([&] { return shownBar() == FiveEighths; })) << screenText();
                  queueKey(Key::Esc);
                }};
  System::setPlaceHook(HeldCopy::onCall, &copy);
  EXPECT_TRUE(saveFile(edit.editor));
  System::setPlaceHook(nullptr, nullptr);
  EXPECT_GT(copy.parts, 8);
  EXPECT_EQ(readFile(path("hard")), "x" + content);
  EXPECT_EQ(shownBar(), 0);
}

TEST_F(SaveFile, ACharacterThatTheEncodingLacksIsRefusedBeforeAnythingIsTouched) {
  const std::string name = file("a.txt", "one\ntwo \x84\n");
  FileEdit edit(name);
  ASSERT_EQ(edit.editor.document.encoding().format, TextFormat::CodePage);
  edit.editor.moveTo({1, 3});
  edit.key(Key::Code(wchar_t{0x4E2D}));
  edit.editor.moveTo({0, 0});
  answering({{"Line 2 cannot be saved in CP850", {Key::Enter}}}, [&] { edit.key(Key::F2); });
  EXPECT_EQ(readFile(name), "one\ntwo \x84\n");
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{1, 3}));
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(names(), std::vector<std::string>{"a.txt"});
}

TEST_F(SaveFile, AReadOnlyFileIsOverriddenOnlyWhenThatIsWantedAndStaysReadOnly) {
  const std::string name = file("a.txt", "one");
  FileEdit edit(name);
  edit.editor.file.isReadOnly = true;  // root may write all files
  dir.chmod("a.txt", 0444);
  edit.typeText("x");
  answering({{"File is Read Only, override?", {Key::Esc}}}, [&] { edit.key(Key::F2); });
  EXPECT_EQ(readFile(name), "one");
  EXPECT_TRUE(edit.editor.isModified);
  answering({{"File is Read Only, override?", {Key::Enter}}}, [&] { edit.key(Key::F2); });
  EXPECT_EQ(readFile(name), "xone");
  EXPECT_EQ(dir.mode("a.txt") & 07777, 0444U);
  EXPECT_TRUE(edit.editor.file.isReadOnly);
}

// ---- leaving

TEST_F(SaveFile, LeavingAChangedTextAsks) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  answering({{"There are unsaved changes", {Key::Esc}}}, [&] { edit.key(Key::Esc); });
  EXPECT_FALSE(edit.editor.hasEnded());
  answering({{"There are unsaved changes", {'e'}}}, [&] { edit.key(Key::F10); });
  EXPECT_FALSE(edit.editor.hasEnded());
  answering({{"There are unsaved changes", {'s'}}}, [&] { edit.key(Key::F10); });
  EXPECT_TRUE(edit.editor.hasEnded());
  EXPECT_EQ(readFile(name), "xone");
}

TEST_F(SaveFile, DiscardedChangesDoNotReachTheFile) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  answering({{"There are unsaved changes", {'d'}}}, [&] { edit.key(Key::Esc); });
  EXPECT_TRUE(edit.editor.hasEnded());
  EXPECT_EQ(readFile(name), "one");
}

TEST_F(SaveFile, AFailedSaveBringsTheQuestionBack) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  const FaultHook hook("sync", EIO);
  answering({{"There are unsaved changes", {'s'}},
             {"Error writing text file: ", {Key::Enter}},
             {"There are unsaved changes", {'d'}}},
            [&] { edit.key(Key::Esc); });
  EXPECT_TRUE(edit.editor.hasEnded());
  EXPECT_EQ(readFile(name), "one");
}

TEST_F(SaveFile, SaveAndLeaveAsksNothing) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  edit.key(Key::ShiftF10);
  EXPECT_TRUE(edit.editor.hasEnded());
  EXPECT_EQ(readFile(name), "xone");
  FileEdit unchanged(name);
  unchanged.key(Key::ShiftF10);
  EXPECT_TRUE(unchanged.editor.hasEnded());
}

// ---- under another name

TEST_F(SaveFile, SaveAsMakesAnotherFileAndGoesOnWithIt) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  saveAs(edit, "b.txt");
  EXPECT_EQ(readFile(name), "one");
  EXPECT_EQ(readFile(path("b.txt")), "xone");
  EXPECT_FALSE(edit.editor.isModified);
  EXPECT_EQ(std::string(toUtf8(edit.editor.file.name).data()), path("b.txt"));
  EXPECT_NE(rowText(0).find("b.txt"), std::string::npos);
  edit.typeText("y");
  edit.keys({Key::F2, Key::Esc});
  EXPECT_EQ(readFile(path("b.txt")), "xyone");
  FileEdit again(path("b.txt"));
  EXPECT_EQ(again.editor.history.undo.size(), 2);
}

TEST_F(SaveFile, SaveAsOverAnotherFileAsks) {
  const std::string name = file("a.txt", "one");
  file("b.txt", "precious");
  ChangedEdit edit(name);
  saveAs(edit, "b.txt",
         {{"File already exists, Overwrite?", {Key::Esc}}, {" Save As ", {Key::Esc}}});
  EXPECT_EQ(readFile(path("b.txt")), "precious");
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(std::string(toUtf8(edit.editor.file.name).data()), name);
  saveAs(edit, "b.txt", {{"File already exists, Overwrite?", {Key::Enter}}});
  EXPECT_EQ(readFile(path("b.txt")), "xone");
  EXPECT_EQ(readFile(name), "one");
}

TEST_F(SaveFile, SaveAsOntoItselfIsASave) {
  const std::string name = file("a.txt", "one");
  dir.link("a.txt", "soft");
  ChangedEdit edit(name);
  saveAs(edit, "soft");
  EXPECT_EQ(readFile(name), "xone");
  EXPECT_FALSE(edit.editor.isModified);
  EXPECT_EQ(std::string(toUtf8(edit.editor.file.name).data()), name);
}

TEST_F(SaveFile, SaveAsWhereNothingCanBeLeavesEverythingAsItWas) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  saveAs(edit, "missing/b.txt",
         {{"Unable to open: No such file or directory", {Key::Enter}}, {" Save As ", {Key::Esc}}});
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(std::string(toUtf8(edit.editor.file.name).data()), name);
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), "xone");
}

TEST_F(SaveFile, SaveAsExpandsTheHomeDirectory) {
  dir.makeDir("home");
  setenv("HOME", path("home").c_str(), 1);
  FileEdit edit(file("a.txt", "one"));
  saveAs(edit, "~/b.txt");
  EXPECT_EQ(readFile(path("home/b.txt")), "one");
}

TEST_F(SaveFile, SaveAsChangesTheEncoding) {
  const std::string name = file("a.txt", "\xC3\xA4\n");
  FileEdit edit(name);
  answering({{" Save As ", {'b', Key::alt('6'), Key::Enter}}}, [&] { edit.key(Key::F3); });
  EXPECT_EQ(readFile(path("b")), std::string("\xFF\xFE\xE4\0\n\0", 6));
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf16Le);
  EXPECT_TRUE(edit.editor.file.hasMark);
}

TEST_F(SaveFile, ARefusedEncodingInSaveAsKeepsTheOldOne) {
  const std::string name = file("a.txt", "\xE4\xB8\xAD\n");
  FileEdit edit(name);
  answering({{" Save As ", {'b', Key::alt('c'), Key::Enter}},
             {"Line 1 cannot be saved in CP850", {Key::Enter}},
             {" Save As ", {Key::Esc}}},
            [&] { edit.key(Key::F3); });
  EXPECT_FALSE(existsAt(path("b")));
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf8);
  EXPECT_EQ(std::string(toUtf8(edit.editor.file.name).data()), name);
}

TEST_F(SaveFile, SaveAsOfANewFileLeavesNoEmptyOneBehind) {
  answering({{"Create?", {Key::Enter}}}, [&] {
    FileEdit edit(path("new"));
    EXPECT_TRUE(existsAt(path("new")));
    edit.typeText("x");
    queueKeys({'b', Key::Enter});
    edit.key(Key::F3);
    EXPECT_EQ(names(), std::vector<std::string>{"b"});
    edit.typeText("y");
    edit.keys({Key::F2, Key::Esc});
  });
  EXPECT_EQ(readFile(path("b")), "xy");
  EXPECT_EQ(names(), std::vector<std::string>{"b"});
}

TEST_F(SaveFile, SaveAsThatFailsKeepsANewFile) {
  answering({{"Create?", {Key::Enter}},
             {" Save As ", {'/', 'n', 'o', '/', 'b', Key::Enter}},
             {"Unable to open: No such file or directory", {Key::Enter}},
             {" Save As ", {Key::Esc}}},
            [&] {
              FileEdit edit(path("new"));
              edit.typeText("x");
              edit.key(Key::F3);
              EXPECT_TRUE(edit.editor.isModified);
              edit.key(Key::F2);
              EXPECT_EQ(readFile(path("new")), "x");
            });
  EXPECT_EQ(readFile(path("new")), "x");
}

TEST_F(SaveFile, AfterSaveAsTheTextHasTheColoursOfItsNewName) {
  userFiles.write("syntax.ini",
                  "[Colour Classes]\nWord: bright green\n[Test:*.test]\nwords:Word:one\n");
  constexpr unsigned char Plain = 0x1B, Word = 0x1A;
  FileEdit edit(file("a.txt", "one two"));
  EXPECT_EQ(attrAt(0, 1), Plain);
  saveAs(edit, "b.test");
  EXPECT_EQ(attrAt(0, 1), Word);
  EXPECT_EQ(attrAt(4, 1), Plain);
  saveAs(edit, "c.txt");
  EXPECT_EQ(attrAt(0, 1), Plain);
}

// ---- the encoding of the text

TEST_F(SaveFile, AnotherEncodingReadsTheFileAgain) {
  const std::string name = file("a.txt", "\xC3\xA4\n");
  FileEdit edit(name);
  answering({{"Select File Encoding", {Key::alt('c'), Key::Enter}}},
            [&] { edit.key(Key::alt('e')); });
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::CodePage);
  EXPECT_EQ(edit.editor.document.lineLength(0), 2);
  EXPECT_FALSE(edit.editor.isModified);
  EXPECT_EQ(readFile(name), "\xC3\xA4\n");
}

TEST_F(SaveFile, AnotherEncodingOfAChangedTextAsksFirst) {
  const std::string name = file("a.txt", "\xC3\xA4\n");
  ChangedEdit edit(name);
  const std::vector<Key::Code> toPage = {Key::alt('c'), Key::Enter};
  answering(
      {{"Select File Encoding", toPage}, {"File must be re-loaded, discard changes?", {Key::Esc}}},
      [&] { edit.key(Key::alt('e')); });
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf8);
  EXPECT_TRUE(edit.editor.isModified);
  answering({{"Select File Encoding", toPage},
             {"File must be re-loaded, discard changes?", {Key::Enter}}},
            [&] { edit.key(Key::alt('e')); });
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::CodePage);
  EXPECT_EQ(edit.editor.document.lineLength(0), 2);
  EXPECT_TRUE(edit.editor.history.undo.empty());
}

TEST_F(SaveFile, AMarkAloneIsAChangeWithoutAReload) {
  const std::string name = file("a.txt", "one");
  ChangedEdit edit(name);
  answering({{"Select File Encoding", {Key::alt('b'), Key::Enter}}},
            [&] { edit.key(Key::alt('e')); });
  EXPECT_EQ(edit.text(), "xone");
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), "\xEF\xBB\xBFxone");
}

TEST_F(SaveFile, AnotherCodePageKeepsChangesAndBytes) {
  const std::string name = file("a.txt", "Gr\x81n\n");
  FileEdit edit(name);
  ASSERT_EQ(edit.editor.document.encoding().format, TextFormat::CodePage);
  EXPECT_EQ(edit.editor.document.text(0), L"Gr\x00FCn");
  edit.typeText("x");
  answering({{"Select File Encoding", {Key::alt('p'), '1', '2', '5', '2', Key::Enter}}},
            [&] { edit.key(Key::alt('e')); });
  EXPECT_EQ(edit.editor.document.encoding(), (TextEncoding{TextFormat::CodePage, 1252}));
  EXPECT_EQ(edit.editor.history.undo.size(), 1);
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), "xGr\x81n\n");
}

TEST_F(SaveFile, ANewFileIsNotReadAgain) {
  answering({{"Create?", {Key::Enter}}}, [&] {
    FileEdit edit(path("new"));
    edit.typeText("ab");
    queueKeys({Key::alt('6'), Key::Enter});
    edit.key(Key::alt('e'));
    EXPECT_EQ(edit.editor.document.text(0), L"ab");
    edit.key(Key::F2);
  });
  EXPECT_EQ(readFile(path("new")), std::string("\xFF\xFE"
                                               "a\0b\0",
                                               6));
}

TEST_F(SaveFile, ANarrowFormatIsReadFromItsOwnStart) {
  // The mark of UTF-8 would shift the units of UTF-16 by one byte.
  const std::string content(
      "\xEF\xBB\xBF"
      "abc",
      6);
  const std::string name = file("a.txt", content);
  FileEdit edit(name);
  EXPECT_TRUE(edit.editor.file.hasMark);
  answering({{"Select File Encoding", {Key::alt('6'), Key::alt('b'), Key::Enter}}},
            [&] { edit.key(Key::alt('e')); });
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf16Le);
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), content);
}

TEST_F(SaveFile, CodePagesAreSteppedThrough) {
  const Estring before = GlobalOptions::TranslateCP;
  FileEdit edit(file("a.txt", "Gr\x81n\n"));
  answering({{"Code Page List:", {'4', '3', '7', ',', '1', '2', '5', '2', Key::Enter}}},
            [&] { edit.key(Key::alt('c')); });
  EXPECT_EQ(edit.editor.document.encoding().page, 437);
  edit.key(Key::alt('t'));
  EXPECT_EQ(edit.editor.document.encoding().page, 1252);
  edit.key(Key::alt('t'));
  EXPECT_EQ(edit.editor.document.encoding(), (TextEncoding{TextFormat::CodePage, 0}));
  FileEdit utf8(file("b.txt", "\xC3\xA4"));
  utf8.key(Key::alt('t'));
  EXPECT_EQ(utf8.editor.document.encoding().format, TextFormat::Utf8);
  GlobalOptions::TranslateCP = before;
}

TEST_F(SaveFile, ANumberWithoutACodePageIsToldAndTheNextUseGoesOn) {
  const Estring before = GlobalOptions::TranslateCP;
  FileEdit edit(file("a.txt", "Gr\x81n\n"));
  GlobalOptions::TranslateCP = "99999,437";
  codePageList().restart();
  answering({{"Invalid code page", {Key::Enter}}}, [&] { edit.key(Key::alt('t')); });
  EXPECT_EQ(edit.editor.document.encoding(), (TextEncoding{TextFormat::CodePage, 0}));
  edit.key(Key::alt('t'));
  EXPECT_EQ(edit.editor.document.encoding().page, 437);
  GlobalOptions::TranslateCP = before;
}

TEST_F(SaveFile, ACodePageForAChangedTextOfAnotherFormatAsksFirst) {
  const Estring before = GlobalOptions::TranslateCP;
  FileEdit edit(file("a.txt", "\xC3\xA4"));
  edit.typeText("x");
  answering({{"Code Page List:", {'4', '3', '7', Key::Enter}},
             {"File must be re-loaded, discard changes?", {Key::Esc}}},
            [&] { edit.key(Key::alt('c')); });
  EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf8);
  EXPECT_EQ(edit.text(), "x\xC3\xA4");
  GlobalOptions::TranslateCP = before;
}

TEST_F(SaveFile, TheEndOfTheProgramAsksNothing) {
  const std::string name = file("a.txt", "one");
  std::thread user([&] {
    waitUntil([&] { return screenText().find("Edit: ") != std::string::npos; });
    queueKey('x');
    EXPECT_TRUE(waitUntil([&] { return screenText().find("xone") != std::string::npos; }));
    requestEnd();
    console->events().wake();
  });
  editFile(decodeFileName(name.c_str()));
  user.join();
  forgetEndRequest();
  EXPECT_EQ(readFile(name), "one");
}
