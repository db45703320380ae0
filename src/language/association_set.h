#pragma once

#include "foundation/entry.h"
#include "foundation/object_store.h"
#include "foundation/westring.h"

struct Association {
  Westring pattern;
  Westring command;
};

// Filter expressions paired with texts, in file order; the first match wins.
class AssociationSet : public TObjectStore<Association> {
 public:
  ~AssociationSet() override { clear(); }
  void addPair(const Westring& pattern, const Westring& command);
  // The text of the first match, or null.
  const Westring* find(const entry* item);
  const Westring* findByName(const wchar_t* name);
};

// The five sets of the configuration file.
struct AssociationSets {
  AssociationSet associations;
  AssociationSet viewers;
  AssociationSet editors;
  AssociationSet fileColours;
  AssociationSet directoryColours;
};

AssociationSets& associationSets();
