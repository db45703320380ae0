#include <thread>

#include "archive_actions/archive_command_test.h"
#include "archive_actions/compress_command.h"
#include "archive_actions/extract_command.h"
#include "support/fault_hook.h"

// Each system call of an action on an archive fails in turn, by the real tools. Afterwards every
// byte is in the archive or where it was to go, nothing else has changed, and the program goes on.

namespace {

using Contents = std::map<std::string, std::string>;

enum class Action { CopyOut, MoveOut, MoveInto };

struct Scenario {
  const char* name;
  Action action;
  const char* archive;
  const char* pack;    // into the directory above, from the one that is packed
  const char* unpack;  // in a directory beside that of the archive

  friend void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }
};

constexpr char Zip[] = "zip -qr ../a.zip .", Unzip[] = "unzip -qo ../a.zip";
constexpr char Tar[] = "tar cf ../a.tar -- *", Untar[] = "tar xf ../a.tar";
const Scenario Scenarios[] = {{"CopyOutOfAZip", Action::CopyOut, "a.zip", Zip, Unzip},
                              {"CopyOutOfATar", Action::CopyOut, "a.tar", Tar, Untar},
                              {"MoveOutOfAZip", Action::MoveOut, "a.zip", Zip, Unzip},
                              {"MoveOutOfATar", Action::MoveOut, "a.tar", Tar, Untar},
                              {"MoveIntoAZip", Action::MoveInto, "a.zip", Zip, Unzip},
                              {"MoveIntoATar", Action::MoveInto, "a.tar", Tar, Untar}};

// A test takes every so many calls.
constexpr int Parts = 2;

bool isTemporary(const std::string& path) {
  return path.find("TD#") != std::string::npos || path.find(".td-") != std::string::npos;
}

// Answers whatever is asked as soon as the program waits for it, and notes it.
class Answers {
 public:
  Answers(std::function<std::string()> screen, std::function<void(Key::Code)> press)
      : user_([this, screen = std::move(screen), press = std::move(press)] {
          while (!ended_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            if (!console->events().isAwaited()) continue;
            const std::string text = screen();
            seen_ += text;
            press(keyFor(text));
          }
        }) {}
  std::string end() {
    ended_ = true;
    user_.join();
    return seen_;
  }

 private:
  static Key::Code keyFor(const std::string& text) {
    if (text.find("F10-Tree") != std::string::npos) return Key::Enter;
    if (text.find("Overwrite?") != std::string::npos) return Key::Enter;
    return text.find("Skip") != std::string::npos ? Key::Code('s') : Key::Code(Key::Esc);
  }

  std::atomic<bool> ended_{false};
  std::string seen_;
  std::thread user_;
};

// The program's terminal is no file, and what it reads from there depends on the moment.
int onCall(const System::Call& call, void* context) {
  if (*call.path == 0 && isatty(call.directory) != 0) return 0;
  return Fault::onCall(call, context);
}

class ArchiveFaults : public ArchiveCommandTest,
                      public testing::WithParamInterface<std::tuple<Scenario, int>> {
 protected:
  static const Scenario& scenario() { return std::get<0>(GetParam()); }
  static bool movesInto() { return scenario().action == Action::MoveInto; }

  void SetUp() override;
  // Everything as it was before the action, the left panel in what it works on.
  void build();
  // Tags stay with a name, also from one round to the next.
  void tagAll(const std::vector<const char*>& wanted) {
    for (const char* name : wanted) {
      if (!isTagged(name)) tag(name);
    }
  }
  // The archive's members, by the tool.
  Contents membersNow();
  void act(Fault& fault);
  void loop(Fault::Reach reach, int error);

  void expectNothingLost(const std::string& where);
  void expectNothingForeign(const std::string& where);
  void expectToldTemporaries(const std::string& where);
  void expectGoingOn(const std::string& where);

  Contents packed_;  // what the archive holds at first
  Contents items_;   // what the action is about, by its paths in the archive
  std::string archive_;
  std::string asked_;
};

