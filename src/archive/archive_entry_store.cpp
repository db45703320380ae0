#include "archive/archive_entry_store.h"

#include <algorithm>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/regular_file.h"
#include "foundation/status.h"

namespace {

std::wstring_view viewOf(const Westring& text) {
  return {text.data(), static_cast<size_t>(text.length())};
}

entry* directoryEntry(std::wstring_view name, DosTime when) {
  entry* item = newEntry(static_cast<int>(name.size()));
  name.copy(item->name(), name.size());
  item->attributes = Attribute::Directory;
  item->date = when.date;
  item->time = when.time;
  return item;
}

entry* fileEntry(const ArchiveRecord& record) {
  entry* item = newEntry(static_cast<int>(record.name.size()));
  record.name.copy(item->name(), record.name.size());
  item->size = record.size;
  item->attributes = record.attributes;
  item->date = record.when.date;
  item->time = record.when.time;
  return item;
}

// Where the components end that two directories begin with, the second of which stands behind the
// first one in their order.
size_t endOfShared(std::wstring_view previous, std::wstring_view path) {
  size_t shared = 0;
  for (size_t i = 0;; ++i) {
    const bool previousEnds = i == previous.size() || previous[i] == L'/';
    const bool pathEnds = i == path.size() || path[i] == L'/';
    if (previousEnds && pathEnds) shared = i;
    if (i >= previous.size() || i >= path.size() || previous[i] != path[i]) return shared;
  }
}

}  // namespace

ArchiveEntryStore::ArchiveEntryStore(const Westring& path, const Westring& diskFile,
                                     const FileStamp& file)
    : path_(path), diskFile_(diskFile), file_(file) {}

int ArchiveEntryStore::first(const Westring& innerPath, entry*& result) {
  result = nullptr;
  directory_ = innerPath;
  directoryLength_ = viewOf(innerPath).size();
  nextRecord_ = endOfRecords_ = 0;
  const auto& directories = records_.directories();
  nextDirectory_ = records_.placeOf(directory());
  const bool held = nextDirectory_ < directories.size() &&
                    isWithin(directories[nextDirectory_].path, directory());
  if (!held && directoryLength_ > 0) {
    nextDirectory_ = static_cast<uint32_t>(directories.size());
    return Status::EndOfFile;
  }
  if (held && directories[nextDirectory_].path == directory()) {
    nextRecord_ = directories[nextDirectory_].firstRecord;
    endOfRecords_ = nextRecord_ + directories[nextDirectory_].recordCount;
    ++nextDirectory_;
  }
  if (directoryLength_ == 0) return next(result);
  result = directoryEntry(ParentName, timeToDos(file_.modified.tv_sec));
  return 0;
}

int ArchiveEntryStore::next(entry*& result) {
  result = nextFile();
  if (result == nullptr) result = nextDirectory();
  return result != nullptr ? 0 : Status::NoMoreFiles;
}

entry* ArchiveEntryStore::nextFile() {
  while (nextRecord_ < endOfRecords_) {
    const ArchiveRecord& record = records_.at(nextRecord_++);
    if (!isLastOfItsName(nextRecord_ - 1, endOfRecords_)) continue;
    dotSlash_ = record.dotSlash;
    return fileEntry(record);
  }
  return nullptr;
}

bool ArchiveEntryStore::isLastOfItsName(uint32_t record, uint32_t end) const {
  const std::wstring_view name = records_.at(record).name;
  return !name.empty() && (record + 1 == end || records_.at(record + 1).name != name);
}

const ArchiveRecord* ArchiveEntryStore::fileOf(const Westring& innerPath) const {
  const std::wstring_view path = viewOf(innerPath);
  const size_t slash = path.rfind(L'/');
  const bool inRoot = slash == std::wstring_view::npos;
  const std::wstring_view holder = inRoot ? std::wstring_view() : path.substr(0, slash);
  const std::wstring_view name = inRoot ? path : path.substr(slash + 1);
  const uint32_t place = records_.placeOf(holder);
  if (place == records_.directories().size()) return nullptr;
  const ArchiveDirectory& found = records_.directories()[place];
  if (found.path != holder) return nullptr;
  // Names stand in an order of their own, without regard to case first.
  for (uint32_t record = found.firstRecord + found.recordCount; record-- > found.firstRecord;) {
    if (records_.at(record).name == name && !name.empty()) return &records_.at(record);
  }
  return nullptr;
}

