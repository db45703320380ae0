// Every way to end the program at every place where it may stand: nothing half done is left.

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <thread>

#include "commander/program.h"
#include "console/console.h"
#include "console/input.h"
#include "console/key_codes.h"
#include "foundation/system.h"
#include "foundation/threads.h"
#include "foundation/utf8.h"
#include "language/temporary_names.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "support/wait_until.h"
#include "support/x_display.h"

#include <gtest/gtest.h>

namespace {

constexpr int NeverShown = 7, NeverStarted = 8;  // exit statuses of a test that went wrong
constexpr Key::Code AltA = Key::alt('a');

enum class Way { Terminate, Close, LoseDisplay, DestroyWindow };
constexpr const char* WayNames[] = {"Terminate", "Close", "LoseDisplay", "DestroyWindow"};

struct Ending {
  int status;
  const char* message;
};
constexpr Ending Endings[] = {{0, "^$"},
                              {0, "^$"},
                              {1, "^td: the connection to the X display is lost\n$"},
                              {1, "^td: the window was destroyed\n$"}};

// What is at its work when the end comes: a copy held in the middle of a file, or a typed command.
enum class Work { None, Copy, Move, Command };
enum class Target { Absent, Present };

struct Step {
  const char* text;  // waited for, after the keys
  std::vector<Key::Code> keys;
};

// The keys of a line that runs.
std::vector<Key::Code> typed(const char* line) {
  std::vector<Key::Code> keys(line, line + strlen(line));
  keys.push_back(Key::Enter);
  return keys;
}

struct Place {
  const char* name;
  std::vector<Step> way;  // there, from the panels
  std::vector<Key::Code>
      afterClose;  // what the user presses until the program asks whether to leave
  Work work = Work::None;
  Target target = Target::Absent;
};

// The close button is a key to whoever has the keyboard: it leaves a menu, ends a search, means
// nothing to a question, opens the tree over a copy dialog, and waits for the end of a copy.
const Place Places[] = {
    {"prompt", {}, {}},
    {"menu", {{"Commands    Options", {Key::F9}}, {"Brief-Wide", {Key::Enter}}}, {Key::F10}},
    {"quickSearch", {{"Search: a", {AltA}}}, {}},
    {"dialog", {{"Copy \"abc\" to", {Key::End, Key::F5}}}, {Key::Esc, Key::Esc, Key::F10}},
    {"exitQuestion", {{"Are you sure", {Key::F10}}}, {}},
    {"overwriteQuestion",
     {{"Copy \"abc\" to", {Key::End, Key::F5}}, {"Overwrite?", {Key::Enter}}},
     {Key::Esc, Key::F10},
     Work::None,
     Target::Present},
    {"command",
     {{"gone on", typed("echo $$>~/pid;printf 'g%s on' one;exec sleep 1000")}},
     {},
     Work::Command},
    {"copy", {{"Copy \"abc\" to", {Key::End, Key::F5}}, {nullptr, {Key::Enter}}}, {}, Work::Copy},
    {"move",
     {{"Move/Rename \"abc\" to", {Key::End, Key::F6}}, {nullptr, {Key::Enter}}},
     {},
     Work::Move},
};

void PrintTo(Way way, std::ostream* out) {
  *out << WayNames[static_cast<int>(way)];
}
void PrintTo(const Place& place, std::ostream* out) {
  *out << place.name;
}

void key(Key::Code code) {
  TEvent event;
  event.key = code;
  console->events().put(event);
}

bool shows(const char* text) {
  Westring screen;
  for (const Cell& cell : console->getCells(0, 0, console->columns(), console->rows())) {
    screen += cell.ch == 0 ? L' ' : cell.ch;
  }
  return strstr(toUtf8(screen).data(), text) != nullptr;
}

void waitFor(const char* text) {
  if (!waitUntil([text] { return console && shows(text); })) _exit(NeverShown);
}

// Holds the copy of a file at its first block, and lets no rename of an item do instead.
class Holder {
 public:
  Holder() { System::setPlaceHook(onCall, this); }
  ~Holder() { System::setHook(nullptr, nullptr); }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

  bool waitUntilHeld() {
    return waitUntil([this] { return held_.load(); });
  }
  void letGo() { letGo_ = true; }

