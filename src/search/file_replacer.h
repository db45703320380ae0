#pragma once

#include <optional>
#include <string>
#include <unordered_set>

#include "foundation/file_stamp.h"
#include "foundation/westring.h"
#include "foundation/written_place.h"
#include "search/text_scanner.h"

enum class ReplaceResult { Done, Failed, Stopped };

// Replaces a text in one file after the other. A file gets its new content beside it, in a private
// file that is renamed over it: at every moment the old or the new one is whole. Mode, owner, group
// and extended attributes stay, the time is a fresh one. A file without the text is left as it is,
// and one that this run has made isn't done again. Application thread.
class FileReplacer {
 public:
  using StopAsked = TextScanner::StopAsked;

  // `stop` is asked for each block; what was stopped is as it was.
  FileReplacer(const Westring& text, CaseRule rule, bool wholeWord, const Westring& replacement,
               StopAsked stop);

  ReplaceResult replaceIn(const std::string& path);

  int64_t replaced() const { return replaced_; }  // places, in all files that are done
  // After Failed: an errno, Status::ChangedMeanwhile or Status::NotRegularFile, and whose it is.
  int error() const { return error_; }
  const std::string& errorPath() const { return errorPath_; }

 private:
  class Target;

  ReplaceResult failed(int error, const std::string& path);
  int open(const std::string& path, WrittenPlace& place, Descriptor& source, struct stat& info);
  ReplaceResult replaceAll(const std::string& path, int source, const struct stat& info,
                           Target& target, int64_t& count);
  ReplaceResult writeHit(const std::string& path, int source, const TextHit& hit, int64_t& copied,
                         Target& target);
  ReplaceResult copy(const std::string& path, int source, int64_t from, int64_t to, Target& target);
  int encode(int source, const TextHit& hit, std::string& bytes);

  const SearchedText text_;
  const Westring replacement_;
  const bool textIsAscii_;
  const StopAsked stop_;
  TextScanner scanner_;
  std::optional<TextEncoding> detected_;  // of the file under way, once it is needed
  std::unordered_set<FileId, FileIdHash> made_;
  int64_t replaced_ = 0;
  int error_ = 0;
  std::string errorPath_;
};