entry* ArchiveEntryStore::nextDirectory() {
  const auto& directories = records_.directories();
  if (nextDirectory_ == directories.size()) return nullptr;
  const ArchiveDirectory& found = directories[nextDirectory_];
  if (!isWithin(found.path, directory())) return nullptr;
  const size_t start = directoryLength_ == 0 ? 0 : directoryLength_ + 1;
  const size_t end = std::min(found.path.find(L'/', start), found.path.size());
  // A directory's own record comes first among those inside it, the last one of several counts.
  uint32_t record = found.firstRecord;
  const uint32_t behind = record + found.recordCount;
  while (record + 1 < behind && records_.at(record + 1).name.empty()) ++record;
  const ArchiveRecord& source = records_.at(record);
  dotSlash_ = source.dotSlash;
  nextDirectory_ = records_.placeBehind(found.path.substr(0, end), nextDirectory_);
  return directoryEntry(found.path.substr(start, end - start), source.when);
}

uint64_t ArchiveEntryStore::filesIn(const ArchiveDirectory& directory) const {
  const uint32_t end = directory.firstRecord + directory.recordCount;
  uint64_t files = 0;
  for (uint32_t record = directory.firstRecord; record < end; ++record) {
    if (isLastOfItsName(record, end)) ++files;
  }
  return files;
}

ArchiveCount ArchiveEntryStore::countBelow(const Westring& innerPath) const {
  const std::wstring_view top = viewOf(innerPath);
  ArchiveCount count{.directories = 0, .files = 0, .bytes = records_.sizeBelow(top)};
  const auto& directories = records_.directories();
  std::wstring_view previous = top;
  for (uint32_t i = records_.placeOf(top); i < directories.size(); ++i) {
    const std::wstring_view path = directories[i].path;
    if (!isWithin(path, top)) break;
    for (size_t end = endOfShared(previous, path); end < path.size(); ++count.directories) {
      end = std::min(path.find(L'/', end + 1), path.size());
    }
    count.files += filesIn(directories[i]);
    previous = path;
  }
  return count;
}

void ArchiveEntryStore::forEachDirectory(
    const std::function<void(const Westring& innerPath)>& visit) const {
  std::wstring_view previous;
  for (const ArchiveDirectory& directory : records_.directories()) {
    const std::wstring_view path = directory.path;
    for (size_t end = endOfShared(previous, path); end < path.size();) {
      end = std::min(path.find(L'/', end + 1), path.size());
      visit(Westring(std::wstring(path.substr(0, end)).c_str()));
    }
    previous = path;
  }
}

ArchiveFacts ArchiveEntryStore::facts() const {
  return {records_.size(), records_.packed(), archiveTypeName(type_)};
}

bool ArchiveEntryStore::isCurrent() const {
  struct stat info;
  return statPath(diskFile_, info) == 0 && isUnchanged(file_, FileStamp::of(info));
}

ArchiveOpening openArchiveFile(const Westring& path, const Westring& diskFile,
                               ArchiveWatcher& watcher) {
  Descriptor file;
  if (openRegularFile(diskFile, file, Links::Follow) != 0) return {};
  struct stat info;
  if (System::fstat(file.get(), &info) != 0) return {};
  auto archive = std::make_unique<ArchiveEntryStore>(path, diskFile, FileStamp::of(info));
  ArchiveBytes bytes(file.get(), static_cast<uint64_t>(info.st_size));
  const Westring name = lastComponent(path);
  ArchiveReading reading(bytes, archive->records_, viewOf(name), watcher);
  const Recognised found = readArchive(reading, archive->records_, archive->type_);
  if (found == Recognised::Stopped) return {.archive = nullptr, .stopped = true};
  ArchiveOpening opening{.archive = nullptr, .messages = reading.messages()};
  if (found == Recognised::No) return opening;
  const uint64_t hidden = archive->records_.hiddenCount();
  if (hidden > 0) opening.messages.push_back({ArchiveNote::NamesHidden, hidden});
  opening.archive = std::move(archive);
  return opening;
}
