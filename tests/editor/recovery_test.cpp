#include "editor/window/recovery.h"

#include <sys/wait.h>

#include <csignal>

#include "editor/file_edit_test.h"
#include "support/as_user.h"
#include "support/fault_hook.h"

namespace {

class Recovery : public FileEditTest {
 protected:
  std::vector<std::string> journals() const {
    std::vector<std::string> result;
    std::error_code none;
    for (const auto& item : std::filesystem::directory_iterator(userFiles.path("edit"), none)) {
      result.push_back(item.path().string());
    }
    return result;
  }

  // An edit that is never ended.
  void abandon(const std::string& name, const std::function<void(FileEdit&)>& work) {
    FileEdit edit(name);
    ASSERT_TRUE(edit.loaded);
    work(edit);
  }
  void abandonTyping(const std::string& name, const std::string& text) {
    abandon(name, [&](FileEdit& edit) { edit.typeText(text); });
  }

  // Opens the file again; this question comes up and gets that answer.
  void reopen(const std::string& name, const std::string& question, Key::Code key,
              const std::function<void(FileEdit&)>& check) {
    answering({{question, {key}}}, [&] {
      FileEdit edit(name);
      if (recoverChanges(edit.editor)) {
        check(edit);
      } else {
        check_ = false;
      }
    });
  }
  bool check_ = true;
};

constexpr char Question[] = "Unsaved changes of an earlier edit were found";

}  // namespace

TEST_F(Recovery, WhatWasTypedBeforeACrashIsRestored) {
  const std::string name = file("a.txt", "one\ntwo\n");
  abandon(name, [](FileEdit& edit) {
    edit.typeText("xyz");
    edit.keys({Key::Enter, Key::Down, Key::ctrl('y')});
    edit.key(Key::AltBackspace);
    edit.typeText("!");
  });
  ASSERT_EQ(journals().size(), 1U);
  reopen(name, Question, 'r', [&](FileEdit& edit) {
    EXPECT_EQ(edit.text(), "xyz\none\n!two\n");
    EXPECT_TRUE(edit.editor.isModified);
    EXPECT_EQ(readFile(name), "one\ntwo\n");
    EXPECT_EQ(journals().size(), 1U);  // that of this edit
    edit.key(Key::F2);
    EXPECT_EQ(readFile(name), "xyz\none\n!two\n");
    EXPECT_TRUE(journals().empty());
  });
}

TEST_F(Recovery, ASecondCrashLosesNothingEither) {
  const std::string name = file("a.txt", "one");
  abandonTyping(name, "x");
  reopen(name, Question, 'r', [](FileEdit& edit) { edit.typeText("y"); });
  reopen(name, Question, 'r', [](FileEdit& edit) { EXPECT_EQ(edit.text(), "xyone"); });
}

TEST_F(Recovery, DeletedChangesAreGoneAndKeptOnesAreAskedForAgain) {
  const std::string name = file("a.txt", "one");
  abandonTyping(name, "x");
  reopen(name, Question, Key::Esc, [](FileEdit& edit) { EXPECT_EQ(edit.text(), "one"); });
  ASSERT_EQ(journals().size(), 1U);
  reopen(name, Question, 'd', [](FileEdit& edit) {
    EXPECT_EQ(edit.text(), "one");
    EXPECT_FALSE(edit.editor.isModified);
  });
  EXPECT_TRUE(journals().empty());
}

TEST_F(Recovery, AFileThatHasChangedSinceOnlyTellsWhereTheChangesAre) {
  const std::string name = file("a.txt", "one");
  abandonTyping(name, "x");
  writeFile(name, "another text");
  reopen(name, "but the file has changed", Key::Enter, [](FileEdit& edit) {
    EXPECT_EQ(edit.text(), "another text");
    EXPECT_FALSE(edit.editor.isModified);
  });
  EXPECT_EQ(journals().size(), 1U);
  EXPECT_EQ(readFile(name), "another text");
}

