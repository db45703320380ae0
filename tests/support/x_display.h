#pragma once

#include <sys/types.h>

#include <string>

// An X server without a screen. Ends with the object, and with the process whatever way that ends.
class XServer {
 public:
  explicit XServer(const std::string& screen = "1280x1024x24");
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  const std::string& name() const { return name_; }  // ":7"
  pid_t pid() const { return pid_; }
  void kill();
  void destroyWindow(unsigned long window) const;  // as another program would
  void closeWindow(unsigned long window) const;    // asks for it, as a window manager's button does

 private:
  pid_t pid_ = -1;
  std::string name_;
};

// The display of this test process: the one that TD_TEST_DISPLAY names, else a server of its own
// that is started at the first use. DISPLAY is set to it.
namespace XDisplay {
const std::string& name();
// A server that no other process uses, for tests that need the keyboard. Must come before name()
// when TD_TEST_DISPLAY is set.
const std::string& ownName();
}  // namespace XDisplay
