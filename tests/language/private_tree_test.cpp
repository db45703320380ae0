#include "language/private_tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include "foundation/system.h"
#include "support/as_user.h"
#include "support/deep_tree.h"
#include "support/fault_hook.h"
#include "support/mounts.h"
#include "support/temp_dir.h"

namespace {

class PrivateTree : public testing::Test {
 protected:
  int remove(const char* name) {
    const Descriptor parent(System::open(dir.path().c_str(), O_RDONLY | O_DIRECTORY));
    return removePrivateTree(parent.get(), name);
  }

  TempDir dir;
};

TEST_F(PrivateTree, GoesWithEverythingInItHoweverDeep) {
  makeDeepTree(dir.path("tree"), 100, std::string(100, 'n'));
  dir.link("nowhere", "tree/dangling");
  remove("tree");
  EXPECT_FALSE(dir.exists("tree"));
}

TEST_F(PrivateTree, LinksGoAndWhatTheyLeadToStays) {
  for (const char* name : {"tree", "outside"}) dir.makeDir(name);
  dir.write("outside/precious", "x");
  dir.link("../outside", "tree/link");
  dir.link("outside", "link");
  remove("tree");
  remove("link");
  EXPECT_EQ(dir.names(), std::vector<std::string>{"outside"});
  EXPECT_TRUE(dir.exists("outside/precious"));
}

TEST_F(PrivateTree, ModesAreNoObstacle) {
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] {
              for (const char* name : {"tree", "tree/closed"}) dir.makeDir(name);
              dir.write("tree/closed/file", "x");
              dir.chmod("tree/closed", 0500);
              dir.chmod("tree", 0500);
              remove("tree");
              EXPECT_FALSE(dir.exists("tree"));
            }),
            0);
}

TEST_F(PrivateTree, AFailureIsGivenBack) {
  dir.makeDir("tree");
  dir.makeDir("tree/sub");
  dir.write("tree/sub/file", "x");
  {
    const FaultHook fault("openAt", EMFILE);
    EXPECT_EQ(remove("tree"), EMFILE);
  }
  {
    Fault fault{1, EIO};
    System::setPlaceHook(
        [](const System::Call& call, void* context) {
          const bool unlinks = std::string(call.name) == "unlinkAt";
          return unlinks ? Fault::onCall(call, context) : 0;
        },
        &fault);
    EXPECT_EQ(remove("tree"), EIO);
    System::setHook(nullptr, nullptr);
  }
  EXPECT_TRUE(dir.exists("tree/sub/file"));
  EXPECT_EQ(remove("tree"), 0);
  EXPECT_EQ(remove("tree"), ENOENT);
}

TEST_F(PrivateTree, WhatBelongsToAnotherUserStays) {
  if (!isRoot()) GTEST_SKIP() << "only root can be another user to somebody";
  dir.makeDir("tree");
  dir.write("tree/file", "x");
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] { EXPECT_EQ(remove("tree"), EPERM); }), 0);
  EXPECT_TRUE(dir.exists("tree/file"));
}

TEST_F(PrivateTree, AMountInItStaysWithWhatItHolds) {
  for (const char* name : {"tree", "tree/mount"}) dir.makeDir(name);
  dir.write("tree/mount/precious", "x");
  dir.write("tree/file", "x");
  const InjectedMount mount(dir.path("tree/mount"));
  remove("tree");
  EXPECT_TRUE(dir.exists("tree/mount/precious"));
  EXPECT_FALSE(dir.exists("tree/file"));
}

}  // namespace
