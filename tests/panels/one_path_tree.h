#pragma once

#include <utility>

#include "foundation/names.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel.h"

// A tree of one line, and whatever line a panel shows has its path. Connected while it lives.
class OnePathTree : public DirectoryTree {
 public:
  explicit OnePathTree(Westring path) : path_(std::move(path)) { directoryTree().connect(*this); }
  ~OnePathTree() override { directoryTree().disconnect(); }
  Westring pathOf(const Panel&, int) override { return path_; }
  void fill(Panel& panel) override {
    EntryPtr line(newEntry(lastComponent(path_).data()));
    line->attributes = Attribute::Directory;
    panel.entries.add(std::move(line));
    panel.treeLines.emplace_back();
  }

 private:
  Westring path_;
};
