#include "fileops/description_file.h"
#include "fileops/transfer_faults.h"

// Description files under faults: each is the old one or the new one, whole, and a line that goes
// from one to the other stands in one of them at least.

namespace {

constexpr char Old[] = "a about a\r\nb about b\r\nnobody orphan\r\n";
constexpr char New[] = "b about b\r\nnobody orphan\r\nc about c\r\n";
constexpr char Emptied[] = "only line\r\n";
constexpr char MovedLine[] = "a about a\r\n";

class DescriptionFaults : public InMemory {
 protected:
  using Operation = int (*)(const TempDir& place);
  using Check = void (*)(const TempDir& place, int error, const std::string& where);

  static void build(const TempDir& place) {
    for (const char* name : {"from", "to", "emptied"}) place.makeDir(name);
    place.write("from/descript.ion", Old);
    place.write("emptied/descript.ion", Emptied);
  }

  // Line `a` goes, `c` comes.
  static int change(const TempDir& place) {
    DescriptionFile file(place.path("from"));
    file.erase("a");
    return file.set("c", "about c") ? file.flush() : EACCES;
  }
  static void expectOldOrNew(const TempDir& place, int error, const std::string& where) {
    const std::string found = place.read("from/descript.ion");
    EXPECT_TRUE(found == Old || found == New) << where << ": " << found;
    if (error == 0) {
      EXPECT_EQ(found, New) << where;
    }
  }

  static int empty(const TempDir& place) {
    DescriptionFile file(place.path("emptied"));
    file.erase("only");
    return file.flush();
  }
  static void expectWholeOrGone(const TempDir& place, int, const std::string& where) {
    if (place.exists("emptied/descript.ion")) {
      EXPECT_EQ(place.read("emptied/descript.ion"), Emptied) << where;
    }
  }

  // Line `a` follows its file.
  static int carry(const TempDir& place) {
    DescriptionCache cache;
    moveDescription(&cache.of(place.path("from")), "a", &cache.of(place.path("to")), "a");
    cache.flush();
    return 0;
  }
  static void expectInOne(const TempDir& place, int, const std::string& where) {
    const std::string from = place.read("from/descript.ion");
    const std::string to = place.read("to/descript.ion");
    EXPECT_NE((from + to).find(MovedLine), std::string::npos) << where << ": the line is lost";
    EXPECT_NE(from.find("b about b\r\nnobody orphan\r\n"), std::string::npos) << where << from;
    EXPECT_TRUE(to.empty() || to == MovedLine) << where << ": " << to;
  }

  struct Case {
    const char* name;
    Operation operation;
    Check check;
  };
  static constexpr Case Cases[] = {{"change", change, expectOldOrNew},
                                   {"empty", empty, expectWholeOrGone},
                                   {"carry", carry, expectInOne}};

  static int countCalls(const Case& what) {
    const TempDir place;
    build(place);
    Fault none;
    System::setPlaceHook(Fault::onCall, &none);
    EXPECT_EQ(what.operation(place), 0);
    System::setHook(nullptr, nullptr);
    EXPECT_GT(none.seen, 3) << what.name;
    return none.seen;
  }

  static void expectLeftoversExplained(const TempDir& place, const Fault& fault,
                                       const std::string& where) {
    for (const auto& [path, what] : contents(place.path())) {
      if (path.find(".td-") == std::string::npos) continue;
      EXPECT_TRUE(fault.reach == Fault::Reach::Kill ||
                  fault.refused({"unlink", "unlinkAt"}, place.path(path)))
          << where << ": left over " << path;
    }
  }

  static void playAndLook(const Case& what, Fault fault, const char* below = nullptr) {
    const TempDir place;
    build(place);
    if (below) fault.directory = place.path(below);
    System::setPlaceHook(Fault::onCall, &fault);
    const int error = what.operation(place);
    System::setHook(nullptr, nullptr);
    const std::string where = std::string(what.name) + ": " + fault.call + ", call " +
                              std::to_string(fault.number) + ", error " +
                              std::to_string(fault.error);
    what.check(place, error, where);
    expectLeftoversExplained(place, fault, where);
  }
};

}  // namespace

TEST_F(DescriptionFaults, EveryCallFailingOnceOrForEverLosesNoLine) {
  for (const Case& what : Cases) {
    const int calls = countCalls(what);
    for (const int error : {EIO, ENOSPC, EACCES}) {
      for (const auto reach : {Fault::Reach::Once, Fault::Reach::SameName}) {
        for (int number = 1; number <= calls; ++number) {
          playAndLook(what, {number, error, reach});
          if (HasFailure()) return;
        }
      }
    }
  }
}

TEST_F(DescriptionFaults, ADirectoryThatFailsForEverLosesNoLine) {
  for (const Case& what : Cases) {
    const int calls = countCalls(what);
    for (const char* below : {"from", "to", "emptied"}) {
      for (int number = 1; number <= calls; ++number) {
        playAndLook(what, {number, EIO, Fault::Reach::Below}, below);
        if (HasFailure()) return;
      }
    }
  }
}

TEST_F(DescriptionFaults, KilledAnywhereNoLineIsLost) {
  for (const Case& what : Cases) {
    const int calls = countCalls(what);
    for (int number = 1; number <= calls; ++number) {
      const TempDir place;
      build(place);
      Fault fault{number, 0, Fault::Reach::Kill};
      const int status = runInChild([&] {
        System::setPlaceHook(Fault::onCall, &fault);
        return what.operation(place);
      });
      ASSERT_EQ(status, Fault::Killed) << what.name << " " << number;
      what.check(place, EIO, std::string(what.name) + " killed at " + std::to_string(number));
      if (HasFailure()) return;
    }
  }
}
