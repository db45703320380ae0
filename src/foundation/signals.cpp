#include "foundation/signals.h"

#include <cerrno>
#include <csignal>

#include "foundation/break_state.h"

namespace {

std::atomic<bool> endFlag{false};

// Posted by the handler: sem_post is among the few calls a handler may make.
sem_t* endSemaphore() {
  struct Semaphore {
    Semaphore() { sem_init(&value, 0, 0); }
    sem_t value;
  };
  static Semaphore semaphore;
  return &semaphore.value;
}

void onEndSignal(int) {
  const int error = errno;
  requestEnd();
  errno = error;
}

void setAction(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

bool isIgnored(int signal) {
  struct sigaction present {};
  return sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

}  // namespace

void installSignals() {
  endSemaphore();  // made here, since its first use must not be inside a handler
  setAction(SIGXFSZ, SIG_IGN);
  setAction(SIGPIPE, SIG_IGN);
  for (int signal : {SIGTERM, SIGHUP, SIGINT}) {
    if (!isIgnored(signal)) setAction(signal, onEndSignal);
  }
}

bool endRequested() {
  return endFlag.load(std::memory_order_relaxed);
}

void requestEnd() {
  endFlag.store(true, std::memory_order_relaxed);
  requestBreak();
  sem_post(endSemaphore());
}

void forgetEndRequest() {
  endFlag.store(false, std::memory_order_relaxed);
  while (sem_trywait(endSemaphore()) == 0) {
  }
}

EndWatcher::EndWatcher(std::function<void()> wake) : wake_(std::move(wake)) {
  thread_ = startThread(threadEntry, this);
}

EndWatcher::~EndWatcher() {
  stop_ = true;
  sem_post(endSemaphore());
  joinThread(thread_);
}

void EndWatcher::threadEntry(void* self) {
  auto* watcher = static_cast<EndWatcher*>(self);
  for (;;) {
    while (sem_wait(endSemaphore()) == -1 && errno == EINTR) {
    }
    if (watcher->stop_) return;
    watcher->wake_();
  }
}
