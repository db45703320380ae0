#include "fileops/change_case.h"

#include <cstring>

#include "fileops/transfer_faults.h"
#include "support/fault_hook.h"

namespace {

struct Watched : CaseChangeWatcher {
  void working(const char* directory, int64_t count) override {
    seen.push_back(std::string(byteName(directory)) + " " + std::to_string(count));
  }
  void directoryRenamed(const char* from, const char* to) override {
    renamed.push_back(std::string(byteName(from)) + " to " + byteName(to));
  }
  Texts seen;
  Texts renamed;
};

class ChangeCase : public FileOpsTest {
 protected:
  Outcome change(const std::string& name) {
    RunningOperation operation(ui);
    const std::string path = dir.path(name);
    const Outcome outcome = changeCase(operation, placeOf(path.c_str()), wanted, watched);
    operation.descriptions.flush();
    return outcome;
  }
  Outcome change(const std::string& name, const char* setting) {
    wanted.rules = nameCaseOf(Estring(setting));
    return change(name);
  }
  Texts namesIn(const std::string& name) const {
    Texts names;
    for (const auto& item : std::filesystem::directory_iterator(dir.path(name))) {
      names.push_back(item.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  CaseChange wanted{.directories = true, .files = true};
  Watched watched;
};

// Lets a directory look as on a file system to which two spellings are one name: as long as it is
// asked for the other one, that is there too, but it isn't listed.
class FoldingFileSystem {
 public:
  FoldingFileSystem(std::string listed, std::string other, int refusals)
      : listed_(std::move(listed)), other_(std::move(other)), refusals_(refusals) {
    System::setPlaceHook(onCall, this);
  }
  ~FoldingFileSystem() { System::setHook(nullptr, nullptr); }

 private:
  static int onCall(const System::Call& call, void* context) {
    auto* self = static_cast<FoldingFileSystem*>(context);
    const bool aboutOther = self->other_ == call.path || self->other_ == call.target;
    const bool direct = self->listed_ == call.path && aboutOther;
    if (strcmp(call.name, "renameAtNoReplace") == 0 && direct) return EEXIST;
    if (strcmp(call.name, "renameAt") == 0 && self->refusals_-- > 0) return EINVAL;
    if (strcmp(call.name, "statAt") == 0 && aboutOther) {
      ::link(self->listed_.c_str(), self->other_.c_str());
    }
    if (strcmp(call.name, "readNames") == 0) ::unlink(self->other_.c_str());
    return 0;
  }

  const std::string listed_;
  const std::string other_;
  int refusals_;
};

}  // namespace

TEST_F(ChangeCase, AFileGetsItsNewName) {
  dir.write("ReadMe.TXT", "text");
  EXPECT_EQ(change("ReadMe.TXT", "ul"), Outcome::Done);
  EXPECT_EQ(dir.names(), Texts{"README.txt"});
  EXPECT_EQ(dir.read("README.txt"), "text");
}

TEST_F(ChangeCase, EachKindIsChangedOnlyWhenThatIsWanted) {
  dir.write("file", "x");
  dir.makeDir("directory");
  dir.link(".", "link");
  wanted.files = false;
  for (const char* name : {"file", "directory", "link"}) {
    EXPECT_EQ(change(name, "uu"), Outcome::Done);
  }
  EXPECT_EQ(dir.names(), (Texts{"DIRECTORY", "LINK", "file"}));
  EXPECT_EQ(watched.renamed, (Texts{"directory to DIRECTORY"}));
}

TEST_F(ChangeCase, ATakenNameIsNeverReplaced) {
  dir.write("name", "one");
  dir.write("NAME", "two");
  ui.answers = {Answer::Skip};
  EXPECT_EQ(change("name", "uu"), Outcome::Failed);
  ui.answers = {Answer::Retry, Answer::Cancel};
  EXPECT_EQ(change("name", "uu"), Outcome::Cancelled);
  EXPECT_EQ(asked(), Texts(3, "File exists (17)"));
  EXPECT_EQ(ui.questions[0].caption, dir.path("name"));
  EXPECT_EQ(dir.read("name"), "one");
  EXPECT_EQ(dir.read("NAME"), "two");
}

TEST_F(ChangeCase, TwoNamesOfOneFileBothStay) {
  dir.write("name", "one");
  ASSERT_EQ(::link(dir.path("name").c_str(), dir.path("NAME").c_str()), 0);
  ui.answers = {Answer::Skip};
  EXPECT_EQ(change("name", "uu"), Outcome::Failed);
  EXPECT_EQ(dir.names(), (Texts{"NAME", "name"}));
}

TEST_F(ChangeCase, WhatFollowsTheLastDotIsTheExtension) {
  dir.write("Two.Dots.TXT", "x");
  EXPECT_EQ(change("Two.Dots.TXT", "nl"), Outcome::Done);
  EXPECT_EQ(dir.names(), Texts{"Two.Dots.txt"});
}

TEST_F(ChangeCase, ARenamedDirectoryIsLeftAloneWithWhatIsInIt) {
  dir.makeDir("top");
  dir.write("top/file", "x");
  wanted.recurse = true;
  EXPECT_EQ(change("top", "uu"), Outcome::Done);
  EXPECT_EQ(dir.names(), Texts{"TOP"});
  EXPECT_EQ(namesIn("TOP"), Texts{"file"});
  EXPECT_TRUE(watched.seen.empty());
}

TEST_F(ChangeCase, DirectoriesThatKeepTheirNamesAreFollowedToTheBottom) {
  dir.makeDir("TOP");
  dir.makeDir("TOP/SUB");
  dir.makeDir("TOP/sub2");
  for (const char* name : {"TOP/a", "TOP/SUB/b", "TOP/sub2/c"}) dir.write(name, name);
  wanted.recurse = true;
  EXPECT_EQ(change("TOP", "uu"), Outcome::Done);
  EXPECT_EQ(namesIn("TOP"), (Texts{"A", "SUB", "SUB2"}));
  EXPECT_EQ(namesIn("TOP/SUB"), Texts{"B"});
  EXPECT_EQ(namesIn("TOP/SUB2"), Texts{"c"}) << "its directory was renamed";
  EXPECT_EQ(watched.seen.size(), 4U);
}

TEST_F(ChangeCase, WithoutDirectoriesEverythingBelowIsFollowed) {
  dir.makeDir("top");
  dir.makeDir("top/sub");
  dir.write("top/sub/c", "x");
  wanted = {.files = true, .recurse = true};
  EXPECT_EQ(change("top", "uu"), Outcome::Done);
  EXPECT_EQ(namesIn("top/sub"), Texts{"C"});
}

TEST_F(ChangeCase, LinksAreRenamedAndNeverGoneThrough) {
  dir.makeDir("TOP");
  dir.makeDir("outside");
  dir.write("outside/file", "x");
  dir.link("../outside", "TOP/link");
  dir.link("outside", "LINK");
  wanted.recurse = true;
  EXPECT_EQ(change("TOP", "uu"), Outcome::Done);
  EXPECT_EQ(change("LINK", "uu"), Outcome::Done);
  EXPECT_EQ(namesIn("TOP"), Texts{"LINK"});
  EXPECT_EQ(namesIn("outside"), Texts{"file"});
}

TEST_F(ChangeCase, DescriptionsFollowAndTheirFileKeepsItsName) {
  dir.makeDir("D");
  dir.write("D/file", "x");
  dir.write("D/descript.ion", "file about the file\r\n");
  wanted.recurse = true;
  EXPECT_EQ(change("D", "uu"), Outcome::Done);
  EXPECT_EQ(namesIn("D"), (Texts{"FILE", "descript.ion"}));
  EXPECT_EQ(dir.read("D/descript.ion"), "FILE about the file\r\n");
}

TEST_F(ChangeCase, ADirectoryThatCannotBeListedIsTold) {
  dir.makeDir("D");
  dir.makeDir("D/E");
  wanted = {.files = true, .recurse = true};
  {
    const FaultHook fault("readNames", EIO);
    ui.answers = {Answer::Skip};
    EXPECT_EQ(change("D", "uu"), Outcome::Failed);
  }
  EXPECT_EQ(asked(), Texts{"Error reading disk"});
}

TEST_F(ChangeCase, EscStopsBetweenTwoNames) {
  dir.makeDir("D");
  for (int i = 0; i < 20; ++i) dir.write("D/f" + std::to_string(i), "x");
  wanted = {.files = true, .recurse = true};
  ui.escapeAtLook = 5;
  EXPECT_EQ(change("D", "uu"), Outcome::Cancelled);
  size_t renamed = 0;
  for (const std::string& name : namesIn("D")) renamed += name[0] == 'F';
  EXPECT_GT(renamed, 0U);
  EXPECT_LT(renamed, 20U);
  EXPECT_EQ(namesIn("D").size(), 20U);
}

TEST_F(ChangeCase, ATreeOfAnyDepthIsFollowed) {
  constexpr int Deep = 1200;
  std::string path = dir.path("D");
  int at = open(dir.path().c_str(), O_PATH | O_DIRECTORY);
  for (int i = 0; i < Deep; ++i) {
    ASSERT_EQ(mkdirat(at, "DDDD", 0755), 0);
    const int next = openat(at, "DDDD", O_PATH | O_DIRECTORY);
    close(at);
    at = next;
  }
  const int file = openat(at, "file", O_CREAT | O_WRONLY, 0644);
  close(file);
  wanted.recurse = true;
  EXPECT_EQ(change("DDDD", "uu"), Outcome::Done);
  EXPECT_EQ(faccessat(at, "FILE", F_OK, 0), 0);
  close(at);
}

TEST_F(ChangeCase, AFileSystemThatFoldsNamesRespellsThem) {
  dir.write("name", "text");
  {
    const FoldingFileSystem folding(dir.path("name"), dir.path("NAME"), 0);
    EXPECT_EQ(change("name", "uu"), Outcome::Done);
  }
  EXPECT_EQ(dir.names(), Texts{"NAME"});
  EXPECT_EQ(dir.read("NAME"), "text");
}

TEST_F(ChangeCase, WhereThatIsRefusedItGoesThroughAThirdName) {
  dir.write("name", "text");
  {
    const FoldingFileSystem folding(dir.path("name"), dir.path("NAME"), 1);
    EXPECT_EQ(change("name", "uu"), Outcome::Done);
  }
  EXPECT_EQ(dir.names(), Texts{"NAME"});
  EXPECT_EQ(dir.read("NAME"), "text");
}

// Whatever call fails, once or for ever, or ends the process: each content is there once, under one
// of its two names.
TEST_F(ChangeCase, NothingIsLostWhateverFails) {
  const auto build = [](const TempDir& place) {
    place.makeDir("D");
    place.makeDir("D/SUB");
    for (const char* name : {"D/a", "D/b", "D/SUB/c"}) place.write(name, name);
    place.write("D/descript.ion", "a about a\r\n");
  };
  const auto operate = [&](const TempDir& place, Fault& fault) {
    ScriptedUi screen;
    screen.rule = [](const ScriptedUi::Question&) { return Answer::Skip; };
    RunningOperation operation(screen);
    CaseChange change{nameCaseOf("uu"), true, true, true};
    Watched unused;
    const std::string path = place.path("D");
    System::setPlaceHook(Fault::onCall, &fault);
    const Outcome outcome = changeCase(operation, placeOf(path.c_str()), change, unused);
    operation.descriptions.flush();
    System::setHook(nullptr, nullptr);
    return outcome;
  };
  int calls = 0;
  for (const Fault::Reach reach :
       {Fault::Reach::Once, Fault::Reach::SameName, Fault::Reach::Kill}) {
    for (int number = 1;; ++number) {
      const TempDir place;
      build(place);
      Fault fault{.number = number, .error = EIO, .reach = reach};
      if (reach == Fault::Reach::Kill) {
        const int status = runInChild([&] {
          static_cast<void>(operate(place, fault));
          return 0;
        });
        if (status == 0) break;
        ASSERT_EQ(status, Fault::Killed);
      } else {
        static_cast<void>(operate(place, fault));
        if (fault.seen < number) break;
      }
      ++calls;
      Texts found;
      for (const auto& [name, content] : contents(place.path())) {
        if (content.find("D/") != std::string::npos && name.find('.') == std::string::npos) {
          found.push_back(name);
        }
      }
      EXPECT_EQ(found.size(), 3U) << number << " " << fault.call;
    }
  }
  EXPECT_GT(calls, 20);
}
