#include "editor/text/text_saver.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "foundation/data_paths.h"
#include "foundation/file_mode_mask.h"
#include "foundation/path_info.h"
#include "foundation/status.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace {

constexpr size_t SeveralParts = 600'000;  // more than is copied at once
const std::string OldText = "the old one\n" + std::string(SeveralParts, 'o');
const std::string NewText = "the new text\n" + std::string(SeveralParts + 9000, 'n');
const std::string ShortText = "short\n";
using Names = std::vector<std::string>;
using Change = TextSaver::Change;

TextSaver::Text textOf(const std::string& text) {
  return [&text](const TextSaver::Sink& sink) {
    const size_t half = text.size() / 2;
    const int error = sink(std::string_view(text).substr(0, half));
    return error ? error : sink(std::string_view(text).substr(half));
  };
}

ino_t inodeOf(const TempDir& dir, const std::string& name) {
  struct stat info {};
  return ::lstat(dir.path(name).c_str(), &info) == 0 ? info.st_ino : 0;
}

struct Witness : PrivateFileWitness {
  std::string path;
  int wholeTexts = 0;
  int discarded = 0;

  void onPrivateFile(const std::string& made, FileId) override { path = made; }
  void onWholeText(const FileStamp&) override { ++wholeTexts; }
  void onDiscarded() override { ++discarded; }
};

// A file in a directory of its own, and a directory of the user's files beside it.
class TextSaverTest : public testing::Test {
 protected:
  TextSaverTest() {
    dir.openToAll();
    dir.makeDir("home");
    dir.makeDir("work");
    giveToUser(dir.path("home"));
    giveToUser(dir.path("work"));
    setConfigurationFile(dir.wide("home/td.ini"));
    write(OldText);
  }
  ~TextSaverTest() override { setConfigurationFile(L""); }

  void write(const std::string& text, const std::string& name = "work/file") {
    dir.write(name, text);
    giveToUser(dir.path(name));
  }
  void open(const std::string& name = "work/file") {
    FileContent content;
    ASSERT_EQ(readFileContent(dir.wide(name), content), 0);
    saver.opened(dir.wide(name), content);
  }
  Change looked() {
    Change change = Change::None;
    EXPECT_EQ(saver.look(change), 0);
    return change;
  }
  Names names(const std::string& directory) const {
    Names result;
    for (const auto& item : std::filesystem::directory_iterator(dir.path(directory))) {
      result.push_back(item.path().filename().string());
    }
    std::sort(result.begin(), result.end());
    return result;
  }
  void expectOnlyTheFile() const {
    EXPECT_EQ(names("work"), Names{"file"});
    if (dir.exists("home/edit")) {
      EXPECT_EQ(names("home/edit"), Names{});
    }
  }
  void expectSaved(const TextSaver::Outcome& outcome, const std::string& text,
                   const std::string& name = "work/file") const {
    EXPECT_EQ(outcome.error, 0);
    EXPECT_EQ(outcome.wholeText, "");
    EXPECT_EQ(outcome.leftover, "");
    EXPECT_TRUE(dir.read(name) == text) << dir.read(name).size();
  }

  TempDir dir;
  TextSaver saver;
};

