#pragma once

#include <array>
#include <atomic>
#include <string>
#include <vector>

#include "foundation/threads.h"
#include "search/found_entries.h"
#include "search/text_scanner.h"

// A file in which a text may stand, and what was seen in it.
struct ScanCandidate {
  FoundFile file;  // its path and whether it is a link are set by whoever puts it in
  bool listed = false;
};

// Takes what was scanned, in the order in which the candidates were put in. The thread that puts
// them in.
class ScanSink {
 public:
  virtual ~ScanSink() = default;
  virtual void scanned(const ScanCandidate& candidate) = 0;
};

// Files that are looked through for a text by several threads. One thread puts them in, and gets
// them back in their order. Once `stop`, which is asked by all of them, says so, what isn't begun
// yet isn't read any more, and what is under way comes back as it is.
class ScanRing {
 public:
  static constexpr uint32_t Places = 256;
  static constexpr uint32_t ToldAtOnce = 32;

  ScanRing(const SearchedText& text, TextScanner::StopAsked stop, int scanners, ScanSink& sink);
  ~ScanRing();  // what was put in and isn't scanned yet is forgotten
  ScanRing(const ScanRing&) = delete;
  ScanRing& operator=(const ScanRing&) = delete;

  // Waits for places when all are taken. Scanners get to know of some at once: what `flush` is for.
  void put(std::string path, bool isLink);
  void flush();
  void finish();  // until everything is scanned and was handed to the sink
  void end();     // of a stopped search: hands over what was scanned by then

 private:
  struct alignas(64) Place {
    ScanCandidate candidate;
    std::atomic<uint32_t> done{0};  // the number of the candidate that was scanned last, and one
  };

  static void entry(void* self);
  void scan();
  void waitForPlaces();
  void waitFor(uint32_t number);
  void handOver();
  void joinAll();
  Place& placeOf(uint32_t number) { return places_[number % Places]; }

  const SearchedText& text_;
  const TextScanner::StopAsked stop_;
  ScanSink& sink_;
  std::vector<Place> places_{Places};
  uint32_t put_ = 0;     // so many were put in; the walker's
  uint32_t handed_ = 0;  // so many went to the sink; the walker's
  std::atomic<uint32_t> taken_{0};
  std::atomic<uint32_t> ready_{0};   // so many may be taken
  std::atomic<uint32_t> wanted_{0};  // the candidate that the walker waits for
  std::atomic<bool> ended_{false};
  std::vector<ThreadHandle> threads_;
};

// Looks through one file. What is no regular file isn't listed; one that can't be read, or whose
// reading was stopped, is.
void scanFile(ScanCandidate& candidate, TextScanner& scanner);
