#include "fileops/transfer_faults.h"

#include "fileops/other_device.h"

const std::vector<Scenario> Scenarios = {
    {"CopyOfAFile", TransferKind::Copy, false, OverwriteMode::Ask, "src/a", "dst/new"},
    {"CopyOverAFile", TransferKind::Copy, false, OverwriteMode::All, "src/a", "dst/file"},
    {"CopyOfATree", TransferKind::Copy, false, OverwriteMode::Ask, "src", "dst/new"},
    {"CopyMergingTrees", TransferKind::Copy, false, OverwriteMode::All, "src", "dst/tree"},
    {"CopyOfATreeOverAFile", TransferKind::Copy, false, OverwriteMode::All, "src", "dst/file"},
    {"MoveOfAFile", TransferKind::Move, false, OverwriteMode::Ask, "src/a", "dst/new"},
    {"MoveOverAFile", TransferKind::Move, false, OverwriteMode::All, "src/a", "dst/file"},
    {"MoveOfATree", TransferKind::Move, false, OverwriteMode::Ask, "src", "dst/new"},
    {"MoveMergingTrees", TransferKind::Move, false, OverwriteMode::All, "src", "dst/tree"},
    {"MoveOfATreeOverAFile", TransferKind::Move, false, OverwriteMode::All, "src", "dst/file"},
    {"MoveOfAFileToAnotherDevice", TransferKind::Move, true, OverwriteMode::Ask, "src/a",
     "dst/new"},
    {"MoveOverAFileOnAnotherDevice", TransferKind::Move, true, OverwriteMode::All, "src/a",
     "dst/file"},
    {"MoveOfATreeToAnotherDevice", TransferKind::Move, true, OverwriteMode::Ask, "src", "dst/new"},
    {"MoveMergingTreesOnAnotherDevice", TransferKind::Move, true, OverwriteMode::All, "src",
     "dst/tree"},
    {"MoveOfATreeOverAFileOnAnotherDevice", TransferKind::Move, true, OverwriteMode::All, "src",
     "dst/file"},
};

std::string nameOf(const testing::TestParamInfo<Scenario>& info) {
  return info.param.name;
}

namespace {

constexpr char Memory[] = "/dev/shm";
constexpr char Precious[] = "outside/precious";

// The name of something in the making, and everything below it, up to and with that name; empty
// when there is none in the path.
std::string inTheMaking(const std::string& path) {
  const size_t start = path.find(".td-");
  return start == std::string::npos ? "" : path.substr(0, path.find('/', start));
}

bool isDescription(const std::string& path) {
  return path.ends_with("descript.ion");
}

// What stays although all that could be done about it was done.
bool couldNotGo(const Fault& fault, const std::string& path, const std::string& what) {
  if (fault.refused({"unlinkAt", "unlink"}, path)) return true;
  // An old file that stood aside and couldn't get back to its place.
  if (what == "file old file" && fault.refused({"renameNoReplace"}, path)) return true;
  const bool again = fault.reach == Fault::Reach::SameName || fault.reach == Fault::Reach::Below;
  return again && fault.refused({"openAt", "statx", "readNames", "fstat"}, path);
}

}  // namespace

void InMemory::SetUp() {
  FileOpsTest::SetUp();
  if (access(Memory, W_OK) == 0) setenv("TMPDIR", Memory, 1);
}

void InMemory::TearDown() {
  unsetenv("TMPDIR");
}

void TransferFaults::build(const TempDir& place) {
  for (const char* name :
       {"src", "src/sub", "src/sub/deep", "dst", "dst/tree", "dst/tree/sub", "outside"}) {
    place.makeDir(name);
  }
  place.write("src/a", "source a");
  place.write("src/sub/b", "source b");
  place.write("src/sub/deep/c", std::string(300000, 'c'));
  place.link("../outside/precious", "src/sub/link");
  place.write("src/sub/descript.ion", "b about b\r\nnobody orphan\r\n");
  place.write("dst/file", "old file");
  place.write("dst/tree/sub/b", "old b");
  place.write("dst/tree/other", "other");
  place.write("dst/tree/sub/descript.ion", "b old line\r\n");
  place.write(Precious, "precious");
}

Outcome TransferFaults::operate(const TempDir& place, ScriptedUi& screen, Fault& fault) {
  const Scenario& scenario = GetParam();
  RunningOperation operation(screen);
  operation.answers.overwrite = scenario.mode;
  std::unique_ptr<OtherDevice> other;
  if (scenario.otherDevice) {
    other = std::make_unique<OtherDevice>(Fault::onCall, &fault);
  } else {
    System::setPlaceHook(Fault::onCall, &fault);
  }
  const Outcome outcome = Transfer(operation, scenario.kind)
                              .run(place.path(scenario.source), place.path(scenario.target), 1, 1);
  operation.descriptions.flush();
  other.reset();
  System::setHook(nullptr, nullptr);
  return outcome;
}

