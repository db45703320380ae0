#include "search/file_replacer.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "editor/text/text_file.h"
#include "foundation/kept_attributes.h"
#include "foundation/safe_file.h"
#include "foundation/status.h"

namespace {

constexpr char TemporaryEnding[] = ".td@@@.tmp";
constexpr size_t OutputBytes = 262144;
constexpr mode_t PrivateMode = 0600;

// The encoding of a file without a byte order mark, one byte a unit. 0 or errno.
int detect(int source, TextEncoding& encoding) {
  std::string beginning(CTextFile::DetectionBytes, '\0');
  const ssize_t got = System::readAt(source, beginning.data(), beginning.size(), 0);
  if (got < 0) return errno;
  beginning.resize(static_cast<size_t>(got));
  const TextEncoding detected = CTextFile::detect(beginning).encoding;
  encoding = unitBytes(detected.format) == 1 ? detected : TextEncoding{TextFormat::CodePage};
  return 0;
}

}  // namespace

// The new content in the making; gone again unless it took the file's name.
class FileReplacer::Target {
 public:
  explicit Target(const WrittenPlace& place) : place_(place) {}
  ~Target() { discard(); }
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  bool isMade() const { return fd_.valid(); }
  std::string path() const {
    std::string path = place_.directoryPath;
    replaceTail(path, path.size(), name_.c_str());
    return path;
  }

  // 0 or errno, as all of these.
  int make() {
    name_ = place_.name + TemporaryEnding;
    int error = create();
    if (error == EEXIST && System::unlinkAt(directory(), name_.c_str(), 0) == 0) error = create();
    return error == ENAMETOOLONG ? createShort() : error;
  }

  int write(std::string_view bytes) {
    output_ += bytes;
    return output_.size() < OutputBytes ? 0 : flush();
  }

  int takeName(int source, const struct stat& info, FileId& made) {
    if (const int error = flush()) return error;
    if (const int error = keepOwnership(source, fd_.get(), info)) return error;
    if (const int error = keepMode(fd_.get(), info)) return error;
    if (System::sync(fd_.get()) != 0) return errno;
    struct stat now;
    if (System::fstat(fd_.get(), &now) != 0) return errno;
    made = idOf(now);
    if (const int error = fd_.close()) return error;
    if (const int error = checkUnchanged(info)) return error;
    if (System::renameAt(directory(), name_.c_str(), directory(), place_.name.c_str()) != 0) {
      return errno;
    }
    there_ = false;
    return 0;
  }

  void discard() {
    fd_.reset();
    if (there_) System::unlinkAt(directory(), name_.c_str(), 0);
    there_ = false;
  }

 private:
  int directory() const { return place_.directory.get(); }

  int create() {
    fd_ =
        Descriptor(System::openAt(directory(), name_.c_str(),
                                  O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, PrivateMode));
    there_ = fd_.valid();
    return there_ ? 0 : errno;
  }

  int createShort() {
    constexpr unsigned Attempts = 100;
    int error = EEXIST;
    for (unsigned i = 0; error == EEXIST && i < Attempts; ++i) {
      name_ = temporaryNameBeside(place_.name.c_str(), i);
      error = create();
    }
    return error;
  }

  int flush() {
    for (size_t done = 0; done < output_.size();) {
      const ssize_t wrote = System::write(fd_.get(), output_.data() + done, output_.size() - done);
      if (wrote < 0) return errno;
      done += static_cast<size_t>(wrote);
    }
    output_.clear();
    return 0;
  }

  int checkUnchanged(const struct stat& read) const {
    struct stat now;
    if (System::statAt(directory(), place_.name.c_str(), &now, AT_SYMLINK_NOFOLLOW) != 0) {
      return errno == ENOENT ? Status::ChangedMeanwhile : errno;
    }
    return isUnchanged(FileStamp::of(now), FileStamp::of(read)) ? 0 : Status::ChangedMeanwhile;
  }

  const WrittenPlace& place_;
  std::string name_;
  Descriptor fd_;
  bool there_ = false;
  std::string output_;
};

FileReplacer::FileReplacer(const Westring& text, CaseRule rule, bool wholeWord,
                           const Westring& replacement, StopAsked stop)
    : text_(text, rule, wholeWord),
      replacement_(replacement),
      textIsAscii_(isAscii(text.data())),
      stop_(std::move(stop)),
      scanner_(text_, stop_) {}

