#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "archive/archive_formats.h"
#include "foundation/dos_time.h"

// Archives in every format and in both forms of its headers, their members stored as they are.

struct SampleMember {
  std::string path;  // a directory's ends in a slash
  std::string content;
  uint64_t claimedSize = NoClaim;  // what the header says of a size, where that isn't the truth
  std::string secondName = {};     // of a ZIP: the path in UTF-8, beside the one in the header

  static constexpr uint64_t NoClaim = ~uint64_t{0};
  bool isDirectory() const { return path.ends_with('/'); }
  uint64_t size() const { return claimedSize == NoClaim ? content.size() : claimedSize; }
};
using SampleMembers = std::vector<SampleMember>;

inline constexpr DosTime SampleWords{.date = 0x5A21, .time = 0x6123};  // of all members
time_t sampleTime();                                                   // the same as Unix time

enum class HeaderForm { Published, Wide };

std::string zipArchive(const SampleMembers& members, const std::string& stub = "");
// The same archive as one that was made on this system; zipArchive makes those of the first one.
enum class ZipHost : char { Fat = 0, Unix = 3, Ntfs = 10 };
std::string zipMadeBy(ZipHost host, std::string archive);
std::string rar4Archive(const SampleMembers& members, HeaderForm form,
                        const std::string& stub = "");
std::string rar5Archive(const SampleMembers& members, const std::string& stub = "");
std::string lhaArchive(const SampleMembers& members, int level, const std::string& stub = "");
std::string wideLhaArchive(const SampleMembers& members, const std::string& stub = "");
std::string arjArchive(const SampleMembers& members, HeaderForm form, const std::string& stub = "");
// A header of such an archive, with its length and sum about the fields.
std::string arjHeader(const std::string& fields);
std::string aceArchive(const SampleMembers& members, HeaderForm form, const std::string& stub = "");
// In the published form, an empty comment behind each name. The unpacker of this system takes a
// file header only if four bytes follow the name.
std::string commentedAceArchive(const SampleMembers& members);
std::string haArchive(const SampleMembers& members, HeaderForm form);
// Of the first member alone. Only one that holds a sum of its header has two forms.
std::string gzipArchive(const SampleMembers& members, HeaderForm form);
std::string tarArchive(const SampleMembers& members, HeaderForm form);
std::string tarBlock(const std::string& name, char type, uint64_t size, HeaderForm form);
std::string tarPadded(const std::string& data);

// One row for each format and form.
struct SampleArchive {
  const char* what;
  ArchiveType type;
  std::string (*make)(const SampleMembers& members);
  bool directories;  // whether it holds directories by themselves
};
const std::vector<SampleArchive>& sampleArchives();
const SampleMembers& usualMembers();

// Numbers as little endian bytes.
std::string le16(uint64_t value);
std::string le32(uint64_t value);
std::string le64(uint64_t value);
std::string programStub();  // begins as a program does
