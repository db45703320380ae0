#include "tree/tree_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "foundation/safe_file.h"
#include "foundation/system.h"
#include "foundation/utf8.h"
#include "options/options.h"

namespace {

constexpr wchar_t NameInTreeDirectory[] = L"td2tree.dat";
constexpr wchar_t NameInUserDirectory[] = L"tdtree.dat";
constexpr mode_t PrivateDirectory = 0700;

constexpr char FirstLevel = '0';
constexpr char LineEnd = '\n';
constexpr size_t VolumeBytes = 8;
constexpr size_t LongestLine = 4096;  // bytes of a line that count
constexpr size_t PieceBytes = 64 * 1024;
constexpr size_t UsualLine = 16;  // bytes
constexpr size_t MostBytesExpected = 64 * 1024 * 1024;

using VolumeBlock = std::array<unsigned char, VolumeBytes>;

VolumeBlock blockOf(uint64_t volume) {
  VolumeBlock block;
  for (unsigned char& byte : block) {
    byte = static_cast<unsigned char>(volume);
    volume >>= 8;
  }
  return block;
}

// A file as lines. A line that doesn't end is none. Asks before each piece whether to go on.
class LineReader {
 public:
  explicit LineReader(const std::function<bool()>& interrupted) : ask_(interrupted) {}

  bool interrupted() const { return interrupted_; }
  bool open(const Westring& path);
  size_t bytes() const { return bytes_; }  // of the file when it was opened
  bool readBlock(VolumeBlock& block);
  // The next line without its end, cut to what counts; null at the end and at an error.
  const std::string* next();

 private:
  bool fill();

