#include "fileops/transfer_faults.h"

// What fails goes on failing: every call of one name, or every call below one directory, from each
// call of an operation on. A second way or a second try then gives no false picture of success.

namespace {

class StickyFaults : public TransferFaults {};

constexpr int Answers[] = {Answer::Skip, Answer::Cancel};

}  // namespace

TEST_P(StickyFaults, ACallThatFailsForEverLosesNothing) {
  const int calls = countCalls();
  for (const int error : {EIO, EACCES}) {
    for (const int answer : Answers) {
      for (int number = 1; number <= calls; ++number) {
        const std::string where = "from call " + std::to_string(number) + " on " +
                                  std::to_string(error) + ", answer " + std::to_string(answer);
        playAndLook({number, error, Fault::Reach::SameName}, answer, where);
        if (HasFailure()) return;
      }
    }
  }
}

TEST_P(StickyFaults, ADirectoryThatFailsForEverLosesNothing) {
  const int calls = countCalls();
  for (const char* directory : {"src", "src/sub", "dst", "dst/tree/sub"}) {
    for (const int answer : Answers) {
      for (int number = 1; number <= calls; ++number) {
        const std::string where = "from call " + std::to_string(number) + " on below " + directory +
                                  ", answer " + std::to_string(answer);
        playAndLook({number, EIO, Fault::Reach::Below, directory}, answer, where);
        if (HasFailure()) return;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, StickyFaults, testing::ValuesIn(Scenarios), nameOf);