TEST_F(TextSaverTest, TheNewTextTakesTheNameOfTheOldOne) {
  open();
  dir.chmod("work/file", 0640);
  ASSERT_EQ(setxattr(dir.path("work/file").c_str(), "user.note", "kept", 4, 0), 0);
  ASSERT_EQ(looked(), Change::None);
  const ino_t old = inodeOf(dir, "work/file");
  expectSaved(saver.save(textOf(NewText)), NewText);
  EXPECT_NE(inodeOf(dir, "work/file"), old);
  EXPECT_EQ(dir.mode("work/file"), 0640u);
  char value[8] = {};
  EXPECT_EQ(getxattr(dir.path("work/file").c_str(), "user.note", value, sizeof value), 4);
  EXPECT_STREQ(value, "kept");
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, EachSaveFollowsTheOneBefore) {
  open();
  for (const std::string& text : {NewText, ShortText, std::string(), OldText}) {
    expectSaved(saver.save(textOf(text)), text);
    EXPECT_EQ(looked(), Change::None);
  }
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, ALinkStaysALinkAndTheFileBehindItIsSaved) {
  dir.link("work/file", "link");
  open("link");
  expectSaved(saver.save(textOf(NewText)), NewText);
  EXPECT_TRUE(std::filesystem::is_symlink(dir.path("link")));
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, AFileWithTwoNamesKeepsBoth) {
  ASSERT_EQ(::link(dir.path("work/file").c_str(), dir.path("other").c_str()), 0);
  open();
  const ino_t old = inodeOf(dir, "work/file");
  expectSaved(saver.save(textOf(NewText)), NewText);
  EXPECT_EQ(inodeOf(dir, "work/file"), old);
  expectSaved(saver.save(textOf(ShortText)), ShortText, "other");
  EXPECT_EQ(looked(), Change::None);
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, OverwritingTellsHowFarItIsAndIsNotStopped) {
  ASSERT_EQ(::link(dir.path("work/file").c_str(), dir.path("other").c_str()), 0);
  open();
  const int64_t size = std::ssize(NewText);
  std::vector<int64_t> told;
  const auto overwriting = [&](int64_t done, int64_t total) {
    EXPECT_EQ(total, size);
    told.push_back(done);
    return false;
  };
  expectSaved(saver.save(textOf(NewText), ReadOnlyFile::Refuse, overwriting), NewText);
  ASSERT_GT(told.size(), 1U);
  EXPECT_LT(told.front(), size);
  EXPECT_EQ(told.back(), size);
}

TEST_F(TextSaverTest, OverwritingGoesOnWhereItCannotBeTold) {
  ASSERT_EQ(::link(dir.path("work/file").c_str(), dir.path("other").c_str()), 0);
  open();
  int told = 0;
  const auto overwriting = [&told](int64_t, int64_t) -> bool {
    ++told;
    throw std::bad_alloc();
  };
  expectSaved(saver.save(textOf(NewText), ReadOnlyFile::Refuse, overwriting), NewText);
  EXPECT_EQ(told, 1);
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, AFileOfAnotherOwnerStaysHis) {
  if (!isRoot()) GTEST_SKIP() << "only root can give files away";
  ASSERT_EQ(chown(dir.path("work/file").c_str(), 0, 0), 0);
  dir.chmod("work/file", 0666);
  const ino_t old = inodeOf(dir, "work/file");
  EXPECT_EQ(runAsUser([&] {
              open();
              expectSaved(saver.save(textOf(NewText)), NewText);
              expectOnlyTheFile();
            }),
            0);
  struct stat info;
  ASSERT_EQ(statPath(dir.wide("work/file"), info), 0);
  EXPECT_EQ(info.st_ino, old);
  EXPECT_EQ(info.st_uid, 0u);
}

TEST_F(TextSaverTest, WhereOthersMayNotReplaceAFileItIsOverwritten) {
  if (!isRoot()) GTEST_SKIP() << "only root can give files away";
  ASSERT_EQ(chown(dir.path("work").c_str(), 0, 0), 0);
  ASSERT_EQ(chown(dir.path("work/file").c_str(), 1, OrdinaryUser), 0);
  dir.chmod("work", 01777);
  dir.chmod("work/file", 0666);
  const ino_t old = inodeOf(dir, "work/file");
  EXPECT_EQ(runAsUser([&] {
              open();
              expectSaved(saver.save(textOf(ShortText)), ShortText);
              expectOnlyTheFile();
            }),
            0);
  EXPECT_EQ(inodeOf(dir, "work/file"), old);
}

