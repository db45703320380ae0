// The yardstick for starting: an empty toolkit window, gone at its first expose.

#include <gtkmm.h>

namespace {

class EmptyWindow : public Gtk::Window {
 public:
  EmptyWindow() { set_default_size(800, 500); }

 protected:
  bool on_expose_event(GdkEventExpose* event) override {
    bool handled = Gtk::Window::on_expose_event(event);
    Gtk::Main::quit();
    return handled;
  }
};

}  // namespace

int main(int argc, char** argv) {
  Gtk::Main toolkit(argc, argv);
  EmptyWindow window;
  window.show();
  Gtk::Main::run();
  return 0;
}
