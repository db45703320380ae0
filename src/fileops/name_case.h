#pragma once

#include "foundation/westring.h"

// What is done to the letters of a name; the characters are those that the setting is stored with.
enum class CaseRule : char { Lower = 'l', Upper = 'u', Mixed = 'm', Keep = 'n' };

// One rule for what stands before the last dot, one for the rest, dot included.
struct NameCase {
  CaseRule name = CaseRule::Keep;
  CaseRule extension = CaseRule::Keep;
};

// From and to the two characters of the setting; what they don't say is kept as it is.
NameCase nameCaseOf(const Estring& setting);
Estring settingOf(const NameCase& rules);

// Letters by the table that file names are folded with, the same in every locale. Bytes that are no
// characters stay.
Westring withCase(const Westring& text, CaseRule rule);
Westring withCase(const Westring& name, const NameCase& rules);
