#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "foundation/dos_time.h"
#include "foundation/entry.h"
#include "foundation/westring.h"

// The rules by which two listings are compared name by name. Pure, but for the tags that
// tagCompared sets. Application thread, since a mask is a filter.

enum class DateRule : int { Ignore, TagNewer, TagOlder, TagDifferent };
enum class SizeRule : int { Ignore, TagLarger, TagSmaller, TagDifferent };

struct CompareRules {
  DateRule date = DateRule::Ignore;
  SizeRule size = SizeRule::Ignore;
  bool unmatched = false;
  bool contents = false;
  Westring mask = L"*";  // only files that pass it are tagged
};

// Two plain files of one name.
struct ComparedPair {
  entry* left;
  entry* right;
  bool markLeft = false;
  bool markRight = false;
};

struct ComparedNames {
  std::vector<ComparedPair> pairs;  // in the left listing's order
  std::vector<entry*> leftOnly;
  std::vector<entry*> rightOnly;
};

// Directories and description files take no part. Names are compared exactly; of equal names in the
// right listing the first counts.
ComparedNames matchNames(std::span<entry* const> left, std::span<entry* const> right);

// Marks by date and size.
void markByRules(ComparedPair& pair, const CompareRules& rules);
// Whether the contents still decide something about a pair that was marked by the rules.
bool contentsDecide(const ComparedPair& pair);
// Files of different sizes differ without being read.
bool sizesDiffer(const ComparedPair& pair);
void markDifferent(ComparedPair& pair);

// Sets the tags of both listings by the marks, the mask and the rule about unmatched names.
void tagCompared(std::span<entry* const> left, std::span<entry* const> right,
                 const ComparedNames& names, const CompareRules& rules);
void clearTags(std::span<entry* const> entries);

// Packed words as a count of two seconds, so that differences can be told.
int64_t twoSecondUnits(DosTime words);