  const std::function<bool()>& ask_;
  bool interrupted_ = false;
  Descriptor file_;
  std::string line_;
  std::array<char, PieceBytes> piece_;
  size_t at_ = 0;
  size_t end_ = 0;
  size_t bytes_ = 0;
};

bool LineReader::open(const Westring& path) {
  file_ = Descriptor(System::open(toUtf8(path).data(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat info;
  if (!file_.valid() || System::fstat(file_.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
    return false;
  }
  bytes_ = static_cast<size_t>(info.st_size);
  return true;
}

bool LineReader::fill() {
  interrupted_ = interrupted_ || (ask_ && ask_());
  if (interrupted_) return false;
  const ssize_t count = System::read(file_.get(), piece_.data(), piece_.size());
  at_ = 0;
  end_ = count > 0 ? static_cast<size_t>(count) : 0;
  return count > 0;
}

bool LineReader::readBlock(VolumeBlock& block) {
  for (unsigned char& byte : block) {
    if (at_ == end_ && !fill()) return false;
    byte = static_cast<unsigned char>(piece_[at_++]);
  }
  return true;
}

const std::string* LineReader::next() {
  line_.clear();
  for (;;) {
    if (at_ == end_ && !fill()) return nullptr;
    const char* start = piece_.data() + at_;
    const auto* lineEnd = static_cast<const char*>(memchr(start, LineEnd, end_ - at_));
    const size_t count = lineEnd ? static_cast<size_t>(lineEnd - start) : end_ - at_;
    line_.append(start, std::min(count, LongestLine - line_.size()));
    at_ += count;
    if (!lineEnd) continue;
    ++at_;
    return &line_;
  }
}

std::optional<int> levelOf(const std::string& line) {
  if (line.empty()) return std::nullopt;
  const int level = line[0] - FirstLevel;
  if (level < 0 || level > CTree::DeepestLevel) return std::nullopt;
  return level;
}

// Whether a name stands behind the level.
bool isName(const std::string& line) {
  const std::string_view name = std::string_view(line).substr(1);
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

// The nodes behind the root, from their lines.
class TreeReader {
 public:
  TreeReader(CTree& tree, LineReader& lines) : tree_(tree), lines_(lines), last_(tree.root()) {}

  void read();

 private:
  void take(int level, const std::string& line);

  CTree& tree_;
  LineReader& lines_;
  TREENODE* last_;
  int leftOutAbove_ = CTree::DeepestLevel;  // lines of a higher level lie below one left out
};

void TreeReader::read() {
  while (const std::string* line = lines_.next()) {
    const std::optional<int> level = levelOf(*line);
    if (!level || *level == 0) return;
    take(*level, *line);
  }
}

void TreeReader::take(int level, const std::string& line) {
  if (level > leftOutAbove_) return;
  leftOutAbove_ = CTree::DeepestLevel;
  TREENODE* parent = last_;
  while (parent->level >= level) parent = parent->parent;
  const Westring name = isName(line) ? decodeFileName(line.c_str() + 1) : Westring();
  if (name.empty() || tree_.childOf(parent, name.data())) {
    leftOutAbove_ = level;
    return;
  }
  last_ = tree_.appendChild(parent, name);
}

// Writes in large pieces.
class TreeWriter {
 public:
  explicit TreeWriter(SafeFile& file) : file_(file) {}

  int write(const CTree& tree);  // 0 or errno

 private:
  bool takesLine(const TREENODE* node, const Estring& name) const;
  int add(const char* bytes, size_t count);
  int flush();

  SafeFile& file_;
  std::string piece_;
};

int TreeWriter::add(const char* bytes, size_t count) {
  piece_.append(bytes, count);
  return piece_.size() < PieceBytes ? 0 : flush();
}

int TreeWriter::flush() {
  const int error = file_.write(piece_.data(), piece_.size());
  piece_.clear();
  return error;
}

bool TreeWriter::takesLine(const TREENODE* node, const Estring& name) const {
  if (node->level == 0) return true;
  return !strchr(name.data(), LineEnd) && static_cast<size_t>(name.length()) < LongestLine;
}

int TreeWriter::write(const CTree& tree) {
  const VolumeBlock block = blockOf(tree.key.volume);
  int error = add(reinterpret_cast<const char*>(block.data()), block.size());
  const TREENODE* node = tree.root();
  while (node && error == 0) {
    const Estring name = toUtf8(node->name);
    if (!takesLine(node, name)) {
      node = nextBeside(node, tree.root());
      continue;
    }
    const std::string line =
        std::string(1, static_cast<char>(FirstLevel + node->level)) + name.data() + LineEnd;
    error = add(line.data(), line.size());
    node = nextInSubtree(node, tree.root());
  }
  return error ? error : flush();
}

}  // namespace

Westring treeFilePath() {
  if (!GlobalOptions::TreeDir.empty())
    return addSlash(GlobalOptions::TreeDir) + NameInTreeDirectory;
  const Westring directory = homeDataDirectory();
  return directory.empty() ? directory : directory + NameInUserDirectory;
}

TreeLoad loadTree(CTree& tree, const Westring& file, const std::function<bool()>& interrupted) {
  LineReader lines(interrupted);
  VolumeBlock volume;
  if (file.empty() || !lines.open(file) || !lines.readBlock(volume)) return TreeLoad::NoFile;
  if (volume != blockOf(tree.key.volume)) return TreeLoad::NoFile;
  tree.makeRoot();
  tree.expect(std::min(lines.bytes(), MostBytesExpected) / UsualLine);
  const std::string* first = lines.next();
  const bool begins = first && levelOf(*first);
  if (begins) TreeReader(tree, lines).read();
  if (lines.interrupted()) {
    tree.dropRoot();
    return TreeLoad::Interrupted;
  }
  if (!begins) return TreeLoad::Empty;
  tree.loaded = true;
  tree.dirty = false;
  return TreeLoad::Loaded;
}

int saveTree(CTree& tree, const Westring& file) {
  tree.sort();
  if (!tree.root() || !tree.loaded || tree.isPrivate) return 0;
  if (file.empty()) {
    tree.dirty = false;
    return 0;
  }
  // One that is there already, or can't be made, shows when the file is written.
  System::mkdir(toUtf8(parentOf(file)).data(), PrivateDirectory);
  SafeFile target;
  int error = target.create(file);
  if (error == 0) error = TreeWriter(target).write(tree);
  if (error == 0) error = target.commit();
  if (error == 0) tree.dirty = false;
  return error;
}
