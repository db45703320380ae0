#include "foundation/directory_walk.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <functional>
#include <map>

#include "support/as_user.h"
#include "support/deep_tree.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "support/mounts.h"
#include "support/temp_dir.h"

namespace {

using Lines = std::vector<std::string>;

// Writes down what it is told, with paths below the test's directory, and does what a test adds.
class Recorder : public DirectoryVisitor {
 public:
  explicit Recorder(const TempDir& dir) : dir_(dir) {}

  WalkStep enter(const WalkedDirectory& directory) override {
    depths.push_back(directory.depth);
    mostDepth = std::max(mostDepth, directory.depth);
    return note("enter", directory.place.path, onEnter);
  }
  WalkStep member(const WalkedMember& member) override {
    if (onMember) onMember(member);
    return note("member", member.place.path, stepAtMember);
  }
  WalkStep leave(const WalkedDirectory& directory) override {
    return note("leave", directory.place.path, onLeave);
  }
  void abandon(const WalkedDirectory& directory) override {
    note("abandon", directory.place.path, {});
  }
  WalkRetry failed(const WalkError& error) override {
    faults.push_back(error.fault);
    errors.push_back(error.error);
    note("failed", error.place.path, {});
    return onFailed ? onFailed(error) : WalkRetry::Skip;
  }
  bool interrupted() override {
    ++looks;
    return looks == interruptAtLook;
  }

  // The lines of one kind, without the kind.
  Lines of(const std::string& kind) const {
    Lines result;
    for (const std::string& line : lines) {
      if (line.starts_with(kind + " ")) result.push_back(line.substr(kind.size() + 1));
    }
    return result;
  }

  using Steps = std::function<WalkStep(const std::string& path)>;
  Steps onEnter;
  Steps stepAtMember;
  Steps onLeave;
  std::function<void(const WalkedMember&)> onMember;
  std::function<WalkRetry(const WalkError&)> onFailed;
  int interruptAtLook = 0;

  Lines lines;
  std::vector<WalkFault> faults;
  std::vector<int> errors;
  std::vector<size_t> depths;
  size_t mostDepth = 0;
  int looks = 0;

 private:
  WalkStep note(const std::string& kind, const char* path, const Steps& step) {
    const std::string below = std::string(path).substr(dir_.path().size() + 1);
    lines.push_back(kind + " " + below);
    return step ? step(below) : WalkStep::GoOn;
  }

  const TempDir& dir_;
};

class DirectoryWalkTest : public testing::Test {
 protected:
  WalkEnd walk(const std::string& name, const WalkOptions& options = {}) {
    const std::string path = dir.path(name);
    return DirectoryWalk(seen, options).run(placeOf(path.c_str()));
  }
  static WalkOptions following() { return {.links = FollowLinks::Yes}; }

  // Deletes what is too deep for the test's own clean-up.
  void removeDeep(const std::string& top) {
    class Remover : public DirectoryVisitor {
      WalkStep member(const WalkedMember& member) override {
        if (!member.isDirectory) unlinkat(member.place.directory, member.place.name, 0);
        return WalkStep::GoOn;
      }
      WalkStep leave(const WalkedDirectory& directory) override {
        unlinkat(directory.place.directory, directory.place.name, AT_REMOVEDIR);
        return WalkStep::GoOn;
      }
    };
    Remover remover;
    const std::string path = dir.path(top);
    EXPECT_EQ(DirectoryWalk(remover).run(placeOf(path.c_str())), WalkEnd::Whole);
    EXPECT_FALSE(dir.exists(top));
  }
  static size_t openDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(all), end(all)));
  }

  // Thousands of names are made; in memory, where the system has such a place, that is quick.
  static std::string quickPlace() {
    constexpr char Memory[] = "/dev/shm";
    return access(Memory, W_OK) == 0 ? Memory : std::filesystem::temp_directory_path().string();
  }

  TempDir dir{quickPlace()};
  Recorder seen{dir};
};

Lines sorted(Lines lines) {
  std::sort(lines.begin(), lines.end());
  return lines;
}

}  // namespace

TEST_F(DirectoryWalkTest, EachDirectoryIsEnteredListedAndLeft) {
  for (const char* name : {"t", "t/one", "t/one/two"}) dir.makeDir(name);
  dir.write("t/one/two/file", "x");
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  EXPECT_EQ(seen.lines,
            (Lines{"enter t", "member t/one", "enter t/one", "member t/one/two", "enter t/one/two",
                   "member t/one/two/file", "leave t/one/two", "leave t/one", "leave t"}));
  EXPECT_EQ(seen.depths, (std::vector<size_t>{0, 1, 2}));
}

