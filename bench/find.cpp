// Searches and compares with td's own engines.
// usage: bench_find names DIRECTORY MASK | text DIRECTORY TEXT SCANNERS | compare LEFT RIGHT

#include <fcntl.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "foundation/directory_names.h"
#include "foundation/utf8.h"
#include "search/compare_contents.h"
#include "search/find_run.h"
#include "search/find_walk.h"

namespace {

int find(FindSettings settings, const char* directory) {
  settings.starts = {directory};
  FindRun run(std::move(settings), foundEntries(), [] {});
  run.waitForEnd(WaitForever);
  printf("%d\n", foundEntries().count());
  return run.state() == FindState::Complete ? 0 : 1;
}

// Compares each directory of a tree with the one of its name in another, as two panels would.
class TreePairs : private FindVisitor, private ContentWatch {
 public:
  TreePairs(std::string left, std::string right)
      : left_(std::move(left)), right_(std::move(right)) {}

  int run() {
    FindWalk(*this, {}).run({left_});
    compareDirectory();
    printf("%d of %d differ\n", different_, compared_);
    return different_;
  }

 private:
  bool enter(const std::string& path) override {
    compareDirectory();
    directory_ = path;
    return true;
  }
  bool found(const FindName& name) override {
    if (name.type == DT_REG) names_.push_back(name.name);
    return true;
  }
  bool goOn(size_t, int64_t, int64_t) override { return true; }

  void compareDirectory() {
    if (names_.empty()) return;
    const std::string other = right_ + directory_.substr(left_.size());
    const Descriptor left(System::open(directory_.c_str(), O_PATH | O_CLOEXEC));
    const Descriptor right(System::open(other.c_str(), O_PATH | O_CLOEXEC));
    std::vector<ContentVerdict> verdicts;
    compareContents(left.get(), right.get(), names_, verdicts, *this);
    for (const ContentVerdict& verdict : verdicts) {
      ++compared_;
      different_ += verdict.contents != Contents::Equal;
    }
    names_.clear();
  }

  const std::string left_;
  const std::string right_;
  std::string directory_;
  std::vector<std::string> names_;
  int compared_ = 0;
  int different_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  setlocale(LC_ALL, "");
  const std::string command = argc > 1 ? argv[1] : "";
  FindSettings settings;
  settings.files = L"*";
  if (command == "names" && argc == 4) {
    settings.files = decodeFileName(argv[3]);
    return find(settings, argv[2]);
  }
  if (command == "text" && argc == 5) {
    settings.text = decodeFileName(argv[3]);
    settings.rule = CaseRule::Exact;
    settings.scanners = atoi(argv[4]);
    return find(settings, argv[2]);
  }
  if (command == "compare" && argc == 4) return TreePairs(argv[2], argv[3]).run();
  fputs(
      "usage: bench_find names DIRECTORY MASK | text DIRECTORY TEXT SCANNERS | "
      "compare LEFT RIGHT\n",
      stderr);
  return 2;
}
