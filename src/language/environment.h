#pragma once

#include <string>
#include <vector>

#include "foundation/sorted_collection.h"
#include "foundation/westring.h"

struct KeyedValue {
  Estring name;
  Estring value;
  bool hidden = false;  // as if no layer below had the name
};

// Sorted by name, exactly.
class KeyedValueSet : public TSortedCollection<KeyedValue, Estring> {
 public:
  ~KeyedValueSet() override { clear(); }

 protected:
  Estring* keyOf(KeyedValue* item) override { return &item->name; }
  int compareKeys(Estring* a, Estring* b) override;
};

// One layer of variables over its parent. Changed through set only. Application thread.
class Environment : public KeyedValueSet {
 public:
  explicit Environment(Environment* parent = nullptr) : parent_(parent) {}
  ~Environment() override { clear(); }

  const char* get(const char* name);              // here, then in the parents; null when unset
  void set(const char* name, const char* value);  // a null or empty value removes the pair
  void hide(const char* name);                    // and those of the parents don't come back
  void flatten(Environment& target);              // parents first, so that nearer layers win
  const std::vector<std::string>& block();        // "name=value" strings of this layer

 protected:
  void put(const char* name, const char* value);  // also keeps an empty value

 private:
  void forgetBlock();

  Environment* parent_;  // not owned, may be null
  std::vector<std::string> block_;
  bool blockValid_ = false;
};

// Filled from the program's own environment, as it is when this is made.
class ProcessEnvironment : public Environment {
 public:
  ProcessEnvironment();
};

// The three layers: what the program was started with, under what the configuration says, under
// what was set at the command line. Made at the first use of any, in this order.
Environment& processEnvironment();
Environment& configuredEnvironment();
Environment& sessionEnvironment();

// What another terminal has said of itself, and what would hold a size that changes. No command
// gets any of it.
inline constexpr const char* OfOtherTerminals[] = {
    "LINES", "COLUMNS", "COLORTERM", "TERM_PROGRAM", "TERM_PROGRAM_VERSION", "VTE_VERSION"};

// "~/" at the start, or "~" alone, becomes the home directory; "$NAME" its value in the session
// environment (a '$' right behind goes with it), an unset name goes.
Westring expandPathVariables(const Westring& text);
// Any "$NAME" up to white space, '$' or '/', as it is written, else folded to upper case; an
// unknown one stays. A '$' behind a backslash is no variable: so a quoted file name stays as it is.
// PWD, TERM and those of other terminals stay for the shell: it knows where it runs, and in what.
Westring expandCommandVariables(const Westring& text);