TEST_F(TextSaverTest, ADirectoryThatTakesNoNewNameIsDoneWithout) {
  dir.chmod("work", 0555);
  const ino_t old = inodeOf(dir, "work/file");
  EXPECT_EQ(runAsUser([&] {
              open();
              Witness witness;
              saver.witness = &witness;
              expectSaved(saver.save(textOf(NewText)), NewText);
              EXPECT_TRUE(witness.path.starts_with(dir.path("home/edit/.td-"))) << witness.path;
              EXPECT_EQ(witness.wholeTexts, 1);
              expectOnlyTheFile();
            }),
            0);
  EXPECT_EQ(inodeOf(dir, "work/file"), old);
  EXPECT_EQ(dir.mode("home/edit"), 0700u);
}

TEST_F(TextSaverTest, WithoutAnyDirectoryThatTakesANewNameItsOwnOneSaysWhy) {
  setConfigurationFile(dir.wide("work/file/td.ini"));
  dir.chmod("work", 0555);
  EXPECT_EQ(runAsUser([&] {
              open();
              EXPECT_EQ(saver.save(textOf(NewText)).error, EACCES);
            }),
            0);
  EXPECT_EQ(dir.read("work/file"), OldText);
  EXPECT_EQ(names("work"), Names{"file"});
}

TEST_F(TextSaverTest, AMountedFileIsOverwritten) {
  open();
  const ino_t old = inodeOf(dir, "work/file");
  {
    FaultHook mounted("renameAt", EBUSY);
    expectSaved(saver.save(textOf(NewText)), NewText);
    EXPECT_TRUE(mounted.hit());
  }
  EXPECT_EQ(inodeOf(dir, "work/file"), old);
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, AttributesThatCannotBeGivenAwayStayWithTheFile) {
  ASSERT_EQ(setxattr(dir.path("work/file").c_str(), "user.note", "kept", 4, 0), 0);
  open();
  const ino_t old = inodeOf(dir, "work/file");
  {
    FaultHook refused("setAttribute", EOPNOTSUPP);
    expectSaved(saver.save(textOf(NewText)), NewText);
    EXPECT_TRUE(refused.hit());
  }
  EXPECT_EQ(inodeOf(dir, "work/file"), old);
  EXPECT_GT(getxattr(dir.path("work/file").c_str(), "user.note", nullptr, 0), 0);
}

TEST_F(TextSaverTest, AFileThatIsGoneIsWrittenAnew) {
  open();
  ASSERT_EQ(unlink(dir.path("work/file").c_str()), 0);
  EXPECT_EQ(looked(), Change::Gone);
  expectSaved(saver.save(textOf(NewText)), NewText);
  EXPECT_EQ(dir.mode("work/file"), 0660u & ~fileModeMask());
  EXPECT_EQ(looked(), Change::None);
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, ADirectoryThatIsGoneIsAnError) {
  open();
  std::filesystem::remove_all(dir.path("work"));
  EXPECT_EQ(looked(), Change::Gone);
  EXPECT_EQ(saver.save(textOf(NewText)).error, ENOENT);
  EXPECT_FALSE(dir.exists("home/edit"));
}

TEST_F(TextSaverTest, AnotherContentIsAChangeAndAgreedOnIsOverwritten) {
  open();
  write(NewText);
  EXPECT_EQ(looked(), Change::Changed);
  expectSaved(saver.save(textOf(ShortText)), ShortText);
  EXPECT_EQ(looked(), Change::None);
}

TEST_F(TextSaverTest, AContentOfTheSameLengthIsAChange) {
  open();
  std::string other = OldText;
  other[SeveralParts / 2] = 'x';
  write(other);
  EXPECT_EQ(looked(), Change::Changed);
}

TEST_F(TextSaverTest, OnlyOtherTimesAreNoChange) {
  open();
  const timespec times[2] = {{1, 0}, {1, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, dir.path("work/file").c_str(), times, 0), 0);
  EXPECT_EQ(looked(), Change::None);
  dir.chmod("work/file", 0600);
  EXPECT_EQ(looked(), Change::None);
  write(OldText);
  EXPECT_EQ(looked(), Change::None);
  expectSaved(saver.save(textOf(NewText)), NewText);
  EXPECT_EQ(dir.mode("work/file"), 0600u);
}