TEST_F(DirectoryWalkTest, MembersComeInTheOrderOfTheDirectory) {
  dir.makeDir("t");
  for (int i = 0; i < 50; ++i) dir.write("t/f" + std::to_string(i), "x");
  Lines listed;
  for (const auto& item : std::filesystem::directory_iterator(dir.path("t"))) {
    listed.push_back("t/" + item.path().filename().string());
  }
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  EXPECT_EQ(seen.of("member"), listed);
}

TEST_F(DirectoryWalkTest, PlacesLeadToTheFilesAndTypesAreTold) {
  for (const char* name : {"t", "t/d"}) dir.makeDir(name);
  dir.write("t/f", "content");
  dir.write("t/d/g", "g");
  dir.link("f", "t/l");
  std::map<std::string, int> types;
  seen.onMember = [&](const WalkedMember& member) {
    types[member.place.name] = member.type;
    struct stat info {};
    EXPECT_EQ(fstatat(member.place.directory, member.place.name, &info, AT_SYMLINK_NOFOLLOW), 0);
    EXPECT_EQ(idOf(info), idOf(statusOf(member.place.path)));
    EXPECT_EQ(member.depth, member.place.name == std::string("g") ? 1U : 0U);
  };
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  EXPECT_EQ(types, (std::map<std::string, int>{
                       {"d", DT_DIR}, {"f", DT_REG}, {"g", DT_REG}, {"l", DT_LNK}}));
}

TEST_F(DirectoryWalkTest, TheRootIsWalkedWithOneSlash) {
  Lines paths;
  class Top : public DirectoryVisitor {
   public:
    explicit Top(Lines& paths) : paths_(paths) {}
    WalkStep member(const WalkedMember& member) override {
      paths_.push_back(member.place.path);
      return WalkStep::Skip;
    }

   private:
    Lines& paths_;
  };
  Top top(paths);
  EXPECT_EQ(DirectoryWalk(top).run(placeOf("/")), WalkEnd::Whole);
  EXPECT_TRUE(std::find(paths.begin(), paths.end(), "/proc") != paths.end());
}

TEST_F(DirectoryWalkTest, WhatIsSkippedIsNeitherEnteredNorLeft) {
  for (const char* name : {"t", "t/at_member", "t/at_member/x", "t/at_enter", "t/at_enter/x"}) {
    dir.makeDir(name);
  }
  seen.stepAtMember = [](const std::string& path) {
    return path == "t/at_member" ? WalkStep::Skip : WalkStep::GoOn;
  };
  seen.onEnter = [](const std::string& path) {
    return path == "t/at_enter" ? WalkStep::Skip : WalkStep::GoOn;
  };
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  EXPECT_EQ(seen.of("enter"), (Lines{"t", "t/at_enter"}));
  EXPECT_EQ(seen.of("leave"), Lines{"t"});
  EXPECT_EQ(sorted(seen.of("member")), (Lines{"t/at_enter", "t/at_member"}));
}

TEST_F(DirectoryWalkTest, AStopAbandonsWhatWasEnteredInnermostFirst) {
  for (const char* name : {"t", "t/a", "t/a/b"}) dir.makeDir(name);
  dir.write("t/a/b/file", "x");
  const Lines all{"t/a/b", "t/a", "t"};
  seen.stepAtMember = [](const std::string& path) {
    return path == "t/a/b/file" ? WalkStep::Stop : WalkStep::GoOn;
  };
  EXPECT_EQ(walk("t"), WalkEnd::Stopped);
  EXPECT_EQ(seen.of("abandon"), all);
  EXPECT_TRUE(seen.of("leave").empty());

  seen.lines.clear();
  seen.stepAtMember = {};
  seen.onEnter = [](const std::string& path) {
    return path == "t/a/b" ? WalkStep::Stop : WalkStep::GoOn;
  };
  EXPECT_EQ(walk("t"), WalkEnd::Stopped);
  EXPECT_EQ(seen.of("abandon"), (Lines{"t/a", "t"}));

  seen.lines.clear();
  seen.onEnter = {};
  seen.onLeave = [](const std::string& path) {
    return path == "t/a/b" ? WalkStep::Stop : WalkStep::GoOn;
  };
  EXPECT_EQ(walk("t"), WalkEnd::Stopped);
  EXPECT_EQ(seen.of("abandon"), (Lines{"t/a", "t"}));
}

