#include "shell/internal_programs.h"

Connection<InternalPrograms>& internalPrograms() {
  static Connection<InternalPrograms> connection;
  return connection;
}
