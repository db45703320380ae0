#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "commander/help_probe.h"
#include "commander/key_commands.h"
#include "commander/main_loop.h"
#include "foundation/data_paths.h"
#include "panels/two_panels.h"

using ShiftState::Alt, ShiftState::Ctrl, ShiftState::Shift;

// Two panels on directories of the test's own, and a main loop that gets its keys one by one. No
// connection is made at the start.
class MainLoopTest : public TwoPanelsTest {
 protected:
  void SetUp() override {
    TwoPanelsTest::SetUp();
    setenv("HOME", homeDir.path().c_str(), 1);
    setProgramPath(L"/usr/bin/td");
    setConfigurationFile(L"");
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
    const HelpProbe help([&](HelpTopic) {
      picture = screenText();
      loop.leaving = true;
    });
    queueKey(Key::F1);
    loop.leaving = false;
    runMainLoop(loop);
    return picture;
  }

  TempDir homeDir;
  MainLoop loop;
};
