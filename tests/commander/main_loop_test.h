#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "commander/command_seams.h"
#include "commander/key_commands.h"
#include "commander/main_loop.h"
#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_position.h"
#include "panels/panel_screen.h"

// Two panels on directories of the test's own, and a main loop that gets its keys one by one. No
// seam is connected at the start.
class MainLoopTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    commandSeams() = CommandSeams{};
    commandHistory().clear();
    setActiveSide(0);
    setenv("HOME", homeDir.path().c_str(), 1);
    setProgramPath(L"/usr/bin/td");
    setConfigurationFile(L"");
  }
  void TearDown() override {
    commandSeams() = CommandSeams{};
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

  void press(Key::Code key, int state = 0) {
    loop.shiftState = state;
    dispatchKey(loop, key);
  }
  void type(const std::string& text) {
    const Westring wide = fromUtf8(text.c_str());
    for (const wchar_t* p = wide.data(); *p != 0; ++p) {
      press(*p);
    }
  }
  std::string line() const { return bytes(loop.line.text()); }

  // Runs the real loop over queued keys and gives the screen as it stands when they are used up and
  // the next one is waited for.
  std::string screenAfter(std::initializer_list<Key::Code> keys) {
    for (Key::Code key : keys) queueKey(key);
    return screenAfterQueued();
  }
  std::string screenAfterQueued() {
    std::string picture;
    commandSeams().help = [&](HelpTopic) {
      picture = screenText();
      loop.leaving = true;
    };
    queueKey(Key::F1);
    loop.leaving = false;
    runMainLoop(loop);
    commandSeams().help = nullptr;
    return picture;
  }

  // The screen with a dialog that shows `text`; the dialog is left with `end`.
  std::string dialogScreen(const std::string& text, const std::function<void()>& open,
                           Key::Code end = Key::Esc) {
    std::string picture;
    {
      Beside user([&] {
        if (waitToShow(text)) picture = screenText();
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

  TempDir leftDir, rightDir, homeDir;
  MainLoop loop;
};
