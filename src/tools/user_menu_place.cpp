#include "tools/user_menu_place.h"

#include <fcntl.h>
#include <unistd.h>

#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "foundation/regular_file.h"
#include "foundation/utf8.h"

namespace {

bool isTrusted(const struct stat& info) {
  return isTrustedMenu(info, geteuid(), getegid());
}

Descriptor openTrusted(const Westring& directory, const Westring& name) {
  Descriptor place(System::open(toUtf8(directory).data(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat info;
  if (!place.valid() || System::fstat(place.get(), &info) != 0 || !isTrusted(info)) {
    return Descriptor();
  }
  Descriptor file(
      System::openAt(place.get(), toUtf8(name).data(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!file.valid() || System::fstat(file.get(), &info) != 0) return Descriptor();
  return S_ISREG(info.st_mode) && isTrusted(info) ? std::move(file) : Descriptor();
}

}  // namespace

bool isTrustedMenu(const struct stat& info, uid_t user, gid_t group) {
  if (info.st_uid != user && info.st_uid != 0) return false;
  const bool ownGroup = info.st_gid == user && group == user;
  const mode_t others = ownGroup ? S_IWOTH : S_IWOTH | S_IWGRP;
  return (info.st_mode & others) == 0;
}

MenuFile findLocalMenu(const Westring& start, const Westring& name) {
  Westring directory = start;
  while (!directory.empty() && directory[0] == L'/') {
    MenuFile menu{openTrusted(directory, name), joinPath(directory, name)};
    if (menu.file.valid()) return menu;
    const Westring above = parentOf(directory);
    if (above.length() == directory.length()) break;
    directory = above;
  }
  return MenuFile{Descriptor(), Westring()};
}

MenuFile openMainMenu() {
  MenuFile menu{Descriptor(), dataFilePath(DataFile::UserMenu)};
  static_cast<void>(openRegularFile(menu.path, menu.file, Links::Follow));
  return menu;
}
