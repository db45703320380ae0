#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "archive/archive_entry_store.h"
#include "archive/sample_archives.h"
#include "foundation/status.h"
#include "foundation/utf8.h"
#include "support/temp_dir.h"

inline std::string utf8(const Westring& text) {
  return toUtf8(text).data();
}

inline std::string utf8(const wchar_t* text) {
  return toUtf8(text).data();
}

inline std::string utf8(std::wstring_view text) {
  return toUtf8(std::wstring(text).c_str()).data();
}

// The members of a byte span, as a reader saw them.
struct ReadArchive {
  explicit ReadArchive(const std::string& bytes, const wchar_t* name = L"file.ext")
      : view(bytes), reading(view, records, name, watcher) {
    found = readArchive(reading, records, type);
  }
  // "dir/name SIZE", a directory with a slash at its end; sorted.
  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (uint32_t i = 0; i < records.count(); ++i) {
      const ArchiveRecord& record = records.at(i);
      std::string path = utf8(records.directories()[record.directory].path);
      if (!path.empty() || record.name.empty()) path += '/';
      path += utf8(record.name);
      result.push_back(path + " " + std::to_string(record.size));
    }
    std::sort(result.begin(), result.end());
    return result;
  }
  std::vector<std::string> told() const {
    std::vector<std::string> result;
    for (const ArchiveMessage& message : reading.messages()) result.push_back(utf8(message.text()));
    return result;
  }
  bool isArchive() const { return found == Recognised::Yes; }

  ArchiveBytes view;
  ArchiveRecords records;
  ArchiveWatcher watcher;
  ArchiveReading reading;
  ArchiveType type = ArchiveType::Zip;
  Recognised found = Recognised::No;
};

using Names = std::vector<std::string>;

// What ReadArchive::names gives for these members.
inline Names namesOf(const SampleMembers& members) {
  Names result;
  for (const SampleMember& member : members) {
    result.push_back(member.path + " " + std::to_string(member.size()));
  }
  std::sort(result.begin(), result.end());
  return result;
}

// A listing as "name" or "name/", in its order.
inline Names listing(OpenArchive& archive, const Westring& directory) {
  Names names;
  entry* item = nullptr;
  for (int status = archive.first(directory, item); status == 0; status = archive.next(item)) {
    names.push_back(utf8(item->name()) + (item->isDirectory() ? "/" : ""));
    freeEntry(item);
  }
  return names;
}

inline ArchiveOpening opened(const TempDir& place, const std::string& name,
                             const std::string& bytes) {
  place.write(name, bytes);
  ArchiveWatcher nobody;
  return openArchiveFile(place.wide(name), place.wide(name), nobody);
}
