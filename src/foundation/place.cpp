#include "foundation/place.h"

#include <cstring>

#include "foundation/utf8.h"

std::string bytePath(const Westring& path) {
  return toUtf8(path).data();
}

std::string byteParent(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

const char* byteName(const char* path) {
  const char* slash = strrchr(path, '/');
  return slash ? slash + 1 : path;
}

void replaceTail(std::string& path, size_t length, const char* name) {
  path.resize(length);
  if (path.empty() || path.back() != '/') path += '/';
  path += name;
}
