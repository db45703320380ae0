// The yardstick for reading a directory: getdents64, fstatat and a qsort by strcmp, nothing else.
// usage: bench_bare_read DIRECTORY

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Name {
  char* text;
  struct stat info;
};

int compareNames(const void* a, const void* b) {
  return strcmp(static_cast<const Name*>(a)->text, static_cast<const Name*>(b)->text);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  int fd = open(argv[1], O_RDONLY | O_DIRECTORY);
  if (fd < 0) return 1;
  std::vector<Name> names;
  std::vector<char> buffer(1 << 15);
  for (;;) {
    long got = syscall(SYS_getdents64, fd, buffer.data(), buffer.size());
    if (got <= 0) break;
    for (long at = 0; at < got;) {
      auto* item = reinterpret_cast<dirent64*>(buffer.data() + at);
      at += item->d_reclen;
      Name name{strdup(item->d_name), {}};
      fstatat(fd, item->d_name, &name.info, AT_SYMLINK_NOFOLLOW);
      names.push_back(name);
    }
  }
  qsort(names.data(), names.size(), sizeof(Name), compareNames);
  printf("%zu names, first %s\n", names.size(), names.empty() ? "" : names[0].text);
  return 0;
}
