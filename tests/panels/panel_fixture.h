#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "console/key_codes.h"
#include "foundation/break_state.h"
#include "foundation/entry.h"
#include "foundation/names.h"
#include "foundation/status.h"
#include "foundation/utf8.h"
#include "history/history_store.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "panels/one_path_tree.h"
#include "support/temp_dir.h"
#include "support/without_console.h"

inline constexpr int NoShift = 0;
inline constexpr Key::Code AltB{0x10030};

inline std::string bytes(const Westring& text) {
  return toUtf8(text).data();
}

inline EntryPtr makeEntry(const wchar_t* name, uint64_t size = 0,
                          unsigned char sortGroup = SortGroup::File) {
  EntryPtr item(newEntry(name));
  item->size = size;
  item->sortGroup = sortGroup;
  if (sortGroup == SortGroup::Directory || sortGroup == SortGroup::Parent) {
    item->attributes = Attribute::Directory;
  }
  return item;
}

// The names of a listing in its order, as bytes.
inline std::vector<std::string> listed(const Panel& panel) {
  std::vector<std::string> names;
  for (const entry* item : panel.entries) names.push_back(toUtf8(item->name()).data());
  return names;
}

inline entry* entryNamed(const Panel& panel, const std::string& name) {
  for (entry* item : panel.entries) {
    if (name == toUtf8(item->name()).data()) return item;
  }
  return nullptr;
}

inline std::vector<std::string> taggedNames(const Panel& panel) {
  std::vector<std::string> names;
  for (const entry* item : panel.entries) {
    if (item->tagged) names.push_back(toUtf8(item->name()).data());
  }
  return names;
}

inline std::string currentName(const Panel& panel) {
  const entry* current = panel.currentEntry();
  return current ? toUtf8(current->name()).data() : "";
}

inline std::vector<std::string> stored(FnStringStore& store) {
  std::vector<std::string> texts;
  for (int i = 0; i < store.count(); ++i) texts.push_back(bytes(*store.peek(i)));
  return texts;
}

// The tree, writing down what it is told, in order.
class RecordingTree : public DirectoryTree {
 public:
  RecordingTree() { directoryTree().connect(*this); }
  ~RecordingTree() override { directoryTree().disconnect(); }
  std::vector<std::string> calls;
  std::vector<std::pair<std::string, int64_t>> totals;  // of directories, by path

  void directoryRead(const Panel& panel, int64_t fileBytes) override {
    std::string call = "read " + bytes(panel.path) + ":";
    const NameCollection& names = *panel.subdirectories;
    for (long i = 0; i < names.count(); ++i) call += " " + bytes(*names.peek(i));
    calls.push_back(call + ", " + std::to_string(fileBytes) + " bytes");
  }
  std::optional<int64_t> totalOf(const Panel&, const Westring& path) override {
    calls.push_back("total " + bytes(path));
    for (const auto& [known, total] : totals) {
      if (known == bytes(path)) return total;
    }
    return std::nullopt;
  }
  void fill(Panel& panel) override {
    calls.push_back("fill");
    panel.entries.add(makeEntry(L"/", 0, SortGroup::Directory));
    panel.treeLines.emplace_back();
  }
  void select(Panel&, const Westring& path) override { calls.push_back("select " + bytes(path)); }
  void expand(Panel&, TreeReach reach) override { calls.push_back("expand" + nameOf(reach)); }
  void collapse(Panel&, TreeReach reach) override { calls.push_back("collapse" + nameOf(reach)); }

 private:
  static std::string nameOf(TreeReach reach) { return reach == TreeReach::Line ? " line" : ""; }
};

// An archive that holds the files it is given ("a/b.txt"); directories are those of the files.
class FakeArchive : public OpenArchive {
 public:
  using Log = std::vector<std::string>;
  FakeArchive(const Westring& path, std::vector<std::string> files, Log* log)
      : path_(path), files_(std::move(files)), log_(log) {}
  ~FakeArchive() override { note("close " + bytes(path_)); }

