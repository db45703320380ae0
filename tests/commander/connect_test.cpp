#include "commander/connect.h"

#include <gtest/gtest.h>

#include <typeinfo>

#include "archive/archive_chain.h"
#include "filecommands/archive_actions.h"
#include "filecommands/history_windows.h"
#include "panels/model/directory_tree.h"
#include "shell/internal_programs.h"
#include "ui/help_window.h"

namespace {

// Whether an object of its own is connected: the base of an interface does nothing.
template <class Interface>
bool isFilled(Connection<Interface>& connection) {
  const Interface& connected = *connection.operator->();
  return connection.isConnected() && typeid(connected) != typeid(Interface);
}

TEST(Connect, LeavesNoInterfaceEmpty) {
  ASSERT_FALSE(isFilled(directoryTree()));
  ASSERT_FALSE(isFilled(archiveActions()));
  ASSERT_FALSE(isFilled(historyWindows()));
  ASSERT_FALSE(isFilled(helpWindow()));
  connectModules();
  EXPECT_TRUE(isFilled(directoryTree()));
  EXPECT_TRUE(isFilled(archiveActions()));
  EXPECT_TRUE(isFilled(historyWindows()));
  EXPECT_TRUE(isFilled(helpWindow()));
  EXPECT_TRUE(isFilled(internalPrograms()));
  EXPECT_TRUE(archiveOpener());
}

}  // namespace
