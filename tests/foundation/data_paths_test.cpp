#include "foundation/data_paths.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "foundation/utf8.h"
#include "support/as_user.h"
#include "support/temp_dir.h"

namespace {

class DataPathsTest : public testing::Test {
 protected:
  void SetUp() override {
    setenv("HOME", "/home/user", 1);
    unsetenv("TD_SHARE");
    setProgramPath(L"/usr/bin/td");
    setConfigurationFile(L"");
  }

  static std::string path(DataFile kind, DataPlace place = DataPlace::PerUser) {
    return toUtf8(dataFilePath(kind, place)).data();
  }
};

TEST_F(DataPathsTest, TheUsersDirectoryIsInHomeOrBesideTheConfigurationFile) {
  EXPECT_STREQ(userDirectory().data(), L"/home/user/.tdx/");
  setConfigurationFile(L"/etc/td/own.ini");
  EXPECT_STREQ(userDirectory().data(), L"/etc/td/");
}

TEST_F(DataPathsTest, EveryKindHasItsPlace) {
  EXPECT_EQ(path(DataFile::Help), "/usr/share/tandemdeck/td.tdh");
  EXPECT_EQ(path(DataFile::Manual), "/usr/share/doc/tandemdeck/manual/td.html");
  EXPECT_EQ(path(DataFile::UserMenu), "/home/user/.tdx/td.mnu");
  EXPECT_EQ(path(DataFile::Configuration), "/home/user/.tdx/td.ini");
  EXPECT_EQ(path(DataFile::History), "/home/user/.tdx/td.hst");
  EXPECT_EQ(path(DataFile::Log), "/home/user/.tdx/td.log");
  EXPECT_EQ(path(DataFile::SyntaxDefinitions), "/home/user/.tdx/tdsyntax.ini");
  EXPECT_EQ(path(DataFile::SyntaxDefinitions, DataPlace::Shared),
            "/usr/share/tandemdeck/tdsyntax.ini");
}

TEST_F(DataPathsTest, TheBaseNameEndsAtTheLastDot) {
  setProgramPath(L"/opt/td.new.exe");
  EXPECT_EQ(path(DataFile::Configuration), "/home/user/.tdx/td.new.ini");
  EXPECT_EQ(path(DataFile::SyntaxDefinitions), "/home/user/.tdx/td.newsyntax.ini");
  EXPECT_EQ(toUtf8(programPath()).data(), std::string("/opt/td.new.exe"));
}

TEST_F(DataPathsTest, AnAcceptedConfigurationFileDrawsAllUserFilesBesideIt) {
  setConfigurationFile(L"/etc/deck/my.cfg");
  EXPECT_EQ(path(DataFile::UserMenu), "/etc/deck/my.mnu");
  EXPECT_EQ(path(DataFile::Configuration), "/etc/deck/my.ini");
  EXPECT_EQ(path(DataFile::History), "/etc/deck/my.hst");
  EXPECT_EQ(path(DataFile::Log), "/etc/deck/my.log");
  EXPECT_EQ(path(DataFile::SyntaxDefinitions), "/etc/deck/mysyntax.ini");
  EXPECT_EQ(path(DataFile::Help), "/usr/share/tandemdeck/my.tdh");
  setConfigurationFile(L"/plain");
  EXPECT_EQ(path(DataFile::Configuration), "/plain.ini");
}

TEST_F(DataPathsTest, TheSharedDirectoryCanBeSetBeforeInstallation) {
  setenv("TD_SHARE", "/tree/data", 1);
  EXPECT_EQ(path(DataFile::Help), "/tree/data/td.tdh");
  setenv("TD_SHARE", "/tree/data/", 1);
  EXPECT_EQ(path(DataFile::SyntaxDefinitions, DataPlace::Shared), "/tree/data/tdsyntax.ini");
  setenv("TD_SHARE", "", 1);
  EXPECT_EQ(path(DataFile::Help), "/usr/share/tandemdeck/td.tdh");
}

TEST_F(DataPathsTest, WithoutHomeTheUserDataBaseTells) {
  const passwd* user = getpwuid(getuid());
  const std::string home = user && *user->pw_dir ? user->pw_dir : "/";
  unsetenv("HOME");
  EXPECT_EQ(toUtf8(homeDirectory()).data(), home);
  setenv("HOME", "", 1);
  EXPECT_EQ(toUtf8(homeDirectory()).data(), home);
  EXPECT_EQ(path(DataFile::Configuration)[0], '/');
}

TEST_F(DataPathsTest, AHomeAtTheRootOrWithASlashNeedsNoSecondOne) {
  setenv("HOME", "/", 1);
  EXPECT_EQ(path(DataFile::Log), "/.tdx/td.log");
  setenv("HOME", "/home/user/", 1);
  EXPECT_EQ(path(DataFile::Log), "/home/user/.tdx/td.log");
}

TEST_F(DataPathsTest, AHomeOfAnyBytesIsKept) {
  setenv("HOME", "/home/\xff", 1);
  EXPECT_EQ(path(DataFile::Log), "/home/\xff/.tdx/td.log");
}

TEST_F(DataPathsTest, WithoutAnyHomeThereAreNoFilesOfTheUser) {
  constexpr uid_t nobodyKnows = 54321;
  EXPECT_EQ(runInChild([] {
              if (geteuid() == 0 && setuid(nobodyKnows) != 0) return ChildFailed;
              if (getpwuid(getuid()) != nullptr) return 0;  // an ordinary user has a home
              unsetenv("HOME");
              const bool none = path(DataFile::Configuration).empty() &&
                                path(DataFile::History).empty() && makeUserDirectory() == ENOENT;
              const bool others = !path(DataFile::Help).empty() &&
                                  std::string(toUtf8(homeDirectory()).data()) == "/";
              return none && others ? 0 : 1;
            }),
            0);
}

TEST_F(DataPathsTest, TheDirectoryOfTheUserIsMadeForNobodyElse) {
  const TempDir dir;
  setenv("HOME", dir.path().c_str(), 1);
  EXPECT_EQ(makeUserDirectory(), 0);
  EXPECT_EQ(dir.mode(".tdx"), 0700u);
  dir.chmod(".tdx", 0755);
  EXPECT_EQ(makeUserDirectory(), 0);
  EXPECT_EQ(dir.mode(".tdx"), 0755u);
  setenv("HOME", dir.path("missing").c_str(), 1);
  EXPECT_EQ(makeUserDirectory(), ENOENT);
}

}  // namespace
