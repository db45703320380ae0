#pragma once

#include <sys/stat.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "fileops/description_lines.h"

// True for the name of the description file, without regard to case.
bool isDescriptionFileName(const char* name);

// The descriptions of one directory for the length of an operation: read once, when first asked
// for; changed in memory; written back whole by flush, beside and renamed. Lines that nobody named
// stay byte for byte. Left alone unless it is a regular file that can be read; that is found out
// once. A file left without a line is removed.
class DescriptionFile {
 public:
  enum class Presence { Unknown, Absent };

  explicit DescriptionFile(std::string directory, Presence presence = Presence::Unknown);
  DescriptionFile(const DescriptionFile&) = delete;
  DescriptionFile& operator=(const DescriptionFile&) = delete;

  std::optional<std::string> find(const char* name);
  // Replaces any old line. False when the name can't have one or the file can't be used.
  bool set(const char* name, const std::string& text);
  void erase(const char* name);
  // Erases once what was set in `target` is safely written, so that no text is ever lost in
  // between. `target` must live until this file was flushed.
  void eraseAfter(DescriptionFile& target, const char* name);

  // All lines that are left, byte for byte; what stays behind when nothing it describes does.
  std::string remaining();
  void append(const std::string& lines);
  void clear();  // every line goes at the next flush

  int flush();                // 0 or errno, also when there was nothing to do
  bool hasUnwritten() const;  // lines to write or to take out now
  bool failed() const { return failed_; }
  // The path of a new file that a failed flush couldn't remove, told once; "" when there is none.
  std::string takeLeftover() { return std::exchange(leftover_, {}); }
  const std::string& directory() const { return directory_; }
  void setDirectory(std::string directory) { directory_ = std::move(directory); }

 private:
  enum class State { NotRead, Absent, Read, Unusable };

  std::string path() const;
  void load();
  bool readWhole(int fd, std::string& content);
  void reloadIfChanged();
  bool isPending(const std::string& name) const { return pending_.contains(name); }
  void settleLateErasures();
  std::string composed();
  int write(const std::string& content);
  int removeFile();
  void forgetChanges();

  std::string directory_;
  State state_;
  struct stat info_ {};
  DescriptionLines lines_;
  std::unordered_map<std::string, std::optional<std::string>> pending_;  // no text: erased
  std::vector<std::string> order_;                                       // of the names set
  std::vector<std::pair<DescriptionFile*, std::string>> late_;
  std::string appended_;
  bool cleared_ = false;
  bool failed_ = false;
  std::string leftover_;
};

// The description of a file follows it.
void copyDescription(DescriptionFile* from, const char* fromName, DescriptionFile* to,
                     const char* toName);
void moveDescription(DescriptionFile* from, const char* fromName, DescriptionFile* to,
                     const char* toName);

// The description files that one command works with, each opened once. What was changed is written
// by flush, or at the latest by the destructor.
class DescriptionCache {
 public:
  DescriptionCache() = default;
  ~DescriptionCache() { flush(); }
  DescriptionCache(const DescriptionCache&) = delete;
  DescriptionCache& operator=(const DescriptionCache&) = delete;

  DescriptionFile& of(const std::string& directory);
  // Writes what is pending and forgets: the file itself is about to be copied, moved or deleted, or
  // its directory to be removed.
  void forget(const std::string& directory);
  void flush();
  // Paths of new files that couldn't be removed, each told once.
  std::vector<std::string> takeLeftovers();

 private:
  void keepLeftover(DescriptionFile& file);

  std::vector<std::string> leftovers_;
  std::unordered_map<std::string, std::unique_ptr<DescriptionFile>> files_;
  DescriptionFile* last_ = nullptr;
};
