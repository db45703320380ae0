#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <string>

#include "support/temp_dir.h"

// What tests make of files, and see of them.

// The golden screen `name` beside the test whose source is `source`, as the compiler names it.
std::string goldenPath(const char* source, const std::string& name);

// Everything below a directory: for each path below it its kind, mode and content.
std::map<std::string, std::string> snapshot(const std::string& directory);
// The kind and content alone; what must not change whatever happens.
std::map<std::string, std::string> contents(const std::string& directory);

void setTime(const std::string& path, time_t seconds, long nanoseconds = 0);
struct stat statusOf(const std::string& path);
// A directory on another file system than that of `path`; null on a machine that has only one.
std::unique_ptr<TempDir> onAnotherFileSystem(const std::string& path);
bool existsAt(const std::string& path);
void writeFile(const std::string& path, const std::string& content);
std::string readFile(const std::string& path);
inline bool isRoot() {
  return geteuid() == 0;
}
