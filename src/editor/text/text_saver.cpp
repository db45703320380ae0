#include "editor/text/text_saver.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include "foundation/names.h"
#include "foundation/regular_file.h"
#include "foundation/status.h"
#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {

// Of what the file holds now; nothing when it can't be read. ECANCELED when it was stopped.
std::optional<ContentHash::Value> readHash(const Westring& path, int64_t size,
                                           const FileProgress& progress, int& error) {
  Descriptor file;
  if (openRegularFile(path, file, Links::Follow) != 0) return {};
  ContentHash hash;
  int64_t done = 0;
  error = readParts(file.get(), std::numeric_limits<int64_t>::max(), [&](std::string_view part) {
    hash.add(part);
    done += static_cast<int64_t>(part.size());
    return !progress || progress(done, std::max(done, size)) ? 0 : ECANCELED;
  });
  if (error == 0) return hash.value();
  return {};
}

}  // namespace

int lookAtFile(const Westring& path, FileStamp& stamp) {
  struct stat info;
  stamp = {};
  if (System::stat(toUtf8(path).data(), &info) < 0) return errno == ENOENT ? 0 : errno;
  if (S_ISDIR(info.st_mode)) return EISDIR;
  if (!S_ISREG(info.st_mode)) return Status::NotRegularFile;
  stamp = FileStamp::of(info);
  return 0;
}

void TextSaver::opened(const Westring& path, const FileContent& content) {
  path_ = path;
  known_ = seen_ = content.stamp;
  hash_ = content.hash;
  tellsSize_ = content.tellsSize;
}

int TextSaver::look(Change& change, const FileProgress& progress) {
  change = Change::None;
  if (const int error = lookAtFile(path_, seen_)) return error;
  if (!seen_.exists) {
    change = known_.exists ? Change::Gone : Change::None;
    return 0;
  }
  if (seen_ == known_ && tellsSize_) return 0;
  change = Change::Changed;
  if (!hash_ || !isSameFile(seen_, known_) || seen_.size != known_.size) return 0;
  int error = 0;
  // Where it can't be read the user is asked, as if it had changed.
  if (readHash(path_, seen_.size, progress, error) == hash_) change = Change::None;
  return error == ECANCELED ? error : 0;
}

TextSaver::Outcome TextSaver::save(const Text& text, ReadOnlyFile readOnly,
                                   const FileProgress& overwriting) {
  return saveTo({path_, seen_, known_.id, tellsSize_, readOnly}, text, SavedName::Same,
                overwriting);
}

TextSaver::Outcome TextSaver::saveAs(const Westring& path, const FileStamp& seen, const Text& text,
                                     ReadOnlyFile readOnly, const FileProgress& overwriting) {
  return saveTo({path, seen, seen.id, true, readOnly}, text, SavedName::Another, overwriting);
}

TextSaver::Outcome TextSaver::saveTo(const ReplacedFile& file, const Text& text, SavedName name,
                                     const FileProgress& overwriting) {
  FileReplacement replacement(file, witness, overwriting);
  ContentHash hash;
  Outcome outcome;
  outcome.error = replacement.begin();
  outcome.isOpened = outcome.error == 0;
  if (outcome.isOpened) {
    outcome.error = text([&](std::string_view bytes) {
      hash.add(bytes);
      return replacement.write(bytes);
    });
  }
  if (outcome.error == 0) outcome.error = replacement.finish();
  replacement.discard();
  outcome.clearingReadOnlyFailed = replacement.clearingReadOnlyFailed();
  outcome.wholeText = replacement.wholeText();
  outcome.leftover = replacement.leftover();
  if (!outcome.wholeText.empty()) kept_.push_back({file.path, outcome.wholeText});
  // A new name belongs to the text only when all went well, but the old one may be torn.
  const bool isOurs = outcome.error == 0 || name == SavedName::Same;
  if (replacement.stamp().exists && isOurs) {
    known_ = seen_ = replacement.stamp();
    hash_.reset();
    if (outcome.wholeText.empty()) hash_ = hash.value();
    // The system has understood what was written, and may say it in other words.
    int ignored;
    if (!file.tellsSize) hash_ = readHash(file.path, 0, {}, ignored);
  }
  if (outcome.error == 0) settle(file);
  return outcome;
}

void TextSaver::settle(const ReplacedFile& file) {
  path_ = file.path;
  tellsSize_ = file.tellsSize;
  std::erase_if(kept_, [&file](const Kept& kept) {
    return sameName(kept.file, file.path) && System::unlink(kept.wholeText.c_str()) == 0;
  });
}
