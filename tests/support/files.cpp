#include "support/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

const fs::path startDirectory = fs::current_path();

enum class Modes { Left, Told };

std::string describe(const std::string& path, Modes modes) {
  struct stat info {};
  if (::lstat(path.c_str(), &info) != 0) return "?";
  std::string text;
  if (S_ISLNK(info.st_mode)) {
    text = "link " + fs::read_symlink(path).string();
  } else if (S_ISDIR(info.st_mode)) {
    text = "directory";
  } else if (S_ISREG(info.st_mode)) {
    text = "file " + readFile(path);
  } else {
    text = "special " + std::to_string(info.st_mode & S_IFMT);
  }
  if (modes == Modes::Told) text += " mode " + std::to_string(info.st_mode & 07777);
  return text;
}

std::map<std::string, std::string> walk(const std::string& directory, Modes modes) {
  std::map<std::string, std::string> result;
  std::error_code ignored;
  for (const auto& item : fs::recursive_directory_iterator(directory, ignored)) {
    const std::string path = item.path().string();
    result[path.substr(directory.size() + 1)] = describe(path, modes);
  }
  return result;
}

}  // namespace

// A compiler that was told to keep paths short names its sources relative to the build directory,
// where tests start.
std::string goldenPath(const char* source, const std::string& name) {
  return (startDirectory / source).lexically_normal().parent_path() / "golden" / (name + ".txt");
}

std::map<std::string, std::string> snapshot(const std::string& directory) {
  return walk(directory, Modes::Told);
}

std::map<std::string, std::string> contents(const std::string& directory) {
  return walk(directory, Modes::Left);
}

void setTime(const std::string& path, time_t seconds, long nanoseconds) {
  const struct timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

struct stat statusOf(const std::string& path) {
  struct stat info {};
  EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
  return info;
}

std::unique_ptr<TempDir> onAnotherFileSystem(const std::string& path) {
  constexpr char Memory[] = "/dev/shm";
  struct stat there {};
  const bool usable = stat(Memory, &there) == 0 && there.st_dev != statusOf(path).st_dev &&
                      access(Memory, W_OK) == 0;
  return usable ? std::make_unique<TempDir>(Memory) : nullptr;
}

bool existsAt(const std::string& path) {
  struct stat info;
  return ::lstat(path.c_str(), &info) == 0;
}

void writeFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

std::string readFile(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}
