#include "search/find_run.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <functional>

#include "foundation/break_state.h"
#include "search/find_walk.h"
#include "search/text_scanner.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace {

class FindRunTest : public testing::Test {
 protected:
  FindSettings settings(const wchar_t* files, const wchar_t* text = L"") {
    FindSettings result;
    result.files = files;
    result.text = text;
    result.starts = {directory.path()};
    return result;
  }
  // The paths found, below the directory, in the order of the list.
  std::vector<std::string> find(const FindSettings& wanted) {
    store.removeAll();
    FindRun run(wanted, store, [] {});
    EXPECT_TRUE(run.waitForEnd(WaitForever));
    state = run.state();
    return listed();
  }
  std::vector<std::string> listed() const {
    std::vector<std::string> result;
    for (int i = 0; i < store.count(); ++i) {
      const std::string path = bytePath(store.row(i).path());
      result.push_back(path.substr(std::min(path.size(), directory.path().size() + 1)));
    }
    return result;
  }
  FoundRow rowOf(const std::string& name) const {
    const std::vector<std::string> names = listed();
    return store.row(static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin()));
  }
  static std::vector<std::string> sorted(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    return names;
  }

  TempDir directory;
  FFEntryStore store;
  FindState state = FindState::Running;
};

using Names = std::vector<std::string>;

}  // namespace

TEST_F(FindRunTest, FilesAndDirectoriesAreFoundBreadthFirst) {
  directory.makeDir("a");
  directory.makeDir("a/x1");
  directory.write("a/x1/x2", "");
  directory.write("a/x3", "");
  directory.write("x4", "");
  directory.write("other", "");
  const Names names = find(settings(L"x*"));
  EXPECT_EQ(names.front(), "x4");
  EXPECT_EQ(names.back(), "a/x1/x2");
  EXPECT_EQ(sorted(names), (Names{"a/x1", "a/x1/x2", "a/x3", "x4"}));
  EXPECT_EQ(state, FindState::Complete);
}

TEST_F(FindRunTest, WithoutScanningOnlyTheStartIsLookedAt) {
  directory.makeDir("sub");
  directory.write("sub/f", "text");
  directory.write("f", "text");
  FindSettings wanted = settings(L"f", L"text");
  wanted.recurse = false;
  EXPECT_EQ(find(wanted), Names{"f"});
}

TEST_F(FindRunTest, HiddenNamesTakePartOnlyWhenTheyShow) {
  directory.write(".f", "");
  directory.makeDir(".d");
  directory.write(".d/f", "");
  EXPECT_EQ(sorted(find(settings(L"*f"))), (Names{".d/f", ".f"}));
  FindSettings wanted = settings(L"*f");
  wanted.hidden = false;
  EXPECT_EQ(find(wanted), Names{});
}

TEST_F(FindRunTest, LinksToDirectoriesAreListedAndNeverWalked) {
  directory.makeDir("sub");
  directory.write("sub/f", "");
  directory.link("..", "sub/up");
  directory.link("nowhere", "dangling");
  EXPECT_EQ(sorted(find(settings(L"*"))), (Names{"dangling", "sub", "sub/f", "sub/up"}));
  EXPECT_TRUE(rowOf("sub/up").item->isLink());
  EXPECT_TRUE(rowOf("sub/up").item->isDirectory());
}

TEST_F(FindRunTest, AFilterOfNamesNeverLooksAtWhatDoesNotMatch) {
  for (int i = 0; i < 50; ++i) directory.write("f" + std::to_string(i), "");
  const FaultHook hook;
  EXPECT_EQ(find(settings(L"f7")), Names{"f7"});
  EXPECT_EQ(hook.calls("statAt"), 1);
  EXPECT_EQ(find(settings(L"f7 & %size>5")), Names{});
  EXPECT_EQ(hook.calls("statAt"), 2);
}

TEST_F(FindRunTest, TextsAreFoundWithTheirPositions) {
  directory.write("a", "no");
  directory.write("b", "a text");
  directory.write("c", "TEXT");
  directory.makeDir("text");
  EXPECT_EQ(sorted(find(settings(L"*", L"text"))), (Names{"b", "c"}));
  EXPECT_EQ(rowOf("b").item->total, 2);
  EXPECT_EQ(find(settings(L"b"))[0], "b");
  EXPECT_EQ(store.row(0).item->total, FoundMark::NoText);
}

TEST_F(FindRunTest, ResultsComeInTheOrderOfTheWalkWithAnyNumberOfScanners) {
  for (int i = 0; i < 1000; ++i) {
    directory.write("f" + std::to_string(i), std::string(i % 7 * 1000, '.') + "needle");
  }
  const Names inOrder = find(settings(L"*"));
  for (const int scanners : {1, 2, 8}) {
    FindSettings wanted = settings(L"*", L"needle");
    wanted.scanners = scanners;
    EXPECT_EQ(find(wanted), inOrder) << scanners;
  }
}

