#include "console/toolkit.h"

#include <gtk/gtk.h>
#include <gtkmm/main.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>

#include "foundation/break_state.h"
#include "foundation/threads.h"

// The X headers' macros would break the toolkit's, so they come last.
#include <X11/Xlib.h>
#include <gdk/gdkx.h>

namespace {
// How long the application thread may take to end what it is doing once the display has gone.
constexpr uint32_t GraceMs = 5000;
constexpr char LostMessage[] = "td: the connection to the X display is lost\n";
constexpr char DestroyedMessage[] = "td: the window was destroyed\n";

// A lock of our own in place of GLib's, so that the thread sanitizer sees who holds it.
struct Lock {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;  // guards the fields, held for moments only
  pthread_cond_t changed = PTHREAD_COND_INITIALIZER;
  bool held = false;
  pthread_t owner{};
};
Lock lock;

std::unique_ptr<Gtk::Main> toolkit;
pthread_t applicationThread;
std::atomic<bool> lost{false};

struct LossListener {
  void (*notify)(void*);
  void* argument;
};
// Changed and called under its lock: the argument lives for as long as it stands here.
std::mutex lossLock;
LossListener lossListener{nullptr, nullptr};

EventSem& atRest() {
  static EventSem event;
  return event;
}

enum class OnLoss { WaitOn, GiveUp };

// Once the display has gone, a thread of the toolkit may be stuck in a call with the lock held.
bool take(OnLoss onLoss) {
  pthread_mutex_lock(&lock.mutex);
  const auto givesUp = [onLoss] { return onLoss == OnLoss::GiveUp && displayLost(); };
  while (lock.held && !givesUp()) pthread_cond_wait(&lock.changed, &lock.mutex);
  const bool taken = !givesUp();
  if (taken) {
    lock.held = true;
    lock.owner = pthread_self();
  }
  pthread_mutex_unlock(&lock.mutex);
  return taken;
}

void enterLock() {
  take(OnLoss::WaitOn);
}

void leaveLock() {
  pthread_mutex_lock(&lock.mutex);
  if (pthread_equal(lock.owner, pthread_self())) lock.held = false;
  pthread_cond_broadcast(&lock.changed);
  pthread_mutex_unlock(&lock.mutex);
}

void wakeWaiters() {
  pthread_mutex_lock(&lock.mutex);
  pthread_cond_broadcast(&lock.changed);
  pthread_mutex_unlock(&lock.mutex);
}

void endProcess(void* message) {
  atRest().wait(GraceMs);
  const auto* text = static_cast<const char*>(message);
  const ssize_t ignored = write(STDERR_FILENO, text, strlen(text));
  static_cast<void>(ignored);
  _exit(1);
}

// Whatever goes first ends the program, with its message.
void loseScreen(const char* message) {
  if (lost.exchange(true)) return;
  BreakState armed = BreakState::Armed;
  breakState.compare_exchange_strong(armed, BreakState::Requested);
  startThread(endProcess, const_cast<char*>(message));
  const std::lock_guard guard(lossLock);
  if (lossListener.notify) lossListener.notify(lossListener.argument);
}

// Runs on whichever thread notices. The application thread goes on without a screen until it has
// brought its work to an end; every other thread stops here, without the lock.
int onConnectionLost(Display*) {
  loseScreen(LostMessage);
  if (pthread_equal(pthread_self(), applicationThread)) {
    wakeWaiters();
    return 0;
  }
  leaveLock();
  for (;;) pause();
}

void carryOn(Display*, void*) {}

int (*toolkitsErrorHandler)(Display*, XErrorEvent*) = nullptr;

// What was asked of a destroyed window fails before its end is told, and then whatever is asked of
// things that couldn't be made for it. Windows of others are spoken to only where the toolkit takes
// errors for itself.
int onError(Display* display, XErrorEvent* error) {
  if (displayLost()) return 0;
  if (error->error_code != BadWindow && error->error_code != BadDrawable)
    return toolkitsErrorHandler(display, error);
  windowDestroyed();
  return 0;
}
}  // namespace

ToolkitLock::ToolkitLock() : taken_(take(OnLoss::GiveUp)) {}

// The toolkit thread may be asleep on the connection. What was asked of the server goes out now,
// and events that were read beside an answer would lie unseen until the next one came.
ToolkitLock::~ToolkitLock() {
  if (!taken_) return;
  if (usable()) {
    Display* display = gdk_x11_get_default_xdisplay();
    XFlush(display);
    if (XEventsQueued(display, QueuedAlready) > 0) g_main_context_wakeup(nullptr);
  }
  leaveLock();
}

bool displayLost() {
  return lost.load(std::memory_order_relaxed);
}

void whenDisplayLost(void (*notify)(void*), void* argument) {
  const std::lock_guard guard(lossLock);
  lossListener = {notify, argument};
}

void windowDestroyed() {
  loseScreen(DestroyedMessage);
  wakeWaiters();
}

void restForEver() {
  atRest().post();
  for (;;) pause();
}

bool initToolkit(int* argc, char*** argv) {
  atRest();
  applicationThread = pthread_self();
  g_thread_init(nullptr);
  gdk_threads_set_lock_functions(enterLock, leaveLock);
  gdk_threads_init();
  if (!gtk_init_check(argc, argv)) return false;
  XSetIOErrorHandler(onConnectionLost);
  XSetIOErrorExitHandler(gdk_x11_get_default_xdisplay(), carryOn, nullptr);
  toolkitsErrorHandler = XSetErrorHandler(onError);
  toolkit = std::make_unique<Gtk::Main>(*argc, *argv);
  return true;
}

void endToolkit() {
  toolkit.reset();
}
