#include "syntax/syntax_definitions.h"

#include <algorithm>

namespace {

constexpr char DefaultWordCharacters[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
    "abcdefghijklmnopqrstuvwxyz"
    "1234567890";

void addTriggers(SyntaxTables& tables, const SyntaxScope& scope) {
  for (const CSyntaxElement* element : scope.elements) {
    tables.triggers.push_back(SyntaxTrigger{&element->begin, element, nullptr});
  }
  for (const CSyntaxStateChange* change : scope.changes) {
    tables.triggers.push_back(SyntaxTrigger{&change->text, nullptr, change});
  }
  auto keyOf = [](const SyntaxTrigger& trigger) {
    return SyntaxTables::triggerKey(trigger.text->first());
  };
  std::stable_sort(
      tables.triggers.begin(), tables.triggers.end(),
      [&](const SyntaxTrigger& a, const SyntaxTrigger& b) { return keyOf(a) < keyOf(b); });
  for (const SyntaxTrigger& trigger : tables.triggers) ++tables.firstTrigger[keyOf(trigger) + 1];
  for (size_t key = 0; key < SyntaxTableSize; ++key) {
    tables.firstTrigger[key + 1] += tables.firstTrigger[key];
  }
}

}  // namespace

SyntaxDefinitions::SyntaxDefinitions(unsigned char colour) : defaultColour(colour) {
  for (const char* p = DefaultWordCharacters; *p != 0; ++p) wordCharacters.set(syntaxIndex(*p));
}

template <class Rules, class Take>
void SyntaxDefinitions::handOut(const Rules& rules, Take take) {
  for (const auto& rule : rules) {
    if (rule.contexts.outside()) take(outside_, &rule);
    for (const std::string& name : rule.contexts.names()) {
      // A name that no element has is never on the stack.
      const auto scope = scopes_.find(name);
      if (scope != scopes_.end()) take(scope->second, &rule);
    }
  }
}

void SyntaxDefinitions::finish() {
  std::unordered_map<std::string, const CSyntaxElement*> firstOfName;
  for (CSyntaxElement& element : elements) {
    element.scope = &scopes_[element.name];
    firstOfName.emplace(element.name, &element);
  }
  for (CSyntaxStateChange& change : changes) {
    const auto target = firstOfName.find(change.targetName);
    if (target != firstOfName.end()) change.target = target->second;
  }
  handOut(wordLists, [](auto& scope, auto* rule) { scope.wordLists.push_back(rule); });
  handOut(symbolLists, [](auto& scope, auto* rule) { scope.symbolLists.push_back(rule); });
  handOut(numbers, [](auto& scope, auto* rule) { scope.number = rule; });
  handOut(elements, [](auto& scope, auto* rule) { scope.elements.push_back(rule); });
  handOut(changes, [](auto& scope, auto* rule) { scope.changes.push_back(rule); });
}

const SyntaxTables& SyntaxDefinitions::tables(const SyntaxScope& scope) const {
  if (scope.tables == nullptr) scope.tables = makeTables(scope);
  return *scope.tables;
}

std::unique_ptr<const SyntaxTables> SyntaxDefinitions::makeTables(const SyntaxScope& scope) const {
  auto tables = std::make_unique<SyntaxTables>();
  addTriggers(*tables, scope);
  for (const SyntaxSymbolList* list : scope.symbolLists) {
    for (size_t low = 0; low < SyntaxTableSize; ++low) {
      if (!list->characters[low]) continue;
      tables->ofLowByte[low] |= SyntaxTables::Symbol;
      tables->symbolColour[low] = list->colour;
    }
  }
  for (size_t low = 0; low < SyntaxTableSize; ++low) {
    const size_t key = SyntaxTables::triggerKey(static_cast<wchar_t>(low));
    if (wordCharacters[low]) tables->ofLowByte[low] |= SyntaxTables::Word;
    if (tables->firstTrigger[key] != tables->firstTrigger[key + 1]) {
      tables->ofLowByte[low] |= SyntaxTables::Opens;
    }
  }
  return tables;
}
