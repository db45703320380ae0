#include "language/association_set.h"

#include <memory>

#include "language/filter_expression.h"

void AssociationSet::addPair(const Westring& pattern, const Westring& command) {
  auto item = std::make_unique<Association>();
  item->pattern = pattern;
  item->command = command;
  add(item.release());
}

const Westring* AssociationSet::find(const entry* item) {
  for (int i = 0; i < count(); ++i) {
    const Association* candidate = peek(i);
    if (evaluateFilter(candidate->pattern.data(), item)) return &candidate->command;
  }
  return nullptr;
}

const Westring* AssociationSet::findByName(const wchar_t* name) {
  return find(blankEntry(name).get());
}

AssociationSets& associationSets() {
  static AssociationSets sets;
  return sets;
}