TEST_F(FindRunTest, PipesAndDevicesAreNeitherWaitedForNorListed) {
  ASSERT_EQ(mkfifo(directory.path("pipe").c_str(), 0600), 0);
  directory.link("/dev/zero", "zero");
  directory.link("pipe", "link");
  directory.write("f", "text");
  directory.link("f", "good");
  EXPECT_EQ(sorted(find(settings(L"*", L"text"))), (Names{"f", "good"}));
}

TEST_F(FindRunTest, AFileThatCannotBeOpenedIsListedAsSuch) {
  directory.write("f", "text");
  System::setHook(
      [](const char* call, const char* path, void*) {
        return strcmp(call, "open") == 0 && strstr(path, "/f") ? EACCES : 0;
      },
      nullptr);
  EXPECT_EQ(find(settings(L"f", L"text")), Names{"f"});
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(store.row(0).item->total, FoundMark::NotOpened);
}

TEST_F(FindRunTest, ADirectoryThatCannotBeReadIsPassedOver) {
  directory.makeDir("closed");
  directory.write("closed/f", "");
  directory.write("f", "");
  System::setHook(
      [](const char* call, const char* path, void*) {
        return strcmp(call, "open") == 0 && strstr(path, "closed") ? EACCES : 0;
      },
      nullptr);
  EXPECT_EQ(find(settings(L"f")), Names{"f"});
  System::setHook(nullptr, nullptr);
}

TEST_F(FindRunTest, AStoppedSearchKeepsWhatItHasFound) {
  for (int i = 0; i < 100; ++i) directory.write("f" + std::to_string(i), "");
  struct Gate {
    EventSem reached;
    EventSem open;
  } gate;
  System::setHook(
      [](const char* call, const char* path, void* context) {
        if (strcmp(call, "statAt") != 0 || strcmp(path, "f50") != 0) return 0;
        static_cast<Gate*>(context)->reached.post();
        static_cast<Gate*>(context)->open.wait(WaitForever);
        return 0;
      },
      &gate);
  {
    FindRun run(settings(L"f*"), store, [] {});
    gate.reached.wait(WaitForever);
    const int before = store.count();
    run.stop();
    gate.open.post();
    EXPECT_TRUE(run.waitForEnd(WaitForever));
    EXPECT_EQ(run.state(), FindState::Stopped);
    EXPECT_EQ(store.count(), before);
  }
  System::setHook(nullptr, nullptr);
}

// A file whose reading was stopped is listed, and so is what others had found by then.
TEST_F(FindRunTest, StoppedWhileFilesAreReadItListsWhatIsKnown) {
  directory.write("first", "no such thing");
  directory.write("second", "a text");
  static EventSem opened, open, read;
  System::setHook(
      [](const char* call, const char* path, void*) {
        if (strcmp(call, "readAt") == 0) read.post();
        if (strcmp(call, "open") != 0 || !strstr(path, "/first")) return 0;
        opened.post();
        open.wait(WaitForever);
        return 0;
      },
      nullptr);
  FindSettings wanted = settings(L"first | second", L"text");
  wanted.scanners = 2;
  {
    FindRun run(wanted, store, [] {});
    opened.wait(WaitForever);
    read.wait(WaitForever);
    run.stop();
    open.post();
    EXPECT_TRUE(run.waitForEnd(WaitForever));
    EXPECT_EQ(run.state(), FindState::Stopped);
  }
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(sorted(listed()), (Names{"first", "second"}));
  EXPECT_EQ(rowOf("first").item->total, FoundMark::Stopped);
  EXPECT_EQ(rowOf("second").item->total, 2);
}

TEST_F(FindRunTest, BreakEndsTheReadingOfAFile) {
  directory.write("f", std::string(4 * TextScanner::BlockBytes, '.'));
  const BreakScope armed;
  static std::atomic<int> reads;
  reads = 0;
  System::setHook(
      [](const char* call, const char*, void*) {
        if (strcmp(call, "readAt") != 0) return 0;
        ++reads;
        requestBreak();
        return 0;
      },
      nullptr);
  EXPECT_EQ(find(settings(L"f", L"text")), Names{"f"});
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(state, FindState::Stopped);
  EXPECT_EQ(reads, 1);
}

TEST_F(FindRunTest, ASearchThatHangsIsLeftBehindAndAddsNothing) {
  directory.write("f", "");
  static EventSem reached, open, through;  // longer than the search
  System::setHook(
      [](const char* call, const char* path, void*) {
        if (strcmp(call, "statAt") != 0 || strcmp(path, "f") != 0) return 0;
        reached.post();
        open.wait(WaitForever);
        through.post();
        return 0;
      },
      nullptr);
  {
    FindRun run(settings(L"f"), store, [] {});
    reached.wait(WaitForever);
  }
  open.post();
  through.wait(WaitForever);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(store.count(), 0);
}