TEST_F(TextSaverTest, AnotherFileOfThatNameIsAChangeAndStaysThatFile) {
  open();
  write(OldText, "work/other");
  ASSERT_EQ(rename(dir.path("work/other").c_str(), dir.path("work/file").c_str()), 0);
  const ino_t other = inodeOf(dir, "work/file");
  EXPECT_EQ(looked(), Change::Changed);
  expectSaved(saver.save(textOf(NewText)), NewText);
  EXPECT_EQ(inodeOf(dir, "work/file"), other);
}

TEST_F(TextSaverTest, WhatChangedSinceTheLastLookIsNotOverwritten) {
  open();
  EXPECT_EQ(looked(), Change::None);
  write(ShortText);
  EXPECT_EQ(saver.save(textOf(NewText)).error, Status::ChangedMeanwhile);
  EXPECT_EQ(dir.read("work/file"), ShortText);
  ASSERT_EQ(unlink(dir.path("work/file").c_str()), 0);
  EXPECT_EQ(looked(), Change::Gone);
  write(ShortText);
  EXPECT_EQ(saver.save(textOf(NewText)).error, Status::ChangedMeanwhile);
  EXPECT_EQ(dir.read("work/file"), ShortText);
  expectOnlyTheFile();
}

// Writes to the file while the private one is flushed.
struct WriteDuringFlush {
  std::string path;
  static int onCall(const char* call, const char*, void* context) {
    if (strcmp(call, "sync") == 0) {
      std::ofstream(static_cast<WriteDuringFlush*>(context)->path) << ShortText;
    }
    return 0;
  }
};

TEST_F(TextSaverTest, WhatIsWrittenDuringTheSaveIsNotOverwritten) {
  for (const char* other : {"", "other"}) {
    write(OldText);
    if (*other != 0) {
      ASSERT_EQ(::link(dir.path("work/file").c_str(), dir.path(other).c_str()), 0);
    }
    open();
    WriteDuringFlush writing{dir.path("work/file")};
    System::setHook(WriteDuringFlush::onCall, &writing);
    const int error = saver.save(textOf(NewText)).error;
    System::setHook(nullptr, nullptr);
    EXPECT_EQ(error, Status::ChangedMeanwhile);
    EXPECT_EQ(dir.read("work/file"), ShortText);
    expectOnlyTheFile();
  }
}

TEST_F(TextSaverTest, LookingCanBeStopped) {
  open();
  write(OldText);
  Change change = Change::None;
  EXPECT_EQ(saver.look(change, [](int64_t, int64_t) { return false; }), ECANCELED);
}

TEST_F(TextSaverTest, WhatIsNoFileAnyMoreIsAnError) {
  open();
  ASSERT_EQ(unlink(dir.path("work/file").c_str()), 0);
  dir.makeDir("work/file");
  Change change = Change::None;
  EXPECT_EQ(saver.look(change), EISDIR);
}