TEST_F(Recovery, WhatWasTypedIsPutAsideBeforeAQuestionWaits) {
  const std::pair<Key::Code, const char*> rows[] = {{Key::F7, "Search for:"},
                                                    {Key::F8, "Replace with:"},
                                                    {Key::F3, "Name:"},
                                                    {Key::alt('e'), "File Format:"},
                                                    {Key::alt('c'), "Code Page List:"},
                                                    {Key::alt('l'), "Line to go to:"},
                                                    {Key::Esc, "There are unsaved changes"}};
  for (const auto& [key, question] : rows) {
    const std::string name = file("a.txt", "one");
    FileEdit edit(name);
    edit.typeText("x");
    size_t journalsMeanwhile = 0;
    std::thread user([&, text = question] {
      waitUntil([&] { return screenText().find(text) != std::string::npos; });
      journalsMeanwhile = journals().size();
      queueKey(Key::Esc);
    });
    edit.key(key);
    user.join();
    EXPECT_EQ(journalsMeanwhile, 1U) << question;
    edit.editor.file.journal.end();
  }
}

TEST_F(Recovery, NothingIsLeftOfAnEditThatWasEnded) {
  const std::string name = file("a.txt", "one");
  {
    FileEdit edit(name);
    edit.typeText("x");
    edit.editor.file.journal.flush();
    EXPECT_EQ(journals().size(), 1U);
    edit.key(Key::F2);
    EXPECT_TRUE(journals().empty());
    edit.typeText("y");
    edit.editor.file.journal.flush();
    EXPECT_EQ(journals().size(), 1U);
    answering({{"unsaved changes", {'d'}}}, [&] { edit.key(Key::Esc); });
    EXPECT_TRUE(journals().empty());
  }
  EXPECT_TRUE(journals().empty());
  FileEdit unchanged(name);
  unchanged.key(Key::Esc);
  EXPECT_TRUE(journals().empty());
}

TEST_F(Recovery, LineEndsCodePageAndMarkComeBackToo) {
  const std::string name = file("a.txt", "Gr\x81n\nx\n");
  abandon(name, [this](FileEdit& edit) {
    answering({{"Select File Encoding", {Key::alt('p'), '1', '2', '5', '2', Key::Enter}}},
              [&] { edit.key(Key::alt('e')); });
    edit.key(Key::alt('u'));
    edit.typeText("z");
  });
  reopen(name, Question, 'r', [&](FileEdit& edit) {
    EXPECT_EQ(edit.editor.document.encoding().page, 1252);
    edit.key(Key::F2);
    EXPECT_EQ(readFile(name), "zGr\x81n\r\nx\r\n");
  });
  const std::string marked = file("b.txt", "one");
  abandon(marked, [this](FileEdit& edit) {
    answering({{"Select File Encoding", {Key::alt('b'), Key::Enter}}},
              [&] { edit.key(Key::alt('e')); });
  });
  reopen(marked, Question, 'r', [&](FileEdit& edit) {
    edit.key(Key::F2);
    EXPECT_EQ(readFile(marked), "\xEF\xBB\xBFone");
  });
}

TEST_F(Recovery, TheEncodingThatANewFileWasGivenComesBackToo) {
  const std::string name = path("new.txt");
  answering({{"Create?", {Key::Enter}}}, [&] {
    abandon(name, [this](FileEdit& edit) {
      edit.typeText("a");
      queueKeys({Key::alt('6'), Key::Enter});  // with a mark, which these formats bring
      edit.key(Key::alt('e'));
      edit.typeText("b");
      edit.editor.file.journal.flush();
      edit.editor.file.created.keep();  // nothing tidies up behind a crash
    });
  });
  ASSERT_EQ(readFile(name), "");
  reopen(name, Question, 'r', [&](FileEdit& edit) {
    EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::Utf16Le);
    EXPECT_TRUE(edit.editor.file.hasMark);
    EXPECT_EQ(edit.text(), "ab");
    edit.key(Key::F2);
    EXPECT_EQ(readFile(name), std::string("\xFF\xFE"
                                          "a\0b\0",
                                          6));
  });
}