TEST_F(DirectoryWalkTest, TheUserIsAskedBeforeEachMember) {
  for (const char* name : {"t", "t/a", "t/a/b"}) dir.makeDir(name);
  seen.interruptAtLook = 2;
  EXPECT_EQ(walk("t"), WalkEnd::Stopped);
  EXPECT_EQ(seen.of("member"), Lines{"t/a"});
  EXPECT_EQ(seen.of("abandon"), (Lines{"t/a", "t"}));
}

TEST_F(DirectoryWalkTest, ATreeMayBeDeeperThanPathsAndDescriptorsReach) {
  constexpr int Levels = 1000;
  makeDeepTree(dir.path("deep"), Levels, std::string(100, 'n'));
  EXPECT_EQ(runInChild([&] {
              const rlimit few{90, 90};
              setrlimit(RLIMIT_NOFILE, &few);
              EXPECT_EQ(walk("deep"), WalkEnd::Whole);
              EXPECT_EQ(seen.mostDepth, static_cast<size_t>(Levels));
              EXPECT_EQ(seen.of("leave").size(), static_cast<size_t>(Levels + 1));
              EXPECT_EQ(seen.of("member").size(), static_cast<size_t>(2 * Levels));
              EXPECT_TRUE(seen.faults.empty());
            }),
            0);
  removeDeep("deep");
}

TEST_F(DirectoryWalkTest, AfterTheWayUpTheOtherMembersAreVisited) {
  // Two long branches at every level, so that closed directories are needed again and again.
  std::string path = "t";
  dir.makeDir(path);
  for (int level = 0; level < 8; ++level) {
    for (const char* branch : {"/a", "/b"}) {
      dir.makeDir(path + branch);
      dir.write(path + branch + std::string("/file"), "x");
    }
    path += "/b";
  }
  EXPECT_EQ(walk("t", {.mostOpen = 2}), WalkEnd::Whole);
  EXPECT_TRUE(seen.faults.empty());
  EXPECT_EQ(seen.of("member").size(), contents(dir.path("t")).size());
  EXPECT_EQ(seen.of("leave").size(), 17U);
}

