#include "AdPlayer/Window/TimelineView.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>

#include "AdPlayer/Window/Placeholder.h"
#include "Gtk/Guarded.h"
#include "Values/Translation.h"

namespace tavo::adplayer {

namespace {

constexpr const char* detailHint =
    toTranslate("Select an event to read its headers, body and reasons.");
constexpr std::size_t longestDetail = std::size_t{64} * 1024;

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return text;
}

std::string timeText(Seconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", time.count());
  return text;
}

void setIcon(Gtk::Button& button, const char* icon, const char* name) {
  button.set_icon_name(icon);
  const std::string shown = translated(name);
  button.set_tooltip_text(shown);
  gtk_accessible_update_property(GTK_ACCESSIBLE(button.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 shown.c_str(), -1);
}

}  // namespace

class TimelineView::Row : public Glib::Object {
 public:
  static Glib::RefPtr<Row> create(const PlayEvent& event) {
    return Glib::make_refptr_for_instance(new Row{event});
  }
  const PlayEvent event;

 private:
  explicit Row(const PlayEvent& one) : event{one} {}
};

TimelineView::TimelineView(EventLog& log)
    : Gtk::Box{Gtk::Orientation::VERTICAL},
      rows_{Gio::ListStore<Row>::create()},
      shown_{Gio::ListStore<Row>::create()} {
  makeTools();
  makeList();
  detail_.set_editable(false);
  detail_.set_monospace(true);
  detail_.set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
  detail_.add_css_class("detail");
  detail_.set_left_margin(12);
  detail_.set_right_margin(12);
  detail_.set_top_margin(8);
  detail_.set_bottom_margin(8);
  detail_.get_buffer()->set_text(translated(detailHint));
  detailScroller_.set_child(detail_);
  detailScroller_.set_size_request(-1, 90);
  panes_.set_start_child(listScroller_);
  panes_.set_end_child(detailScroller_);
  panes_.set_resize_end_child(true);
  panes_.set_shrink_end_child(false);
  panes_.set_position(420);
  panes_.set_vexpand(true);
  append(tools_);
  append(panes_);
  listener_ = log.listen([this](const PlayEvent& event) {
    if (event.kind == "step" && event.text.starts_with("load ")) clear();
    add(event);
  });
}

void TimelineView::makeTools() {
  tools_.add_css_class("pane-tools");
  search_.set_hexpand(true);
  setPlaceholder(search_, toTranslate("Search events"));
  search_.set_tooltip_text(translated("Search the timeline (Ctrl+F)"));
  search_.signal_search_changed().connect(gtk::guardedSlot([this] { filter(); }));
  makeKindFilter();
  setIcon(copy_, "edit-copy-symbolic", toTranslate("Copy what is shown"));
  setIcon(export_, "document-save-symbolic", toTranslate("Export what is shown"));
  setIcon(follow_, "go-bottom-symbolic", toTranslate("Follow the newest event"));
  follow_.set_active(true);
  copy_.signal_clicked().connect(gtk::guardedSlot([this] { copy(); }));
  export_.signal_clicked().connect(gtk::guardedSlot([this] { exportLines(); }));
  count_.add_css_class("dim-label");
  for (Gtk::Widget* tool : std::initializer_list<Gtk::Widget*>{&search_, &count_, &kindButton_,
                                                               &follow_, &copy_, &export_}) {
    tools_.append(*tool);
  }
}

void TimelineView::makeKindFilter() {
  kindButton_.set_icon_name("view-more-symbolic");
  kindButton_.set_label(translated("Kinds"));
  kindButton_.set_tooltip_text(translated("Which kinds of events are shown"));
  kindBox_.set_margin(8);
  kindPopover_.set_child(kindBox_);
  kindButton_.set_popover(kindPopover_);
  // Seldom of interest to whoever begins.
  hidden_ = {"statement", "stall"};
}

void TimelineView::noteKind(const std::string& kind) {
  if (!kinds_.insert(kind).second) return;
  auto* const check = Gtk::make_managed<Gtk::CheckButton>(kind);
  check->set_active(!hidden_.contains(kind));
  check->signal_toggled().connect(gtk::guardedSlot([this, check, kind] {
    if (check->get_active()) {
      hidden_.erase(kind);
    } else {
      hidden_.insert(kind);
    }
    filter();
  }));
  kindBox_.append(*check);
}

void TimelineView::makeList() {
  const auto factory = Gtk::SignalListItemFactory::create();
  factory->signal_setup().connect([](const Glib::RefPtr<Gtk::ListItem>& item) {
    auto* const line = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 10);
    auto* const time = Gtk::make_managed<Gtk::Label>();
    time->add_css_class("event-time");
    time->set_width_chars(7);
    time->set_xalign(1);
    auto* const kind = Gtk::make_managed<Gtk::Label>();
    kind->set_width_chars(10);
    kind->set_valign(Gtk::Align::CENTER);
    auto* const text = Gtk::make_managed<Gtk::Label>();
    text->set_xalign(0);
    text->set_hexpand(true);
    text->set_ellipsize(Pango::EllipsizeMode::END);
    line->append(*time);
    line->append(*kind);
    line->append(*text);
    item->set_child(*line);
  });
  factory->signal_bind().connect([](const Glib::RefPtr<Gtk::ListItem>& item) {
    const auto row = std::dynamic_pointer_cast<Row>(item->get_item());
    auto* const line = dynamic_cast<Gtk::Box*>(item->get_child());
    if (!row || line == nullptr) return;
    auto* const time = dynamic_cast<Gtk::Label*>(line->get_first_child());
    auto* const kind = dynamic_cast<Gtk::Label*>(time->get_next_sibling());
    auto* const text = dynamic_cast<Gtk::Label*>(kind->get_next_sibling());
    const PlayEvent& event = row->event;
    time->set_text(timeText(event.time));
    kind->set_text(event.kind);
    kind->set_css_classes({"event-kind", "k-" + event.kind});
    std::string first = event.text.substr(0, std::min<std::size_t>(event.text.find('\n'), 400));
    text->set_text(first);
  });
  selection_ = Gtk::SingleSelection::create(shown_);
  selection_->set_autoselect(false);
  selection_->set_can_unselect(true);
  selection_->property_selected().signal_changed().connect(
      gtk::guardedSlot([this] { showSelected(); }));
  list_.set_factory(factory);
  list_.set_model(selection_);
  list_.add_css_class("timeline");
  gtk_accessible_update_property(GTK_ACCESSIBLE(list_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 translated("Timeline").c_str(), -1);
  listScroller_.set_child(list_);
  listScroller_.set_vexpand(true);
}

bool TimelineView::isShown(const PlayEvent& event) const {
  if (hidden_.contains(event.kind)) return false;
  const std::string wanted = lower(search_.get_text());
  if (wanted.empty()) return true;
  const auto has = [&](const std::string& text) {
    return lower(text.substr(0, 20'000)).find(wanted) != std::string::npos;
  };
  return has(event.text) || has(event.kind) ||
         std::any_of(event.fields.begin(), event.fields.end(),
                     [&](const auto& field) { return has(field.value); });
}

void TimelineView::add(const PlayEvent& event) {
  noteKind(event.kind);
  const auto row = Row::create(event);
  rows_->append(row);
  if (isShown(event)) shown_->append(row);
  showCount();
  if (!follow_.get_active()) return;
  Glib::signal_idle().connect_once(gtk::guardedSlot([this] {
    const auto adjustment = listScroller_.get_vadjustment();
    adjustment->set_value(adjustment->get_upper());
  }));
}

void TimelineView::showCount() {
  const std::string shown = std::to_string(shown_->get_n_items());
  // Translators: %1 is how many events are shown; the number of all follows.
  count_.set_text(filledIn(translated("%1 of"), shown) + " " +
                  std::to_string(rows_->get_n_items()));
}

void TimelineView::filter() {
  std::vector<Glib::RefPtr<Row>> kept;
  for (guint at = 0; at < rows_->get_n_items(); ++at) {
    auto row = rows_->get_item(at);
    if (isShown(row->event)) kept.push_back(std::move(row));
  }
  shown_->splice(0, shown_->get_n_items(), kept);
  showCount();
}

void TimelineView::clear() {
  rows_->remove_all();
  shown_->remove_all();
  detail_.get_buffer()->set_text(translated(detailHint));
}

void TimelineView::showSelected() {
  const auto row = std::dynamic_pointer_cast<Row>(selection_->get_selected_item());
  if (!row) return detail_.get_buffer()->set_text(translated(detailHint));
  follow_.set_active(false);
  std::string text = row->event.text + "\n";
  for (const auto& field : row->event.fields) {
    const bool isLong = field.value.find('\n') != std::string::npos;
    text += "\n" + field.name + (isLong ? ":\n" : ": ") + field.value;
    if (text.size() > longestDetail) break;
  }
  text.resize(std::min(text.size(), longestDetail));
  detail_.get_buffer()->set_text(Glib::ustring{text}.make_valid());
}

std::string TimelineView::shownLines(bool asJson) const {
  std::string lines;
  for (guint at = 0; at < shown_->get_n_items(); ++at) {
    const PlayEvent& event = shown_->get_item(at)->event;
    lines += asJson ? event.toJson() : timeText(event.time) + "  " + event.kind + "  " + event.text;
    lines += '\n';
  }
  return lines;
}

void TimelineView::copy() { get_clipboard()->set_text(shownLines(false)); }

void TimelineView::exportLines() {
  auto* const window = dynamic_cast<Gtk::Window*>(get_root());
  if (window == nullptr) return;
  chooser_ = Gtk::FileChooserNative::create(translated("Export the timeline"), *window,
                                            Gtk::FileChooser::Action::SAVE, translated("Export"),
                                            translated("Cancel"));
  chooser_->set_current_name("events.jsonl");
  chooser_->signal_response().connect(gtk::guardedSlot([this](int response) {
    if (response != Gtk::ResponseType::ACCEPT) return;
    std::ofstream{chooser_->get_file()->get_path()} << shownLines(true);
  }));
  chooser_->show();
}

}  // namespace tavo::adplayer
