#include "AdPlayer/Window/SlotPanel.h"

#include <array>
#include <cstdio>

#include "Values/Translation.h"

namespace tavo::adplayer {

namespace {

struct NamedSize {
  const char* name;
  double width;
  double height;
};
constexpr std::array<NamedSize, 7> namedSizes{{{toTranslate("Banner, 320 x 50"), 320, 50},
                                               {toTranslate("Large banner, 320 x 100"), 320, 100},
                                               {toTranslate("Rectangle, 300 x 250"), 300, 250},
                                               {toTranslate("Full screen, 320 x 480"), 320, 480},
                                               {toTranslate("Leaderboard, 728 x 90"), 728, 90},
                                               {toTranslate("Film, 320 x 180"), 320, 180},
                                               {toTranslate("Skyscraper, 160 x 600"), 160, 600}}};

void setModel(Gtk::DropDown& menu, const std::vector<Glib::ustring>& texts) {
  menu.set_model(Gtk::StringList::create(texts));
}

}  // namespace

SlotPanel::SlotPanel() {
  set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  column_.add_css_class("slot-panel");
  setModel(placement_, {translated("By what it is"), translated("Banner"), translated("Pre-roll"),
                        translated("Interstitial")});
  std::vector<Glib::ustring> sizes{translated("By what it is")};
  for (const auto& size : namedSizes) sizes.emplace_back(translated(size.name));
  sizes.emplace_back(translated("Another size"));
  setModel(sizes_, sizes);
  ownSize_.set_placeholder_text("300x250");
  ownSize_.set_width_chars(9);
  refresh_.set_adjustment(Gtk::Adjustment::create(120, 0, 3600, 5));
  skipAfter_.set_adjustment(Gtk::Adjustment::create(-1, -1, 600, 1));
  page_.set_placeholder_text("news/front");
  position_.set_placeholder_text("Top");
  addTitle(toTranslate("Place"));
  addRow(toTranslate("Placement"),
         toTranslate("Banner among the content, in the host's player, or above everything"),
         placement_);
  addRow(toTranslate("Size"), toTranslate("Of a banner's slot, in points"), sizes_);
  addRow(toTranslate("Another size"), toTranslate("Used where the list says so"), ownSize_);
  addTitle(toTranslate("Ad server"));
  addRow(toTranslate("Page"), toTranslate("Filled: what is opened is the address of an ad server"),
         page_);
  addRow(toTranslate("Position"), "", position_);
  addTitle(toTranslate("Slot"));
  addRow(toTranslate("Standards mode"), toTranslate("The public standards to the letter"),
         standards_);
  addRow(toTranslate("Refresh"), toTranslate("Seconds between two ads; 0 is never"), refresh_);
  addRow(toTranslate("Scale pictures"), "", scaling_);
  addRow(toTranslate("Keep proportions"), "", aspect_);
  addRow(toTranslate("Clicks open inside"), toTranslate("In a browser of the application"),
         inAppBrowser_);
  addRow(toTranslate("Child-directed"), "", childDirected_);
  addRow(toTranslate("Ask for bids"), "", bidding_);
  addRow(toTranslate("Confine pages"), toTranslate("To the site that served them"), confines_);
  addRow(toTranslate("Skip after"), toTranslate("Seconds; -1 as the ad says"), skipAfter_);
  addTitle(toTranslate("Pages"));
  addRow(toTranslate("Give an address"),
         toTranslate("To pages without one, so that script errors have texts and lines"),
         givesAddress_);
  set_child(column_);
  for (auto* menu : {&placement_, &sizes_}) {
    menu->property_selected().signal_changed().connect([this] {
      if (onChange) onChange();
    });
  }
  for (auto* one : {&standards_, &givesAddress_}) {
    one->property_active().signal_changed().connect([this] {
      if (onChange) onChange();
    });
  }
}

void SlotPanel::addTitle(const char* title) {
  auto* const label = Gtk::make_managed<Gtk::Label>(translated(title));
  label->set_xalign(0);
  label->add_css_class("group-title");
  column_.append(*label);
  group_ = Gtk::make_managed<Gtk::ListBox>();
  group_->set_selection_mode(Gtk::SelectionMode::NONE);
  group_->add_css_class("rich-list");
  group_->add_css_class("group");
  column_.append(*group_);
}

void SlotPanel::addRow(const char* title, const char* help, Gtk::Widget& control) {
  auto* const line = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
  auto* const texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
  auto* const name = Gtk::make_managed<Gtk::Label>(translated(title));
  name->set_xalign(0);
  texts->append(*name);
  if (*help != '\0') {
    auto* const note = Gtk::make_managed<Gtk::Label>(translated(help));
    note->set_xalign(0);
    note->set_wrap(true);
    note->add_css_class("dim-label");
    note->add_css_class("caption-text");
    texts->append(*note);
  }
  texts->set_hexpand(true);
  texts->set_valign(Gtk::Align::CENTER);
  control.set_valign(Gtk::Align::CENTER);
  gtk_accessible_update_property(GTK_ACCESSIBLE(control.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 translated(title).c_str(), -1);
  line->append(*texts);
  line->append(control);
  group_->append(*line);
  if (auto* const row = dynamic_cast<Gtk::ListBoxRow*>(line->get_parent()))
    row->set_focusable(false);
}

XAdSlotConfiguration SlotPanel::settings() const {
  XAdSlotConfiguration settings;
  settings.bannerRefreshInterval = static_cast<float>(refresh_.get_value());
  settings.scalingAllowed = scaling_.get_active();
  settings.maintainAspectRatio = aspect_.get_active();
  settings.shouldOpenClickThroughURLInAppBrowser = inAppBrowser_.get_active();
  settings.COPPAPermissions = childDirected_.get_active();
  settings.RTBRequired = bidding_.get_active();
  settings.confinesPagesToServingSite = confines_.get_active();
  settings.skipOffsetTime = skipAfter_.get_value_as_int();
  if (standards_.get_active()) settings.standardsMode = true;
  return settings;
}

std::optional<Placement> SlotPanel::placement() const {
  const auto chosen = placement_.get_selected();
  if (chosen == 0 || chosen > 3) return std::nullopt;
  return static_cast<Placement>(chosen - 1);
}

std::optional<Size> SlotPanel::size() const {
  const auto chosen = sizes_.get_selected();
  if (chosen == 0) return std::nullopt;
  if (chosen <= namedSizes.size()) {
    return Size{namedSizes.at(chosen - 1).width, namedSizes.at(chosen - 1).height};
  }
  int width = 0;
  int height = 0;
  if (std::sscanf(ownSize_.get_text().c_str(), "%dx%d", &width, &height) != 2) return std::nullopt;
  if (width < 1 || height < 1 || width > 4'000 || height > 4'000) return std::nullopt;
  return Size{static_cast<double>(width), static_cast<double>(height)};
}

SourceOptions SlotPanel::server() const { return {page_.get_text(), position_.get_text()}; }

}  // namespace tavo::adplayer