TEST_F(DirectoryWalkTest, NoMoreDescriptorsAreOpenThanWereAllowed) {
  makeDeepTree(dir.path("deep"), 40, "d");
  const size_t before = openDescriptors();
  size_t most = 0;
  seen.onMember = [&](const WalkedMember&) { most = std::max(most, openDescriptors()); };
  EXPECT_EQ(walk("deep", {.mostOpen = 5}), WalkEnd::Whole);
  EXPECT_EQ(most, before + 5);
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(DirectoryWalkTest, ADirectorySwappedForALinkIsNotEntered) {
  for (const char* name : {"t", "t/sub", "outside"}) dir.makeDir(name);
  dir.write("outside/precious", "x");
  seen.onMember = [&](const WalkedMember& member) {
    if (member.place.name != std::string("sub")) return;
    std::filesystem::rename(dir.path("t/sub"), dir.path("moved"));
    dir.link("../outside", "t/sub");
  };
  for (const WalkOptions& options : {WalkOptions{}, following()}) {
    EXPECT_EQ(walk("t", options), WalkEnd::Whole);
    EXPECT_EQ(seen.of("enter"), Lines{"t"});
    EXPECT_EQ(seen.faults, std::vector{WalkFault::Opening});
    EXPECT_EQ(seen.of("failed"), Lines{"t/sub"});
    std::filesystem::remove(dir.path("t/sub"));
    std::filesystem::rename(dir.path("moved"), dir.path("t/sub"));
    seen.lines.clear();
    seen.faults.clear();
  }
}

TEST_F(DirectoryWalkTest, WhatWasMovedAwayDuringTheWalkIsNotFollowedUp) {
  for (const char* name : {"t", "t/a", "t/a/b", "t/a/b/c", "t/a/b/c/d", "other"}) {
    dir.makeDir(name);
  }
  dir.write("other/precious", "x");
  seen.onEnter = [&](const std::string& path) {
    if (path == "t/a/b/c/d") std::filesystem::rename(dir.path("t/a/b"), dir.path("other/b"));
    return WalkStep::GoOn;
  };
  EXPECT_EQ(walk("t", {.mostOpen = 2}), WalkEnd::Lost);
  EXPECT_EQ(seen.faults, std::vector{WalkFault::WayUp});
  EXPECT_EQ(seen.errors, std::vector{ESTALE});
  EXPECT_EQ(seen.of("failed"), Lines{"t/a"});
  EXPECT_EQ(seen.of("leave"), (Lines{"t/a/b/c/d", "t/a/b/c"}));
  EXPECT_EQ(seen.of("abandon"), (Lines{"t/a/b", "t/a", "t"}));
}

TEST_F(DirectoryWalkTest, TheWayUpMayBeTriedAgain) {
  for (const char* name : {"t", "t/a", "t/a/b", "t/a/b/c", "other"}) dir.makeDir(name);
  seen.onEnter = [&](const std::string& path) {
    if (path == "t/a/b/c") std::filesystem::rename(dir.path("t/a/b"), dir.path("other/b"));
    return WalkStep::GoOn;
  };
  seen.onFailed = [&](const WalkError&) {
    std::filesystem::rename(dir.path("other/b"), dir.path("t/a/b"));
    return WalkRetry::Again;
  };
  EXPECT_EQ(walk("t", {.mostOpen = 2}), WalkEnd::Whole);
  EXPECT_EQ(seen.faults, std::vector{WalkFault::WayUp});
  EXPECT_EQ(seen.of("leave"), (Lines{"t/a/b/c", "t/a/b", "t/a", "t"}));
}

TEST_F(DirectoryWalkTest, UnreadableDirectoriesAreToldAndTheOthersWalked) {
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] {
              for (const char* name : {"t", "t/a", "t/b", "t/c"}) {
                dir.makeDir(name);
                dir.write(name + std::string("/file"), "x");
              }
              dir.chmod("t/b", 0000);
              EXPECT_EQ(walk("t"), WalkEnd::Whole);
              EXPECT_EQ(seen.of("failed"), Lines{"t/b"});
              EXPECT_EQ(seen.errors, std::vector{EACCES});
              EXPECT_EQ(sorted(seen.of("leave")), (Lines{"t", "t/a", "t/c"}));
              seen.lines.clear();
              seen.onFailed = [&](const WalkError& error) {
                ::chmod(error.place.path, 0755);
                return WalkRetry::Again;
              };
              EXPECT_EQ(walk("t"), WalkEnd::Whole);
              EXPECT_EQ(sorted(seen.of("leave")), (Lines{"t", "t/a", "t/b", "t/c"}));
              dir.chmod("t/b", 0000);
              seen.lines.clear();
              seen.onFailed = [](const WalkError&) { return WalkRetry::Stop; };
              EXPECT_EQ(walk("t"), WalkEnd::Stopped);
              EXPECT_EQ(seen.of("abandon"), Lines{"t"});
            }),
            0);
}

TEST_F(DirectoryWalkTest, ADirectoryThatMayOnlyBeEnteredIsFoundAgain) {
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] {
              for (const char* name : {"t", "t/a", "t/a/b", "t/a/b/c"}) dir.makeDir(name);
              seen.onEnter = [&](const std::string& path) {
                if (path == "t/a/b/c") {
                  for (const char* name : {"t", "t/a", "t/a/b"}) dir.chmod(name, 0300);
                }
                return WalkStep::GoOn;
              };
              EXPECT_EQ(walk("t", {.mostOpen = 1}), WalkEnd::Whole);
              EXPECT_TRUE(seen.faults.empty());
              for (const char* name : {"t", "t/a", "t/a/b"}) dir.chmod(name, 0755);
            }),
            0);
}

TEST_F(DirectoryWalkTest, ItemsThatAreNoDirectoriesAreToldOnce) {
  dir.write("file", "x");
  dir.makeDir("d");
  dir.link("d", "link");
  for (const char* name : {"file", "missing", "link"}) {
    EXPECT_EQ(walk(name), WalkEnd::Whole);
  }
  EXPECT_EQ(seen.of("failed"), (Lines{"file", "missing", "link"}));
  EXPECT_EQ(seen.errors[0], ENOTDIR);
  EXPECT_EQ(seen.errors[1], ENOENT);
  EXPECT_TRUE(seen.of("enter").empty());
  EXPECT_EQ(walk("link", following()), WalkEnd::Whole);
  EXPECT_EQ(seen.of("enter"), Lines{"link"});
}

