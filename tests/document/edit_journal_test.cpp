#include "editor/text/edit_journal.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <unistd.h>

#include <cerrno>
#include <new>

#include "editor/text/text_saver.h"
#include "foundation/data_paths.h"
#include "foundation/path_info.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/manual_clock.h"
#include "support/temp_dir.h"

namespace {

using Names = std::vector<std::string>;

JournalStep stepOf(const std::string& bytes, int64_t line = 0) {
  JournalStep step;
  step.from = {line, 3};
  step.to = {line + 1, 0};
  step.bytes = bytes;
  return step;
}

class EditJournalTest : public testing::Test {
 protected:
  EditJournalTest() {
    dir.openToAll();
    dir.makeDir("home");
    giveToUser(dir.path("home"));
    setConfigurationFile(dir.wide("home/td.ini"));
    dir.write("file", "the text");
  }
  ~EditJournalTest() override { setConfigurationFile(L""); }

  FileStamp stamp() {
    struct stat info {};
    EXPECT_EQ(statPath(dir.wide("file"), info), 0);
    return FileStamp::of(info);
  }
  JournalBase base() { return {dir.path("file"), stamp(), {TextFormat::Utf16Le}, true}; }
  std::vector<LeftJournal> found() { return findJournals(dir.wide("file"), stamp()); }
  Names journals() const {
    Names result;
    std::error_code none;
    for (const auto& item : std::filesystem::directory_iterator(dir.path("home/edit"), none)) {
      result.push_back(item.path().filename().string());
    }
    return result;
  }
  // An edit that ends without saying so.
  void leave(const std::vector<std::string>& texts) {
    EditJournal journal(clock);
    journal.begin(base());
    for (const std::string& text : texts) EXPECT_EQ(journal.add(stepOf(text)), 0);
  }

