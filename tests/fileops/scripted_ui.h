#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "fileops/operation.h"
#include "foundation/utf8.h"

// Answers the questions of an operation from a list, or by a rule, and remembers what was asked.
class ScriptedUi : public OperationUi {
 public:
  struct Question {
    std::string text;
    std::string caption;
    AlertButtons buttons;
    AlertColour colour;
  };
  using Rule = std::function<int(const Question&)>;

  std::deque<int> answers;
  Rule rule;  // when the list is empty
  std::deque<TreeAnswer> treeAnswers;
  int escapeAtLook = 0;  // the look, from 1, that finds Esc; 0 for none
  std::function<void()> onLook;
  std::function<void(const Question&)> onQuestion;

  std::vector<Question> questions;
  std::vector<std::string> treeQuestions;
  std::vector<std::string> shown;    // "Copy source|target|index/count"
  std::vector<std::string> counted;  // "index/count"
  std::vector<std::string> deleted;
  std::vector<DeleteWindowUse> deleteUses;
  std::vector<std::string> gone;
  int windowsClosed = 0;
  int looks = 0;
  int workings = 0;

  int ask(const Westring& text, const Westring& caption, AlertButtons buttons,
          AlertColour colour) override {
    questions.push_back({toUtf8(text).data(), toUtf8(caption).data(), buttons, colour});
    if (onQuestion) onQuestion(questions.back());
    if (!answers.empty()) {
      const int answer = answers.front();
      answers.pop_front();
      return answer;
    }
    if (rule) return rule(questions.back());
    ADD_FAILURE() << "unexpected question: " << questions.back().text << " | "
                  << questions.back().caption;
    return Answer::Cancel;
  }

  TreeAnswer askDeleteTree(const Westring& path) override {
    treeQuestions.push_back(toUtf8(path).data());
    if (!treeAnswers.empty()) {
      const TreeAnswer answer = treeAnswers.front();
      treeAnswers.pop_front();
      return answer;
    }
    ADD_FAILURE() << "unexpected tree question: " << treeQuestions.back();
    return TreeAnswer::No;
  }

  bool escapePressed() override {
    ++looks;
    if (onLook) onLook();
    return looks == escapeAtLook;
  }

  void itemStarted(TransferKind kind, const char* source, const char* target, int index,
                   int count) override {
    shown.push_back(std::string(kind == TransferKind::Copy ? "Copy " : "Move ") + source + "|" +
                    target + "|" + std::to_string(index) + "/" + std::to_string(count));
  }
  void itemsDone(int index, int count) override {
    counted.push_back(std::to_string(index) + "/" + std::to_string(count));
  }
  void working() override { ++workings; }
  void deleting(const char* path, DeleteWindowUse window) override {
    deleted.push_back(path);
    deleteUses.push_back(window);
  }
  void deletingDone() override { ++windowsClosed; }
  void directoryGone(const char* path) override { gone.push_back(path); }
};
