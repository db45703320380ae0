#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/utf8.h"
#include "foundation/westring.h"

// A directory of a test's own, gone with everything in it at the end. Names are bytes below it.
class TempDir {
 public:
  explicit TempDir(const std::string& parent = std::filesystem::temp_directory_path()) {
    std::string pattern = parent + "/td-test-XXXXXX";
    path_ = mkdtemp(pattern.data());
  }
  ~TempDir() {
    makeRemovable(path_);
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string path(const std::string& name) const { return path_ + "/" + name; }
  Westring wide() const { return decodeFileName(path_.c_str()); }
  Westring wide(const std::string& name) const { return decodeFileName(path(name).c_str()); }

  void write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
  }
  std::string read(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(path(name), std::ios::binary).rdbuf();
    return content.str();
  }
  void makeDir(const std::string& name) const { ::mkdir(path(name).c_str(), 0755); }
  void link(const std::string& target, const std::string& name) const {
    if (::symlink(target.c_str(), path(name).c_str()) != 0) abort();
  }
  void chmod(const std::string& name, mode_t mode) const { ::chmod(path(name).c_str(), mode); }
  mode_t mode(const std::string& name) const {
    struct stat info {};
    return ::lstat(path(name).c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
  }
  bool exists(const std::string& name) const {
    struct stat info;
    return ::lstat(path(name).c_str(), &info) == 0;
  }
  // Every name but "." and "..", sorted by bytes.
  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (const auto& item : std::filesystem::directory_iterator(path_)) {
      result.push_back(item.path().filename().string());
    }
    std::sort(result.begin(), result.end());
    return result;
  }
  // Lets another user work in the directory.
  void openToAll() const { ::chmod(path_.c_str(), 0777); }

 private:
  static void makeRemovable(const std::string& directory) {
    ::chmod(directory.c_str(), 0700);
    std::error_code ignored;
    for (const auto& item : std::filesystem::directory_iterator(directory, ignored)) {
      if (item.is_directory(ignored) && !item.is_symlink(ignored)) makeRemovable(item.path());
    }
  }

  std::string path_;
};