  TempDir dir;
  ManualClock clock;
};

TEST_F(EditJournalTest, WithoutAStepThereIsNoFile) {
  EditJournal journal(clock);
  journal.begin(base());
  EXPECT_EQ(journal.flush(), 0);
  EXPECT_FALSE(journal.dueIn().has_value());
  EXPECT_EQ(journal.path(), "");
  EXPECT_FALSE(dir.exists("home/edit"));
}

TEST_F(EditJournalTest, TheStepsOfAnEditThatEndedAreFound) {
  JournalStep recode;
  recode.kind = JournalStep::Kind::Recode;
  recode.value = 1252;
  const std::string bytes("\0\xFF\r\n", 4);
  {
    EditJournal journal(clock);
    journal.begin(base());
    journal.add(stepOf(bytes, int64_t{1} << 40));
    journal.add(recode);
    journal.add(stepOf(""), [] { return std::string("made late"); });
  }
  const auto left = found();
  ASSERT_EQ(left.size(), 1u);
  EXPECT_TRUE(left[0].fits());
  EXPECT_FALSE(left[0].isInUse());
  const JournalContent& content = left[0].content();
  EXPECT_EQ(content.base.path, dir.path("file"));
  EXPECT_EQ(content.base.encoding.format, TextFormat::Utf16Le);
  EXPECT_TRUE(content.base.hasMark);
  ASSERT_EQ(content.steps.size(), 3u);
  EXPECT_EQ(content.steps[0], stepOf(bytes, int64_t{1} << 40));
  EXPECT_EQ(content.steps[1], recode);
  EXPECT_EQ(content.steps[2].bytes, "made late");
}

TEST_F(EditJournalTest, TheFileAndItsDirectoryArePrivate) {
  leave({"secret"});
  ASSERT_EQ(journals().size(), 1u);
  EXPECT_EQ(dir.mode("home/edit"), 0700u);
  EXPECT_EQ(dir.mode("home/edit/" + journals()[0]), 0600u);
}

TEST_F(EditJournalTest, AStepIsWrittenAfterASecondAtTheLatest) {
  EditJournal journal(clock);
  journal.begin(base());
  journal.add(stepOf("a"));
  EXPECT_EQ(journal.dueIn(), 1000u);
  EXPECT_EQ(journal.path(), "");
  clock.moveOn(999);
  EXPECT_EQ(journal.dueIn(), 1u);
  journal.add(stepOf("b"));
  EXPECT_EQ(journal.path(), "");
  clock.moveOn(1);
  EXPECT_EQ(journal.dueIn(), 0u);
  journal.add(stepOf("c"));
  EXPECT_FALSE(journal.dueIn().has_value());
  EXPECT_EQ(readJournal(dir.read("home/edit/" + journals().at(0)))->steps.size(), 3u);
}

TEST_F(EditJournalTest, SixtyFourStepsAreWrittenAtOnce) {
  EditJournal journal(clock);
  journal.begin(base());
  for (size_t i = 1; i < EditJournal::MostWaiting; ++i) journal.add(stepOf("x"));
  EXPECT_EQ(journal.path(), "");
  journal.add(stepOf("x"));
  EXPECT_NE(journal.path(), "");
  EXPECT_FALSE(journal.dueIn().has_value());
}

TEST_F(EditJournalTest, LargeAndSmallStepsCountTogetherOrNotAtAll) {
  const std::string large(300'000, 'l');
  EditJournal journal(clock);
  journal.begin(base());
  journal.add(stepOf("first"));
  ASSERT_EQ(journal.flush(), 0);
  const std::string before = dir.read("home/edit/" + journals().at(0));
  for (const std::string& text : {std::string("a"), large, std::string("b"), large}) {
    journal.add(stepOf(""), [text] { return text; });
  }
  int failures = 0;
  for (int number = 1;; ++number) {
    {
      const FaultHook full(number, ENOSPC);
      if (journal.flush() == 0) break;
    }
    ++failures;
    EXPECT_EQ(dir.read("home/edit/" + journals().at(0)), before) << number;
  }
  EXPECT_GT(failures, 3);
  const auto content = readJournal(dir.read("home/edit/" + journals().at(0)));
  ASSERT_EQ(content->steps.size(), 5u);
  EXPECT_EQ(content->steps[1].bytes, "a");
  EXPECT_EQ(content->steps[3].bytes, "b");
  EXPECT_TRUE(content->steps[4].bytes == large);
}

TEST_F(EditJournalTest, ASavedTextNeedsNoJournal) {
  EditJournal journal(clock);
  journal.begin(base());
  journal.add(stepOf("a"));
  ASSERT_EQ(journal.flush(), 0);
  EXPECT_EQ(journal.end(), 0);
  EXPECT_EQ(journals(), Names());
  journal.add(stepOf("b"));
  ASSERT_EQ(journal.flush(), 0);
  journal.begin(base());
  EXPECT_EQ(journals(), Names());
  journal.add(stepOf("c"));
  EXPECT_EQ(journal.end(), 0);
  EXPECT_EQ(journals(), Names());
}

TEST_F(EditJournalTest, AJournalThatIsBeingWrittenIsInUse) {
  EditJournal journal(clock);
  journal.begin(base());
  journal.add(stepOf("a"));
  ASSERT_EQ(journal.flush(), 0);
  const auto left = found();
  ASSERT_EQ(left.size(), 1u);
  EXPECT_TRUE(left[0].isInUse());
  EXPECT_TRUE(left[0].content().steps.empty());
}

TEST_F(EditJournalTest, WhoLooksAtALeftJournalHasItAlone) {
  leave({"a"});
  {
    const auto first = found();
    ASSERT_EQ(first.size(), 1u);
    EXPECT_FALSE(first[0].isInUse());
    EXPECT_TRUE(found().at(0).isInUse());
  }
  const auto again = found();
  EXPECT_FALSE(again.at(0).isInUse());
  EXPECT_EQ(again.at(0).remove(), 0);
  EXPECT_TRUE(found().empty());
  EXPECT_EQ(journals(), Names());
}

TEST_F(EditJournalTest, AFileThatChangedSinceDoesNotFit) {
  leave({"a"});
  dir.write("file", "another text");
  const auto left = found();
  ASSERT_EQ(left.size(), 1u);
  EXPECT_FALSE(left[0].fits());
  EXPECT_EQ(left[0].content().steps.size(), 1u);
}

TEST_F(EditJournalTest, AFileThatWasRenamedIsFoundByItself) {
  leave({"a"});
  const FileStamp before = stamp();
  const auto left = findJournals(dir.wide("elsewhere"), before);
  ASSERT_EQ(left.size(), 1u);
  EXPECT_TRUE(left[0].fits());
  FileStamp other = before;
  ++other.size;
  EXPECT_TRUE(findJournals(dir.wide("elsewhere"), other).empty());
  EXPECT_TRUE(findJournals(dir.wide("elsewhere"), FileStamp()).empty());
}

TEST_F(EditJournalTest, OfTheJournalsOfOtherFilesOnlyTheHeadIsRead) {
  leave({std::string(1'000'000, 'x')});
  FileStamp other = stamp();
  ++other.id.inode;
  const FaultHook calls;
  EXPECT_TRUE(findJournals(dir.wide("elsewhere"), other).empty());
  EXPECT_EQ(calls.calls("readAt"), 1);
  EXPECT_EQ(calls.calls("read"), 0);
  EXPECT_EQ(calls.calls("lock"), 0);
}

// The edit ends just when its journal is looked at.
TEST_F(EditJournalTest, AJournalThatGoesWhileItIsLookedAtIsNone) {
  leave({"a"});
  const auto end = [](const char* call, const char*, void* context) {
    if (strcmp(call, "lock") == 0) std::filesystem::remove_all(static_cast<char*>(context));
    return 0;
  };
  std::string directory = dir.path("home/edit");
  System::setHook(end, directory.data());
  EXPECT_TRUE(found().empty());
  System::setHook(nullptr, nullptr);
}

TEST_F(EditJournalTest, WhatIsNoJournalIsPassedOver) {
  leave({"a"});
  dir.write("home/edit/journal-text", "td-edit 1\nno record");
  dir.write("home/edit/journal-empty", "");
  dir.makeDir("home/edit/journal-directory");
  ASSERT_EQ(mkfifo(dir.path("home/edit/journal-fifo").c_str(), 0600), 0);
  dir.link("journal-text", "home/edit/journal-link");
  EXPECT_EQ(found().size(), 1u);
}

TEST_F(EditJournalTest, WithoutAHomeStepsAreAnErrorOnceASecond) {
  setConfigurationFile(dir.wide("no/where/td.ini"));
  EditJournal journal(clock);
  journal.begin(base());
  int errors = 0;
  for (size_t i = 0; i < EditJournal::MostWaiting; ++i) errors += journal.add(stepOf("x")) != 0;
  EXPECT_EQ(errors, 1);
  setConfigurationFile(dir.wide("home/td.ini"));
  EXPECT_EQ(journal.flush(), 0);
  EXPECT_EQ(readJournal(dir.read("home/edit/" + journals().at(0)))->steps.size(),
            EditJournal::MostWaiting);
}

TEST_F(EditJournalTest, AStepThatFindsNoMemoryIsAnErrorAndIsWrittenOnceThereIsSome) {
  {
    EditJournal journal(clock);
    journal.begin(base());
    journal.add(stepOf("before"));
    ASSERT_EQ(journal.flush(), 0);
    bool hasMemory = false;
    EXPECT_EQ(journal.add({},
                          [&hasMemory] {
                            if (!hasMemory) throw std::bad_alloc();
                            return std::string("huge");
                          }),
              0);
    EXPECT_EQ(journal.flush(), ENOMEM);
    EXPECT_EQ(readJournal(dir.read("home/edit/" + journals().at(0)))->steps.size(), 1U);
    hasMemory = true;
    EXPECT_EQ(journal.flush(), 0);
  }
  const std::vector<LeftJournal> left = found();
  ASSERT_EQ(left.size(), 1U);
  ASSERT_EQ(left[0].content().steps.size(), 2U);
  EXPECT_EQ(left[0].content().steps[1].bytes, "huge");
}

TEST_F(EditJournalTest, WhicheverCallFailsTheStepsBeforeStayAndThoseAfterFollow) {
  int failed = 0;
  for (int number = 1;; ++number) {
    std::filesystem::remove_all(dir.path("home/edit"));
    EditJournal journal(clock);
    journal.begin(base());
    bool hit;
    {
      FaultHook fault(number, ENOSPC);
      journal.add(stepOf("first"));
      journal.flush();
      journal.add(stepOf("second"));
      journal.flush();
      hit = fault.hit();
    }
    if (!hit) break;
    ++failed;
    journal.add(stepOf("third"));
    ASSERT_EQ(journal.flush(), 0);
    ASSERT_EQ(journals().size(), 1u) << number;
    const std::string bytes = dir.read("home/edit/" + journals()[0]);
    const auto content = readJournal(bytes);
    ASSERT_TRUE(content.has_value());
    EXPECT_EQ(content->wholeBytes, bytes.size());
    ASSERT_EQ(content->steps.size(), 3u) << number;
    EXPECT_EQ(content->steps[0].bytes, "first");
    EXPECT_EQ(content->steps[2].bytes, "third");
    EXPECT_EQ(journal.end(), 0);
  }
  EXPECT_GT(failed, 5);
}

TEST_F(EditJournalTest, AKilledProgramLeavesWhatWasWritten) {
  int killed = 0;
  for (int number = 1;; ++number) {
    std::filesystem::remove_all(dir.path("home/edit"));
    const int status = runInChild([&] {
      Fault fault{number, 0, Fault::Reach::Kill};
      System::setPlaceHook(Fault::onCall, &fault);
      EditJournal journal(clock);
      journal.begin(base());
      for (const char* text : {"first", "second", "third"}) {
        journal.add(stepOf(text));
        if (journal.flush() != 0) return 1;
      }
      _exit(0);
      return 0;
    });
    const auto left = found();
    if (status != Fault::Killed) {
      EXPECT_EQ(status, 0);
      ASSERT_EQ(left.size(), 1u);
      EXPECT_EQ(left[0].content().steps.size(), 3u);
      break;
    }
    ++killed;
    for (const LeftJournal& journal : left) EXPECT_FALSE(journal.isInUse());
  }
  EXPECT_GT(killed, 5);
}

TEST_F(EditJournalTest, WhatCannotBeRemovedHoldsNoStepsAnyMore) {
  EditJournal journal(clock);
  journal.begin(base());
  journal.add(stepOf("a"));
  ASSERT_EQ(journal.flush(), 0);
  {
    FaultHook fault("unlink", EIO);
    EXPECT_EQ(journal.end(), EIO);
  }
  EXPECT_TRUE(found().empty());
}

// A save of the text that ends in between.
class CrashedSave : public EditJournalTest, public testing::WithParamInterface<bool> {
 protected:
  static inline const std::string OldText = std::string(400'000, 'o');
  static inline const std::string NewText = std::string(500'000, 'n');

  void prepare() {
    std::filesystem::remove_all(dir.path("home"));
    dir.makeDir("home");
    std::filesystem::remove(dir.path("file"));
    for (const std::string& path : privateFiles()) std::filesystem::remove(path);
    dir.write("file", OldText);
    // With a second name it is overwritten in place.
    if (GetParam()) {
      ASSERT_EQ(::link(dir.path("file").c_str(), dir.path("home/name").c_str()), 0);
    }
  }
  Names privateFiles() const {
    Names result;
    for (const auto& item : std::filesystem::recursive_directory_iterator(dir.path())) {
      if (item.path().filename().string().starts_with(".td-")) result.push_back(item.path());
    }
    return result;
  }
  int saveUnder(Fault& fault) {
    FileContent content;
    if (readFileContent(dir.wide("file"), content) != 0) return 1;
    TextSaver saver;
    saver.opened(dir.wide("file"), content);
    EditJournal journal(clock);
    journal.begin({dir.path("file"), content.stamp, {TextFormat::Utf8}, false});
    journal.add(stepOf("a step"));
    journal.flush();
    saver.witness = &journal;
    System::setPlaceHook(Fault::onCall, &fault);
    const int error = saver.save([](const TextSaver::Sink& sink) { return sink(NewText); }).error;
    if (error == 0) journal.end();
    System::setPlaceHook(nullptr, nullptr);
    return error;
  }
  void expectFoundAgain(const std::string& where) {
    const std::string text = dir.read("file");
    const auto left = found();
    ASSERT_LE(left.size(), 1u) << where;
    if (left.empty()) {
      EXPECT_TRUE(text == OldText || text == NewText) << where;
      return;
    }
    if (left[0].fits()) {
      EXPECT_TRUE(text == OldText) << where;
      EXPECT_EQ(left[0].wholeText(), "") << where;
      EXPECT_EQ(left[0].content().steps.size(), 1u) << where;
      EXPECT_EQ(left[0].remove(), 0);
      // Between its making and the note of it there is nothing in it.
      for (const std::string& path : privateFiles()) {
        EXPECT_EQ(std::filesystem::file_size(path), 0u) << where;
      }
    } else if (text != NewText) {
      const std::string whole = left[0].wholeText();
      ASSERT_NE(whole, "") << where;
      EXPECT_TRUE(dir.read(whole.substr(dir.path().size() + 1)) == NewText) << where;
    }
  }
};

TEST_P(CrashedSave, IsFoundAgainWithAllOfTheText) {
  int killed = 0;
  int gone = 0;
  for (int number = 1;; ++number) {
    prepare();
    const int status = runInChild([&] {
      Fault fault{number, 0, Fault::Reach::Kill};
      return saveUnder(fault);
    });
    if (status != Fault::Killed) {
      EXPECT_EQ(status, 0);
      break;
    }
    ++killed;
    gone += found().empty();
    expectFoundAgain(std::to_string(number));
  }
  EXPECT_GT(killed, 20);
  EXPECT_GT(killed, gone);
  EXPECT_EQ(journals(), Names());
}

TEST_P(CrashedSave, ThatFailedLeavesTheStepsAndNoPrivateFile) {
  prepare();
  Fault fault{1, EIO, Fault::Reach::Below, dir.path("nowhere")};
  ASSERT_EQ(saveUnder(fault), 0);
  const int calls = fault.seen;
  for (int number = 1; number <= calls; ++number) {
    prepare();
    Fault once{number, EIO};
    if (saveUnder(once) == 0) continue;
    expectFoundAgain(once.call + " " + std::to_string(number));
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, CrashedSave, testing::Bool());

class JournalFormat : public testing::Test {
 protected:
  JournalFormat() {
    JournalBase base;
    base.path = "/a/b\xFF";
    base.stamp.exists = true;
    base.stamp.id = {7, 8};
    base.stamp.size = int64_t{1} << 33;
    base.stamp.modified = {123, 456};
    base.encoding = {TextFormat::CodePage, 1252};
    bytes = journalHead(base);
    ends.push_back(bytes.size());
    for (const char* text : {"one", "two, longer than a word", ""}) {
      appendRecord(stepOf(text), bytes);
      ends.push_back(bytes.size());
    }
  }

  std::string bytes;
  std::vector<size_t> ends;  // of the head and of each record
};

TEST_F(JournalFormat, TheBaseComesBack) {
  const JournalBase base = readJournal(bytes)->base;
  EXPECT_EQ(base.path, "/a/b\xFF");
  EXPECT_EQ(base.stamp.id, (FileId{7, 8}));
  EXPECT_EQ(base.stamp.size, int64_t{1} << 33);
  EXPECT_EQ(base.stamp.modified.tv_nsec, 456);
  EXPECT_EQ(base.encoding, (TextEncoding{TextFormat::CodePage, 1252}));
  EXPECT_FALSE(base.hasMark);
}

TEST_F(JournalFormat, ASaveIsOfItsLastPrivateFile) {
  EXPECT_FALSE(readJournal(bytes)->save.has_value());
  appendPrivateFile("/a/.td-1", {1, 2}, bytes);
  appendRecord(stepOf("four"), bytes);
  EXPECT_EQ(readJournal(bytes)->save->path, "/a/.td-1");
  EXPECT_EQ(readJournal(bytes)->save->id, (FileId{1, 2}));
  EXPECT_FALSE(readJournal(bytes)->save->whole.exists);
  FileStamp whole;
  whole.exists = true;
  whole.size = 77;
  appendWholeText(whole, bytes);
  EXPECT_EQ(readJournal(bytes)->save->whole.size, 77);
  EXPECT_EQ(readJournal(bytes)->steps.size(), 4u);
  appendDiscarded(bytes);
  EXPECT_FALSE(readJournal(bytes)->save.has_value());
  EXPECT_EQ(readJournal(bytes)->wholeBytes, bytes.size());
  // A text that is in no file isn't one.
  appendWholeText(whole, bytes);
  EXPECT_LT(readJournal(bytes)->wholeBytes, bytes.size());
}

TEST_F(JournalFormat, AnEncodingIsOneNumberAndOnlyARealOneCounts) {
  for (int format = 0; format < static_cast<int>(TextFormat::Undetermined); ++format) {
    const TextEncoding encoding{static_cast<TextFormat>(format), 1252};
    EXPECT_EQ(encodingOfNumber(encodingNumber(encoding)), encoding);
  }
  EXPECT_EQ(encodingOfNumber(encodingNumber({TextFormat::CodePage, 0})),
            (TextEncoding{TextFormat::CodePage, resolvedPage(0)}));
  JournalStep step = stepOf("");
  step.kind = JournalStep::Kind::Encoding;
  step.value = encodingNumber({TextFormat::CodePage, 932});
  appendRecord(step, bytes);
  EXPECT_EQ(readJournal(bytes)->steps.back(), step);
  EXPECT_EQ(readJournal(bytes)->wholeBytes, bytes.size());
  step.value = static_cast<int64_t>(TextFormat::Undetermined);
  appendRecord(step, bytes);
  EXPECT_LT(readJournal(bytes)->wholeBytes, bytes.size());
}

TEST_F(JournalFormat, CutAtEveryLengthTheWholeRecordsCount) {
  for (size_t length = 0; length <= bytes.size(); ++length) {
    const auto content = readJournal(std::string_view(bytes).substr(0, length));
    size_t whole = 0;
    while (whole < ends.size() && ends[whole] <= length) ++whole;
    ASSERT_EQ(content.has_value(), whole > 0) << length;
    if (content) {
      EXPECT_EQ(content->steps.size(), whole - 1) << length;
      EXPECT_EQ(content->wholeBytes, ends[whole - 1]);
    }
  }
}

TEST_F(JournalFormat, NoDamagedByteIsTakenForAStep) {
  for (size_t i = 0; i < bytes.size(); ++i) {
    std::string damaged = bytes;
    damaged[i] ^= 0x10;
    const auto content = readJournal(damaged);
    size_t before = 0;  // records that end before the damage
    while (before < ends.size() && ends[before] <= i) ++before;
    ASSERT_EQ(content.has_value(), before > 0) << i;
    if (content) {
      EXPECT_EQ(content->steps.size(), before - 1) << i;
    }
  }
}

}  // namespace
