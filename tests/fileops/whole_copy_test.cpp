#include "fileops/fileops_test.h"
#include "fileops/notices.h"
#include "fileops/other_device.h"

// A copy has all of its source, or says what is wrong.

namespace {

constexpr char ChangedText[] = "Changed while it was copied";
constexpr char LeftoverText[] = "Unfinished file could not be removed";

class WholeCopy : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"src", "to"}) dir.makeDir(name);
    dir.write("src/a", "content a");
    dir.write("src/b", "content b");
    dir.write("src/large", std::string(3 << 20, 'x'));
  }
  Outcome run(const std::string& source, const std::string& target,
              TransferKind kind = TransferKind::Copy) {
    const Outcome outcome = Transfer(operation, kind).run(dir.path(source), dir.path(target), 1, 1);
    System::setHook(nullptr, nullptr);
    return outcome;
  }
  const std::string& changed() const { return operation.changedSources.first; }

  RunningOperation operation{ui};
};

// Does something before the Nth call of a name.
struct Before {
  const char* name;
  int number;
  std::function<int()> act;
  int seen = 0;

  static int onCall(const char* call, const char*, void* context) {
    auto* self = static_cast<Before*>(context);
    const bool wanted = strcmp(self->name, call) == 0 && ++self->seen == self->number;
    return wanted ? self->act() : 0;
  }
};

}  // namespace

TEST_F(WholeCopy, AnEndBeforeTheEndIsAnError) {
  // The system gives out less than the file has: what it has counts when its end was read.
  Before longer{"fstat", 2, [&] { return truncate(dir.path("src/a").c_str(), 100) ? errno : 0; }};
  // Nothing more can be read then.
  struct Both {
    Before& longer;
    int reads = 0;
    static int onCall(const char* call, const char* path, void* context) {
      auto* self = static_cast<Both*>(context);
      if (strcmp(call, "read") == 0 && ++self->reads > 2) return EIO;
      return Before::onCall(call, path, &self->longer);
    }
  } both{longer};
  ui.answers = {Answer::Skip};
  System::setHook(Both::onCall, &both);
  EXPECT_EQ(run("src/a", "to/a"), Outcome::Failed);
  EXPECT_EQ(asked(), Texts{"Error reading disk"});
  EXPECT_FALSE(dir.exists("to/a"));
  expectNoLeftovers();
}

