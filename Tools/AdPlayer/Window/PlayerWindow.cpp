#include "AdPlayer/Window/PlayerWindow.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include "AdPlayer/Screenshot.h"
#include "AdPlayer/Stage/Style.h"
#include "AdPlayer/Window/Placeholder.h"
#include "AdServer/CampaignFolder.h"
#include "Gtk/Guarded.h"
#include "Values/Translation.h"

namespace tavo::adplayer {

namespace {

constexpr int narrowWidth = 1'000;

void nameWidget(Gtk::Widget& widget, const char* text) {
  const std::string shown = translated(text);
  widget.set_tooltip_text(shown);
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 shown.c_str(), -1);
}

std::string stateFile() { return Glib::get_user_config_dir() + "/adplayer/window.ini"; }

}  // namespace

PlayerWindow::PlayerWindow(Stage& stage, PlayerWindowOptions options)
    : stage_{stage},
      options_{std::move(options)},
      phone_{phonePresets()[1]},
      session_{*this, phone_, stage.log()},
      device_{stage, phone_, scaled_},
      timeline_{stage.log()},
      ledger_{stage.log()},
      recorder_{phone_} {
  installStyle();
  set_title(translated("Ad player"));
  set_default_size(1'280, 820);
  set_icon_name("com.corvanetavo.adplayer");
  makeHeader();
  makeSide();
  makeBody();
  makeKeys();
  if (!options_.film.empty()) {
    const std::filesystem::path film{options_.film};
    films_ = std::make_unique<PlayServer>();
    films_->setFolder(film.parent_path());
    session_.film = Url::fromText(films_->baseUrl() + "/files/" + film.filename().string());
  }
  session_.concluded = [this](Outcome outcome) {
    // The page from before the switch had no tools; this one has.
    if (tools_.get_active()) Inspection::sharedInstance().openPageTools();
    const bool isGood = outcome == Outcome::loaded;
    std::string why;
    for (const auto& event : stage_.log().events()) {
      if (event.kind == "outcome") why = event.text;
    }
    tell(isGood ? filledIn(translated("Loaded: %1"), session_.classification()) : why,
         isGood ? "good" : "bad");
  };
  slot_.onChange = [this] { playAgain(); };
  readState();
  signal_close_request().connect(
      [this] {
        writeState();
        session_.end();
        return false;
      },
      false);
  if (!options_.source.empty()) play(options_.source);
}

PlayerWindow::~PlayerWindow() = default;

void PlayerWindow::addHeaderButton(Gtk::Button& button, const char* icon, const char* name,
                                   std::function<void()> pressed) {
  button.set_icon_name(icon);
  nameWidget(button, name);
  button.signal_clicked().connect(gtk::guardedSlot(std::move(pressed)));
}

void PlayerWindow::makeHeader() {
  set_titlebar(header_);
  entry_.set_placeholder_text(translated("A file, a URL, an ad server or a campaign"));
  entry_.set_width_chars(24);
  entry_.set_max_width_chars(60);
  entry_.set_hexpand(true);
  nameWidget(entry_, toTranslate("What to play (Ctrl+L)"));
  entry_.signal_activate().connect(gtk::guardedSlot([this] { play(entry_.get_text()); }));
  header_.set_title_widget(entry_);
  sideSwitch_.set_active(true);
  addHeaderButton(sideSwitch_, "view-list-symbolic", toTranslate("Campaigns (F9)"),
                  [this] { side_.set_visible(sideSwitch_.get_active()); });
  addHeaderButton(open_, "document-open-symbolic", toTranslate("Open a file (Ctrl+O)"),
                  [this] { chooseFile(); });
  addHeaderButton(again_, "view-refresh-symbolic", toTranslate("Play again (F5)"),
                  [this] { playAgain(); });
  addHeaderButton(close_, "window-close-symbolic", toTranslate("Close the ad"),
                  [this] { session_.close(); });
  addHeaderButton(picture_, "camera-photo-symbolic", toTranslate("Save a picture (Ctrl+P)"),
                  [this] { savePicture(); });
  addHeaderButton(record_, "media-record-symbolic", toTranslate("Record"),
                  [this] { toggleRecording(); });
  addHeaderButton(tools_, "applications-engineering-symbolic",
                  toTranslate("Inspector of the page, from the next load on (F12)"), [this] {
                    Inspection::sharedInstance().allowsPageTools = tools_.get_active();
                    if (tools_.get_active() && !Inspection::sharedInstance().openPageTools()) {
                      playAgain();
                    }
                  });
  addHeaderButton(dark_, "weather-clear-night-symbolic", toTranslate("Dark"), [this] {
    Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() = dark_.get_active();
  });
  for (Gtk::Button* button :
       std::initializer_list<Gtk::Button*>{&sideSwitch_, &open_, &again_, &close_}) {
    header_.pack_start(*button);
  }
  for (Gtk::Button* button :
       std::initializer_list<Gtk::Button*>{&dark_, &tools_, &record_, &picture_}) {
    header_.pack_end(*button);
  }
}

void PlayerWindow::makeSide() {
  side_.add_css_class("side");
  side_.set_size_request(210, -1);
  auto* const title = Gtk::make_managed<Gtk::Label>(translated("Campaigns"));
  title->set_xalign(0);
  title->add_css_class("side-title");
  sideSearch_.set_margin(8);
  setPlaceholder(sideSearch_, toTranslate("Search campaigns"));
  auto* const scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
  scroller->set_child(campaigns_);
  scroller->set_vexpand(true);
  scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  gtk_accessible_update_property(GTK_ACCESSIBLE(campaigns_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 translated("Campaigns").c_str(), -1);
  side_.append(*title);
  side_.append(sideSearch_);
  side_.append(*scroller);
  fillCampaigns();
  campaigns_.signal_row_activated().connect(
      gtk::guardedSlot([this](Gtk::ListBoxRow* row) { play(row->get_name()); }));
  campaigns_.set_filter_func([this](Gtk::ListBoxRow* row) {
    const auto wanted = sideSearch_.get_text().lowercase();
    return wanted.empty() ||
           row->get_tooltip_text().lowercase().find(wanted) != Glib::ustring::npos;
  });
  sideSearch_.signal_search_changed().connect([this] { campaigns_.invalidate_filter(); });
}

void PlayerWindow::fillCampaigns() {
  const adserver::CampaignFolder folder{options_.campaigns};
  for (const auto& name : folder.names()) {
    const auto campaign = folder.campaign(name);
    if (!campaign) continue;
    auto* const texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 1);
    auto* const title = Gtk::make_managed<Gtk::Label>(campaign->title);
    title->set_xalign(0);
    title->set_ellipsize(Pango::EllipsizeMode::END);
    title->add_css_class("name");
    auto* const note =
        Gtk::make_managed<Gtk::Label>(name + " \u00b7 " + adserver::nameOf(campaign->placement));
    note->set_xalign(0);
    note->set_ellipsize(Pango::EllipsizeMode::END);
    note->add_css_class("dim-label");
    note->add_css_class("caption-text");
    texts->append(*title);
    texts->append(*note);
    auto* const row = Gtk::make_managed<Gtk::ListBoxRow>();
    row->set_child(*texts);
    row->set_name(name);
    row->set_tooltip_text(campaign->title + "\n" + name +
                          (campaign->description.empty() ? "" : "\n" + campaign->description));
    campaigns_.append(*row);
  }
}

void PlayerWindow::makeBody() {
  bezel_.add_css_class("phone-bezel");
  bezel_.set_halign(Gtk::Align::CENTER);
  bezel_.set_valign(Gtk::Align::CENTER);
  phone_.set_overflow(Gtk::Overflow::HIDDEN);
  bezel_.append(phone_);
  scaled_.setChild(bezel_);
  scaled_.set_vexpand(true);
  scaled_.set_hexpand(true);
  auto* const room = Gtk::make_managed<Gtk::ScrolledWindow>();
  room->set_child(scaled_);
  room->add_css_class("stage");
  room->set_vexpand(true);
  notice_.set_xalign(0);
  notice_.set_wrap(true);
  notice_.set_selectable(true);
  notice_.set_visible(false);
  stageBox_.append(device_);
  stageBox_.append(*room);
  stageBox_.append(notice_);
  stageBox_.set_size_request(300, 240);
  pages_.add(timeline_, "timeline", translated("Timeline"));
  pages_.add(ledger_, "ledger", translated("Pings"));
  pages_.add(slot_, "slot", translated("Slot"));
  pages_.set_vexpand(true);
  switcher_.set_stack(pages_);
  switcher_.set_halign(Gtk::Align::CENTER);
  switcher_.set_margin(8);
  right_.append(switcher_);
  right_.append(pages_);
  right_.set_size_request(300, 220);
  inner_.set_start_child(stageBox_);
  inner_.set_end_child(right_);
  inner_.set_shrink_start_child(false);
  inner_.set_shrink_end_child(false);
  inner_.set_position(480);
  outer_.set_start_child(side_);
  outer_.set_end_child(inner_);
  outer_.set_resize_start_child(false);
  outer_.set_shrink_start_child(false);
  outer_.set_shrink_end_child(false);
  outer_.set_position(230);
  set_child(outer_);
  signal_realize().connect([this] {
    get_surface()->signal_layout().connect([this](int width, int) { followWidth(width); });
  });
}

void PlayerWindow::makeKeys() {
  const auto keys = Gtk::ShortcutController::create();
  keys->set_scope(Gtk::ShortcutScope::GLOBAL);
  const auto add = [&](const char* trigger, std::function<void()> action) {
    keys->add_shortcut(Gtk::Shortcut::create(
        Gtk::ShortcutTrigger::parse_string(trigger),
        Gtk::CallbackAction::create(
            [action = std::move(action)](Gtk::Widget&, const Glib::VariantBase&) {
              action();
              return true;
            })));
  };
  add("<Control>l", [this] { entry_.grab_focus(); });
  add("<Control>o", [this] { chooseFile(); });
  add("<Control>f", [this] {
    pages_.set_visible_child("timeline");
    timeline_.focusSearch();
  });
  add("<Control>r", [this] { device_.rotate(); });
  add("<Control>p", [this] { savePicture(); });
  add("<Control>q", [this] { close(); });
  add("F5", [this] { playAgain(); });
  add("F9", [this] {
    sideSwitch_.set_active(!sideSwitch_.get_active());
    side_.set_visible(sideSwitch_.get_active());
  });
  add("F12", [this] { tools_.activate(); });
  add_controller(keys);
}

void PlayerWindow::play(const std::string& source) {
  source_ = source;
  entry_.set_text(source);
  playAgain();
}

void PlayerWindow::playAgain() {
  if (source_.empty()) return;
  tell(filledIn(translated("Opening %1"), source_), "");
  Inspection::sharedInstance().pageAddress = slot_.givesAddress() ? addressOfPages : "";
  OpeningOptions opening;
  opening.campaigns = options_.campaigns;
  opening.placement = slot_.placement();
  opening.size = slot_.size();
  opening.source = slot_.server();
  adplayer::open(source_, opening, stage_.platform().http,
                 [this, attempt = ++attempt_](const Opened& opened) { take(opened, attempt); });
}

void PlayerWindow::take(const Opened& opened, int attempt) {
  if (attempt != attempt_) return;
  if (const auto* refused = std::get_if<Refusal>(&opened)) return tell(refused->why, "bad");
  Playable before = std::exchange(playable_, std::get<Playable>(opened));
  session_.load(playable_.plan, std::make_shared<XAdSlotConfiguration>(slot_.settings()));
}

void PlayerWindow::tell(const std::string& text, const char* cssClass) {
  notice_.set_css_classes({"notice", cssClass});
  notice_.set_text(Glib::ustring{text}.make_valid());
  notice_.set_visible(true);
}

void PlayerWindow::chooseFile() {
  chooser_ = Gtk::FileChooserNative::create(
      translated("Open an HTML page, a VAST document or an answer"), *this,
      Gtk::FileChooser::Action::OPEN, translated("Open"), translated("Cancel"));
  chooser_->signal_response().connect(gtk::guardedSlot([this](int response) {
    if (response == Gtk::ResponseType::ACCEPT) play(chooser_->get_file()->get_path());
  }));
  chooser_->show();
}

void PlayerWindow::savePicture() {
  const std::string png = Screenshot{phone_}.png();
  if (png.empty()) return tell(translated("There is nothing to be seen yet."), "bad");
  saveAs(toTranslate("Save the picture"), "phone.png", png);
}

void PlayerWindow::toggleRecording() {
  if (!recorder_.isRunning()) {
    record_.set_active(true);
    return recorder_.start([this] { toggleRecording(); });
  }
  record_.set_active(false);
  const std::string html = recorder_.stop();
  if (!html.empty()) saveAs(toTranslate("Save the recording"), "recording.html", html);
}

void PlayerWindow::saveAs(const char* title, const std::string& name, const std::string& bytes) {
  chooser_ =
      Gtk::FileChooserNative::create(translated(title), *this, Gtk::FileChooser::Action::SAVE,
                                     translated("Save"), translated("Cancel"));
  chooser_->set_current_name(name);
  chooser_->signal_response().connect(gtk::guardedSlot([this, bytes](int response) {
    if (response != Gtk::ResponseType::ACCEPT) return;
    const std::string path = chooser_->get_file()->get_path();
    std::ofstream file{path, std::ios::binary};
    file << bytes;
    file.close();
    tell(filledIn(file ? translated("Saved: %1") : translated("Cannot write %1"), path),
         file ? "good" : "bad");
  }));
  chooser_->show();
}

// One column for each thing where there is room; phone above timeline where there is not.
void PlayerWindow::followWidth(int width) {
  const bool isNarrow = width < narrowWidth;
  if (std::exchange(isNarrow_, isNarrow) == isNarrow) return;
  Glib::signal_idle().connect_once(gtk::guardedSlot([this, isNarrow] {
    side_.set_visible(!isNarrow);
    sideSwitch_.set_active(!isNarrow);
    inner_.set_orientation(isNarrow ? Gtk::Orientation::VERTICAL : Gtk::Orientation::HORIZONTAL);
    inner_.set_position(isNarrow ? get_height() * 55 / 100 : 480);
  }));
}

void PlayerWindow::readState() {
  Glib::RefPtr<Glib::KeyFile> file = Glib::KeyFile::create();
  dark_.set_active(options_.dark);
  try {
    file->load_from_file(stateFile());
    set_default_size(file->get_integer("window", "width"), file->get_integer("window", "height"));
    device_.setPreset(static_cast<unsigned>(file->get_integer("phone", "preset")));
    device_.setScale(static_cast<unsigned>(file->get_integer("phone", "scale")));
    if (file->get_boolean("window", "maximized")) maximize();
    dark_.set_active(options_.dark || file->get_boolean("window", "dark"));
  } catch (const Glib::Error&) {
    // The first time, or a file that somebody has changed: the defaults stand.
  }
  if (dark_.get_active()) {
    Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() = true;
  }
}

void PlayerWindow::writeState() {
  const auto file = Glib::KeyFile::create();
  int width = 0;
  int height = 0;
  get_default_size(width, height);
  file->set_integer("window", "width", width);
  file->set_integer("window", "height", height);
  file->set_boolean("window", "maximized", is_maximized());
  file->set_boolean("window", "dark", dark_.get_active());
  file->set_integer("phone", "preset", static_cast<int>(device_.preset()));
  file->set_integer("phone", "scale", static_cast<int>(device_.scale()));
  std::error_code failure;
  std::filesystem::create_directories(std::filesystem::path{stateFile()}.parent_path(), failure);
  try {
    file->save_to_file(stateFile());
  } catch (const Glib::Error&) {
    // A folder that cannot be written: the next window begins with the defaults.
  }
}

}  // namespace tavo::adplayer