TEST_F(DirectoryWalkTest, AnErrorInTheMiddleOfAListingKeepsWhatWasReadIfWanted) {
  dir.makeDir("t");
  constexpr size_t Names = 3000;
  for (size_t i = 0; i < Names; ++i) dir.write("t/" + std::to_string(i), "");
  int calls = 0;
  const auto secondFails = [](const char* call, const char*, void* context) {
    return std::string(call) == "readNames" && ++*static_cast<int*>(context) == 2 ? EIO : 0;
  };
  System::setHook(secondFails, &calls);
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  EXPECT_EQ(seen.faults, std::vector{WalkFault::Listing});
  EXPECT_EQ(seen.errors, std::vector{EIO});
  EXPECT_TRUE(seen.of("enter").empty());
  calls = 0;
  seen.onFailed = [](const WalkError&) { return WalkRetry::Anyway; };
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  System::setHook(nullptr, nullptr);
  EXPECT_GT(seen.of("member").size(), 0U);
  EXPECT_LT(seen.of("member").size(), Names);
  EXPECT_EQ(seen.of("leave"), Lines{"t"});
}

TEST_F(DirectoryWalkTest, LinksAreFollowedWhereWantedAndNotOtherwise) {
  for (const char* name : {"t", "t/d", "outside", "outside/in"}) dir.makeDir(name);
  dir.write("outside/in/file", "x");
  dir.link("../../outside", "t/d/link");
  dir.link("nowhere", "t/d/dangling");
  dir.link("../outside/in/file", "t/tofile");
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  EXPECT_EQ(seen.of("enter"), (Lines{"t", "t/d"}));
  seen.lines.clear();
  EXPECT_EQ(walk("t", following()), WalkEnd::Whole);
  EXPECT_EQ(seen.of("enter"), (Lines{"t", "t/d", "t/d/link", "t/d/link/in"}));
  EXPECT_TRUE(seen.faults.empty());
}

TEST_F(DirectoryWalkTest, AFileSystemThatTellsNoTypesIsAskedForThem) {
  for (const char* name : {"t", "t/d", "outside"}) dir.makeDir(name);
  dir.link("../outside", "t/link");
  dir.write("t/d/file", "x");
  System::setFoundHook(
      [](const char* call, void* found, ssize_t bytes, void*) {
        if (std::string(call) != "readNames") return;
        for (char* at = static_cast<char*>(found); bytes > 0;) {
          auto* item = reinterpret_cast<dirent64*>(at);
          item->d_type = DT_UNKNOWN;
          at += item->d_reclen;
          bytes -= item->d_reclen;
        }
      },
      nullptr);
  seen.onMember = [](const WalkedMember& member) {
    EXPECT_EQ(member.type, IFTODT(statusOf(member.place.path).st_mode)) << member.place.path;
  };
  EXPECT_EQ(walk("t", following()), WalkEnd::Whole);
  System::setFoundHook(nullptr, nullptr);
  EXPECT_EQ(sorted(seen.of("enter")), (Lines{"t", "t/d", "t/link"}));
}

TEST_F(DirectoryWalkTest, ACircleOfLinksIsToldAndNotEntered) {
  for (const char* name : {"t", "t/a", "t/a/b"}) dir.makeDir(name);
  dir.link("../..", "t/a/b/up");
  dir.link(".", "t/a/self");
  EXPECT_EQ(walk("t", following()), WalkEnd::Whole);
  EXPECT_EQ(sorted(seen.of("failed")), (Lines{"t/a/b/up", "t/a/self"}));
  EXPECT_EQ(seen.errors, (std::vector{ELOOP, ELOOP}));
  EXPECT_EQ(seen.faults, (std::vector{WalkFault::Circle, WalkFault::Circle}));
  EXPECT_EQ(seen.of("leave"), (Lines{"t/a/b", "t/a", "t"}));
}

TEST_F(DirectoryWalkTest, TheWayBackFromLinksIsByTheirNames) {
  // Each directory leads to the next by a link, so that ".." never leads back.
  constexpr int Links = 12;
  for (int i = 0; i <= Links; ++i) {
    const std::string name = "d" + std::to_string(i);
    dir.makeDir(name);
    dir.write(name + "/file", "x");
    if (i < Links) dir.link("../d" + std::to_string(i + 1), name + "/next");
  }
  WalkOptions options = following();
  options.mostOpen = 3;
  EXPECT_EQ(walk("d0", options), WalkEnd::Whole);
  EXPECT_TRUE(seen.faults.empty());
  EXPECT_EQ(seen.of("leave").size(), Links + 1U);
  EXPECT_EQ(seen.of("member").size(), 2U * Links + 1U);
}

