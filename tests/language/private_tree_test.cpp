#include "language/private_tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include "foundation/system.h"
#include "support/as_user.h"
#include "support/deep_tree.h"
#include "support/mounts.h"
#include "support/temp_dir.h"

namespace {

class PrivateTree : public testing::Test {
 protected:
  void remove(const char* name) {
    const Descriptor parent(System::open(dir.path().c_str(), O_RDONLY | O_DIRECTORY));
    removePrivateTree(parent.get(), name);
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

TEST_F(PrivateTree, WhatBelongsToAnotherUserStays) {
  if (!isRoot()) GTEST_SKIP() << "only root can be another user to somebody";
  dir.makeDir("tree");
  dir.write("tree/file", "x");
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] { remove("tree"); }), 0);
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
