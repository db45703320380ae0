// The engines of the directory tree, one a run:
//   scan DIR         look through all directories below it
//   make FILE COUNT  write the file of a tree of so many directories
//   load FILE        read such a file
//   total DIR        add up all files below it

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/utf8.h"
#include "tree/directory_total.h"
#include "tree/tree_file.h"
#include "tree/tree_scan.h"

namespace {

int scan(const char* directory) {
  CTree tree;
  ScanWatcher nobody;
  return scanTree(tree, nobody, directory) == ScanEnd::Whole ? 0 : 1;
}

// Ten directories in each of those before, until there are as many as are wanted.
int make(const char* file, size_t count) {
  CTree tree;
  std::vector<TREENODE*> nodes{tree.makeRoot()};
  while (nodes.size() < count) {
    const std::string name = "directory-" + std::to_string(nodes.size() * 7919 % count);
    nodes.push_back(tree.appendChild(nodes[nodes.size() / 10], decodeFileName(name.c_str())));
  }
  tree.loaded = true;
  return saveTree(tree, decodeFileName(file));
}

int load(const char* file) {
  CTree tree;
  return loadTree(tree, decodeFileName(file)) == TreeLoad::Loaded ? 0 : 1;
}

int total(const char* directory) {
  CTree tree;
  TotalCounters counters;
  TotalWatcher nobody;
  const auto bytes = countDirectory(tree, directory, counters, nobody);
  if (bytes) printf("%lld\n", static_cast<long long>(*bytes));
  return bytes ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) return 2;
  const char* what = arguments[1];
  if (!strcmp(what, "scan")) return scan(arguments[2]);
  if (!strcmp(what, "make") && count > 3)
    return make(arguments[2], strtoul(arguments[3], nullptr, 10));
  if (!strcmp(what, "load")) return load(arguments[2]);
  if (!strcmp(what, "total")) return total(arguments[2]);
  return 2;
}
