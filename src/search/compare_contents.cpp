#include "search/compare_contents.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>

#include "foundation/place.h"
#include "foundation/status.h"
#include "foundation/system.h"
#include "foundation/threads.h"

namespace {

constexpr size_t BlockBytes = 262144;
constexpr size_t SmallBlockBytes = 32768;  // most files fit, and it costs nothing to have
// One side of a pair.
struct Side {
  int directory;
  Descriptor fd = Descriptor();
  std::unique_ptr<char[]> block = {};
  size_t blockBytes = 0;
  struct stat info = {};
  size_t count = 0;  // bytes in the block

  // 0 or errno. What is put in its place meanwhile is never waited for.
  int open(const char* name) {
    fd = Descriptor(System::openAt(directory, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!fd.valid() || System::fstat(fd.get(), &info) != 0) return errno;
    return S_ISREG(info.st_mode) ? 0 : Status::NotRegularFile;
  }

  void makeBlock(int64_t size) {
    const size_t wanted =
        size < static_cast<int64_t>(SmallBlockBytes) ? SmallBlockBytes : BlockBytes;
    if (wanted <= blockBytes) return;
    block = std::make_unique_for_overwrite<char[]>(wanted);
    blockBytes = wanted;
  }

  // As much as fits, or what there is until the end. 0 or errno.
  int fill() {
    for (count = 0; count < blockBytes;) {
      const ssize_t got = System::read(fd.get(), block.get() + count, blockBytes - count);
      if (got < 0) return errno;
      if (got == 0) break;
      count += static_cast<size_t>(got);
    }
    return 0;
  }
};

class Comparison {
 public:
  Comparison(int left, int right, const std::vector<std::string>& names,
             std::vector<ContentVerdict>& verdicts)
      : left_(left), right_(right), names_(names), verdicts_(verdicts) {}

  bool run(ContentWatch& watch) {
    verdicts_.assign(names_.size(), {});
    end_ = names_.size();
    ThreadHandle helper;
    if (names_.size() > 1) helper = startThread(help, this);
    work(
        [&watch](size_t name, int64_t done, int64_t size) { return watch.goOn(name, done, size); });
    if (helper.running) followHelp(watch);
    joinThread(helper);
    return !stopped_;
  }

 private:
  struct Place {
    size_t name;
    int64_t done, size;
  };

  static void help(void* self) {
    Comparison& comparison = *static_cast<Comparison*>(self);
    comparison.work([&](size_t name, int64_t done, int64_t size) {
      const MutexLock lock(comparison.helpMutex_);
      comparison.helpPlace_ = {name, done, size};
      return true;
    });
    comparison.helped_.post();
  }

  // Nothing is left to take, but the last file may be a long one.
  void followHelp(ContentWatch& watch) {
    constexpr uint32_t LookMs = 20;
    while (helped_.wait(LookMs) != 0) {
      const std::optional<Place> place = helpPlace();
      if (place && !watch.goOn(place->name, place->done, place->size)) stopped_ = true;
    }
  }

  std::optional<Place> helpPlace() {
    const MutexLock lock(helpMutex_);
    return helpPlace_;
  }

  template <class GoOn>
  void work(const GoOn& goOn) {
    Side left{left_};
    Side right{right_};
    for (size_t name = next_++; name < end_ && !stopped_; name = next_++) {
      ContentVerdict& verdict = verdicts_[name];
      verdict = compare(left, right, name, goOn);
      if (verdict.contents == Contents::Failed) endAt(name);
    }
  }

  void endAt(size_t name) {
    size_t end = end_;
    while (name < end && !end_.compare_exchange_weak(end, name)) {
    }
  }

  template <class GoOn>
  ContentVerdict compare(Side& left, Side& right, size_t name, const GoOn& goOn) {
    const char* const text = names_[name].c_str();
    if (System::statAt(left.directory, text, &left.info, 0) != 0) return failed(errno, true);
    if (System::statAt(right.directory, text, &right.info, 0) != 0) return failed(errno, false);
    if (!going(goOn, name, 0, left.info.st_size)) return {};
    if (idOf(left.info) == idOf(right.info)) return {Contents::Equal};
    if (!S_ISREG(left.info.st_mode) || !S_ISREG(right.info.st_mode))
      return compareKinds(left, right);
    if (left.info.st_size != right.info.st_size) return {Contents::Different};
    if (const int error = left.open(text)) return failed(error, true);
    if (const int error = right.open(text)) return failed(error, false);
    return compareBlocks(left, right, name, goOn);
  }

  static ContentVerdict compareKinds(const Side& left, const Side& right) {
    const bool same = (left.info.st_mode & S_IFMT) == (right.info.st_mode & S_IFMT) &&
                      left.info.st_rdev == right.info.st_rdev;
    return {same ? Contents::Equal : Contents::Different};
  }

  template <class GoOn>
  ContentVerdict compareBlocks(Side& left, Side& right, size_t name, const GoOn& goOn) {
    left.makeBlock(left.info.st_size);
    right.makeBlock(left.info.st_size);
    for (int64_t done = 0;;) {
      if (const int error = left.fill()) return failed(error, true);
      if (const int error = right.fill()) return failed(error, false);
      if (left.count != right.count || memcmp(left.block.get(), right.block.get(), left.count) != 0)
        return {Contents::Different};
      if (left.count < left.blockBytes) return {Contents::Equal};
      done += static_cast<int64_t>(left.count);
      if (!going(goOn, name, done, left.info.st_size)) return {};
    }
  }

  template <class GoOn>
  bool going(const GoOn& goOn, size_t name, int64_t done, int64_t size) {
    if (!stopped_ && !goOn(name, done, size)) stopped_ = true;
    return !stopped_ && name < end_;
  }

  static ContentVerdict failed(int error, bool atLeft) { return {Contents::Failed, error, atLeft}; }

  const int left_;
  const int right_;
  const std::vector<std::string>& names_;
  std::vector<ContentVerdict>& verdicts_;  // each written by the thread that has taken its name
  std::atomic<size_t> next_{0};
  std::atomic<size_t> end_{0};  // a failure: nothing from here on counts
  std::atomic<bool> stopped_{false};
  EventSem helped_;
  MutexSem helpMutex_;
  std::optional<Place> helpPlace_;
};

}  // namespace

bool compareContents(int left, int right, const std::vector<std::string>& names,
                     std::vector<ContentVerdict>& verdicts, ContentWatch& watch) {
  return Comparison(left, right, names, verdicts).run(watch);
}
