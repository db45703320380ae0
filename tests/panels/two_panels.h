#pragma once

#include <string>

#include "foundation/names.h"
#include "history/history_store.h"
#include "panel_screen.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_position.h"

// Two panels on directories of the test's own.
class TwoPanelsTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    commandHistory().clear();
    setActiveSide(0);
  }
  void TearDown() override {
    commandHistory().clear();
    archiveOpener() = nullptr;
    PanelScreenTest::TearDown();
  }

  // Reads both directories into the panels and opens their windows.
  void openPanels() {
    goToPath(left(), leftDir.wide());
    goToPath(right(), rightDir.wide());
    openWindows();
  }
  void cursorTo(const std::string& name) {
    selectName(panelPair().active(), decodeFileName(name.c_str()).data());
    ASSERT_EQ(currentName(panelPair().active()), name);
  }
  // The screen with a dialog that shows `text`, which is left with `end`.
  std::string dialogScreen(const std::string& text, const std::function<void()>& open,
                           Key::Code end = Key::Esc) {
    std::string picture;
    {
      Beside user([&] {
        // Complete once it waits for a key.
        if (waitToShow(text) && waitUntil([] { return console->events().isAwaited(); })) {
          picture = screenText();
        }
        queueKey(end);
      });
      open();
    }
    drainEvents();
    EXPECT_NE(picture, "") << "never shown: " << text;
    return picture;
  }

  // Makes "pack.zip" in the left directory an archive that holds inner.txt, and enters it.
  void enterArchive() {
    leftDir.write("pack.zip", "");
    archiveOpener() = [](const Westring& file, OpenArchive*) -> std::unique_ptr<OpenArchive> {
      if (bytes(lastComponent(file)) != "pack.zip") return nullptr;
      return std::make_unique<FakeArchive>(file, std::vector<std::string>{"inner.txt"}, nullptr);
    };
    ASSERT_TRUE(goToPath(left(), leftDir.wide("pack.zip")));
    ASSERT_NE(left().archive, nullptr);
    cursorTo("inner.txt");
  }

  TempDir leftDir, rightDir;
};