int TransferFaults::playAndLook(Fault fault, int answer, const std::string& where) {
  const TempDir place;
  build(place);
  if (!fault.directory.empty()) fault.directory = place.path(fault.directory);
  const Contents before = contents(place.path());
  ScriptedUi screen;
  screen.rule = [answer](const auto& question) {
    return question.buttons == AlertButtons::OkCancel && answer == Answer::Skip ? Answer::Yes
                                                                                : answer;
  };
  const Outcome outcome = operate(place, screen, fault);
  expectInvariants(place, before, outcome, fault, Leftovers::WhereRefused,
                   where + " (" + fault.call + ")");
  return fault.seen;
}

int TransferFaults::countCalls() {
  const TempDir place;
  build(place);
  Fault count;
  ScriptedUi screen;
  EXPECT_EQ(operate(place, screen, count), Outcome::Done);
  return count.seen;
}

void TransferFaults::expectInvariants(const TempDir& place, const Contents& before, Outcome outcome,
                                      const Fault& fault, Leftovers leftovers,
                                      const std::string& where) {
  const Contents after = contents(place.path());
  const std::string source = GetParam().source;
  const std::string target = GetParam().target;
  for (const auto& [path, what] : after) {
    const std::string making = inTheMaking(path);
    if (making.empty() || leftovers == Leftovers::Allowed) continue;
    EXPECT_TRUE(couldNotGo(fault, place.path(making), what)) << where << ": left over " << path;
  }
  ASSERT_TRUE(after.contains(Precious)) << where;
  EXPECT_EQ(after.at(Precious), "file precious") << where;
  for (const auto& [path, what] : before) {
    if (isDescription(path)) continue;
    if (Fault::isWithin(path, source)) {
      expectOneWhole(after, path, target + path.substr(source.size()), what, outcome, where);
    } else if (path != target) {
      expectOldOrNew(after, before, path, what, where);
    }
  }
  expectOldTarget(after, before, where);
  expectLines(after, where);
}

// The source's side or the target's; of a copy always the source.
void TransferFaults::expectOneWhole(const Contents& after, const std::string& path,
                                    const std::string& counterpart, const std::string& what,
                                    Outcome outcome, const std::string& where) {
  const auto here = after.find(path);
  const auto there = after.find(counterpart);
  const bool copy = GetParam().kind == TransferKind::Copy;
  if (copy) {
    ASSERT_TRUE(here != after.end()) << where << ": the source " << path << " is gone";
  }
  // Ended between exchanging the names of a directory and an old file and removing that file.
  const bool exchanged = !copy && path == GetParam().source && there != after.end() &&
                         there->second == what && here != after.end() &&
                         here->second == "file old file";
  if (here != after.end() && !exchanged) {
    EXPECT_EQ(here->second, what) << where << ": the source " << path << " changed";
  } else {
    ASSERT_TRUE(there != after.end()) << where << ": " << path << " is nowhere";
    EXPECT_EQ(there->second, what) << where;
  }
  // A link is followed by a copy, so only the sides of files are compared.
  if (outcome == Outcome::Done && what.starts_with("file ")) {
    ASSERT_TRUE(there != after.end()) << where << ": no target " << counterpart;
    EXPECT_EQ(there->second, what) << where;
  }
}

// Something of the target's side: as it was, or what the source has for it.
void TransferFaults::expectOldOrNew(const Contents& after, const Contents& before,
                                    const std::string& path, const std::string& what,
                                    const std::string& where) {
  const std::string source = GetParam().source;
  const std::string target = GetParam().target;
  const auto now = after.find(path);
  ASSERT_TRUE(now != after.end()) << where << ": lost " << path;
  if (now->second == what) return;
  ASSERT_TRUE(path.starts_with(target + "/")) << where << ": touched " << path;
  EXPECT_EQ(now->second, before.at(source + path.substr(target.size()))) << where << ": " << path;
}

// The target of the whole item, if there was one: it lives, or the new one is there with everything
// in it.
void TransferFaults::expectOldTarget(const Contents& after, const Contents& before,
                                     const std::string& where) {
  const std::string source = GetParam().source;
  const std::string target = GetParam().target;
  if (!before.contains(target) || before.at(target) == "directory") return;
  const std::string old = before.at(target);
  // It may stand aside under a name of its own, or under that of the source.
  for (const auto& [path, what] : after) {
    const bool aside = path == target || path == source || !inTheMaking(path).empty();
    if (aside && what == old) return;
  }
  for (const auto& [path, what] : before) {
    if (!Fault::isWithin(path, source) || isDescription(path) || what.starts_with("link")) continue;
    const auto copied = after.find(target + path.substr(source.size()));
    ASSERT_TRUE(copied != after.end()) << where << ": the old target is gone, no new " << path;
    EXPECT_EQ(copied->second, what) << where;
  }
}

// A text of a description stands in one of the files.
void TransferFaults::expectLines(const Contents& after, const std::string& where) {
  std::string all;
  for (const auto& [path, what] : after) {
    if (isDescription(path) || !inTheMaking(path).empty()) all += what;
  }
  EXPECT_NE(all.find("about b"), std::string::npos) << where;
  EXPECT_NE(all.find("orphan"), std::string::npos) << where;
}
