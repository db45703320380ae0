// What the console asks of the desktop beside drawing: title, icons, bell, clipboard, pictures.
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gdkmm/pixbuf.h>

#include <cerrno>
#include <memory>

#include "console/console_impl.h"
#include "console/toolkit.h"
#include "foundation/code_page.h"
#include "foundation/utf8.h"

// The X headers' macros would break the toolkit's, so they come last.
#include <gdk/gdkx.h>

namespace {
// How long an answer of the clipboard's owner is waited for.
constexpr uint32_t ClipboardWaitMs = 5000;

Glib::RefPtr<Gdk::Pixbuf> loadIcon(const std::string& file) {
  try {
    return Gdk::Pixbuf::create_from_file(file);
  } catch (const Glib::Error&) {
    return {};
  }
}

GtkClipboard* clipboard() {
  return gtk_clipboard_get(GDK_SELECTION_CLIPBOARD);
}

// What the toolkit holds for as long as an offered text stands.
struct OfferedText {
  std::function<std::string()> text;
  std::shared_ptr<ClipboardOffer> offer;
};

void onTextWanted(GtkClipboard*, GtkSelectionData* wanted, guint, gpointer offered) {
  const OfferedText& own = *static_cast<OfferedText*>(offered);
  ++own.offer->requests;
  const std::string text = own.text();
  gtk_selection_data_set_text(wanted, text.data(), static_cast<gint>(text.size()));
}

void onOfferEnded(GtkClipboard*, gpointer offered) {
  const std::unique_ptr<OfferedText> ended(static_cast<OfferedText*>(offered));
  ended->offer->stands = false;
}

// Shared by the waiting thread and the toolkit's answer, which may come after the wait was given
// up.
struct ClipboardAnswer {
  EventSem arrived;
  std::string text;
};

void onClipboardText(GtkClipboard*, const char* text, void* data) {
  const std::unique_ptr<std::shared_ptr<ClipboardAnswer>> answer(
      static_cast<std::shared_ptr<ClipboardAnswer>*>(data));
  if (text) (*answer)->text = text;
  (*answer)->arrived.post();
}
}  // namespace

// What a cell would show, so that a name with a newline or an escape in it is readable and harmless
// wherever the desktop shows it.
void CConsole::setTitle(const Westring& text) {
  Westring shown = text;
  for (wchar_t* p = shown.data(); *p != 0; ++p) *p = mapControl(displayCharacter(*p));
  impl_->title = toDisplayUtf8(shown.data()).data();
  ToolkitLock lock;
  if (lock.usable()) impl_->window.set_title(impl_->title);
}

void CConsole::setTitle(const char* text) {
  setTitle(fromCodePage(text, codePage()));
}

std::string CConsole::title() const {
  return impl_->title;
}

void CConsole::setIcon(const char* file) {
  ToolkitLock lock;
  if (!lock.usable()) return;
  if (const auto icon = loadIcon(file)) impl_->window.set_icon(icon);
}

void CConsole::setIconList(const std::vector<std::string>& files) {
  ToolkitLock lock;
  if (!lock.usable()) return;
  std::vector<Glib::RefPtr<Gdk::Pixbuf>> icons;
  for (const std::string& file : files) {
    if (const auto icon = loadIcon(file)) icons.push_back(icon);
  }
  impl_->window.set_icon_list(icons);
}

void CConsole::beep() {
  ToolkitLock lock;
  if (!lock.usable()) return;
  gdk_display_beep(gdk_display_get_default());
}

void CConsole::setClipboardText(const Westring& text) {
  const Estring utf8 = toDisplayUtf8(text.data());
  ToolkitLock lock;
  if (!lock.usable()) return;
  gtk_clipboard_set_text(clipboard(), utf8.data(), -1);
}

void CConsole::offerClipboardText(std::function<std::string()> text) {
  ToolkitLock lock;
  if (!lock.usable()) return;
  GtkTargetList* const list = gtk_target_list_new(nullptr, 0);
  gtk_target_list_add_text_targets(list, 0);
  gint count = 0;
  GtkTargetEntry* const targets = gtk_target_table_new_from_list(list, &count);
  impl_->clipboardOffer = std::make_shared<ClipboardOffer>();
  auto offered = std::make_unique<OfferedText>(OfferedText{std::move(text), impl_->clipboardOffer});
  if (gtk_clipboard_set_with_data(clipboard(), targets, static_cast<guint>(count), onTextWanted,
                                  onOfferEnded, offered.get())) {
    static_cast<void>(offered.release());
  } else {
    impl_->clipboardOffer->stands = false;
  }
  gtk_target_table_free(targets, count);
  gtk_target_list_unref(list);
}

bool CConsole::isClipboardOffered() const {
  return impl_->clipboardOffer && impl_->clipboardOffer->stands;
}

// The answer comes on the toolkit thread, which needs the lock: it isn't held during the wait.
Westring CConsole::getClipboardText() {
  completePainting();
  auto answer = std::make_shared<ClipboardAnswer>();
  {
    ToolkitLock lock;
    if (!lock.usable()) return {};
    auto shared = std::make_unique<std::shared_ptr<ClipboardAnswer>>(answer);
    gtk_clipboard_request_text(clipboard(), onClipboardText, shared.release());
  }
  if (answer->arrived.wait(ClipboardWaitMs) != 0) return {};
  return fromUtf8(answer->text.c_str());
}

Picture CConsole::picture() {
  completePainting();
  Picture result;
  ToolkitLock lock;
  if (!lock.usable() || !impl_->painter.ensurePixmap()) return result;
  const ObjectPtr<GdkPixbuf> pixels(
      gdk_pixbuf_get_from_drawable(nullptr, impl_->painter.pixmap(), nullptr, 0, 0, 0, 0, -1, -1));
  if (!pixels) return result;
  result.width = gdk_pixbuf_get_width(pixels.get());
  result.height = gdk_pixbuf_get_height(pixels.get());
  result.rgb.reserve(static_cast<size_t>(result.width) * static_cast<size_t>(result.height));
  const int stride = gdk_pixbuf_get_rowstride(pixels.get());
  const int channels = gdk_pixbuf_get_n_channels(pixels.get());
  const guchar* bytes = gdk_pixbuf_get_pixels(pixels.get());
  for (int y = 0; y < result.height; ++y) {
    for (int x = 0; x < result.width; ++x) {
      const guchar* p = bytes + y * stride + x * channels;
      result.rgb.push_back(static_cast<uint32_t>(p[0] << 16 | p[1] << 8 | p[2]));
    }
  }
  return result;
}

int CConsole::savePicture(const char* file) {
  completePainting();
  ObjectPtr<GdkPixbuf> pixels;
  {
    ToolkitLock lock;
    if (!lock.usable() || !impl_->painter.ensurePixmap()) return EIO;
    pixels.reset(gdk_pixbuf_get_from_drawable(nullptr, impl_->painter.pixmap(), nullptr, 0, 0, 0, 0,
                                              -1, -1));
  }
  if (!pixels) return EIO;
  GError* error = nullptr;
  errno = 0;
  if (gdk_pixbuf_save(pixels.get(), file, "png", &error, nullptr)) return 0;
  g_clear_error(&error);
  return errno != 0 ? errno : EIO;
}

unsigned long CConsole::windowId() const {
  ToolkitLock lock;
  if (!lock.usable()) return 0;
  GdkWindow* window = gtk_widget_get_window(GTK_WIDGET(impl_->window.gobj()));
  return window ? GDK_WINDOW_XID(window) : 0;
}
