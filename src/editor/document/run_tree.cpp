#include "editor/document/run_tree.h"

#include <algorithm>
#include <utility>

namespace {
using Link = Shared<RunTree::Node>;

int heightOf(const Link& link) {
  return link ? link->height : 0;
}
int64_t linesOf(const Link& link) {
  return link ? link->lines : 0;
}
size_t bytesOf(const Link& link) {
  return link ? link->bytes : 0;
}

// A node that may be changed: the link's own one, or a copy of one that others hold, too.
Link own(Link link) {
  return link.alone() ? std::move(link) : Link(new RunTree::Node(*link));
}

void update(RunTree::Node& node) {
  node.lines = linesOf(node.left) + node.run.lines + linesOf(node.right);
  node.bytes = bytesOf(node.left) + node.run.length + bytesOf(node.right);
  node.height = 1 + std::max(heightOf(node.left), heightOf(node.right));
}

Link newNode(const TextRun& run) {
  return Link(new RunTree::Node(run));
}

// These take nodes that may be changed.
Link rotatedLeft(Link node) {
  Link right = own(std::move(node->right));
  node->right = std::move(right->left);
  update(*node);
  right->left = std::move(node);
  update(*right);
  return right;
}

Link rotatedRight(Link node) {
  Link left = own(std::move(node->left));
  node->left = std::move(left->right);
  update(*node);
  left->right = std::move(node);
  update(*left);
  return left;
}

// Below the node the heights differ by 2 at most.
Link balanced(Link node) {
  const int lean = heightOf(node->left) - heightOf(node->right);
  if (lean > 1) {
    if (heightOf(node->left->left) < heightOf(node->left->right))
      node->left = rotatedLeft(own(std::move(node->left)));
    return rotatedRight(std::move(node));
  }
  if (lean < -1) {
    if (heightOf(node->right->right) < heightOf(node->right->left))
      node->right = rotatedRight(own(std::move(node->right)));
    return rotatedLeft(std::move(node));
  }
  update(*node);
  return node;
}

// All of `left`, `middle` (which may be changed) and all of `right`.
Link joined(Link left, Link middle, Link right) {
  if (heightOf(left) > heightOf(right) + 1) {
    left = own(std::move(left));
    left->right = joined(std::move(left->right), std::move(middle), std::move(right));
    return balanced(std::move(left));
  }
  if (heightOf(right) > heightOf(left) + 1) {
    right = own(std::move(right));
    right->left = joined(std::move(left), std::move(middle), std::move(right->left));
    return balanced(std::move(right));
  }
  middle->left = std::move(left);
  middle->right = std::move(right);
  update(*middle);
  return middle;
}

// Takes the first node off; returns what is left.
Link withoutFirst(Link link, Link& first) {
  link = own(std::move(link));
  if (!link->left) {
    Link rest = std::move(link->right);
    first = std::move(link);
    return rest;
  }
  link->left = withoutFirst(std::move(link->left), first);
  return balanced(std::move(link));
}

struct Halves {
  Link before;
  Link behind;
};

Halves split(Link link, int64_t line) {
  if (!link) return {};
  link = own(std::move(link));
  Link left = std::move(link->left);
  Link right = std::move(link->right);
  const int64_t inRun = line - linesOf(left);
  if (inRun <= 0) {
    Halves halves = split(std::move(left), line);
    return {std::move(halves.before),
            joined(std::move(halves.behind), std::move(link), std::move(right))};
  }
  const TextRun run = link->run;
  if (inRun >= run.lines) {
    Halves halves = split(std::move(right), inRun - run.lines);
    return {joined(std::move(left), std::move(link), std::move(halves.before)),
            std::move(halves.behind)};
  }
  link->run = run.part(0, inRun);
  return {joined(std::move(left), std::move(link), {}),
          joined({}, newNode(run.part(inRun, run.lines)), std::move(right))};
}

Link withLine(Link link, int64_t line, const TextRun& run) {
  link = own(std::move(link));
  const int64_t inRun = line - linesOf(link->left);
  if (inRun < 0) {
    link->left = withLine(std::move(link->left), line, run);
  } else if (inRun >= link->run.lines) {
    link->right = withLine(std::move(link->right), inRun - link->run.lines, run);
  } else {
    TextRun before;
    TextRun behind;
    link->run.partsAround(inRun, before, behind);
    link->run = run;
    if (before.lines > 0) link->left = joined(std::move(link->left), newNode(before), {});
    if (behind.lines > 0) link->right = joined({}, newNode(behind), std::move(link->right));
  }
  return balanced(std::move(link));
}

Link builtFrom(const std::vector<TextRun>& runs, size_t from, size_t to) {
  if (from == to) return {};
  const size_t middle = from + (to - from) / 2;
  Link link = newNode(runs[middle]);
  link->left = builtFrom(runs, from, middle);
  link->right = builtFrom(runs, middle + 1, to);
  update(*link);
  return link;
}

bool visitAll(const Link& link, const std::function<bool(const TextRun&)>& visit) {
  return !link || (visitAll(link->left, visit) && visit(link->run) && visitAll(link->right, visit));
}

Link withRuns(Link link, const std::function<void(TextRun&)>& change) {
  if (!link) return link;
  link = own(std::move(link));
  link->left = withRuns(std::move(link->left), change);
  change(link->run);
  link->right = withRuns(std::move(link->right), change);
  update(*link);
  return link;
}
}  // namespace

