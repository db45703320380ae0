#pragma once

#include "foundation/object_store.h"
#include "foundation/sorted_collection.h"
#include "foundation/westring.h"

using EstringStore = TObjectStore<Estring>;
using FnStringStore = TObjectStore<Westring>;

// The texts with a newline between them, and such a text cut up again behind what `lines` holds.
// The time is that of looking at each character once.
Westring joinLines(const FnStringStore& lines);
void splitLines(const Westring& text, FnStringStore& lines);

// Ordered without regard to case; the first spelling of a duplicate stays.
class StringCollection : public TSortedCollection<Estring, Estring> {
 public:
  int addCopy(const Estring& text);  // 1 added, 0 refused
  // Adds the fields of a comma list (see nextField); returns how many were added.
  int addList(const char* list);
  Estring join() const;  // the elements in order, ',' between them

 protected:
  Estring* keyOf(Estring* item) override { return item; }
  int compareKeys(Estring* a, Estring* b) override;
};

// Wide texts, in the order that the derived class gives.
class WestringCollection : public TSortedCollection<Westring, Westring> {
 public:
  int addCopy(const Westring& text);  // 1 added, 0 refused

 protected:
  Westring* keyOf(Westring* item) override { return item; }
};

// Ordered without regard to case; the first spelling of a duplicate stays.
class FnStringCollection : public WestringCollection {
 protected:
  int compareKeys(Westring* a, Westring* b) override;
};

// File names: the exact order, so that Foo and foo both have their place.
class NameCollection : public WestringCollection {
 protected:
  int compareKeys(Westring* a, Westring* b) override;
};

// Cuts the next field of a comma list and moves the cursor behind it. Quotes group, "" inside text
// is a quote, a backslash and up to three decimal digits are a character of that value.
Estring nextField(const char*& cursor);
Estring nextField(Estring& list);  // leaves the remainder in `list`
