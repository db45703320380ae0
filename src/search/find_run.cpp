#include "search/find_run.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "foundation/break_state.h"
#include "foundation/path_info.h"
#include "foundation/system.h"
#include "search/find_walk.h"
#include "search/name_filter.h"
#include "search/scan_ring.h"

namespace {

constexpr int MostScanners = 16;

int scannersFor(int wanted) {
  const auto processors = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
  return std::clamp(wanted > 0 ? wanted : processors, 1, MostScanners);
}

// What a name is, through a link where that leads to something.
bool describe(const FindName& name, FoundFile& file) {
  file.isLink = name.type == DT_LNK;
  const int flags = file.isLink ? 0 : AT_SYMLINK_NOFOLLOW;
  if (System::statAt(name.directory, name.name, &file.info, flags) == 0) return true;
  return file.isLink &&
         System::statAt(name.directory, name.name, &file.info, AT_SYMLINK_NOFOLLOW) == 0;
}

}  // namespace

// What the threads of a search share. Held by each of them, so that one that hangs keeps what it
// needs.
struct FindRun::Search : FindVisitor, ScanSink {
  Search(FindSettings wanted, FFEntryStore& list, std::function<void()> tell)
      : settings(std::move(wanted)), store(list), filter(settings.files), news(std::move(tell)) {}

  void run() {
    FindWalk walk(*this, {settings.recurse, settings.hidden});
    if (settings.text.empty()) {
      walk.run(settings.starts);
    } else {
      const SearchedText text(settings.text, settings.rule, settings.wholeWord);
      ring.emplace(
          text, [this] { return !going(); }, scannersFor(settings.scanners), *this);
      if (walk.run(settings.starts)) ring->finish();
      ring->end();
      ring.reset();
    }
  }

  bool enter(const std::string& path) override {
    if (ring) ring->flush();
    const MutexLock guard(lock);
    directory = path;
    changed = true;
    return going();
  }

  bool found(const FindName& name) override {
    if (!going()) return false;
    const NameVerdict verdict = filter.verdict(name.name);
    if (verdict == NameVerdict::No) return true;
    const bool canHoldText = name.type == DT_REG || name.type == DT_LNK;
    if (ring && !canHoldText) return true;
    if (ring && verdict == NameVerdict::Yes) {
      ring->put(name.path(), name.type == DT_LNK);
      return going();
    }
    FoundFile file;
    if (!describe(name, file)) return true;
    if (verdict == NameVerdict::Depends && !passes(name, file)) return true;
    if (ring) {
      ring->put(name.path(), file.isLink);
    } else {
      file.path = name.path();
      if (going()) add(file);
    }
    return going();
  }

  bool passes(const FindName& name, const FoundFile& file) const {
    const EntryPtr item = blankEntry(decodeFileName(name.name).data());
    fillEntry(item.get(), file.info);
    return filter.matches(item.get());
  }

  void scanned(const ScanCandidate& candidate) override { add(candidate.file); }

  // Whoever leaves the search behind takes the lock, so nothing is added from then on.
  void add(const FoundFile& file) {
    const MutexLock guard(lock);
    if (isLeft || full) return;
    changed = true;
    if (store.add(file)) return;
    full = true;
    stop = true;
  }

  // Asked by all threads for each name and each block.
  bool going() {
    steps.fetch_add(1, std::memory_order_relaxed);
    if (breakRequested()) stop = true;
    return !stop;
  }

  void tell() {
    const MutexLock guard(lock);
    if (news) news();
  }

  void tellNothing() {
    const MutexLock guard(lock);
    news = nullptr;
  }

  void leaveBehind() {
    const MutexLock guard(lock);
    isLeft = true;
  }

  const FindSettings settings;
  FFEntryStore& store;
  const NameFilter filter;
  std::optional<ScanRing> ring;  // the walker's
  std::atomic<bool> stop{false};
  std::atomic<bool> full{false};
  std::atomic<bool> changed{false};
  std::atomic<bool> waiting{false};  // no step for BlinkMs
  std::atomic<uint32_t> steps{0};
  EventSem ended;
  std::atomic<FindState> state{FindState::Running};
  mutable MutexSem lock;  // guards the rest; the store's lock may be taken under it
  std::string directory;
  bool isLeft = false;
  std::function<void()> news;
};

FindRun::FindRun(FindSettings settings, FFEntryStore& store, std::function<void()> news)
    : search_(std::make_shared<Search>(std::move(settings), store, std::move(news))) {
  auto held = std::make_unique<std::shared_ptr<Search>>(search_);
  worker_ = startThread(work, held.get());
  if (!worker_.running) {
    search_->state = FindState::Stopped;
    search_->ended.post();
    return;
  }
  static_cast<void>(held.release());
  ticker_ = startThread(tick, search_.get());
}

FindRun::~FindRun() {
  search_->tellNothing();
  stop();
  waitForEnd(BlinkMs);
  const bool hangs = search_->state == FindState::Running;
  search_->leaveBehind();
  search_->ended.post();
  joinThread(ticker_);
  if (hangs) {
    pthread_detach(worker_.id);
  } else {
    joinThread(worker_);
  }
}

void FindRun::work(void* held) {
  const std::unique_ptr<std::shared_ptr<Search>> owned(static_cast<std::shared_ptr<Search>*>(held));
  Search& search = **owned;
  search.run();
  search.state = search.full   ? FindState::Full
                 : search.stop ? FindState::Stopped
                               : FindState::Complete;
  search.tell();
  search.ended.post();
}

void FindRun::tick(void* held) {
  auto& search = *static_cast<Search*>(held);
  uint32_t steps = search.steps;
  uint32_t quietMs = 0;
  for (uint32_t ms = NewsMs; search.ended.wait(NewsMs) != 0; ms += NewsMs) {
    quietMs = search.steps == steps ? quietMs + NewsMs : 0;
    steps = search.steps;
    search.waiting = quietMs >= BlinkMs;
    const bool blink = ms % BlinkMs == 0;
    if (search.changed.exchange(false) || blink) search.tell();
  }
}

void FindRun::stop() {
  search_->stop = true;
}

bool FindRun::waitForEnd(uint32_t ms) {
  return search_->ended.wait(ms) == 0;
}

FindState FindRun::state() const {
  return search_->state;
}

bool FindRun::isWaiting() const {
  return search_->waiting;
}

std::string FindRun::directory() const {
  const MutexLock guard(search_->lock);
  return search_->directory;
}

const FindSettings& FindRun::settings() const {
  return search_->settings;
}