RunTree::Node::Node(const TextRun& itsRun)
    : run(itsRun), lines(itsRun.lines), bytes(itsRun.length) {}

RunTree::RunTree(const std::vector<TextRun>& runs) : root_(builtFrom(runs, 0, runs.size())) {}

int64_t RunTree::lines() const {
  return linesOf(root_);
}
size_t RunTree::bytes() const {
  return bytesOf(root_);
}

int RunTree::depth() const {
  return heightOf(root_);
}

RunTree::Found RunTree::find(int64_t line) const {
  Found found;
  const Node* node = root_.get();
  for (;;) {
    const int64_t inRun = line - found.linesBefore - linesOf(node->left);
    if (inRun < 0) {
      node = node->left.get();
      continue;
    }
    found.linesBefore += linesOf(node->left);
    found.bytesBefore += bytesOf(node->left);
    if (inRun < node->run.lines) break;
    found.linesBefore += node->run.lines;
    found.bytesBefore += node->run.length;
    node = node->right.get();
  }
  found.run = &node->run;
  return found;
}

RunTree::Found RunTree::findByte(size_t offset) const {
  Found found;
  const Node* node = root_.get();
  for (;;) {
    const size_t runBegin = found.bytesBefore + bytesOf(node->left);
    if (offset < runBegin) {
      node = node->left.get();
      continue;
    }
    found.linesBefore += linesOf(node->left);
    found.bytesBefore = runBegin;
    if (offset < runBegin + node->run.length) break;
    found.linesBefore += node->run.lines;
    found.bytesBefore += node->run.length;
    node = node->right.get();
  }
  found.run = &node->run;
  return found;
}

void RunTree::setLine(int64_t line, const TextRun& run) {
  root_ = withLine(std::move(root_), line, run);
}

RunTree RunTree::cutFrom(int64_t line) {
  Halves halves = split(std::move(root_), line);
  root_ = std::move(halves.before);
  RunTree rest;
  rest.root_ = std::move(halves.behind);
  return rest;
}

void RunTree::append(RunTree lines) {
  if (lines.empty()) return;
  Link first;
  Link rest = withoutFirst(std::move(lines.root_), first);
  root_ = joined(std::move(root_), std::move(first), std::move(rest));
}

bool RunTree::forEach(const std::function<bool(const TextRun& run)>& visit) const {
  return visitAll(root_, visit);
}

void RunTree::changeRuns(const std::function<void(TextRun& run)>& change) {
  root_ = withRuns(std::move(root_), change);
}