TEST_F(DirectoryWalkTest, ALinkThatLeadsElsewhereAfterwardsIsNoWayBack) {
  for (const char* name : {"t", "real", "real/x", "real/x/y", "real/x/y/z", "other"}) {
    dir.makeDir(name);
  }
  dir.link("../real", "t/link");
  dir.link("../../../other", "real/x/y/link");
  dir.makeDir("other/in");
  seen.onEnter = [&](const std::string& path) {
    if (path.ends_with("/link/in")) {
      std::filesystem::remove(dir.path("t/link"));
      dir.link("../other", "t/link");
    }
    return WalkStep::GoOn;
  };
  WalkOptions options = following();
  options.mostOpen = 1;
  EXPECT_EQ(walk("t", options), WalkEnd::Lost);
  EXPECT_EQ(seen.faults, std::vector{WalkFault::WayUp});
  for (const std::string& path : seen.of("leave")) EXPECT_TRUE(path.starts_with("t/link")) << path;
}

TEST_F(DirectoryWalkTest, MountPointsArePassedWhereWanted) {
  for (const char* name : {"t", "t/mount", "t/mount/in", "t/plain"}) dir.makeDir(name);
  const InjectedMount mount(dir.path("t/mount"));
  EXPECT_EQ(walk("t", {.mounts = MountPoints::Pass}), WalkEnd::Whole);
  EXPECT_EQ(seen.of("failed"), Lines{"t/mount"});
  EXPECT_EQ(seen.faults, std::vector{WalkFault::MountPoint});
  EXPECT_EQ(seen.errors, std::vector{EBUSY});
  EXPECT_EQ(sorted(seen.of("leave")), (Lines{"t", "t/plain"}));
  seen.lines.clear();
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  EXPECT_EQ(seen.of("leave").size(), 4U);
}

TEST_F(DirectoryWalkTest, AMountPointAsTheItemItselfIsWalkedUnlessItIsToBePassed) {
  for (const char* name : {"mount", "mount/in"}) dir.makeDir(name);
  const InjectedMount mount(dir.path("mount"));
  EXPECT_EQ(walk("mount", {.mounts = MountPoints::PassWithItem}), WalkEnd::Whole);
  EXPECT_EQ(seen.faults, std::vector{WalkFault::MountPoint});
  EXPECT_TRUE(seen.of("enter").empty());
  EXPECT_EQ(walk("mount/in", {.mounts = MountPoints::PassWithItem}), WalkEnd::Whole);
  EXPECT_EQ(seen.faults.size(), 2U) << "below a directory of another mount";
}

TEST_F(DirectoryWalkTest, BindMountsCountAlthoughTheyAreTheSameFileSystem) {
  for (const char* name : {"t", "t/mount", "real", "real/in"}) dir.makeDir(name);
  EXPECT_EQ(runInChild([&] {
              std::unique_ptr<InjectedMount> injected;
              if (!bindMount(dir.path("real"), dir.path("t/mount"))) {
                injected = std::make_unique<InjectedMount>(dir.path("t/mount"));
              }
              EXPECT_EQ(walk("t", {.mounts = MountPoints::Pass}), WalkEnd::Whole);
              EXPECT_EQ(seen.of("failed"), Lines{"t/mount"});
              EXPECT_EQ(seen.of("leave"), Lines{"t"});
              EXPECT_TRUE(isMountPoint(placeOf(dir.path("t/mount").c_str())));
              EXPECT_FALSE(isMountPoint(placeOf(dir.path("t").c_str())));
            }),
            0);
}

TEST_F(DirectoryWalkTest, ACircleOfBindMountsIsNotEntered) {
  for (const char* name : {"t", "t/a", "t/a/b"}) dir.makeDir(name);
  EXPECT_EQ(runInChild([&] {
              const bool mounted = bindMount(dir.path("t"), dir.path("t/a/b"));
              EXPECT_EQ(walk("t"), WalkEnd::Whole);
              EXPECT_EQ(seen.faults.size(), mounted ? 1U : 0U);
              for (const WalkFault fault : seen.faults) EXPECT_EQ(fault, WalkFault::Circle);
              EXPECT_EQ(seen.of("leave").back(), "t");
            }),
            0);
}

