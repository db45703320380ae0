#include "filecommands/archive_actions.h"

Connection<ArchiveActions>& archiveActions() {
  static Connection<ArchiveActions> actions;
  return actions;
}
