#pragma once

#include <map>
#include <ostream>
#include <string>

#include "fileops/fileops_test.h"
#include "support/fault_hook.h"

// Copies, moves and merges that something goes wrong with, and what must hold on the disk whatever
// it was.

using Contents = std::map<std::string, std::string>;

struct Scenario {
  const char* name;
  TransferKind kind;
  bool otherDevice;
  OverwriteMode mode;
  const char* source;
  const char* target;

  friend void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }
};

extern const std::vector<Scenario> Scenarios;
std::string nameOf(const testing::TestParamInfo<Scenario>& info);

// Thousands of small directories are made; in memory, where the system has such a place, that is
// quick.
class InMemory : public FileOpsTest {
 protected:
  void SetUp() override;
  void TearDown() override;
};

class TransferFaults : public InMemory, public testing::WithParamInterface<Scenario> {
 protected:
  static void build(const TempDir& place);
  // Runs the scenario in `place` with the fault.
  static Outcome operate(const TempDir& place, ScriptedUi& screen, Fault& fault);
  // Builds it, lets it run, answers every question with `answer` (OK where a box has nothing else
  // than OK and Cancel and `answer` is Skip), and looks at the disk afterwards. The number of calls
  // that were made.
  int playAndLook(Fault fault, int answer, const std::string& where);
  // The number of calls that an undisturbed run makes.
  static int countCalls();

  // Whether a temporary name may still be there: because it couldn't be removed, or because nobody
  // was left to do it.
  enum class Leftovers { WhereRefused, Allowed };
  void expectInvariants(const TempDir& place, const Contents& before, Outcome outcome,
                        const Fault& fault, Leftovers leftovers, const std::string& where);

 private:
  void expectOneWhole(const Contents& after, const std::string& path,
                      const std::string& counterpart, const std::string& what, Outcome outcome,
                      const std::string& where);
  void expectOldOrNew(const Contents& after, const Contents& before, const std::string& path,
                      const std::string& what, const std::string& where);
  void expectOldTarget(const Contents& after, const Contents& before, const std::string& where);
  void expectLines(const Contents& after, const std::string& where);
};