void ArchiveFaults::SetUp() {
  ArchiveCommandTest::SetUp();
  dir.write("in/one.txt", "one");
  dir.makeDir("in/sub");
  dir.makeDir("in/sub/deep");
  dir.write("in/sub/two", std::string(70000, '2'));
  dir.write("in/sub/deep/three", "three");
  dir.write("in/stays", "stays");
  pack(scenario().pack);
  archive_ = dir.read(scenario().archive);
  packed_ = contents(dir.path("in"));
  items_ = packed_;
  items_.erase("stays");
  if (movesInto()) {
    items_ = {{"new.txt", "file new"},
              {"more", "directory"},
              {"more/two", "file more"},
              {"stays", "file a newer one"}};
  }
}

void ArchiveFaults::build() {
  left().archive.reset();
  right().archive.reset();
  left().path = dir.wide("left");
  right().path = dir.wide("right");
  std::filesystem::current_path(dir.path());
  ASSERT_TRUE(shell(".", "rm -rf left right tmp; mkdir left right tmp"));
  if (movesInto()) {
    dir.write(std::string("right/") + scenario().archive, archive_);
    dir.makeDir("left/more");
    dir.write("left/new.txt", "new");
    dir.write("left/more/two", "more");
    dir.write("left/stays", "a newer one");
    show("new.txt");
    ASSERT_TRUE(goToPath(right(), dir.wide(std::string("right/") + scenario().archive)));
    tagAll({"new.txt", "more", "stays"});
  } else {
    dir.write(std::string("left/") + scenario().archive, archive_);
    dir.write("right/one.txt", "mine");
    dir.write("right/other", "other");
    open(scenario().archive);
    tagAll({"one.txt", "sub"});
  }
}

void ArchiveFaults::act(Fault& fault) {
  Answers answers([this] { return screenText(); }, [this](Key::Code key) { queueKey(key); });
  System::setPlaceHook(onCall, &fault);
  if (movesInto()) {
    compressIntoOther(left(), TransferKind::Move);
  } else {
    extractFromArchive(
        left(), scenario().action == Action::MoveOut ? TransferKind::Move : TransferKind::Copy);
  }
  System::setHook(nullptr, nullptr);
  asked_ = answers.end();
  drainEvents();
}

Contents ArchiveFaults::membersNow() {
  const std::string place = movesInto() ? "right" : "left";
  shell(".", "rm -rf a.zip a.tar out; mkdir out; cp " + place + "/" + scenario().archive + " .");
  shell("out", scenario().unpack);
  return contents(dir.path("out"));
}

// Whatever is in neither place is lost.
void ArchiveFaults::expectNothingLost(const std::string& where) {
  const Contents members = membersNow();
  const Contents outside = contents(dir.path(movesInto() ? "left" : "right"));
  for (const auto& [path, what] : packed_) {
    const auto inside = members.find(path);
    const bool kept = inside != members.end() && inside->second == what;
    const bool aboutIt = items_.contains(path);
    if (kept) continue;
    ASSERT_TRUE(aboutIt && scenario().action != Action::CopyOut) << where << ": lost " << path;
    const auto& wanted = movesInto() ? items_.at(path) : what;
    if (movesInto() && inside != members.end() && inside->second == wanted) continue;
    ASSERT_FALSE(movesInto()) << where << ": lost " << path;
    ASSERT_TRUE(outside.contains(path)) << where << ": lost " << path;
    ASSERT_EQ(outside.at(path), wanted) << where << ": " << path;
  }
  if (!movesInto()) return;
  for (const auto& [path, what] : items_) {
    const bool here = outside.contains(path) && outside.at(path) == what;
    const bool there = members.contains(path) && members.at(path) == what;
    ASSERT_TRUE(here || there) << where << ": lost " << path;
  }
}

void ArchiveFaults::expectNothingForeign(const std::string& where) {
  const std::string archive = scenario().archive;
  for (const auto& [path, what] : contents(dir.path(movesInto() ? "left" : "right"))) {
    if (isTemporary(path)) continue;
    const bool ours = items_.contains(path) && items_.at(path) == what;
    const bool old = !movesInto() && ((path == "one.txt" && what == "file mine") ||
                                      (path == "other" && what == "file other"));
    EXPECT_TRUE(ours || old) << where << ": " << path << " is " << what.substr(0, 40);
  }
  for (const auto& [path, what] : contents(dir.path(movesInto() ? "right" : "left"))) {
    EXPECT_TRUE(path == archive || isTemporary(path)) << where << ": " << path;
  }
  if (!movesInto()) {
    EXPECT_EQ(dir.read("right/other"), "other") << where;
    EXPECT_TRUE(dir.exists("right/one.txt")) << where;
  }
  if (scenario().action == Action::CopyOut) {
    EXPECT_EQ(dir.read("left/" + archive), archive_) << where;
  }
}