TEST_F(Recovery, TheCodePageThatANewFileWasGivenComesBackToo) {
  const std::string name = path("new.txt");
  answering({{"Create?", {Key::Enter}}}, [&] {
    abandon(name, [this](FileEdit& edit) {
      queueKeys({Key::alt('c'), Key::alt('p'), '1', '2', '5', '2', Key::Enter});
      edit.key(Key::alt('e'));
      edit.key(Key::Code(wchar_t{0xFC}));
      edit.editor.file.journal.flush();
      edit.editor.file.created.keep();
    });
  });
  reopen(name, Question, 'r', [&](FileEdit& edit) {
    EXPECT_EQ(edit.editor.document.encoding(), (TextEncoding{TextFormat::CodePage, 1252}));
    edit.key(Key::F2);
    EXPECT_EQ(readFile(name), "\xFC");
  });
}

TEST_F(Recovery, ChangesOfATextReadInAnotherEncodingAreMadeInThatOne) {
  const std::string name = file("a.txt", "\xC3\xA4 one");
  abandon(name, [this](FileEdit& edit) {
    answering({{"Select File Encoding", {Key::alt('c'), Key::Enter}}},
              [&] { edit.key(Key::alt('e')); });
    edit.key(Key::End);
    edit.typeText("!");
  });
  fileStatusStore().clear();
  reopen(name, Question, 'r', [&](FileEdit& edit) {
    EXPECT_EQ(edit.editor.document.encoding().format, TextFormat::CodePage);
    edit.key(Key::F2);
    EXPECT_EQ(readFile(name), "\xC3\xA4 one!");
  });
}

