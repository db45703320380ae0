// Whole screens, as a person has looked at them.

#include "options/options.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerGolden : public ViewerTest {
 protected:
  // The name of the directory is another one each time, but as long.
  void expectShot(const std::string& name, const Shot& shot) {
    std::string text;
    for (int y = 0; y < console->rows(); ++y) text += shot.row(y) + "\n";
    const size_t at = text.find(dir.path());
    if (at != std::string::npos) text.replace(at, dir.path().size(), dir.path().size(), '*');
    expectGoldenText(name, text);
  }
  // Lines of many lengths, with tabs and letters of several scripts.
  static std::string story() {
    std::string result;
    for (int i = 1; i <= 60; ++i) {
      result += std::to_string(i) + ".\t";
      for (int word = 0; word < i * 7 % 31; ++word)
        result += word % 5 == 4 ? "\u00E9t\u00E9 " : "word ";
      result += i % 10 == 0 ? "\u0416\u0438\u0437\u043D\u044C\r\n" : "\n";
    }
    return result;
  }
};

TEST_F(ViewerGolden, ATextWrappedInColumnsAndInHex) {
  const auto shots = view(story(), {Key::PageDown, Key::F2, Key::CtrlRight, Key::F4});
  expectShot("wrapped", shots[1]);
  expectShot("not_wrapped", shots[2]);
  expectShot("columns_to_the_right", shots[3]);
  expectShot("hex", shots[4]);
}

TEST_F(ViewerGolden, TheEndFollowed) {
  expectShot("followed", view(story(), {Key::End, Key::alt('f')})[2]);
}

TEST_F(ViewerGolden, ALargeScreen) {
  console->setGeometry(132, 50, Estring(), 0);
  GlobalOptions::ViewerWrap = false;
  const auto shots = view(story(), {Key::F4});
  expectShot("large", shots[0]);
  expectShot("large_hex", shots[1]);
}

}  // namespace
