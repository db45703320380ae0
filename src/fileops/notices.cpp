#include "fileops/notices.h"

#include <cstdio>

#include "foundation/utf8.h"

void tellChanged(RunningOperation& operation) {
  const ChangedSources& changed = operation.changedSources;
  if (changed.count == 0) return;
  char text[64] = "Changed while it was copied";
  if (changed.count > 1) {
    snprintf(text, sizeof text, "Changed while it was copied (%d files)", changed.count);
  }
  static_cast<void>(operation.ui.ask(Westring(text), decodeFileName(changed.first.c_str()),
                                     AlertButtons::Ok, AlertColour::Error));
}

void tellLeftover(RunningOperation& operation, const std::string& path) {
  static_cast<void>(operation.ui.ask(L"Unfinished file could not be removed",
                                     decodeFileName(path.c_str()), AlertButtons::Ok,
                                     AlertColour::Error));
}

void tellDescriptionLeftovers(RunningOperation& operation) {
  for (const std::string& path : operation.descriptions.takeLeftovers()) {
    tellLeftover(operation, path);
  }
}

int flushOrTell(RunningOperation& operation, DescriptionFile& descriptions) {
  const int error = descriptions.flush();
  const std::string leftover = descriptions.takeLeftover();
  if (!leftover.empty()) tellLeftover(operation, leftover);
  return error;
}

void tellStandsAside(RunningOperation& operation, const std::string& path) {
  static_cast<void>(operation.ui.ask(L"Old file is kept as", decodeFileName(path.c_str()),
                                     AlertButtons::Ok, AlertColour::Error));
}
