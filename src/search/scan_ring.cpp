#include "search/scan_ring.h"

#include <fcntl.h>

#include <utility>

#include "foundation/system.h"

void scanFile(ScanCandidate& candidate, TextScanner& scanner) {
  FoundFile& file = candidate.file;
  const char* const path = file.path.c_str();
  // Opening what a link leads to could do something, unless it is a file.
  if (file.isLink && (System::stat(path, &file.info) != 0 || !S_ISREG(file.info.st_mode))) return;
  const Descriptor fd(System::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!fd.valid()) {
    candidate.listed = System::stat(path, &file.info) == 0 && S_ISREG(file.info.st_mode);
    file.position = FoundMark::NotOpened;
    return;
  }
  if (System::fstat(fd.get(), &file.info) != 0 || !S_ISREG(file.info.st_mode)) return;
  scanner.start(fd.get(), file.info.st_size);
  TextHit hit;
  const ScanResult result = scanner.next(0, hit);
  candidate.listed = result != ScanResult::NotFound;
  file.position = result == ScanResult::Found     ? hit.position
                  : result == ScanResult::Stopped ? FoundMark::Stopped
                                                  : FoundMark::NotOpened;
}

ScanRing::ScanRing(const SearchedText& text, TextScanner::StopAsked stop, int scanners,
                   ScanSink& sink)
    : text_(text), stop_(std::move(stop)), sink_(sink) {
  for (int i = 0; i < scanners; ++i) {
    const ThreadHandle thread = startThread(entry, this);
    if (thread.running) threads_.push_back(thread);
  }
}

ScanRing::~ScanRing() {
  joinAll();
}

void ScanRing::joinAll() {
  ended_ = true;
  ready_.fetch_add(Places);  // wakes all: what they take now is nothing
  ready_.notify_all();
  for (ThreadHandle& thread : threads_) joinThread(thread);
  threads_.clear();
}

void ScanRing::put(std::string path, bool isLink) {
  if (put_ - handed_ == Places) waitForPlaces();
  ScanCandidate& candidate = placeOf(put_).candidate;
  candidate = {};
  candidate.file.path = std::move(path);
  candidate.file.isLink = isLink;
  placeOf(put_).done = put_;
  ++put_;
  if (put_ - ready_ >= ToldAtOnce) flush();
  if (threads_.empty()) finish();
}

void ScanRing::flush() {
  handOver();
  if (ready_ == put_) return;
  ready_ = put_;
  ready_.notify_all();
}

// Half of them at once, so that nobody is woken for each file.
void ScanRing::waitForPlaces() {
  flush();
  const uint32_t middle = put_ - Places / 2;
  if (put_ - handed_ == Places) waitFor(middle);
  handOver();
  while (put_ - handed_ == Places) {
    waitFor(handed_);
    handOver();
  }
}

// Only who is waited for wakes the walker.
void ScanRing::waitFor(uint32_t number) {
  wanted_ = number;
  placeOf(number).done.wait(number);
}

void ScanRing::finish() {
  flush();
  while (handed_ != put_) {
    if (threads_.empty()) {
      TextScanner scanner(text_, stop_);
      if (!stop_()) scanFile(placeOf(handed_).candidate, scanner);
      placeOf(handed_).done = handed_ + 1;
    }
    waitFor(handed_);
    handOver();
  }
}

void ScanRing::end() {
  joinAll();
  handOver();
}

// Those that are done, up to the first that isn't.
void ScanRing::handOver() {
  while (handed_ != put_ && placeOf(handed_).done == handed_ + 1) {
    if (placeOf(handed_).candidate.listed) sink_.scanned(placeOf(handed_).candidate);
    ++handed_;
  }
}

void ScanRing::entry(void* self) {
  static_cast<ScanRing*>(self)->scan();
}

void ScanRing::scan() {
  TextScanner scanner(text_, stop_);
  for (;;) {
    const uint32_t number = taken_++;
    for (uint32_t ready = ready_; static_cast<int32_t>(ready - number) <= 0; ready = ready_) {
      ready_.wait(ready);
    }
    if (ended_) return;
    Place& place = placeOf(number);
    if (!stop_()) scanFile(place.candidate, scanner);
    place.done = number + 1;
    if (wanted_ == number) place.done.notify_one();
  }
}
