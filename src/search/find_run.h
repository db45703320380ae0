#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "editor/text/byte_pattern.h"
#include "foundation/threads.h"
#include "foundation/westring.h"
#include "search/found_entries.h"

// What is searched for, and where: a copy that nobody changes while the search runs.
struct FindSettings {
  Westring files;  // a filter expression
  Westring text;   // "" for none
  CaseRule rule = CaseRule::Folded;
  bool wholeWord = false;
  bool recurse = true;
  bool hidden = true;
  std::vector<std::string> starts;  // directories
  int scanners = 0;                 // threads that read files; 0: one for each processor
};

enum class FindState { Running, Complete, Stopped, Full };

// A search on threads of its own, which adds to a list. Application thread.
class FindRun {
 public:
  static constexpr uint32_t NewsMs = 50;
  static constexpr uint32_t BlinkMs = 500;

  // Starts it. `news` is called from another thread when something has changed, at most every
  // NewsMs, and every BlinkMs while it runs. The store outlives the process's searches.
  FindRun(FindSettings settings, FFEntryStore& store, std::function<void()> news);
  // Stops it, and tells nothing any more. One that doesn't end within BlinkMs hangs in a file
  // system: it is left behind and adds nothing any more.
  ~FindRun();
  FindRun(const FindRun&) = delete;
  FindRun& operator=(const FindRun&) = delete;

  void stop();
  bool waitForEnd(uint32_t ms);  // true when it has ended
  FindState state() const;
  // Whether it has been in one and the same call of the file system for BlinkMs.
  bool isWaiting() const;
  std::string directory() const;  // that is searched now
  const FindSettings& settings() const;

 private:
  struct Search;
  static void work(void* held);
  static void tick(void* held);

  std::shared_ptr<Search> search_;
  ThreadHandle worker_;
  ThreadHandle ticker_;
};
