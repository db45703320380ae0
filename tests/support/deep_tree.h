#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "support/files.h"

// Makes one directory in the other below `top`, `levels` of them called `name`, each beside a file
// of one byte. Whoever makes one deeper than paths may be long deletes it again.
inline void makeDeepTree(const std::string& top, int levels, const std::string& name) {
  const std::string before = std::filesystem::current_path();
  ASSERT_EQ(mkdir(top.c_str(), 0755), 0);
  ASSERT_EQ(chdir(top.c_str()), 0);
  for (int level = 0; level < levels; ++level) {
    writeFile("file", "x");
    ASSERT_EQ(mkdir(name.c_str(), 0755), 0);
    ASSERT_EQ(chdir(name.c_str()), 0);
  }
  ASSERT_EQ(chdir(before.c_str()), 0);
}
