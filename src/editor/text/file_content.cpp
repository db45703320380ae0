#include "editor/text/file_content.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <new>

#include "foundation/memory_facts.h"
#include "foundation/regular_file.h"
#include "foundation/status.h"
#include "foundation/utf8.h"

namespace {

// Small enough for the processor's cache, from where the bytes are copied.
constexpr size_t PartSize = size_t{256} << 10;
constexpr size_t SmallFile = size_t{4} << 20;

// A socket can't be opened at all, other devices were opened in vain.
int openFile(const Westring& path, Descriptor& file) {
  const int error = openRegularFile(path, file, Links::Follow);
  return error == EINVAL || error == ENXIO ? Status::NotRegularFile : error;
}

bool fitsIntoMemory(int64_t size) {
  const auto memory = memoryFacts();
  return !memory || static_cast<uint64_t>(size) <= memory->free;
}

// Fewer and larger pages: filling small ones takes longer than reading. Where the system has none,
// nothing is lost.
void adviseLargePages(std::string& bytes) {
  constexpr uintptr_t PageSize = 4096;
  const auto start = (reinterpret_cast<uintptr_t>(bytes.data()) + PageSize - 1) & ~(PageSize - 1);
  const auto end = reinterpret_cast<uintptr_t>(bytes.data()) + bytes.capacity();
  if (end > start) madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}

int readInto(const Descriptor& file, FileContent& content, const FileProgress& progress) {
  const int64_t size = content.stamp.size;
  const int64_t limit = content.tellsSize ? LargestEdited : LargestUnsized;
  if (size > limit || !fitsIntoMemory(size)) return Status::TooLarge;
  content.bytes.reserve(static_cast<size_t>(size));
  if (content.bytes.capacity() > SmallFile) adviseLargePages(content.bytes);
  ContentHash hash;
  const int error = readParts(file.get(), limit, [&](std::string_view part) {
    content.bytes.append(part);
    hash.add(part);
    const auto done = static_cast<int64_t>(content.bytes.size());
    return !progress || progress(done, std::max(done, size)) ? 0 : ECANCELED;
  });
  if (error != 0) return error;
  content.hash = hash.value();
  // A part of a file, saved, would be the end of the rest.
  return static_cast<int64_t>(content.bytes.size()) < size ? Status::ChangedMeanwhile : 0;
}

}  // namespace

int readParts(int file, int64_t limit, const std::function<int(std::string_view part)>& take) {
  const auto buffer = std::make_unique<char[]>(PartSize);
  for (int64_t done = 0;;) {
    const ssize_t count = System::readAt(file, buffer.get(), PartSize, done);
    if (count < 0) return errno;
    if (count == 0) return 0;
    done += count;
    if (done > limit) return Status::TooLarge;
    if (const int error = take({buffer.get(), static_cast<size_t>(count)})) return error;
  }
}

int readFileContent(const Westring& path, FileContent& content, const FileProgress& progress) {
  content = {};
  Descriptor file;
  if (const int error = openFile(path, file)) return error;
  struct stat info;
  if (System::fstat(file.get(), &info) < 0) return errno;
  content.stamp = FileStamp::of(info);
  content.tellsSize = info.st_size > 0;
  content.isReadOnly = System::accessAt(AT_FDCWD, toUtf8(path).data(), W_OK) < 0;
  int error = 0;
  try {
    error = readInto(file, content, progress);
  } catch (const std::bad_alloc&) {
    error = Status::TooLarge;
  }
  // An empty file is one that is replaced as others are.
  content.tellsSize = content.tellsSize || content.bytes.empty();
  if (error != 0) content = {};
  return error;
}
