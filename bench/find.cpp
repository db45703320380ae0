// Searches and compares with td's own engines.
// usage: bench_find names DIRECTORY MASK | text DIRECTORY TEXT SCANNERS | compare LEFT RIGHT |
//        replace TEXT REPLACEMENT < LIST

#include <fcntl.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "foundation/directory_names.h"
#include "foundation/utf8.h"
#include "search/compare_contents.h"
#include "search/file_replacer.h"
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

// Compares the files of a tree with those of the same names in another, as two panels would that
// list them all.
class TreePairs : private FindVisitor, private ContentWatch {
 public:
  TreePairs(std::string left, std::string right)
      : left_(std::move(left)), right_(std::move(right)) {}

  int run() {
    FindWalk(*this, {}).run({left_});
    const Descriptor left(System::open(left_.c_str(), O_PATH | O_CLOEXEC));
    const Descriptor right(System::open(right_.c_str(), O_PATH | O_CLOEXEC));
    std::vector<ContentVerdict> verdicts;
    compareContents(left.get(), right.get(), names_, verdicts, *this);
    int different = 0;
    for (const ContentVerdict& verdict : verdicts) different += verdict.contents != Contents::Equal;
    printf("%d of %zu differ\n", different, verdicts.size());
    return different > 0;
  }

 private:
  bool enter(const std::string&) override { return true; }
  bool found(const FindName& name) override {
    if (name.type == DT_REG) names_.push_back(name.path().substr(left_.size() + 1));
    return true;
  }
  bool goOn(size_t, int64_t, int64_t) override { return true; }

  const std::string left_;
  const std::string right_;
  std::vector<std::string> names_;
};

// The files are listed on standard input, a line each.
int replace(const char* text, const char* replacement) {
  FileReplacer replacer(decodeFileName(text), CaseRule::Exact, false, decodeFileName(replacement),
                        [] { return false; });
  for (std::string path; std::getline(std::cin, path);) {
    if (replacer.replaceIn(path) != ReplaceResult::Done) return 1;
  }
  printf("%lld\n", static_cast<long long>(replacer.replaced()));
  return 0;
}

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
  if (command == "replace" && argc == 4) return replace(argv[2], argv[3]);
  fputs(
      "usage: bench_find names DIRECTORY MASK | text DIRECTORY TEXT SCANNERS | "
      "compare LEFT RIGHT\n",
      stderr);
  return 2;
}
