#include "fileops/fileops_test.h"
#include "fileops/other_device.h"

// File systems of other worlds keep no times, modes or owners; what is copied there is whole all
// the same.

namespace {

// Every call of one name fails.
struct EveryCall {
  const char* name;
  int error;

  static int onCall(const char* call, const char*, void* context) {
    const auto* self = static_cast<EveryCall*>(context);
    return strcmp(self->name, call) == 0 ? self->error : 0;
  }
};

// What sets an attribute of a copy.
constexpr const char* Attributes[] = {"futimens", "utimensAt", "fchmod",
                                      "fchown",   "lchownAt",  "setAttribute"};
constexpr int NotOffered[] = {ENOSYS, EOPNOTSUPP, ENOTTY, EINVAL, EPERM};

class PoorFileSystem : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    dir.makeDir("src");
    dir.makeDir("src/sub");
    dir.makeDir("to");
    dir.write("src/a", "content a");
    dir.write("src/sub/b", "content b");
    dir.link("a", "src/link");
    dir.link("nowhere", "src/dangling");
    ASSERT_EQ(mkfifo(dir.path("src/pipe").c_str(), 0640), 0);
  }
  Outcome copyOnto(const EveryCall& fault, const std::string& source, const std::string& target) {
    System::setHook(EveryCall::onCall, const_cast<EveryCall*>(&fault));
    const Outcome outcome = copy(source, target);
    System::setHook(nullptr, nullptr);
    return outcome;
  }
  Outcome moveOnto(const EveryCall& fault, const std::string& source, const std::string& target) {
    const OtherDevice other(EveryCall::onCall, const_cast<EveryCall*>(&fault));
    return move(source, target);
  }
};

}  // namespace

TEST_F(PoorFileSystem, ACopyDoesWithoutWhatIsNotOffered) {
  const auto before = contents(dir.path("src"));
  for (const char* call : Attributes) {
    for (const int error : NotOffered) {
      SCOPED_TRACE(std::string(call) + " " + std::to_string(error));
      EXPECT_EQ(copyOnto({call, error}, "src/a", "to/a"), Outcome::Done);
      EXPECT_EQ(dir.read("to/a"), "content a");
      EXPECT_EQ(copyOnto({call, error}, "src/dangling", "to/dangling"), Outcome::Done);
      EXPECT_EQ(copyOnto({call, error}, "src", "to/tree"), Outcome::Done);
      auto after = contents(dir.path("to/tree"));
      EXPECT_EQ(after.at("link"), "file content a");
      after["link"] = before.at("link");
      EXPECT_EQ(after, before);
      std::filesystem::remove_all(dir.path("to"));
      dir.makeDir("to");
    }
  }
  EXPECT_TRUE(ui.questions.empty());
}

TEST_F(PoorFileSystem, AMoveDoesWithoutWhatIsNotOffered) {
  const auto before = contents(dir.path("src"));
  std::string from = "src";
  std::string to = "to/tree";
  for (const char* call : Attributes) {
    for (const int error : NotOffered) {
      SCOPED_TRACE(std::string(call) + " " + std::to_string(error));
      EXPECT_EQ(moveOnto({call, error}, from, to), Outcome::Done);
      EXPECT_EQ(contents(dir.path(to)), before);
      EXPECT_FALSE(dir.exists(from));
      std::swap(from, to);
    }
  }
  EXPECT_TRUE(ui.questions.empty());
}

TEST_F(PoorFileSystem, ARealErrorOfAnAttributeIsToldAndKeepsNoCopy) {
  for (const char* call : {"futimens", "fchmod"}) {
    for (const int error : {EIO, ENOSPC, EDQUOT, EROFS}) {
      SCOPED_TRACE(std::string(call) + " " + std::to_string(error));
      ui.questions.clear();
      ui.answers = {Answer::Skip};
      EXPECT_EQ(copyOnto({call, error}, "src/a", "to/a"), Outcome::Failed);
      EXPECT_EQ(ui.questions.size(), 1U);
      ui.answers = {Answer::Skip};
      EXPECT_EQ(copyOnto({call, error}, "src/sub/b", "to/b"), Outcome::Failed);
      EXPECT_TRUE(contents(dir.path("to")).empty());
    }
  }
}

TEST_F(PoorFileSystem, ARealErrorOfALinkOrFifoIsToldAndKeepsNoCopy) {
  ui.rule = [](const auto&) { return Answer::Skip; };
  EXPECT_EQ(copyOnto({"utimensAt", EIO}, "src/dangling", "to/dangling"), Outcome::Failed);
  EXPECT_EQ(moveOnto({"fchown", EIO}, "src/pipe", "to/pipe"), Outcome::Failed);
  EXPECT_EQ(moveOnto({"futimens", ENOSPC}, "src/pipe", "to/pipe"), Outcome::Failed);
  EXPECT_EQ(ui.questions.size(), 3U);
  EXPECT_TRUE(contents(dir.path("to")).empty());
  EXPECT_TRUE(dir.exists("src/pipe"));
}

TEST_F(PoorFileSystem, AMoveThatCantKeepAnOwnerForARealErrorKeepsItsSource) {
  for (const char* call : {"fchown", "futimens", "fchmod"}) {
    ui.answers = {Answer::Skip};
    EXPECT_EQ(moveOnto({call, EDQUOT}, "src/a", "to/a"), Outcome::Failed) << call;
    EXPECT_EQ(dir.read("src/a"), "content a");
    EXPECT_FALSE(dir.exists("to/a"));
  }
}

TEST_F(PoorFileSystem, ADirectoryWithARealErrorStaysAndIsTold) {
  dir.makeDir("src/empty");
  for (const char* call : {"futimens", "fchmod"}) {
    ui.answers = {Answer::Skip};
    EXPECT_EQ(moveOnto({call, EIO}, "src/empty", std::string("to/") + call), Outcome::Failed)
        << call;
    EXPECT_TRUE(dir.exists("src/empty"));
  }
  EXPECT_EQ(asked(), (Texts{"Error reading disk", "Error reading disk"}));
}

TEST_F(PoorFileSystem, NothingIsFlushedWhereThatIsNotOffered) {
  for (const int error : {EINVAL, ENOSYS, ENOTSUP, ENOTTY}) {
    dir.write("to/a", "old");
    answers.overwrite = OverwriteMode::All;
    EXPECT_EQ(copyOnto({"sync", error}, "src/a", "to/a"), Outcome::Done) << error;
    EXPECT_EQ(dir.read("to/a"), "content a");
  }
  dir.write("to/a", "old");
  ui.answers = {Answer::Skip};
  EXPECT_EQ(copyOnto({"sync", EROFS}, "src/a", "to/a"), Outcome::Failed);
  EXPECT_EQ(dir.read("to/a"), "old");
}
