#include "AdPlayer/MraidChecklist/MraidStage.h"

#include <algorithm>
#include <cstdlib>

#include <tavo/Button.h>
#include <tavo/Runtime.h>
#include <tavo/TapRecognizer.h>
#include <tavo/gtk/AdWindow.h>

#include "AdPlayer/Screenshot.h"
#include "Scene/Window.h"

namespace tavo::adplayer {

namespace {

constexpr int phoneWidth = 360;
constexpr int phoneHeight = 640;
constexpr double slotTop = 100;
constexpr double pageHeight = 2000;
constexpr double farDown = 1200;  // where the slot is off the screen
constexpr Seconds look{0.03};
constexpr Seconds lastWords{1.0};
constexpr Seconds patience{30};  // for what a host and a person do, which always succeeds

RunLoop& stageLoop() { return *Runtime::current().platform().runLoop; }

std::string number(double value) { return std::to_string(static_cast<long>(value)); }

std::string sizeText(double width, double height) {
  return "{width:" + number(width) + ",height:" + number(height) + "}";
}

std::string isText(bool is) { return std::string{"{is:"} + (is ? "true" : "false") + "}"; }

std::string valueOf(const MraidStage::Fields& fields, const std::string& name) {
  const auto found = fields.find(name);
  return found == fields.end() ? std::string{} : found->second;
}

double numberOf(const MraidStage::Fields& fields, const std::string& name) {
  return std::strtod(valueOf(fields, name).c_str(), nullptr);
}

void addPages(const View& view, std::vector<std::shared_ptr<WebView>>& pages) {
  for (const auto& subview : view.subviews()) {
    if (auto page = std::dynamic_pointer_cast<WebView>(subview)) pages.push_back(std::move(page));
    addPages(*subview, pages);
  }
}

// The button that a person would hit.
GtkWidget* buttonAt(Gtk::Window& window, const Point& point) {
  GtkWidget* widget =
      gtk_widget_pick(GTK_WIDGET(window.gobj()), point.x, point.y, GTK_PICK_DEFAULT);
  while (widget != nullptr && GTK_IS_BUTTON(widget) == FALSE) {
    widget = gtk_widget_get_parent(widget);
  }
  return widget;
}

}  // namespace

MraidStage::MraidStage(Settings settings)
    : settings_{std::move(settings)}, window_{std::make_unique<Gtk::Window>()} {
  above_.set_size_request(-1, static_cast<int>(slotTop));
  below_.set_size_request(-1, static_cast<int>(pageHeight));
  column_.append(above_);
  column_.append(below_);
  scroller_.set_policy(Gtk::PolicyType::EXTERNAL, Gtk::PolicyType::EXTERNAL);
  scroller_.set_child(column_);
  window_->set_title("MRAID checklist");
  window_->set_decorated(false);  // the window's content is the screen
  window_->set_default_size(phoneWidth, phoneHeight);
  window_->set_child(scroller_);
  window_->present();
}

MraidStage::~MraidStage() {
  clear();
  timers_.clear();
  window_.reset();
}

void MraidStage::clear() {
  ended_ = {};
  if (interstitial_) {
    if (interstitial_->presentingViewController() != nullptr) interstitial_->closeInterstitialAd();
    interstitial_.reset();
  }
  if (slot_) column_.remove(*slot_);
  slot_.reset();
  adView_.reset();
  isSecondShown_ = false;
}

void MraidStage::makeSlot() {
  adView_ = XAdView::create({0, 0, 320, 50});
  const auto settings = std::make_shared<XAdSlotConfiguration>();
  settings->standardsMode = settings_.standards;
  settings->shouldOpenClickThroughURLInAppBrowser = true;
  settings->bannerRefreshInterval = 0;
  adView_->setSlotConfiguration(settings);
  slot_ = std::make_unique<gtk::AdSlot>(adView_);
  column_.insert_child_after(*slot_, above_);
}

void MraidStage::play(const std::string& server, const std::string& creative,
                      std::function<void()> ended) {
  clear();
  window_->set_visible(true);
  const std::string domain = server.substr(std::string_view{"http://"}.size()) + "/ads";
  if (creative == "interstitial") return playInterstitial(domain, std::move(ended));
  ended_ = std::move(ended);
  makeSlot();
  const bool isBelow = creative == "exposure";
  // Laid out before the ad comes, so that it stands where it is asked about.
  afterFrames(4, [this, isBelow, domain, creative] {
    scroller_.get_vadjustment()->set_value(isBelow ? farDown : 0);
    afterFrames(4, [this, domain, creative] {
      if (adView_) adView_->loadWithDomainName(domain, creative, "Bottom1");
    });
  });
}

void MraidStage::playInterstitial(const std::string& domain, std::function<void()> ended) {
  ended_ = std::move(ended);
  interstitial_ = XAdInterstitialViewController::create();
  events_ =
      std::make_shared<XAdInterstitialViewControllerDelegate>(XAdInterstitialViewControllerDelegate{
          .xAdInterstitialDidLoad =
              [this](XAdInterstitialViewController*) {
                gtk::rootViewControllerOf(*window_)->presentViewController(interstitial_,
                                                                           Animated::no);
              },
          .xAdInterstitialDismissed =
              [this](XAdInterstitialViewController&) {
                timers_[++lastTimer_] = stageLoop().after(lastWords, [this] {
                  if (ended_) ended_();
                });
              }});
  interstitial_->delegate.set(events_);
  const auto settings = std::make_shared<XAdSlotConfiguration>();
  settings->standardsMode = settings_.standards;
  interstitial_->slotConfiguration = settings;
  interstitial_->loadWithDomainName(domain, "interstitial", "Full");
}

// Looks again and again, and tells at last.
void MraidStage::when(std::function<bool()> isSo, std::function<void(bool)> then) {
  const int id = ++lastTimer_;
  const Seconds end = stageLoop().now() + patience;
  timers_[id] =
      stageLoop().every(look, [this, id, end, isSo = std::move(isSo), then = std::move(then)] {
        const bool is = isSo();
        if (!is && stageLoop().now() < end) return;
        const auto done = then;
        const auto timer = std::move(timers_[id]);  // this very function lives there
        timers_.erase(id);
        done(is);
      });
}

void MraidStage::afterFrames(int count, std::function<void()> then) {
  window_->add_tick_callback([left = count, then = std::move(then)](const auto&) mutable {
    if (--left > 0) return true;
    stageLoop().post(then);
    return false;
  });
}

std::vector<std::shared_ptr<WebView>> MraidStage::pages() const {
  std::vector<std::shared_ptr<WebView>> found;
  if (const auto root = gtk::rootViewControllerOf(*window_); root && root->view()->window()) {
    addPages(*root->view()->window(), found);
  }
  return found;
}

// A page speaks before it stands in the slot: until one has taken the answer.
void MraidStage::answerPages(const std::string& id, const std::string& value) {
  const auto taken = std::make_shared<bool>(false);
  std::string answering = "window.checklist ? checklist.answer('";
  answering.append(id).append("',").append(value).append(") : false");
  when(
      [this, answering, taken] {
        for (const auto& page : pages()) {
          page->evaluate(answering,
                         [taken](const std::string& is) { *taken = *taken || is == "true"; });
        }
        return *taken;
      },
      [](bool) {});
}

Point MraidStage::pointIn(const Fields& asked) const {
  if (asked.contains("right")) {
    return {window_->get_width() - numberOf(asked, "right"), numberOf(asked, "top")};
  }
  return {numberOf(asked, "x"), numberOf(asked, "y")};
}

bool MraidStage::isCovered() const {
  const auto root = gtk::rootViewControllerOf(*window_);
  return root && root->presentedViewController() != nullptr;
}

// A question that stands in a window of its own; null when there is none.
Gtk::Window* MraidStage::dialog() const {
  const auto all = Gtk::Window::list_toplevels();
  const auto found = std::find_if(all.begin(), all.end(), [this](Gtk::Window* window) {
    return window != window_.get() && window->get_mapped();
  });
  return found == all.end() ? nullptr : *found;
}

std::string MraidStage::patienceText() const {
  std::string names;
  for (const auto& name : settings_.pointsNotDue) names += "'" + name + "',";
  return "{seconds:" + std::to_string(settings_.patience) + ",notDue:[" + names + "]}";
}

std::string MraidStage::placeText() const {
  graphene_rect_t bounds{};
  if (slot_ &&
      !gtk_widget_compute_bounds(GTK_WIDGET(slot_->gobj()), GTK_WIDGET(window_->gobj()), &bounds)) {
    bounds = {};
  }
  const std::string screen = sizeText(window_->get_width(), window_->get_height());
  return "{slot:{x:" + number(bounds.origin.x) + ",y:" + number(bounds.origin.y) +
         ",width:" + number(bounds.size.width) + ",height:" + number(bounds.size.height) +
         "},screen:" + screen + ",room:" + screen + "}";
}

std::string MraidStage::controlText(const Point& point) const {
  bool isDrawn = false;
  if (const auto root = gtk::rootViewControllerOf(*window_); root && root->view()->window()) {
    const auto* button = dynamic_cast<const Button*>(root->view()->window()->hitTest(point));
    isDrawn = button != nullptr && (!button->image().empty() || !button->title().empty());
  }
  return std::string{"{is:"} + (buttonAt(*window_, point) != nullptr ? "true" : "false") +
         ",drawn:" + (isDrawn ? "true" : "false") + "}";
}

void MraidStage::reshape(int width, int height, const Answer& answer) {
  window_->set_default_size(width, height);
  when([this, width,
        height] { return window_->get_width() == width && window_->get_height() == height; },
       [answer](bool is) { answer(isText(is)); });
}

void MraidStage::scroll(double to, const Answer& answer) {
  scroller_.get_vadjustment()->set_value(to);
  afterFrames(4, [answer] { answer(isText(true)); });
}

void MraidStage::press(const Point& point, const Answer& answer) {
  GtkWidget* button = buttonAt(*window_, point);
  if (button != nullptr) g_signal_emit_by_name(button, "clicked");
  afterFrames(4, [answer, is = button != nullptr] { answer(isText(is)); });
}

// The key as if nothing with the keyboard had wanted it.
void MraidStage::escape() {
  GListModel* controllers = gtk_widget_observe_controllers(GTK_WIDGET(window_->gobj()));
  for (guint at = 0; at < g_list_model_get_n_items(controllers); ++at) {
    gpointer controller = g_list_model_get_item(controllers, at);
    gboolean handled = FALSE;
    if (GTK_IS_EVENT_CONTROLLER_KEY(controller)) {
      g_signal_emit_by_name(controller, "key-pressed", static_cast<guint>(GDK_KEY_Escape), 0U, 0,
                            &handled);
    }
    g_object_unref(controller);
  }
  g_object_unref(controllers);
}

// As long as its last words take. The ad does not come back from there.
void MraidStage::minimise() {
  window_->set_visible(false);
  timers_[++lastTimer_] = stageLoop().after(lastWords, [this] {
    window_->set_visible(true);
    if (ended_) ended_();
  });
}

void MraidStage::takePicture(const std::string& name, const Answer& answer) {
  constexpr int framesToWait = 20;  // what was drawn last gets there
  if (settings_.pictureFolder.empty()) return answer(isText(false));
  const std::string path = settings_.pictureFolder + "/mraid-" + name +
                           (settings_.standards ? "-standards" : "") + ".png";
  afterFrames(framesToWait, [this, path, answer] {
    when([this, path] { return Screenshot{*window_}.save(path); },
         [answer](bool is) { answer(isText(is)); });
  });
}

void MraidStage::carryOut(const Fields& asked) {
  const std::string act = valueOf(asked, "act");
  const Answer answer = [this, id = valueOf(asked, "id")](const std::string& value) {
    answerPages(id, value);
  };
  const auto answerLater = [this, answer] { afterFrames(4, [answer] { answer(isText(true)); }); };
  if (act == "patience") return answer(patienceText());
  if (act == "settle") return afterFrames(8, [answer] { answer(isText(true)); });
  if (act == "place") return answer(placeText());
  if (act == "control") return answer(controlText(pointIn(asked)));
  if (act == "press") return press(pointIn(asked), answer);
  if (act == "scroll") return scroll(numberOf(asked, "to"), answer);
  if (act == "picture") return takePicture(valueOf(asked, "name"), answer);
  if (act == "minimise") return minimise();
  if (act == "window") {
    return reshape(static_cast<int>(numberOf(asked, "width")),
                   static_cast<int>(numberOf(asked, "height")), answer);
  }
  if (act == "covered" || act == "asked") {
    return when([this] { return isCovered() || dialog() != nullptr; },
                [answer](bool is) { answer(isText(is)); });
  }
  if (act == "seen") {
    return when([this] { return std::exchange(isSecondShown_, false); },
                [answer](bool is) { answer(isText(is)); });
  }
  if (act == "show") isSecondShown_ = true;
  if (act == "tap") {
    for (const auto& page : pages()) recognizeTap(*page);
  }
  if (act == "escape") escape();
  if (act == "refuse") dialog() != nullptr ? dialog()->close() : escape();
  if (act == "hide" && slot_) slot_->set_visible(false);
  if (act == "unhide" && slot_) slot_->set_visible(true);
  answerLater();
}

}  // namespace tavo::adplayer