TEST_F(WholeCopy, WhatIsAddedAtTheEndComesAlongAndIsTold) {
  Before grow{"fstat", 2, [&] {
                std::ofstream(dir.path("src/a"), std::ios::app) << " and more";
                return 0;
              }};
  System::setHook(Before::onCall, &grow);
  EXPECT_EQ(run("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(dir.read("to/a"), "content a and more");
  EXPECT_EQ(operation.changedSources.count, 1);
  EXPECT_EQ(changed(), dir.path("src/a"));
}

TEST_F(WholeCopy, ASourceThatShrinksIsTold) {
  for (const char* call : {"copyRange", "read"}) {
    dir.write("src/large", std::string(3 << 20, 'x'));
    operation.changedSources = {};
    Before shrink{call, 2,
                  [&] { return truncate(dir.path("src/large").c_str(), 1000) ? errno : 0; }};
    System::setHook(Before::onCall, &shrink);
    EXPECT_EQ(run("src/large", std::string("to/") + call), Outcome::Done) << call;
    EXPECT_EQ(operation.changedSources.count, shrink.seen < 2 ? 0 : 1) << call;
  }
}

TEST_F(WholeCopy, ASourceThatIsRewrittenInTheSameLengthIsTold) {
  Before rewrite{"fstat", 2, [&] {
                   setTime(dir.path("src/a"), 1600000000);
                   return 0;
                 }};
  System::setHook(Before::onCall, &rewrite);
  EXPECT_EQ(run("src/a", "to/a"), Outcome::Done);
  EXPECT_EQ(operation.changedSources.count, 1);
}

TEST_F(WholeCopy, AnUndisturbedCopyTellsNothing) {
  EXPECT_EQ(run("src", "to/tree"), Outcome::Done);
  EXPECT_EQ(contents(dir.path("to/tree")), contents(dir.path("src")));
  tellChanged(operation);
  EXPECT_TRUE(ui.questions.empty());
}

TEST_F(WholeCopy, TheFirstNameAndTheNumberAreToldOnce) {
  ui.rule = [](const auto&) { return Answer::Yes; };
  operation.changedSources.add("/some/where/first");
  tellChanged(operation);
  operation.changedSources.add("/some/where/second");
  tellChanged(operation);
  EXPECT_EQ(asked(), (Texts{ChangedText, std::string(ChangedText) + " (2 files)"}));
  EXPECT_EQ(ui.questions[1].caption, "/some/where/first");
  EXPECT_EQ(ui.questions[1].buttons, AlertButtons::Ok);
}

TEST_F(WholeCopy, AMovedSourceThatChangedStaysAndIsTold) {
  Before rewrite{"fstat", 2, [&] {
                   setTime(dir.path("src/a"), 1600000000);
                   return 0;
                 }};
  const OtherDevice other(Before::onCall, &rewrite);
  EXPECT_EQ(run("src/a", "to/a", TransferKind::Move), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("src/a"), "content a");
  EXPECT_EQ(operation.changedSources.count, 1);
}

TEST_F(WholeCopy, WhatTheKernelShowsOfItselfIsCopied) {
  for (const char* source :
       {"/proc/self/status", "/proc/version", "/sys/kernel/mm/transparent_hugepage/enabled"}) {
    if (access(source, R_OK) != 0) continue;
    const std::string target = dir.path(std::string("to/") + byteName(source));
    EXPECT_EQ(Transfer(operation, TransferKind::Copy).run(source, target, 1, 1), Outcome::Done)
        << source;
    EXPECT_FALSE(readFile(target).empty()) << source;
  }
  EXPECT_TRUE(ui.questions.empty());
}

// As in a directory where names may only be added.
TEST_F(WholeCopy, AnUnfinishedFileThatStaysIsNamed) {
  struct OnlyAdded {
    static int onCall(const char* call, const char* path, void*) {
      const std::string name = call;
      if (name == "write") return ENOSPC;
      return name == "unlinkAt" && strstr(path, ".td-") ? EPERM : 0;
    }
  };
  ui.rule = [](const auto&) { return Answer::Skip; };
  System::setHook(OnlyAdded::onCall, nullptr);
  const std::string to = dir.path("to");
  EXPECT_EQ(run("src/a", "to/a"), Outcome::Failed);
  EXPECT_EQ(asked(), (Texts{LeftoverText, "No room for"}));
  const std::string left = ui.questions.front().caption;
  EXPECT_TRUE(left.starts_with(to + "/.td-")) << left;
  EXPECT_TRUE(existsAt(left));
  EXPECT_FALSE(dir.exists("to/a"));
}

TEST_F(WholeCopy, AnUnfinishedDirectoryThatStaysIsNamed) {
  struct Kept {
    static int onCall(const char* call, const char* path, void*) {
      const std::string name = call;
      const bool making = strstr(path, ".td-") != nullptr;
      if (name == "renameNoReplace" && making) return EACCES;
      return name == "unlinkAt" && making ? EPERM : 0;
    }
  };
  ui.rule = [](const auto&) { return Answer::Skip; };
  System::setHook(Kept::onCall, nullptr);
  EXPECT_EQ(run("src", "to/tree"), Outcome::Failed);
  EXPECT_EQ(asked(), (Texts{"Access Denied", LeftoverText}));
  EXPECT_TRUE(existsAt(ui.questions[1].caption)) << ui.questions[1].caption;
}

// The new description file can neither take its name nor go.
TEST_F(WholeCopy, ADescriptionFileInTheMakingThatStaysIsNamed) {
  struct Kept {
    static int onCall(const char* call, const char* path, void*) {
      const std::string name = call;
      const bool making = strstr(path, ".td-") != nullptr;
      return (name == "renameAt" || name == "unlinkAt") && making ? EPERM : 0;
    }
  };
  dir.write("to/descript.ion", "a about a\r\nb about b\r\n");
  ui.rule = [](const auto&) { return Answer::Yes; };
  operation.descriptions.of(dir.path("to")).erase("a");
  System::setHook(Kept::onCall, nullptr);
  operation.descriptions.flush();
  tellDescriptionLeftovers(operation);
  System::setHook(nullptr, nullptr);
  ASSERT_EQ(asked(), Texts{LeftoverText});
  EXPECT_TRUE(existsAt(ui.questions[0].caption)) << ui.questions[0].caption;
  EXPECT_EQ(dir.read("to/descript.ion"), "a about a\r\nb about b\r\n");
  tellDescriptionLeftovers(operation);
  EXPECT_EQ(asked(), Texts{LeftoverText}) << "told once";
}
