#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "fileops/description_file.h"

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

 private:
  std::unordered_map<std::string, std::unique_ptr<DescriptionFile>> files_;
  DescriptionFile* last_ = nullptr;
};
