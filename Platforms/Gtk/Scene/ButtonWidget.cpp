#include "Gtk/Scene/ButtonWidget.h"

#include "Gtk/Guarded.h"
#include "Gtk/Scene/Textures.h"
#include "Gtk/Scene/ViewPainter.h"

namespace tavo::gtk {

namespace {

// The scene gives a button its place and its picture; nothing of a theme may add to them. A title
// in a style of its own stands on a video of any colour, so it gets an edge that sets it off, and
// so does a button that the keyboard has.
constexpr const char* styleText =
    "button.tavo-bare { min-width: 0; min-height: 0; padding: 0; margin: 0; border: none;"
    " border-radius: 0; box-shadow: none; background: none; }"
    "button.tavo-bare:focus-visible { outline: 2px solid white; outline-offset: -2px;"
    " box-shadow: inset 0 0 0 3px black; }"
    "label.tavo-light { text-shadow: 1px 1px black, -1px -1px black, 1px -1px black, -1px 1px "
    "black; }"
    "label.tavo-dark { text-shadow: 1px 1px white, -1px -1px white, 1px -1px white, -1px 1px "
    "white; }";

void addStyle(Gtk::Widget& widget) {
  static const auto shared = [] {
    auto provider = Gtk::CssProvider::create();
    provider->load_from_data(styleText);
    return provider;
  }();
  widget.get_style_context()->add_provider(shared, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

bool isLight(const Color& color) {
  constexpr float half = 0.5F;
  return 0.3F * color.red + 0.6F * color.green + 0.1F * color.blue > half;
}

}  // namespace

ButtonWidget::ButtonWidget(const std::shared_ptr<tavo::Button>& button) : button_{button} {
  addStyle(*this);
  addStyle(title_);
  add_css_class("tavo-bare");
  picture_.set_can_shrink(true);
  // The button has the name.
  g_object_set(picture_.gobj(), "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, nullptr);
  signal_clicked().connect(guardedSlot([this] { pressed(); }));
  sync();
}

void ButtonWidget::sync() {
  const auto button = button_.lock();
  if (!button) return;
  set_visible(!button->isHidden());
  set_opacity(button->alpha());
  set_sensitive(button->isEnabled() && button->isUserInteractionEnabled());
  nameIt(*button);
  if (!button->image().empty()) {
    picture_.set_paintable(textureOf(button->image()));
    picture_.set_margin(static_cast<int>(button->imageMargin()));
    if (get_child() != &picture_) set_child(picture_);
  } else if (button->titleStyle()) {
    showTitle(*button);
  } else if (!button->title().empty()) {
    set_label(button->title());
  } else if (get_child() == &picture_) {
    unset_child();
  }
  queue_draw();
}

// The words for those who do not see the button: said once, for a reader tells of each change.
void ButtonWidget::nameIt(const tavo::Button& button) {
  const std::string& label = button.accessibilityLabel();
  const std::string& name = label.empty() ? button.title() : label;
  if (name == name_) return;
  name_ = name;
  set_tooltip_text(label);
  gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 name.c_str(), -1);
}

// A title in a style of its own: colour and size as attributes, for no theme may change them.
void ButtonWidget::showTitle(const tavo::Button& button) {
  title_.set_text(button.title());
  if (get_child() != &title_) set_child(title_);
  if (titleStyle_ == button.titleStyle()) return;
  titleStyle_ = button.titleStyle();
  const ButtonTitleStyle& style = *titleStyle_;
  constexpr double channel = 65535;
  const auto part = [](float value) { return static_cast<guint16>(value * channel); };
  Pango::AttrList attributes;
  auto color = Pango::Attribute::create_attr_foreground(
      part(style.color.red), part(style.color.green), part(style.color.blue));
  attributes.insert(color);
  auto size =
      Pango::Attribute::create_attr_size_absolute(static_cast<int>(style.fontSize * Pango::SCALE));
  attributes.insert(size);
  title_.set_attributes(attributes);
  title_.set_css_classes({isLight(style.color) ? "tavo-light" : "tavo-dark"});
  title_.set_xalign(style.alignment == TextAlignment::left     ? 0.0F
                    : style.alignment == TextAlignment::center ? 0.5F
                                                               : 1.0F);
}

void ButtonWidget::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  if (const auto button = button_.lock()) {
    guarded([&] { ViewPainter{snapshot->gobj(), *this}.paint(*button); });
  }
  Gtk::Button::snapshot_vfunc(snapshot);
}

void ButtonWidget::pressed() {
  const auto button = button_.lock();
  if (!button) return;
  recognizeTap(*button);
  button->press();
}

}  // namespace tavo::gtk
