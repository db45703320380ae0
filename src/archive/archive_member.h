#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/dos_time.h"

// How the bytes of a name become characters.
enum class NameForm : uint8_t {
  FileName,  // as names on the disk: UTF-8, other bytes as they are
  Page437,   // the code page of the first packers
};

enum class MemberKind : uint8_t { File, Directory };

// What a reader found out about one member.
struct ArchiveMember {
  std::string_view name;   // the whole path as stored, as the format's tools take it
  std::string_view shown;  // what is shown in its place; "" when that is the name
  bool foreign = false;    // made on a system whose names the tools translate
  NameForm form = NameForm::FileName;
  MemberKind kind = MemberKind::File;  // a name that ends in a slash is a directory's anyway
  uint64_t size = 0;                   // bytes
  uint64_t packed = 0;                 // the same as stored
  DosTime when;
  uint16_t attributes = 0;  // Attribute bits besides Directory
};
