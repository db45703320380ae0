#include "commander/connect.h"

#include <gtest/gtest.h>

#include "archive/archive_chain.h"
#include "filecommands/archive_actions.h"
#include "filecommands/history_windows.h"
#include "panels/model/directory_tree.h"
#include "shell/internal_programs.h"
#include "ui/help_window.h"

namespace {

TEST(Connect, LeavesNoInterfaceEmpty) {
  ASSERT_FALSE(directoryTree().isConnected());
  ASSERT_FALSE(archiveActions().isConnected());
  ASSERT_FALSE(historyWindows().isConnected());
  ASSERT_FALSE(helpWindow().isConnected());
  connectModules();
  EXPECT_TRUE(directoryTree().isConnected());
  EXPECT_TRUE(archiveActions().isConnected());
  EXPECT_TRUE(historyWindows().isConnected());
  EXPECT_TRUE(helpWindow().isConnected());
  EXPECT_TRUE(internalPrograms().isConnected());
  EXPECT_TRUE(archiveOpener());
}

}  // namespace
