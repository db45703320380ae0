// Plays a short session in a real td on a virtual display and saves what its window shows.
// usage: td_demo PROGRAM FOLDER

#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "archive/sample_archives.h"
#include "demo/png_file.h"
#include "foundation/threads.h"
#include "support/temp_dir.h"
#include "support/test_end.h"
#include "support/wait_until.h"
#include "support/x_display.h"
#include "support/x_keys.h"

namespace {

void require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

// The files that the session works on, and a home that isn't the user's.
struct Sample {
  TempDir home, work, backup;

  Sample() {
    for (const char* directory : {"documents", "music", "photos"}) work.makeDir(directory);
    work.write("documents/letter.txt", "Dear reader,\n");
    work.write("documents/plan.md", "First to the lake, then home.\n");
    work.write("documents/trip.txt", "The lake was cold.\n");
    work.write("photos/captions.txt", "1 The lake in spring\n2 The house\n");
    work.write("budget.csv", std::string(2345, '1'));
    work.write("holiday.jpg", std::string(345678, 'x'));
    work.write("notes.txt", "remember\n");
    work.write("README.md", std::string(4321, 'r'));
    work.write("recipe.txt", std::string(777, 's'));
    work.write("song.flac", std::string(1234567, 'f'));
    work.write("website.zip", zipArchive({{"images/", ""},
                                          {"images/lake.jpg", std::string(45678, 'l')},
                                          {"images/house.jpg", std::string(56789, 'h')},
                                          {"index.html", std::string(2345, 'i')},
                                          {"contact.html", std::string(1234, 'c')},
                                          {"style.css", std::string(678, 's')}}));
    work.link("notes.txt", "today");
    home.makeDir(".tdx");
    home.write(".tdx/td.ini", "[General Options]\nFFRootSearch=off\n");
    backup.write("notes.txt", "older\n");
    backup.makeDir("archive");
  }
};

// td in a process of its own.
class Program {
 public:
  Program(const char* path, const Sample& sample) {
    pid_ = fork();
    if (pid_ == 0) {
      setenv("HOME", sample.home.path().c_str(), 1);
      execl(path, path, "-l", sample.work.path().c_str(), "-r", sample.backup.path().c_str(),
            nullptr);
      _exit(127);
    }
    require(pid_ > 0, "td can't be started");
  }
  ~Program() {
    if (pid_ <= 0) return;
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  int waitForEnd() {
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
  }

 private:
  pid_t pid_ = -1;
};

class Session {
 public:
  Session(Display* display, std::string folder) : display_(display), folder_(std::move(folder)) {
    require(waitUntil([this] { return findWindow(); }), "no window came up");
    require(XKeys::get().waitForFocus(window_), "the window has no keyboard");
    settle();
  }

  void press(unsigned long symbol, const std::vector<unsigned long>& modifiers = {}) {
    XKeys::get().press(symbol, modifiers);
    settle();
  }
  void type(const std::string& text) {
    XKeys::get().type(text);
    settle();
  }

  void save(const char* name) {
    int width = 0, height = 0;
    std::vector<unsigned> pixels = XKeys::get().windowPixels(window_, width, height);
    std::string file = folder_ + "/" + name + ".png";
    require(writePng(file, pixels, width, height), "a picture can't be written");
    printf("%s\n", file.c_str());
  }

 private:
  // The window that is wide enough for a screen of cells.
  bool findWindow() {
    Window root = DefaultRootWindow(display_), ignored, *children = nullptr;
    unsigned count = 0;
    if (!XQueryTree(display_, root, &ignored, &ignored, &children, &count)) return false;
    for (unsigned i = 0; i < count; ++i) {
      XWindowAttributes look;
      constexpr int SmallestWidth = 300;
      bool readable = XGetWindowAttributes(display_, children[i], &look) != 0;
      if (readable && look.map_state == IsViewable && look.width >= SmallestWidth)
        window_ = children[i];
    }
    if (children) XFree(children);
    return window_ != 0;
  }

  // Until the picture stays the same for a while; the blinking cursor may differ.
  void settle() {
    constexpr int LookMs = 60, StillLooks = 3, MostLooks = 100;
    constexpr size_t CursorPixels = 400;
    std::vector<unsigned> last;
    for (int looks = 0, still = 0; looks < MostLooks && still < StillLooks; ++looks) {
      sleepMs(LookMs);
      int width = 0, height = 0;
      std::vector<unsigned> now = XKeys::get().windowPixels(window_, width, height);
      size_t changed = now.size() == last.size() ? 0 : now.size();
      for (size_t i = 0; i < now.size() && i < last.size(); ++i) changed += now[i] != last[i];
      still = changed <= CursorPixels && !now.empty() ? still + 1 : 0;
      last = std::move(now);
    }
  }

  Display* display_;
  std::string folder_;
  Window window_ = 0;
};

void copyTextFiles(Session& session, const Sample& sample) {
  session.save("1-panels");
  session.press(XK_F9);
  session.press(XK_Return);
  session.save("2-menu");
  session.press(XK_Escape);
  session.press(XK_Escape);
  session.press(XK_KP_Add);
  session.type("*.txt|*.md");
  session.save("3-select-group");
  session.press(XK_Return);
  session.save("4-tagged");
  session.press(XK_F5);
  session.save("5-copy");
  session.press(XK_Return);
  session.save("6-question");
  session.press(XK_Return);
  require(waitUntil([&] { return sample.backup.read("notes.txt") == "remember\n"; }),
          "the files were not copied");
  session.save("7-copied");
}

void lookIntoAnArchive(Session& session) {
  session.press(XK_w, {XK_Alt_L});
  session.press(XK_Escape);
  session.press(XK_Return);
  session.press(XK_l, {XK_Control_L});
  session.press(XK_Down);
  session.save("8-archive");
  session.press(XK_l, {XK_Control_L});
  session.press(XK_Page_Up, {XK_Control_L});
}

void find(Session& session) {
  session.press(XK_F7, {XK_Alt_L});
  session.type("*.txt|*.md");
  session.press(XK_t, {XK_Alt_L});
  session.type("lake");
  session.press(XK_Return);
  session.save("9-find");
  session.press(XK_Escape);
}

void openDialogs(Session& session) {
  session.press(XK_a, {XK_Control_L});
  session.save("10-attributes");
  session.press(XK_Escape);
  session.press(XK_F9);
  session.type("o");
  session.type("c");
  session.type("less");
  session.save("11-configuration");
  session.press(XK_Escape);
}

void play(Session& session, const Sample& sample) {
  copyTextFiles(session, sample);
  lookIntoAnArchive(session);
  find(session);
  openDialogs(session);
  session.press(XK_F10);
  XKeys::get().press(XK_Return);  // the window goes with this
}

int playSession(const char* program, const char* folder) {
  std::filesystem::create_directories(folder);
  XDisplay::ownName();
  Sample sample;
  Display* display = XOpenDisplay(nullptr);
  require(display != nullptr, "the virtual display can't be opened");
  Program td(program, sample);
  Session session(display, folder);
  play(session, sample);
  int status = td.waitForEnd();
  XCloseDisplay(display);
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: td_demo PROGRAM FOLDER\n");
    return 2;
  }
  int status = 1;
  try {
    status = playSession(argv[1], argv[2]);
  } catch (const std::exception& trouble) {
    fprintf(stderr, "td_demo: %s\n", trouble.what());
  }
  runTestEnd();
  return status;
}
