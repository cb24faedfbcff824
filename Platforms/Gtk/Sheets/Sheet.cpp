#include "Gtk/Sheets/Sheet.h"

#include "Gtk/Guarded.h"
#include "Gtk/Scene/NativeView.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

constexpr int spacing = 8;
constexpr int cardWidth = 300;
constexpr int textHeight = 120;

class SheetView : public View, public NativeView {
 public:
  explicit SheetView(GPtr<GtkWidget> widget) : widget_{std::move(widget)} {}
  [[nodiscard]] GtkWidget* widget() override { return widget_.get(); }
  [[nodiscard]] bool isReadyToShow() const override { return true; }

 private:
  GPtr<GtkWidget> widget_;
};

void addStyle(Gtk::Widget& widget, const char* name) {
  static const auto style = [] {
    auto provider = Gtk::CssProvider::create();
    provider->load_from_data(
        ".tavo-dim { background: rgba(0,0,0,0.45); }"
        ".tavo-card { background: @theme_bg_color; color: @theme_fg_color; border-radius: 10px;"
        " padding: 12px; }"
        ".tavo-text { border: 1px solid alpha(currentColor, 0.3); border-radius: 5px; }");
    return provider;
  }();
  widget.get_style_context()->add_provider(style, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  widget.add_css_class(name);
}

// A word that fills many lines. Where lines end at words first, the time to lay it out grows with
// the square of its length: seconds for 10,000 characters.
bool hasEndlessWord(const Glib::ustring& text) {
  constexpr int endless = 200;
  int length = 0;
  for (const gunichar letter : text) {
    length = g_unichar_isspace(letter) != FALSE ? 0 : length + 1;
    if (length > endless) return true;
  }
  return false;
}

void nameForAssistants(Gtk::Widget& widget, const Glib::ustring& label) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 label.c_str(), -1);
}

}  // namespace

Glib::ustring presentable(const std::string& text, Lines lines, std::size_t longest) {
  constexpr std::size_t longestCharacter = 4;  // bytes
  Glib::ustring shown;
  std::size_t length = 0;
  for (const gunichar letter :
       Glib::ustring{validUtf8(std::string_view{text}.substr(0, longest * longestCharacter))}) {
    if (length++ == longest) break;
    const bool isLine = letter == '\n' && lines == Lines::many;
    shown += g_unichar_iscntrl(letter) != FALSE && !isLine ? gunichar{' '} : letter;
  }
  return shown;
}

SheetForm::SheetForm(const Glib::ustring& title)
    : Gtk::Box{Gtk::Orientation::VERTICAL}, title_{title} {
  addStyle(*this, "tavo-dim");
  addStyle(card_, "tavo-card");
  card_.set_spacing(spacing);
  card_.set_size_request(cardWidth, -1);
  card_.set_halign(Gtk::Align::CENTER);
  card_.set_valign(Gtk::Align::CENTER);
  card_.set_vexpand(true);
  auto* heading = Gtk::make_managed<Gtk::Label>(title);
  heading->add_css_class("heading");
  heading->set_ellipsize(Pango::EllipsizeMode::END);
  header_.set_center_widget(*heading);
  fields_.set_row_spacing(spacing);
  fields_.set_column_spacing(spacing);
  actions_.set_spacing(spacing);
  actions_.set_halign(Gtk::Align::END);
  card_.append(header_);
  card_.append(fields_);
  card_.append(actions_);
  append(card_);
}

void SheetForm::addRow(const Glib::ustring& label, Gtk::Widget& field, Gtk::Widget& focused) {
  auto* name = Gtk::make_managed<Gtk::Label>(label);
  name->set_halign(Gtk::Align::END);
  name->set_valign(Gtk::Align::START);
  name->set_margin_top(spacing);
  field.set_hexpand(true);
  nameForAssistants(focused, label);
  fields_.attach(*name, 0, rows_);
  fields_.attach(field, 1, rows_);
  if (rows_++ == 0) signal_map().connect([&focused] { focused.grab_focus(); });
}

Gtk::Entry& SheetForm::addEntry(const Glib::ustring& label, const Glib::ustring& text) {
  auto* entry = Gtk::make_managed<Gtk::Entry>();
  entry->set_text(text);
  addRow(label, *entry, *entry);
  return *entry;
}

Gtk::TextView& SheetForm::addText(const Glib::ustring& label, const Glib::ustring& text) {
  auto* view = Gtk::make_managed<Gtk::TextView>();
  view->set_wrap_mode(hasEndlessWord(text) ? Gtk::WrapMode::CHAR : Gtk::WrapMode::WORD_CHAR);
  view->set_accepts_tab(false);
  view->get_buffer()->set_text(text);
  auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
  addStyle(*scroller, "tavo-text");
  scroller->set_child(*view);
  scroller->set_min_content_height(textHeight);
  addRow(label, *scroller, *view);
  return *view;
}

void SheetForm::addNote(const Glib::ustring& text) {
  auto* note = Gtk::make_managed<Gtk::Label>(text);
  note->add_css_class("dim-label");
  note->set_wrap(true);
  note->set_max_width_chars(36);
  card_.insert_child_after(*note, fields_);
}

void SheetForm::addButton(const Glib::ustring& label, Role role, std::function<void()> pressed) {
  auto* button = Gtk::make_managed<Gtk::Button>(label);
  if (role == Role::suggested) button->add_css_class("suggested-action");
  if (role == Role::destructive) button->add_css_class("destructive-action");
  button->signal_clicked().connect(guardedSlot([this, pressed = std::move(pressed)] {
    // The button and its form may be gone afterwards.
    const auto run = pressed;
    const auto finished = finished_;
    run();
    if (finished) finished();
  }));
  actions_.append(*button);
}

Sheet::Sheet(SheetForm& form, std::function<void()> cancel)
    : widget_{GPtr<GtkWidget>::sink(GTK_WIDGET(form.gobj()))},
      form_{form},
      cancel_{std::move(cancel)} {}

void closeSheet(ViewController& sheet) {
  if (auto* presenter = sheet.presentingViewController()) {
    presenter->dismissViewController(Animated::yes);
  }
}

std::shared_ptr<View> Sheet::loadView() {
  form_.setFinished([weak = weak_from_this()] {
    if (const auto self = weak.lock()) closeSheet(*self);
  });
  auto view = std::make_shared<SheetView>(widget_);
  view->setAccessibilityLabel(form_.title());
  return view;
}

bool Sheet::cancelOperation() {
  const auto held = shared_from_this();
  cancel_();
  closeSheet(*this);
  return true;
}

}  // namespace tavo::gtk
