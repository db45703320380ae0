#include "fileops/description_cache.h"

DescriptionFile& DescriptionCache::of(const std::string& directory) {
  if (last_ && last_->directory() == directory) return *last_;
  auto& file = files_[directory];
  if (!file) file = std::make_unique<DescriptionFile>(directory);
  last_ = file.get();
  return *last_;
}

void DescriptionCache::forget(const std::string& directory) {
  const auto found = files_.find(directory);
  if (found == files_.end()) return;
  flush();
  last_ = nullptr;
  files_.erase(found);
}

// A line that moved leaves its old file only when the new one is written, hence the second round.
void DescriptionCache::flush() {
  constexpr int Rounds = 2;
  for (int round = 0; round < Rounds; ++round) {
    for (auto& [directory, file] : files_) file->flush();
  }
}