TEST_F(FindRunTest, TooManyMatchesStopIt) {
  for (int i = 0; i < 100; ++i) directory.write("f" + std::to_string(i), "");
  FFEntryStore small(2000);
  FindRun run(settings(L"*"), small, [] {});
  EXPECT_TRUE(run.waitForEnd(WaitForever));
  EXPECT_EQ(run.state(), FindState::Full);
  EXPECT_GT(small.count(), 0);
  EXPECT_LT(small.count(), 100);
}

TEST_F(FindRunTest, TheEndIsTold) {
  static std::atomic<int> told;
  told = 0;
  directory.write("f", "");
  {
    FindRun run(settings(L"f"), store, [] { ++told; });
    EXPECT_TRUE(run.waitForEnd(WaitForever));
  }
  EXPECT_GE(told, 1);
}

TEST_F(FindRunTest, KernelFileSystemsOnTheWayAreLeaves) {
  FindSettings wanted = settings(L"self");
  wanted.starts = {"/proc"};
  wanted.recurse = false;
  EXPECT_EQ(find(wanted).size(), 1u) << "a start may lie in one";
  struct Seen : FindVisitor {
    bool enter(const std::string& path) override {
      below |= path.starts_with("/proc/");
      besides |= path.starts_with("/usr/");
      return std::count(path.begin(), path.end(), '/') <= 2;
    }
    bool found(const FindName&) override { return true; }
    bool below = false;
    bool besides = false;
  } seen;
  FindWalk(seen, {}).run({"/"});
  EXPECT_TRUE(seen.besides);
  EXPECT_FALSE(seen.below);
}

TEST_F(FindRunTest, PathsThatAreTooLongArePassedOver) {
  std::string path = directory.path();
  const std::string name(250, 'd');
  const int top = open(path.c_str(), O_PATH | O_CLOEXEC);
  int at = dup(top);
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(mkdirat(at, name.c_str(), 0755), 0);
    const int next = openat(at, name.c_str(), O_PATH | O_CLOEXEC);
    close(at);
    at = next;
  }
  close(at);
  close(top);
  const Names names = find(settings(L"d*"));
  EXPECT_EQ(state, FindState::Complete);
  EXPECT_GT(names.size(), 10u);
  EXPECT_LT(names.size(), 20u);
}

namespace {

// Calls `act` at the call `number` of the searching threads.
class ActAtCall {
 public:
  ActAtCall(int number, std::function<void()> act) : number_(number), act_(std::move(act)) {
    System::setHook(onCall, this);
  }
  ~ActAtCall() { System::setHook(nullptr, nullptr); }
  ActAtCall(const ActAtCall&) = delete;
  ActAtCall& operator=(const ActAtCall&) = delete;
  bool acted() const { return calls_ >= number_; }

 private:
  static int onCall(const char*, const char*, void* context) {
    auto* self = static_cast<ActAtCall*>(context);
    if (++self->calls_ == self->number_) self->act_();
    return 0;
  }
  const int number_;
  const std::function<void()> act_;
  std::atomic<int> calls_{0};
};

}  // namespace

// Whatever another program does to what isn't searched yet, or just is, the search goes on, and
// what nobody touches is found.
TEST_F(FindRunTest, TheTreeMayChangeAtEachCall) {
  namespace fs = std::filesystem;
  const fs::path top = directory.path();
  const std::function<void()> changes[] = {[&] { fs::remove_all(top / "b"); },
                                           [&] { fs::rename(top / "b", top / "c"); },
                                           [&] { fs::rename(top / "b/f", top / "b/g"); },
                                           [&] { fs::resize_file(top / "b/f", 0); },
                                           [&] {
                                             fs::remove_all(top / "b");
                                             fs::create_symlink(top, top / "b");
                                           },
                                           [&] {
                                             fs::remove(top / "b/f");
                                             ASSERT_EQ(mkfifo((top / "b/f").c_str(), 0600), 0);
                                           },
                                           [&] { fs::create_directories(top / "b/new/f"); }};
  for (const std::function<void()>& change : changes) {
    bool acted = true;
    for (int call = 1; acted; ++call) {
      for (const fs::directory_entry& old : fs::directory_iterator(top)) fs::remove_all(old);
      directory.makeDir("a");
      directory.write("a/f", "some text");
      directory.makeDir("b");
      directory.write("b/f", "some text");
      const ActAtCall hook(call, change);
      const Names names = find(settings(L"f", L"text"));
      acted = hook.acted();
      EXPECT_EQ(state, FindState::Complete);
      EXPECT_EQ(std::count(names.begin(), names.end(), "a/f"), 1) << "call " << call;
      EXPECT_LE(names.size(), 3U);
    }
  }
}