  const Westring& path() const override { return path_; }
  int first(const Westring& innerPath, entry*& result) override {
    note("list " + bytes(innerPath));
    prefix_ = innerPath.empty() ? "" : bytes(innerPath) + "/";
    seen_.clear();
    next_ = 0;
    const bool holds =
        prefix_.empty() || std::any_of(files_.begin(), files_.end(), [this](auto& f) {
          return f.compare(0, prefix_.size(), prefix_) == 0;
        });
    if (!holds) return Status::EndOfFile;
    return next(result);
  }
  int next(entry*& result) override {
    result = nullptr;
    while (next_ < files_.size()) {
      if (onNext) onNext(next_);
      const std::string& file = files_[next_++];
      if (file.compare(0, prefix_.size(), prefix_) != 0) continue;
      std::string name = file.substr(prefix_.size());
      const size_t slash = name.find('/');
      name = name.substr(0, slash);
      if (std::find(seen_.begin(), seen_.end(), name) != seen_.end()) continue;
      seen_.push_back(name);
      result = newEntry(decodeFileName(name.c_str()).data());
      if (slash != std::string::npos) result->attributes = Attribute::Directory;
      return 0;
    }
    return Status::NoMoreFiles;
  }

  std::function<void(size_t)> onNext;  // before file n is looked at

 private:
  void note(const std::string& call) {
    if (log_) log_->push_back(call);
  }

  Westring path_;
  std::vector<std::string> files_;
  Log* log_;
  std::string prefix_;
  std::vector<std::string> seen_;
  size_t next_ = 0;
};

// An archive that is one directory of plain names, however many.
class FlatArchive : public OpenArchive {
 public:
  FlatArchive(const Westring& path, std::vector<std::string> names, uint16_t attributes = 0)
      : path_(path), names_(std::move(names)), attributes_(attributes) {}

  const Westring& path() const override { return path_; }
  int first(const Westring&, entry*& result) override {
    next_ = 0;
    return next(result);
  }
  int next(entry*& result) override {
    if (next_ >= names_.size()) return Status::NoMoreFiles;
    result = newEntry(decodeFileName(names_[next_++].c_str()).data());
    result->size = 1;
    result->attributes = attributes_;
    return 0;
  }

 private:
  Westring path_;
  std::vector<std::string> names_;
  uint16_t attributes_;
  size_t next_ = 0;
};

// Panels, options and histories as at the start, and nothing connected; for any kind of test.
template <class Base>
class WithPanels : public Base {
 protected:
  WithPanels() { start(); }
  ~WithPanels() override {
    start();
    std::filesystem::current_path(directory_);
  }

  Panel& left() { return panelPair().side[0]; }
  Panel& right() { return panelPair().side[1]; }

  // A listing made by hand; a slash at the end of a name makes a directory.
  void fill(Panel& panel, const std::vector<std::string>& names) {
    panel.entries.clear();
    for (const std::string& name : names) {
      const bool directory = name.back() == '/';
      const std::string bare = directory ? name.substr(0, name.size() - 1) : name;
      const unsigned char file = directory ? SortGroup::Directory : SortGroup::File;
      panel.entries.add(makeEntry(decodeFileName(bare.c_str()).data(), directory ? 0 : name.size(),
                                  bare == ".." ? SortGroup::Parent : file));
    }
  }
  void fillNumbered(Panel& panel, int count) {
    panel.entries.clear();
    for (int i = 0; i < count; ++i) {
      panel.entries.add(makeEntry(std::to_wstring(1000 + i).c_str(), 1));
    }
  }

 private:
  static void start() {
    panelPair().side[1].window.reset();
    panelPair().side[0].window.reset();
    panelPair() = PanelPair();
    GlobalOptions::setDefaultOptions();
    archiveOpener() = nullptr;
    directoryHistory().clear();
    breakState = BreakState::Idle;
    for (Panel& panel : panelPair().side) {
      panel.path = L"/";
      updatePageSize(panel);
    }
  }

  const std::filesystem::path directory_ = std::filesystem::current_path();  // panels change it
};

using PanelTest = WithPanels<WithoutConsole>;
