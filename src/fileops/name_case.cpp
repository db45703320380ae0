#include "fileops/name_case.h"

#include <cwctype>

#include "foundation/fold.h"

namespace {

constexpr wchar_t Apostrophe = L'\'';
constexpr wchar_t ExtensionDot = L'.';

CaseRule ruleOf(char character) {
  switch (const auto rule = static_cast<CaseRule>(character)) {
    case CaseRule::Lower:
    case CaseRule::Upper:
    case CaseRule::Mixed:
      return rule;
    default:
      return CaseRule::Keep;
  }
}

bool isLetter(wchar_t character) {
  if (character < 0) return false;  // a byte that is no character
  return foldChar(character) != character || unfoldChar(character) != character ||
         iswalpha(static_cast<wint_t>(character));
}

// A capital begins each word; so does one behind an apostrophe that follows the first letter.
class MixedCase {
 public:
  wchar_t next(wchar_t character, wchar_t following) {
    if (isLetter(character)) {
      const bool capital = capitalNext_;
      capitalNext_ = capital && following == Apostrophe;
      return capital ? foldChar(character) : unfoldChar(character);
    }
    if (character != Apostrophe) capitalNext_ = !(character >= L'0' && character <= L'9');
    return character;
  }

 private:
  bool capitalNext_ = true;
};

}  // namespace

NameCase nameCaseOf(const Estring& setting) {
  NameCase rules;
  const char* letters = setting.data();
  if (letters[0] == 0) return rules;
  rules.name = ruleOf(letters[0]);
  rules.extension = ruleOf(letters[1]);
  return rules;
}

Estring settingOf(const NameCase& rules) {
  const char letters[] = {static_cast<char>(rules.name), static_cast<char>(rules.extension), 0};
  return Estring(letters);
}

Westring withCase(const Westring& text, CaseRule rule) {
  Westring result = text;
  MixedCase mixed;
  for (wchar_t* at = result.data(); *at != 0; ++at) {
    if (rule == CaseRule::Lower) *at = unfoldChar(*at);
    if (rule == CaseRule::Upper) *at = foldChar(*at);
    if (rule == CaseRule::Mixed) *at = mixed.next(*at, at[1]);
  }
  return result;
}

Westring withCase(const Westring& name, const NameCase& rules) {
  const int dot = name.rfind(ExtensionDot);
  if (dot < 0) return withCase(name, rules.name);
  return withCase(left(name, dot), rules.name) +
         withCase(Westring(name.data() + dot), rules.extension);
}
