#pragma once

#include "fileops/name_case.h"
#include "fileops/operation.h"
#include "foundation/place.h"

struct CaseChange {
  NameCase rules = {};
  bool directories = false;  // their names change
  bool files = false;        // and those of everything else
  bool recurse = false;      // also in directories that keep their name
};

// Is told what happens. Paths are as the disk has them.
class CaseChangeWatcher {
 public:
  virtual ~CaseChangeWatcher() = default;
  // The members of `directory` are being looked at; `count` names so far, below one item.
  virtual void working(const char*, int64_t) {}
  virtual void directoryRenamed(const char*, const char*) {}  // from, to
};

// Gives an item, and what is in it if that is asked for, names in the wanted case; descriptions
// follow. A name that is taken is never replaced, and the file of the descriptions keeps its own. A
// directory that got another name is left alone with all that is in it; links are never gone
// through. Failed when the user was told of something.
Outcome changeCase(RunningOperation& operation, const Place& item, const CaseChange& change,
                   CaseChangeWatcher& watcher);