TEST_F(DirectoryWalkTest, WithoutMountNumbersTheDeviceDecides) {
  for (const char* name : {"t", "t/plain"}) dir.makeDir(name);
  dir.link("/proc", "t/link");
  const FaultHook unknown("statx", ENOSYS);
  WalkOptions options = following();
  options.mounts = MountPoints::Pass;
  EXPECT_EQ(walk("t", options), WalkEnd::Whole);
  EXPECT_EQ(sorted(seen.of("enter")), (Lines{"t", "t/plain"}));
  EXPECT_EQ(seen.of("failed"), Lines{"t/link"});
}

TEST_F(DirectoryWalkTest, KernelFileSystemsArePassedWhereWanted) {
  class Visitor : public DirectoryVisitor {
   public:
    WalkStep enter(const WalkedDirectory& directory) override {
      entered.push_back(directory.place.path);
      return directory.place.path == std::string("/") ? WalkStep::GoOn : WalkStep::Skip;
    }
    WalkStep member(const WalkedMember& member) override {
      return member.place.path == std::string("/proc") ? WalkStep::GoOn : WalkStep::Skip;
    }
    WalkRetry failed(const WalkError& error) override {
      faults.push_back(error.fault);
      return WalkRetry::Skip;
    }
    Lines entered;
    std::vector<WalkFault> faults;
  };
  Visitor passing;
  const WalkOptions pass{.kernelFileSystems = KernelFileSystems::Pass};
  EXPECT_EQ(DirectoryWalk(passing, pass).run(placeOf("/")), WalkEnd::Whole);
  EXPECT_EQ(passing.entered, Lines{"/"});
  EXPECT_EQ(passing.faults, std::vector{WalkFault::KernelFileSystem});
  Visitor entering;
  EXPECT_EQ(DirectoryWalk(entering).run(placeOf("/")), WalkEnd::Whole);
  EXPECT_EQ(entering.entered, (Lines{"/", "/proc"}));
  Visitor inside;
  EXPECT_EQ(DirectoryWalk(inside, pass).run(placeOf("/proc")), WalkEnd::Whole);
  EXPECT_EQ(inside.entered, Lines{"/proc"});
}

TEST_F(DirectoryWalkTest, AHugeDirectoryIsListedWithLooksAtTheUser) {
  constexpr int Names = 50000;
  dir.makeDir("t");
  for (int i = 0; i < Names; ++i) {
    ASSERT_EQ(mknod(dir.path("t/" + std::to_string(i)).c_str(), S_IFREG | 0600, 0), 0);
  }
  EXPECT_EQ(walk("t"), WalkEnd::Whole);
  EXPECT_EQ(seen.of("member").size(), static_cast<size_t>(Names));
  EXPECT_GT(seen.looks, Names + 10) << "also while it is listed";
  seen.lines.clear();
  seen.looks = 0;
  seen.interruptAtLook = 3;
  EXPECT_EQ(walk("t"), WalkEnd::Stopped);
  EXPECT_TRUE(seen.lines.empty()) << "the listing was left at once";
}

TEST_F(DirectoryWalkTest, EveryCallMayFailAndIsToldAndNothingStaysOpen) {
  for (const char* name : {"t", "t/a", "t/a/b", "t/a/b/c"}) dir.makeDir(name);
  dir.write("t/a/b/c/file", "x");
  const size_t before = openDescriptors();
  for (int number = 1;; ++number) {
    Recorder recorder(dir);
    bool hit = false;
    WalkEnd end;
    {
      const FaultHook fault(number, EIO);
      const std::string path = dir.path("t");
      end = DirectoryWalk(recorder, {.mostOpen = 1}).run(placeOf(path.c_str()));
      hit = fault.hit();
      if (hit && fault.hitCall() != "close") {
        EXPECT_EQ(recorder.errors, std::vector{EIO}) << fault.hitCall() << " " << number;
      }
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(recorder.of("enter").size(),
              recorder.of("leave").size() + recorder.of("abandon").size());
    EXPECT_EQ(end == WalkEnd::Lost, !recorder.of("abandon").empty());
    if (!hit) break;
    ASSERT_LT(number, 1000);
  }
}