TEST_F(Recovery, AFileThatIsBeingEditedElsewhereAsks) {
  const std::string name = file("a.txt", "one");
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t other = fork();
  if (other == 0) {
    EditJournal journal;
    struct stat info = statusOf(name);
    journal.begin({name, FileStamp::of(info), {TextFormat::Utf8}, false});
    journal.add({});
    journal.flush();
    static_cast<void>(!write(ready[1], "x", 1));
    pause();
    _exit(0);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  reopen(name, "This file is being edited. Edit anyway?", Key::Esc,
         [](FileEdit&) { ADD_FAILURE(); });
  EXPECT_FALSE(check_);
  reopen(name, "This file is being edited. Edit anyway?", Key::Enter,
         [](FileEdit& edit) { EXPECT_EQ(edit.text(), "one"); });
  kill(other, SIGKILL);
  int status = 0;
  waitpid(other, &status, 0);
  close(ready[0]);
  close(ready[1]);
}

TEST_F(Recovery, AKilledProgramLosesASecondAtMost) {
  const std::string name = file("a.txt", "one");
  std::thread user([&] {
    waitUntil([&] { return screenText().find("Edit: ") != std::string::npos; });
    queueKey('x');
    // It waits for a key now; what was typed is put aside meanwhile.
    EXPECT_TRUE(waitUntil([&] { return journals().size() == 1; }));
    queueKey(Key::Esc);
    waitUntil([&] { return screenText().find("unsaved") != std::string::npos; });
    queueKey('d');
  });
  editFile(decodeFileName(name.c_str()));
  user.join();
  EXPECT_TRUE(journals().empty());
}

TEST_F(Recovery, TheEndOfTheProgramKeepsTheChanges) {
  const std::string name = path("new.txt");
  std::thread user([&] {
    waitUntil([&] { return screenText().find("Create?") != std::string::npos; });
    queueKey(Key::Enter);
    waitUntil([&] { return screenText().find("Line 1 ") != std::string::npos; });
    queueKey('x');
    EXPECT_TRUE(waitUntil([&] { return screenText().find("Col 2") != std::string::npos; }));
    requestEnd();
    console->events().wake();
  });
  editFile(decodeFileName(name.c_str()));
  user.join();
  forgetEndRequest();
  EXPECT_EQ(readFile(name), "");
  ASSERT_EQ(journals().size(), 1U);
  reopen(name, Question, 'r', [](FileEdit& edit) { EXPECT_EQ(edit.text(), "x"); });
}

TEST_F(Recovery, AJournalThatCannotBeWrittenIsToldOnceInAnEdit) {
  const std::string name = file("a.txt", "one");
  for (int edits = 0; edits < 2; ++edits) {
    const FaultHook hook("write", ENOSPC);
    FileEdit edit(name);
    answering({{"Unsaved changes cannot be put aside: No space left on device", {Key::Enter}}},
              [&] { edit.typeText(std::string(200, 'x')); });
    EXPECT_GT(hook.calls("write"), 1);
    EXPECT_EQ(edit.text(), std::string(200, 'x') + "one");
  }
  EXPECT_TRUE(journals().empty());
  EXPECT_EQ(readFile(name), "one");
}

TEST_F(Recovery, AJournalThatCannotBeWrittenWhileNothingIsTypedIsToldToo) {
  const std::string name = file("a.txt", "one");
  const FaultHook hook("write", ENOSPC);
  answering({{"Edit: ", {'x'}},
             {"Unsaved changes cannot be put aside: No space left on device", {Key::Enter}},
             {"xone", {Key::Esc}},
             {"unsaved", {'d'}}},
            [&] { editFile(decodeFileName(name.c_str())); });
  EXPECT_EQ(readFile(name), "one");
}

TEST_F(Recovery, ADirectoryWithoutAPlaceForJournalsIsToldOnceInARunAndTheEditGoesOn) {
  const std::string name = file("a.txt", "one");
  setConfigurationFile(decodeFileName((path("a.txt") + "/td.ini").c_str()));
  answering({{"Unsaved changes cannot be put aside: Not a directory", {Key::Enter}}}, [&] {
    for (int edits = 0; edits < 2; ++edits) {
      FileEdit edit(name);
      edit.typeText(std::string(100, 'x'));
      EXPECT_NE(edit.editor.file.journal.flush(), 0);
      edit.key(Key::F2);
    }
  });
  EXPECT_EQ(readFile(name), std::string(200, 'x') + "one");
}

TEST_F(Recovery, WithoutAHomeDirectoryNothingIsToldAndTheEditGoesOn) {
  const std::string name = file("a.txt", "one");
  setConfigurationFile(decodeFileName(path("missing/.tdx/td.ini").c_str()));
  FileEdit edit(name);
  edit.typeText(std::string(100, 'x'));
  EXPECT_EQ(edit.editor.file.journal.flush(), ENOENT);
  edit.key(Key::F2);
  EXPECT_EQ(readFile(name), std::string(100, 'x') + "one");
}

TEST_F(Recovery, ASaveThatMayHaveTornTheFileTellsWhereTheTextIs) {
  const std::string name = file("a.txt", "old text that is long");
  ASSERT_EQ(link(name.c_str(), path("hard").c_str()), 0);
  // A program without a screen, killed while it writes over the file.
  const int status = runInChild([&] {
    FileContent content;
    TextSaver saver;
    EditJournal journal;
    readFileContent(decodeFileName(name.c_str()), content);
    saver.opened(decodeFileName(name.c_str()), content);
    saver.witness = &journal;
    journal.begin({name, saver.stamp(), {TextFormat::Utf8}, false});
    journal.add({});
    const auto kill = [](const char* call, const char*, void*) {
      if (std::string(call) == "truncate") _exit(Fault::Killed);
      return 0;
    };
    System::setHook(kill, nullptr);
    saver.save([](const TextSaver::Sink& sink) { return sink("new"); });
    return 0;
  });
  EXPECT_EQ(status, Fault::Killed);
  reopen(name, "Saving this file was interrupted", Key::Enter, [](FileEdit&) {});
}
