#include "search/compare_contents.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>

#include <atomic>
#include <cstring>
#include <optional>

#include "foundation/status.h"
#include "foundation/threads.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

constexpr int64_t BlockBytes = 262144;

class Watch : public ContentWatch {
 public:
  bool goOn(size_t, int64_t done, int64_t) override {
    ++asked;
    last = done;
    return asked < stopAt;
  }
  int asked = 0;
  int stopAt = INT_MAX;
  int64_t last = 0;
};

// Two directories with files of the same names.
struct Pair {
  TempDir left;
  TempDir right;
  Watch watch;
  std::vector<ContentVerdict> verdicts;

  bool compare(const std::vector<std::string>& names) {
    const Descriptor a(open(left.path().c_str(), O_PATH | O_CLOEXEC));
    const Descriptor b(open(right.path().c_str(), O_PATH | O_CLOEXEC));
    return compareContents(a.get(), b.get(), names, verdicts, watch);
  }
  Contents of(const std::string& a, const std::string& b) {
    left.write("f", a);
    right.write("f", b);
    EXPECT_TRUE(compare({"f"}));
    return verdicts.at(0).contents;
  }
};

// The calling thread's file ends once the other thread has one, which is far longer.
class LongHelp : public ContentWatch {
 public:
  LongHelp(Pair& pair, const std::vector<std::string>& names) : pair_(pair), names_(names) {
    for (const std::string& name : names) {
      for (const TempDir* directory : {&pair.left, &pair.right}) {
        directory->write(name, "");
        EXPECT_EQ(truncate(directory->path(name).c_str(), Long), 0);
      }
    }
  }
  bool goOn(size_t name, int64_t done, int64_t) override {
    if (!own_) own_ = name;
    if (name != *own_) return false;
    if (done == 0) return true;
    while (!helped_) sleepMs(1);
    for (const TempDir* directory : {&pair_.left, &pair_.right})
      EXPECT_EQ(truncate(directory->path(names_[name]).c_str(), done), 0);
    return true;
  }
  static int look(const char* call, const char*, void* self) {
    LongHelp& watch = *static_cast<LongHelp*>(self);
    if (strcmp(call, "read") == 0 && !pthread_equal(pthread_self(), watch.caller_))
      watch.helped_ = true;
    return 0;
  }

 private:
  static constexpr off_t Long = off_t{1} << 34;
  Pair& pair_;
  const std::vector<std::string>& names_;
  const pthread_t caller_ = pthread_self();
  std::optional<size_t> own_;
  std::atomic<bool> helped_{false};
};

}  // namespace

TEST(CompareContents, FilesAreEqualOrDifferent) {
  Pair pair;
  EXPECT_EQ(pair.of("", ""), Contents::Equal);
  EXPECT_EQ(pair.of("a", "a"), Contents::Equal);
  EXPECT_EQ(pair.of("a", "b"), Contents::Different);
  EXPECT_EQ(pair.of("a", ""), Contents::Different);
  EXPECT_EQ(pair.of("a", "ab"), Contents::Different);
}

TEST(CompareContents, ADifferenceIsSeenAtEveryEdgeOfABlock) {
  Pair pair;
  for (const int64_t at : {int64_t{0}, BlockBytes - 1, BlockBytes, 2 * BlockBytes - 1}) {
    std::string content(static_cast<size_t>(2 * BlockBytes), 'x');
    const std::string same = content;
    EXPECT_EQ(pair.of(content, same), Contents::Equal);
    content[static_cast<size_t>(at)] = 'y';
    EXPECT_EQ(pair.of(content, same), Contents::Different) << at;
  }
}

TEST(CompareContents, AFileThatGrewBehindItsLookedUpSizeIsDifferent) {
  Pair pair;
  pair.left.write("f", std::string(static_cast<size_t>(BlockBytes), 'x'));
  pair.right.write("f", std::string(static_cast<size_t>(BlockBytes), 'x'));
  class Grow : public ContentWatch {
   public:
    explicit Grow(std::string path) : path_(std::move(path)) {}
    bool goOn(size_t, int64_t done, int64_t) override {
      if (done > 0) std::ofstream(path_, std::ios::app) << "more";
      return true;
    }

   private:
    std::string path_;
  } grow(pair.right.path("f"));
  const Descriptor a(open(pair.left.path().c_str(), O_PATH | O_CLOEXEC));
  const Descriptor b(open(pair.right.path().c_str(), O_PATH | O_CLOEXEC));
  EXPECT_TRUE(compareContents(a.get(), b.get(), {"f"}, pair.verdicts, grow));
  EXPECT_EQ(pair.verdicts.at(0).contents, Contents::Different);
}