void ArchiveFaults::expectToldTemporaries(const std::string& where) {
  for (const char* place : {"left", "right", "tmp"}) {
    for (const std::string& name : names(place)) {
      if (!isTemporary(name)) continue;
      EXPECT_NE(asked_.find(name), std::string::npos) << where << ": left over " << name;
    }
  }
}

void ArchiveFaults::expectGoingOn(const std::string& where) {
  panelRefresh();
  EXPECT_GT(left().count(), 0) << where;
  EXPECT_GT(right().count(), 0) << where;
}

void ArchiveFaults::loop(Fault::Reach reach, int error) {
  int hit = 0;
  for (int number = 1 + std::get<1>(GetParam());; number += Parts) {
    build();
    if (HasFailure()) return;
    Fault fault{number, error, reach};
    act(fault);
    if (fault.call.empty()) break;
    ++hit;
    const std::string where = "call " + std::to_string(number) + " (" + fault.call + " " +
                              (fault.refusals.empty() ? "" : fault.refusals[0].path) + ")";
    expectNothingLost(where);
    expectNothingForeign(where);
    expectToldTemporaries(where);
    expectGoingOn(where);
    if (HasFailure()) return;
  }
  printf("%d calls\n", hit);
  EXPECT_GT(hit, 10);
}

TEST_P(ArchiveFaults, ACallThatFailsLosesNothing) {
  loop(Fault::Reach::Once, EIO);
}

TEST_P(ArchiveFaults, ACallThatFailsFromThenOnLosesNothing) {
  loop(Fault::Reach::SameName, EACCES);
}

INSTANTIATE_TEST_SUITE_P(, ArchiveFaults,
                         testing::Combine(testing::ValuesIn(Scenarios), testing::Range(0, Parts)),
                         [](const testing::TestParamInfo<std::tuple<Scenario, int>>& test) {
                           return std::string(std::get<0>(test.param).name) + "Part" +
                                  std::to_string(std::get<1>(test.param) + 1);
                         });

// ---- a gzip is to be made where one stands, and the question is answered with no

class NewArchiveFaults : public ArchiveCommandTest {
 protected:
  void SetUp() override {
    ArchiveCommandTest::SetUp();
    dir.write("left/file", "to be packed");
    dir.write("in/other", "another");
    pack("gzip -c other > ../right/there.gz");
    before_ = dir.read("right/there.gz");
    show("file");
    std::vector<Key::Code> gzip(7, Key::Down);
    gzip.front() = Key::Tab;
    gzip.push_back(Key::Enter);
    play({{"Compress Files", gzip, "", dir.path("right/first")}}, [&] { compressFiles(left()); });
    ASSERT_TRUE(dir.exists("right/first.gz"));
  }
  void make(Fault& fault) {
    bool named = false;
    Answers answers(
        [this] { return screenText(); },
        [&](Key::Code key) {
          const bool names = !named && shows("Compress Files");
          if (names) queueText(dir.path("right/there.gz"));
          named |= names;
          queueKey(names ? Key::Code(Key::Enter) : shows("Overwrite?") ? Key::Esc : key);
        });
    System::setPlaceHook(onCall, &fault);
    compressFiles(left());
    System::setHook(nullptr, nullptr);
    answers.end();
    drainEvents();
  }

  std::string before_;
};

TEST_F(NewArchiveFaults, TheOldOneStays) {
  for (const Fault::Reach reach : {Fault::Reach::Once, Fault::Reach::SameName}) {
    int hit = 0;
    for (int number = 1;; ++number) {
      Fault fault{number, EIO, reach};
      make(fault);
      if (fault.call.empty()) break;
      ++hit;
      const std::string where = "call " + std::to_string(number) + " (" + fault.call + ")";
      ASSERT_EQ(dir.read("right/there.gz"), before_) << where;
      ASSERT_EQ(dir.read("left/file"), "to be packed") << where;
      ASSERT_EQ(names("right"), (std::vector<std::string>{"first.gz", "there.gz"})) << where;
    }
    EXPECT_GT(hit, 5);
  }
}

}  // namespace
