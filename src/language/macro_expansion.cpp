#include "language/macro_expansion.h"

#include <cwchar>
#include <string>

#include "foundation/names.h"
#include "language/environment.h"
#include "language/shell_context.h"
#include "language/shell_quote.h"

namespace {

constexpr wchar_t DefaultTitle[] = L"?";

enum class Step { Ok, Failed };

class MacroExpander {
 public:
  MacroExpander(const Westring& text, const Westring& file, MacroContext& context, MacroMode mode)
      : cursor_(text.data()),
        file_(file),
        context_(context),
        mode_(mode),
        lead_(macroLeadCharacter()) {}

  Step run();
  const std::wstring& output() const { return output_; }
  bool oncePerTagged() const { return oncePerTagged_; }

 private:
  Step macro();
  Step dryMacro(const wchar_t* source);
  Step ask();
  Step fileName();
  Step fullPath(MacroPanel which, const Westring& name);
  Step taggedList(MacroPanel which);
  Step listFile();
  Westring takeTitle();
  bool hasTags(MacroPanel which);
  void typed(const wchar_t* text);
  Step put(const Westring& name);

  const wchar_t* cursor_;  // in the template, behind what was looked at
  const Westring& file_;
  MacroContext& context_;
  MacroMode mode_;
  wchar_t lead_;
  std::wstring output_;
  ShellContext shell_;
  bool oncePerTagged_ = false;
};

Step MacroExpander::run() {
  while (*cursor_ != 0) {
    const wchar_t* source = cursor_;
    if (*cursor_++ != lead_) {
      const wchar_t literal[] = {*source, 0};
      typed(literal);
      continue;
    }
    Step step = mode_ == MacroMode::DryRun ? dryMacro(source) : macro();
    if (step == Step::Failed) return Step::Failed;
  }
  return Step::Ok;
}

// The lead character is behind the cursor. A letter that is no macro stays where it is.
Step MacroExpander::macro() {
  const wchar_t letter = *cursor_;
  if (letter == lead_) {
    ++cursor_;
    const wchar_t literal[] = {lead_, 0};
    typed(literal);
    return Step::Ok;
  }
  if (letter != 0) ++cursor_;
  switch (letter) {
    case L'@':
      return listFile();
    case L'f':
      return fullPath(MacroPanel::This, file_);
    case L'F':
      return fullPath(MacroPanel::Other, context_.currentName(MacroPanel::Other));
    case L'l':
      return taggedList(MacroPanel::This);
    case L'L':
      return taggedList(MacroPanel::Other);
    case L'p':
      return put(context_.path(MacroPanel::This));
    case L'P':
      return put(context_.path(MacroPanel::Other));
    case L's':
      return put(addSlash(context_.path(MacroPanel::This)));
    case L'S':
      return put(addSlash(context_.path(MacroPanel::Other)));
    case L'i':
      return ask();
    case L'n':
      return Step::Ok;
    case L'x':
      return put(withoutExtension(file_));
    case L't':
      oncePerTagged_ = true;
      if (*cursor_ != L'x') return put(file_);
      ++cursor_;
      return put(withoutExtension(file_));
    default:
      if (letter != 0) --cursor_;
      return fileName();
  }
}

// Copies the macro as it stands at `source`, but asks what is to be asked.
Step MacroExpander::dryMacro(const wchar_t* source) {
  if (*cursor_ == L'i') {
    ++cursor_;
    return ask();
  }
  if (*cursor_ == L't') oncePerTagged_ = true;
  if (*cursor_ != 0) ++cursor_;
  output_.append(source, cursor_);
  return Step::Ok;
}

// The answer is the user's own text. After a dry run it will be looked at once more.
Step MacroExpander::ask() {
  std::optional<Westring> answer = context_.ask(takeTitle());
  if (!answer) return Step::Failed;
  typed(mode_ == MacroMode::DryRun ? doubleLeadChar(*answer).data() : answer->data());
  return Step::Ok;
}

Westring MacroExpander::takeTitle() {
  if (*cursor_ != L'"') return DefaultTitle;
  const wchar_t* begin = ++cursor_;
  while (*cursor_ != 0 && *cursor_ != L'"') ++cursor_;
  const std::wstring title(begin, cursor_);
  if (*cursor_ != 0) ++cursor_;
  return Westring(title.c_str());
}

Step MacroExpander::fileName() {
  if (file_.empty() || !context_.inArchive(MacroPanel::This) || file_.find(L'/') >= 0) {
    return put(file_);
  }
  return fullPath(MacroPanel::This, file_);
}

// An empty name gives nothing: the path alone would make the directory the command's operand.
Step MacroExpander::fullPath(MacroPanel which, const Westring& name) {
  if (name.empty()) return Step::Ok;
  if (context_.inArchive(which) && name.find(L'/') < 0) {
    std::optional<Westring> copy = context_.extract(which, name);
    return copy ? put(*copy) : Step::Failed;
  }
  return put(*name.data() == L'/' ? name : joinPath(context_.path(which), name));
}

bool MacroExpander::hasTags(MacroPanel which) {
  const int count = context_.entryCount(which);
  for (int i = 0; i < count; ++i) {
    if (context_.entryAt(which, i)->tagged) return true;
  }
  return false;
}

Step MacroExpander::taggedList(MacroPanel which) {
  if (mode_ != MacroMode::Command || !hasTags(which)) {
    return which == MacroPanel::This ? put(file_) : Step::Ok;
  }
  const size_t rest = wcslen(cursor_);
  const int count = context_.entryCount(which);
  bool isFirst = true;
  for (int i = 0; i < count; ++i) {
    entry* item = context_.entryAt(which, i);
    if (!item->tagged) continue;
    const Westring name = which == MacroPanel::This ? Westring(item->name())
                                                    : joinPath(context_.path(which), item->name());
    ShellContext behind = shell_;
    behind.typed(L' ');
    std::optional<Westring> quoted = behind.quote(name);
    if (!quoted) return Step::Failed;
    const size_t length = output_.size() + rest + 1 + static_cast<size_t>(quoted->length());
    if (!isFirst && length > MaxListedLine) break;
    isFirst = false;
    output_ += L' ';
    output_ += quoted->data();
    shell_ = behind;
    item->tagged = 0;
    item->wasTagged = 1;
  }
  return Step::Ok;
}

Step MacroExpander::listFile() {
  std::vector<Westring> lines;
  if (hasTags(MacroPanel::This)) {
    const int count = context_.entryCount(MacroPanel::This);
    for (int i = 0; i < count; ++i) {
      const entry* item = context_.entryAt(MacroPanel::This, i);
      if (item->tagged) lines.push_back(quoteNameForShell(item->name()));
    }
  } else if (!file_.empty()) {
    lines.push_back(quoteNameForShell(file_));
  }
  std::optional<Westring> list = context_.writeList(lines);
  return list ? put(*list) : Step::Failed;
}

void MacroExpander::typed(const wchar_t* text) {
  for (; *text != 0; ++text) {
    shell_.typed(*text);
    output_ += *text;
  }
}

Step MacroExpander::put(const Westring& name) {
  std::optional<Westring> quoted = shell_.quote(name);
  if (!quoted) return Step::Failed;
  output_ += quoted->data();
  return Step::Ok;
}

// A bare program name gets the file as its argument.
Westring withFileMacro(const Westring& text) {
  const wchar_t lead = macroLeadCharacter();
  if (text.find(lead) >= 0) return text;
  Westring result = text;
  if (!text.empty()) result += L' ';
  result += lead;
  return result;
}

}  // namespace

MacroResult expandCommand(Westring& text, const Westring& file, MacroContext& context,
                          MacroMode mode) {
  const Westring name = file.empty() ? context.currentName(MacroPanel::This) : file;
  const Westring source = mode == MacroMode::Program ? withFileMacro(text) : text;
  MacroExpander expander(source, name, context, mode);
  if (expander.run() == Step::Failed) return MacroResult::Failed;
  const Westring result(expander.output().c_str());
  // A dry run leaves the variables to the expansion that follows it.
  text = mode == MacroMode::DryRun ? result : expandCommandVariables(result);
  return expander.oncePerTagged() ? MacroResult::OncePerTagged : MacroResult::Done;
}

Westring withoutExtension(const Westring& name) {
  const wchar_t* slash = wcsrchr(name.data(), L'/');
  const wchar_t* begin = slash != nullptr ? slash + 1 : name.data();
  while (*begin == L'.') ++begin;
  const wchar_t* dot = wcsrchr(begin, L'.');
  return dot == nullptr ? name : left(name, static_cast<int>(dot - name.data()));
}