TEST(CompareContents, AFileIsEqualToItselfUnread) {
  Pair pair;
  pair.left.write("f", "text");
  ASSERT_EQ(link(pair.left.path("f").c_str(), pair.right.path("f").c_str()), 0);
  const FaultHook hook;
  EXPECT_TRUE(pair.compare({"f"}));
  EXPECT_EQ(pair.verdicts.at(0).contents, Contents::Equal);
  EXPECT_EQ(hook.calls("openAt"), 0);
}

TEST(CompareContents, WhatIsNoFileIsNeverOpened) {
  Pair pair;
  for (const TempDir* side : {&pair.left, &pair.right}) {
    ASSERT_EQ(mkfifo(side->path("pipe").c_str(), 0600), 0);
    side->link("/dev/null", "null");
  }
  ASSERT_EQ(mkfifo(pair.left.path("mixed").c_str(), 0600), 0);
  pair.right.write("mixed", "");
  pair.left.link("/dev/null", "devices");
  pair.right.link("/dev/zero", "devices");
  EXPECT_TRUE(pair.compare({"pipe", "null", "mixed", "devices"}));
  EXPECT_EQ(pair.verdicts[0].contents, Contents::Equal);
  EXPECT_EQ(pair.verdicts[1].contents, Contents::Equal);
  EXPECT_EQ(pair.verdicts[2].contents, Contents::Different);
  EXPECT_EQ(pair.verdicts[3].contents, Contents::Different);
}

TEST(CompareContents, EveryFailingCallIsAnErrorAndNeverEquality) {
  Pair pair;
  pair.left.write("f", "text");
  pair.right.write("f", "text");
  int calls = 0;
  {
    const FaultHook hook;
    EXPECT_TRUE(pair.compare({"f"}));
    calls = hook.calls();
  }
  ASSERT_GE(calls, 8);
  for (int number = 1; number <= calls; ++number) {
    const FaultHook hook(number, EIO);
    EXPECT_TRUE(pair.compare({"f"}));
    if (hook.hitCall() == "close") continue;
    EXPECT_EQ(pair.verdicts.at(0).contents, Contents::Failed) << hook.hitCall();
    EXPECT_EQ(pair.verdicts.at(0).error, EIO);
  }
}

TEST(CompareContents, TheFirstFailureInOrderEndsIt) {
  Pair pair;
  std::vector<std::string> names;
  for (int i = 0; i < 200; ++i) {
    names.push_back(std::to_string(i));
    pair.left.write(names.back(), "same");
    if (i != 100 && i != 150) pair.right.write(names.back(), "same");
  }
  EXPECT_TRUE(pair.compare(names));
  for (size_t i = 0; i < 100; ++i) ASSERT_EQ(pair.verdicts[i].contents, Contents::Equal) << i;
  EXPECT_EQ(pair.verdicts[100].contents, Contents::Failed);
  EXPECT_EQ(pair.verdicts[100].error, ENOENT);
  EXPECT_FALSE(pair.verdicts[100].failedLeft);
}

TEST(CompareContents, TheWatchStopsItAtAFileAndAtABlock) {
  Pair pair;
  pair.left.write("f", std::string(static_cast<size_t>(3 * BlockBytes), 'x'));
  pair.right.write("f", std::string(static_cast<size_t>(3 * BlockBytes), 'x'));
  pair.watch.stopAt = 3;
  EXPECT_FALSE(pair.compare({"f"}));
  EXPECT_EQ(pair.watch.asked, 3);
  EXPECT_EQ(pair.watch.last, 2 * BlockBytes);
  EXPECT_EQ(pair.verdicts.at(0).contents, Contents::Unread);
}

TEST(CompareContents, TheLastFileIsStoppedWhicheverThreadHasIt) {
  Pair pair;
  const std::vector<std::string> names{"a", "b"};
  LongHelp watch(pair, names);
  const Descriptor a(open(pair.left.path().c_str(), O_PATH | O_CLOEXEC));
  const Descriptor b(open(pair.right.path().c_str(), O_PATH | O_CLOEXEC));
  System::setHook(LongHelp::look, &watch);
  EXPECT_FALSE(compareContents(a.get(), b.get(), names, pair.verdicts, watch));
  System::setHook(nullptr, nullptr);
}