TEST_F(TextSaverTest, ATextThatCannotBeConvertedTouchesNothing) {
  open();
  Witness witness;
  saver.witness = &witness;
  const TextSaver::Outcome outcome = saver.save([](const TextSaver::Sink& sink) {
    EXPECT_EQ(sink("half of it"), 0);
    return EILSEQ;
  });
  EXPECT_EQ(outcome.error, EILSEQ);
  EXPECT_EQ(witness.wholeTexts, 0);
  EXPECT_EQ(witness.discarded, 1);
  EXPECT_EQ(outcome.wholeText, "");
  EXPECT_TRUE(dir.read("work/file") == OldText);
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, AFullDiskIsKnownBeforeAFileIsOverwritten) {
  ASSERT_EQ(::link(dir.path("work/file").c_str(), dir.path("other").c_str()), 0);
  open();
  FaultHook full("reserve", ENOSPC);
  const TextSaver::Outcome outcome = saver.save(textOf(NewText));
  EXPECT_EQ(outcome.error, ENOSPC);
  EXPECT_EQ(outcome.wholeText, "");
  EXPECT_TRUE(dir.read("work/file") == OldText);
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, AReadOnlyFileIsSavedOnlyWhenItIsOverridden) {
  dir.chmod("work/file", 0444);
  EXPECT_EQ(runAsUser([&] {
              open();
              EXPECT_EQ(saver.save(textOf(NewText)).error, EACCES);
              EXPECT_TRUE(dir.read("work/file") == OldText);
              expectSaved(saver.save(textOf(NewText), ReadOnlyFile::Override), NewText);
              expectOnlyTheFile();
            }),
            0);
  EXPECT_EQ(dir.mode("work/file"), 0444u);
}

TEST_F(TextSaverTest, AReadOnlyFileThatIsOverwrittenIsReadOnlyAgain) {
  ASSERT_EQ(::link(dir.path("work/file").c_str(), dir.path("home/other").c_str()), 0);
  dir.chmod("work/file", 0444);
  EXPECT_EQ(runAsUser([&] {
              open();
              expectSaved(saver.save(textOf(NewText), ReadOnlyFile::Override), NewText);
              EXPECT_EQ(looked(), Change::None);
              EXPECT_EQ(dir.mode("work/file"), 0444u);
              FaultHook fault("truncate", EIO);
              EXPECT_EQ(saver.save(textOf(OldText), ReadOnlyFile::Override).error, EIO);
              EXPECT_EQ(dir.mode("work/file"), 0444u);
            }),
            0);
}

TEST_F(TextSaverTest, AReadOnlyFileOfAnotherOwnerCannotBeOverridden) {
  if (!isRoot()) GTEST_SKIP() << "only root can give files away";
  ASSERT_EQ(chown(dir.path("work/file").c_str(), 0, 0), 0);
  dir.chmod("work/file", 0444);
  EXPECT_EQ(runAsUser([&] {
              open();
              const auto outcome = saver.save(textOf(NewText), ReadOnlyFile::Override);
              EXPECT_EQ(outcome.error, EPERM);
              EXPECT_TRUE(outcome.clearingReadOnlyFailed);
              EXPECT_EQ(outcome.wholeText, "");
              EXPECT_TRUE(dir.read("work/file") == OldText);
              expectOnlyTheFile();
            }),
            0);
  EXPECT_EQ(dir.mode("work/file"), 0444u);
}

TEST_F(TextSaverTest, AFileThatTellsNoSizeIsWrittenThrough) {
  EXPECT_EQ(runInChild([&] {
              FileContent content;
              ASSERT_EQ(readFileContent(L"/proc/self/comm", content), 0);
              saver.opened(L"/proc/self/comm", content);
              const std::string name = "edited";
              EXPECT_EQ(saver.save(textOf(name)).error, 0);
              ASSERT_EQ(readFileContent(L"/proc/self/comm", content), 0);
              EXPECT_EQ(content.bytes, name + "\n");
              EXPECT_EQ(looked(), Change::None);
            }),
            0);
  expectOnlyTheFile();
}

TEST_F(TextSaverTest, SavingAsANewFileMakesIt) {
  open();
  FileStamp seen;
  ASSERT_EQ(lookAtFile(dir.wide("work/new"), seen), 0);
  EXPECT_FALSE(seen.exists);
  expectSaved(saver.saveAs(dir.wide("work/new"), seen, textOf(NewText)), NewText, "work/new");
  EXPECT_STREQ(saver.path().data(), dir.wide("work/new").data());
  EXPECT_TRUE(dir.read("work/file") == OldText);
  EXPECT_EQ(looked(), Change::None);
  expectSaved(saver.save(textOf(ShortText)), ShortText, "work/new");
}

