#include "fileops/fileops_test.h"

void FileOpsTest::expectNoLeftovers() const {
  for (const auto& [path, what] : contents(dir.path())) {
    EXPECT_EQ(path.find(".td-"), std::string::npos) << path << ": " << what;
  }
}
