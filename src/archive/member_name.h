#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "archive/archive_member.h"

// A stored path as it is shown: directory and name, both without slashes at their ends.
class MemberName {
 public:
  // False when it can't be shown: it climbs, has a component that is empty or ".", holds a NUL or
  // has more than 4096 characters. The views hold until the next call.
  bool take(const ArchiveMember& member);

  std::wstring_view directory() const { return directory_; }
  std::wstring_view name() const { return name_; }  // "" for a directory
  bool dotSlash() const { return dotSlash_; }       // "./" stood before it, or it was "."
  // Whether the stored bytes are those of "./" if there was one, directory, name and, for a
  // directory, a slash that may be missing.
  bool isExact() const { return exact_; }
  // After a refusal: the components before the first one that can't be shown.
  std::wstring_view safeBeginning() const { return directory_; }

 private:
  bool decode(std::string_view bytes, NameForm form);
  bool check(std::wstring_view path);

  std::wstring text_;
  std::wstring_view directory_;
  std::wstring_view name_;
  bool dotSlash_ = false;
  bool exact_ = true;
};