TEST_F(TextSaverTest, AFileThatCameMeanwhileIsNotReplaced) {
  open();
  FileStamp seen;
  ASSERT_EQ(lookAtFile(dir.wide("work/new"), seen), 0);
  write(ShortText, "work/new");
  EXPECT_EQ(saver.saveAs(dir.wide("work/new"), seen, textOf(NewText)).error,
            Status::ChangedMeanwhile);
  EXPECT_EQ(dir.read("work/new"), ShortText);
  EXPECT_STREQ(saver.path().data(), dir.wide("work/file").data());
  EXPECT_EQ(names("work"), (Names{"file", "new"}));
}

TEST_F(TextSaverTest, SavingAsAFileThatExistsReplacesIt) {
  open();
  write(ShortText, "work/new");
  FileStamp seen;
  ASSERT_EQ(lookAtFile(dir.wide("work/new"), seen), 0);
  EXPECT_TRUE(seen.exists);
  EXPECT_FALSE(isSameFile(seen, saver.stamp()));
  expectSaved(saver.saveAs(dir.wide("work/new"), seen, textOf(NewText)), NewText, "work/new");
  EXPECT_EQ(names("work"), (Names{"file", "new"}));
}

TEST_F(TextSaverTest, AnotherNameOfTheFileIsSeenAsTheSame) {
  open();
  dir.link("file", "work/link");
  FileStamp seen;
  ASSERT_EQ(lookAtFile(dir.wide("work/link"), seen), 0);
  EXPECT_TRUE(isSameFile(seen, saver.stamp()));
  EXPECT_EQ(lookAtFile(dir.wide("work"), seen), EISDIR);
  EXPECT_EQ(lookAtFile(L"/dev/null", seen), Status::NotRegularFile);
  EXPECT_FALSE(isSameFile(FileStamp(), FileStamp()));
}

// The ways that a text goes to the disk, each with every fault.
enum class Way { TakesTheName, IsOverwritten, IsOverwrittenFromHome, IsMadeAnew };

class EveryFault : public TextSaverTest, public testing::WithParamInterface<Way> {
 protected:
  void prepare() {
    std::filesystem::remove_all(dir.path("work"));
    std::filesystem::remove_all(dir.path("home"));
    dir.makeDir("home");
    dir.makeDir("work");
    write(OldText);
    if (GetParam() == Way::IsOverwritten) {
      ASSERT_EQ(::link(dir.path("work/file").c_str(), dir.path("home/name").c_str()), 0);
    }
    open();
    if (GetParam() == Way::IsMadeAnew) {
      ASSERT_EQ(unlink(dir.path("work/file").c_str()), 0);
      ASSERT_EQ(looked(), Change::Gone);
    }
  }
  TextSaver::Outcome save() { return saver.save(textOf(NewText)); }
  // One save during which the fault happens.
  TextSaver::Outcome saveUnder(Fault& fault) {
    Both both{&fault, GetParam() == Way::IsOverwrittenFromHome ? dir.path("work") : ""};
    System::setPlaceHook(Both::onCall, &both);
    TextSaver::Outcome outcome = save();
    System::setPlaceHook(nullptr, nullptr);
    return outcome;
  }
  // The old text or the new one is whole, and if the file has neither it is said where.
  void expectNothingLost(const TextSaver::Outcome& outcome, const std::string& where) {
    const std::string text = dir.exists("work/file") ? dir.read("work/file") : OldText;
    if (outcome.error == 0) {
      EXPECT_TRUE(text == NewText) << where;
      EXPECT_EQ(outcome.wholeText, "") << where;
    } else if (!outcome.wholeText.empty()) {
      const std::string relative = outcome.wholeText.substr(dir.path().size() + 1);
      EXPECT_TRUE(dir.read(relative) == NewText) << where;
    } else {
      EXPECT_TRUE(text == OldText || text == NewText) << where;
    }
  }
  void expectSavedAtTheNextAttempt(const TextSaver::Outcome& before, const std::string& where,
                                   bool mayAsk) {
    Change change = Change::Changed;
    EXPECT_EQ(saver.look(change), 0);
    EXPECT_TRUE(change != Change::Changed || mayAsk) << where;
    EXPECT_EQ(save().error, 0) << where;
    EXPECT_TRUE(dir.read("work/file") == NewText) << where;
    EXPECT_EQ(privateFiles().empty(), before.leftover.empty()) << where;
  }
  Names privateFiles() const {
    Names result;
    for (const auto& item : std::filesystem::recursive_directory_iterator(dir.path())) {
      if (item.path().filename().string().starts_with(".td-")) result.push_back(item.path());
    }
    return result;
  }

