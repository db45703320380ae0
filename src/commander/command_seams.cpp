#include "commander/command_seams.h"

CommandSeams& commandSeams() {
  static CommandSeams seams;
  return seams;
}