 private:
  static int onCall(const System::Call& call, void* context) {
    auto* self = static_cast<Holder*>(context);
    if (strncmp(call.name, "rename", 6) == 0 && !strstr(call.path, ".td-")) return EXDEV;
    if (strcmp(call.name, "copyRange") != 0) return 0;
    self->held_ = true;
    while (!self->letGo_) sleepMs(1);
    return 0;
  }
  std::atomic<bool> held_{false}, letGo_{false};
};

class EndTableDeathTest : public testing::TestWithParam<std::tuple<Way, Place>> {
 protected:
  void SetUp() override {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // The process that ends starts anew, and works where the first one tells it.
    if (const char* known = getenv("TD_TEST_PLACE")) {
      root_ = known;
      return;
    }
    own_ = std::make_unique<TempDir>();
    root_ = own_->path();
    for (const char* directory : {"home", "tmp", "left", "right"}) own_->makeDir(directory);
    own_->write("left/abc", content());
    if (place().target == Target::Present) own_->write("right/abc", "old");
    setenv("TD_TEST_PLACE", root_.c_str(), 1);
    setenv("HOME", own_->path("home").c_str(), 1);
    setenv("TMP", own_->path("tmp").c_str(), 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("SHELL", "/bin/sh", 1);
  }
  void TearDown() override { unsetenv("TD_TEST_PLACE"); }

  static Way way() { return std::get<Way>(GetParam()); }
  static const Place& place() { return std::get<Place>(GetParam()); }
  static bool copies() { return place().work == Work::Copy || place().work == Work::Move; }
  static std::string content() { return std::string(1 << 20, 'x'); }

  // Brings td to the place on a server of its own and ends it. Doesn't return.
  [[noreturn]] void runToEnd() {
    XServer server;
    setenv("DISPLAY", server.name().c_str(), 1);
    Holder holder;
    Westring temporary;
    if (makeTemporaryDirectory(temporary) != 0) _exit(NeverStarted);
    std::thread program([this] {
      std::string left = root_ + "/left", right = root_ + "/right";
      char name[] = "td", l[] = "-l", r[] = "-r";
      char* arguments[] = {name, l, left.data(), r, right.data(), nullptr};
      _exit(runProgram(5, arguments));
    });
    waitFor("10Quit");
    for (const Step& step : place().way) {
      for (const Key::Code code : step.keys) key(code);
      if (step.text) waitFor(step.text);
    }
    if (copies() && !holder.waitUntilHeld()) _exit(NeverStarted);
    strike(server);
    holder.letGo();
    if (way() == Way::Close) leaveAsTheUserWould();
    program.join();
    abort();
  }

  static void strike(XServer& server) {
    switch (way()) {
      case Way::Terminate:
        kill(getpid(), SIGTERM);
        break;
      case Way::Close:
        // The queue's keys wait until a command has ended; the button doesn't.
        if (place().work == Work::Command) {
          server.closeWindow(console->windowId());
        } else {
          key(Key::F10);
        }
        return;
      case Way::LoseDisplay:
        server.kill();
        break;
      case Way::DestroyWindow:
        server.destroyWindow(console->windowId());
        break;
    }
    if (!waitUntil(programEnds)) _exit(NeverStarted);
  }

  static void leaveAsTheUserWould() {
    for (const Key::Code code : place().afterClose) key(code);
    waitFor("Are you sure");
    key(Key::Enter);
  }

  std::vector<std::string> namesIn(const char* directory) const {
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(root_ + "/" + directory)) {
      names.push_back(item.path().filename());
    }
    return names;
  }

  std::unique_ptr<TempDir> own_;
  std::string root_;
};

TEST_P(EndTableDeathTest, LeavesNothingHalfDone) {
  const Ending& ending = Endings[static_cast<int>(way())];
  EXPECT_EXIT(runToEnd(), testing::ExitedWithCode(ending.status), ending.message);

  EXPECT_EQ(namesIn("tmp"), std::vector<std::string>()) << "temporaries";
  // Only the close button waits for the end of what is being done.
  const bool done = way() == Way::Close && copies();
  const bool moved = done && place().work == Work::Move;
  const std::vector<std::string> one{"abc"}, none;
  EXPECT_EQ(namesIn("left"), moved ? none : one);
  if (!moved) {
    EXPECT_EQ(readFile(root_ + "/left/abc"), content());
  }
  EXPECT_EQ(namesIn("right"), done || place().target == Target::Present ? one : none);
  if (done) {
    EXPECT_EQ(readFile(root_ + "/right/abc"), content());
  }
  if (place().target == Target::Present) {
    EXPECT_EQ(readFile(root_ + "/right/abc"), "old");
  }
  if (place().work == Work::Command) {
    const pid_t command = atoi(readFile(root_ + "/home/pid").c_str());
    ASSERT_GT(command, 1);
    EXPECT_TRUE(waitUntil([command] { return kill(command, 0) != 0; })) << "the command lives on";
  }
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Way, Place>>& info) {
  return std::string(WayNames[static_cast<int>(std::get<Way>(info.param))]) + "_" +
         std::get<Place>(info.param).name;
}

INSTANTIATE_TEST_SUITE_P(Ends, EndTableDeathTest,
                         testing::Combine(testing::Values(Way::Terminate, Way::Close,
                                                          Way::LoseDisplay, Way::DestroyWindow),
                                          testing::ValuesIn(Places)),
                         nameOf);

}  // namespace