  // The fault, behind a directory that takes no new names.
  struct Both {
    Fault* fault;
    std::string refusing;
    static int onCall(const System::Call& call, void* context) {
      auto* self = static_cast<Both*>(context);
      if (!self->refusing.empty() && strcmp(call.name, "openAt") == 0 &&
          strncmp(call.path, ".td-", 4) == 0 && isIn(call.directory, self->refusing)) {
        return EACCES;
      }
      return Fault::onCall(call, self->fault);
    }
    static bool isIn(int directory, const std::string& path) {
      struct stat a, b;
      return fstat(directory, &a) == 0 && ::stat(path.c_str(), &b) == 0 && a.st_ino == b.st_ino;
    }
  };
};

long openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST_P(EveryFault, LeavesOneTextWholeAndCanBeTriedAgain) {
  int failed = 0;
  const Fault faults[] = {{0, EIO, Fault::Reach::Once},
                          {0, ENOSPC, Fault::Reach::SameName},
                          {0, EIO, Fault::Reach::Below, dir.path("work")}};
  for (const Fault& kind : faults) {
    for (int number = 1;; ++number) {
      prepare();
      const long before = openDescriptors();
      Fault fault = kind;
      fault.number = number;
      const TextSaver::Outcome outcome = saveUnder(fault);
      if (fault.call.empty()) break;
      failed += !fault.refusals.empty();
      const std::string where = fault.call + " " + std::to_string(number);
      expectNothingLost(outcome, where);
      EXPECT_EQ(openDescriptors(), before) << where;
      EXPECT_EQ(privateFiles().empty(), outcome.wholeText.empty() && outcome.leftover.empty())
          << where;
      // Where nothing could be looked at any more, the user is asked.
      expectSavedAtTheNextAttempt(outcome, where, kind.reach == Fault::Reach::Below);
    }
  }
  EXPECT_GT(failed, 60);
}

TEST_P(EveryFault, ThatKillsTheProgramLeavesOneTextWhole) {
  int killed = 0;
  for (int number = 1;; ++number) {
    prepare();
    const int status = runInChild([&] {
      Fault fault{number, 0, Fault::Reach::Kill};
      return saveUnder(fault).error;
    });
    if (status != Fault::Killed) {
      EXPECT_EQ(status, 0);
      break;
    }
    ++killed;
    const std::string text = dir.exists("work/file") ? dir.read("work/file") : OldText;
    bool whole = text == OldText || text == NewText;
    for (const std::string& path : privateFiles()) {
      whole = whole || dir.read(path.substr(dir.path().size() + 1)) == NewText;
    }
    EXPECT_TRUE(whole) << number;
    if (GetParam() == Way::TakesTheName) {
      EXPECT_TRUE(text == OldText || text == NewText) << number;
    }
  }
  EXPECT_GT(killed, 10);
}

INSTANTIATE_TEST_SUITE_P(Ways, EveryFault,
                         testing::Values(Way::TakesTheName, Way::IsOverwritten,
                                         Way::IsOverwrittenFromHome, Way::IsMadeAnew));

}  // namespace
