#pragma once

#include <string>

#include "foundation/system.h"

// The private file that tells which control sequences the emulator didn't understand. Lines end in
// CR LF; none is added to a file of 1 MiB. Where the file is a link or somebody else's nothing is
// done, in silence, and so when anything fails.
class TerminalLog {
 public:
  static constexpr const char* Path = "/tmp/TD-ProcessCSI.log";
  static constexpr off_t MostBytes = 1 << 20;

  explicit TerminalLog(const char* path = Path) : path_(path) {}

  // Makes the file, if it isn't there: its presence tells that the emulator has run. Once; later
  // calls do nothing.
  void open();
  void add(const std::string& line);

 private:
  const char* path_;
  bool tried_ = false;
  Descriptor file_;
};
