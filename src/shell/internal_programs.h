#pragma once

#include "foundation/connection.h"
#include "foundation/westring.h"

// The viewer and the editor, as the commands $view and $edit call them. Paths are absolute.
// Application thread.
class InternalPrograms {
 public:
  virtual ~InternalPrograms() = default;
  virtual void view(const Westring&) {}
  virtual void edit(const Westring&) {}
};

Connection<InternalPrograms>& internalPrograms();
