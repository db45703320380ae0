#include "support/x_display.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "support/test_end.h"

namespace {
[[noreturn]] void runServer(int displayPipe, const std::string& screen, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);
  // Signals meant for the test at the terminal aren't for the server.
  setpgid(0, 0);
  // Display numbers that are taken are tried and reported; nobody wants to read it.
  const int null = open("/dev/null", O_WRONLY);
  if (null >= 0) dup2(null, STDERR_FILENO);
  const std::string fd = std::to_string(displayPipe);
  // -r: on a busy machine a key seems held for long, and would come again and again.
  execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", screen.c_str(), "-nolisten",
         "tcp", "-noreset", "-r", static_cast<char*>(nullptr));
  _exit(127);
}

std::string readLine(int fd) {
  std::string line;
  char c = 0;
  while (::read(fd, &c, 1) == 1 && c != '\n') line += c;
  return line;
}

std::unique_ptr<XServer> ownServer;
std::string current;

void use(const std::string& name) {
  current = name;
  setenv("DISPLAY", name.c_str(), 1);
}
}  // namespace

XServer::XServer(const std::string& screen) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe for Xvfb");
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ == 0) {
    close(ends[0]);
    runServer(ends[1], screen, parent);
  }
  close(ends[1]);
  const std::string number = readLine(ends[0]);
  close(ends[0]);
  if (number.empty()) throw std::runtime_error("Xvfb didn't start");
  name_ = ":" + number;
}

XServer::~XServer() {
  kill();
}

void XServer::kill() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

void XServer::destroyWindow(unsigned long window) const {
  Display* display = XOpenDisplay(name_.c_str());
  if (!display) throw std::runtime_error("no connection to Xvfb");
  XDestroyWindow(display, window);
  XSync(display, False);
  XCloseDisplay(display);
}

void XServer::closeWindow(unsigned long window) const {
  Display* display = XOpenDisplay(name_.c_str());
  if (!display) throw std::runtime_error("no connection to Xvfb");
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
  XSendEvent(display, window, False, NoEventMask, &event);
  XSync(display, False);
  XCloseDisplay(display);
}

const std::string& XDisplay::ownName() {
  if (!current.empty()) return current;
  ownServer = std::make_unique<XServer>();
  atTestEnd([] { ownServer.reset(); });
  use(ownServer->name());
  return current;
}

const std::string& XDisplay::name() {
  const char* given = getenv("TD_TEST_DISPLAY");
  if (current.empty() && given && *given) use(given);
  return ownName();
}
