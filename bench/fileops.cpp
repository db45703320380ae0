// Runs one operation on files with td's own engines, asking nobody.
// usage: bench_fileops copy|move SOURCE TARGET | moves COUNT A B | delete DIRECTORY
//        | mode OCTAL NAME...

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fileops/delete_tree.h"
#include "fileops/file_attributes.h"
#include "fileops/operation.h"
#include "fileops/transfer.h"
#include "foundation/system.h"

namespace {

int transfer(TransferKind kind, const char* source, const char* target) {
  SilentUi ui;
  RunningOperation operation(ui);
  return Transfer(operation, kind).run(source, target, 1, 1) == Outcome::Done ? 0 : 1;
}

// To and fro, so that the start of a process weighs nothing.
int moves(int count, const char* source, const char* target) {
  for (int i = 0; i < count; ++i) {
    bool back = i % 2 != 0;
    if (transfer(TransferKind::Move, back ? target : source, back ? source : target) != 0) return 1;
  }
  return 0;
}

int deleteTree(const char* directory) {
  SilentUi ui;
  RunningOperation operation(ui);
  return DeleteTree(operation, L"*").run(placeOf(directory)) == Outcome::Done ? 0 : 1;
}

// Names in the working directory, as the command on tagged files does it.
int giveMode(const char* octal, int count, char** names) {
  constexpr int Octal = 8;
  const AttributeChange change{.clear = AttributeBits,
                               .set = static_cast<mode_t>(strtol(octal, nullptr, Octal))};
  const Descriptor here(System::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC));
  for (int i = 0; i < count; ++i) {
    struct stat after;
    if (changeAttributes({here.get(), names[i], names[i]}, change, after) != 0) return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  setlocale(LC_ALL, "");
  std::string command = argc > 1 ? argv[1] : "";
  if (command == "copy" && argc == 4) return transfer(TransferKind::Copy, argv[2], argv[3]);
  if (command == "move" && argc == 4) return transfer(TransferKind::Move, argv[2], argv[3]);
  if (command == "moves" && argc == 5) return moves(atoi(argv[2]), argv[3], argv[4]);
  if (command == "delete" && argc == 3) return deleteTree(argv[2]);
  if (command == "mode" && argc > 3) return giveMode(argv[2], argc - 3, argv + 3);
  fputs("usage: bench_fileops copy|move SOURCE TARGET | delete DIRECTORY | mode OCTAL NAME...\n",
        stderr);
  return 2;
}