ReplaceResult FileReplacer::failed(int error, const std::string& path) {
  error_ = error;
  errorPath_ = path;
  return ReplaceResult::Failed;
}

int FileReplacer::open(const std::string& path, WrittenPlace& place, Descriptor& source,
                       struct stat& info) {
  if (const int error = findWrittenPlace(path, Links::Follow, place)) return error;
  source = Descriptor(System::openAt(place.directory.get(), place.name.c_str(),
                                     O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC));
  if (!source.valid() || System::fstat(source.get(), &info) != 0) return errno;
  return S_ISREG(info.st_mode) ? 0 : Status::NotRegularFile;
}

ReplaceResult FileReplacer::replaceIn(const std::string& path) {
  WrittenPlace place;
  Descriptor source;
  struct stat info;
  if (const int error = open(path, place, source, info)) return failed(error, path);
  if (made_.contains(idOf(info))) return ReplaceResult::Done;
  detected_.reset();
  Target target(place);
  int64_t count = 0;
  const ReplaceResult result = replaceAll(path, source.get(), info, target, count);
  if (result != ReplaceResult::Done || count == 0) return result;
  FileId made;
  if (const int error = target.takeName(source.get(), info, made)) {
    return failed(error, error == Status::ChangedMeanwhile ? path : target.path());
  }
  made_.insert(made);
  replaced_ += count;
  return ReplaceResult::Done;
}

ReplaceResult FileReplacer::replaceAll(const std::string& path, int source, const struct stat& info,
                                       Target& target, int64_t& count) {
  scanner_.start(source, info.st_size);
  int64_t copied = 0;
  TextHit hit;
  for (;;) {
    switch (scanner_.next(hit.end(), hit)) {
      case ScanResult::Stopped:
        return ReplaceResult::Stopped;
      case ScanResult::Failed:
        return failed(scanner_.error(), path);
      case ScanResult::NotFound:
        return count == 0 ? ReplaceResult::Done : copy(path, source, copied, info.st_size, target);
      case ScanResult::Found:
        break;
    }
    // It has more than it tells, so nobody knows where it ends.
    if (info.st_size == 0) return failed(Status::ChangedMeanwhile, path);
    const ReplaceResult result = writeHit(path, source, hit, copied, target);
    if (result != ReplaceResult::Done) return result;
    ++count;
  }
}

// What stands before the hit, and what it is replaced by.
ReplaceResult FileReplacer::writeHit(const std::string& path, int source, const TextHit& hit,
                                     int64_t& copied, Target& target) {
  if (!target.isMade()) {
    if (const int error = target.make()) return failed(error, target.path());
  }
  const ReplaceResult result = copy(path, source, copied, hit.position, target);
  if (result != ReplaceResult::Done) return result;
  std::string bytes;
  if (const int error = encode(source, hit, bytes)) return failed(error, path);
  if (const int error = target.write(bytes)) return failed(error, target.path());
  copied = hit.end();
  return ReplaceResult::Done;
}

// In the encoding of the hit. ASCII is the same in most of them: then the file tells.
int FileReplacer::encode(int source, const TextHit& hit, std::string& bytes) {
  const std::wstring_view text(replacement_.data(), static_cast<size_t>(replacement_.length()));
  TextEncoding encoding = hit.encoding;
  if (encoding.format == TextFormat::CodePage && textIsAscii_ && !isAscii(text)) {
    if (!detected_) {
      TextEncoding detected;
      if (const int error = detect(source, detected)) return error;
      detected_ = detected;
    }
    encoding = *detected_;
  }
  return encodeText(text, encoding, bytes) == AllEncoded ? 0 : EILSEQ;
}

ReplaceResult FileReplacer::copy(const std::string& path, int source, int64_t from, int64_t to,
                                 Target& target) {
  std::string block;
  while (from < to) {
    if (stop_()) return ReplaceResult::Stopped;
    block.resize(static_cast<size_t>(std::min(to - from, static_cast<int64_t>(OutputBytes))));
    const ssize_t got = System::readAt(source, block.data(), block.size(), from);
    if (got < 0) return failed(errno, path);
    if (got == 0) return failed(Status::ChangedMeanwhile, path);
    if (const int error = target.write({block.data(), static_cast<size_t>(got)})) {
      return failed(error, target.path());
    }
    from += got;
  }
  return ReplaceResult::Done;
}
