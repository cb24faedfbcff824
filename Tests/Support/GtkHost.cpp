#include "Support/GtkHost.h"

#include <gtest/gtest.h>

#include <cmath>

#include <tavo/gtk/GtkPlatform.h>

#include "Support/HostLoop.h"

namespace tavo::test {

namespace {

bool isLike(const Color& left, const Color& right) {
  constexpr float tolerance = 1.0F / 32;
  return std::abs(left.red - right.red) < tolerance &&
         std::abs(left.green - right.green) < tolerance &&
         std::abs(left.blue - right.blue) < tolerance;
}

}  // namespace

GtkHost::GtkHost(const std::string& campaigns, const std::function<void(Platform&)>& adjust,
                 const std::string& adNetwork, const Limits& limits)
    : application_{Gtk::Application::create({}, Gio::Application::Flags::NON_UNIQUE)} {
  gtk_init();
  server_ = std::make_unique<adserver::AdServer>(campaigns);
  Platform platform = gtk::makePlatform({.applicationId = "tavo-test",
                                         .dataFolder = folder_.path("data"),
                                         .assumeReachable = true,
                                         .adNetworkLibrary = adNetwork,
                                         .limits = limits});
  if (adjust) adjust(platform);
  runtime_ = std::make_unique<Runtime>(std::move(platform));
  events_ = std::make_shared<XAdViewDelegate>(
      XAdViewDelegate{.xAdViewDidLoad = [this](XAdView&) { calls_.emplace_back("didLoad"); },
                      .xAdViewDidFailWithError =
                          [this](XAdView&, const std::optional<Error>& error) {
                            calls_.push_back("didFail " + std::to_string(error ? error->code : 0));
                          },
                      .xAdDidExpand = [this](XAdView&) { calls_.emplace_back("didExpand"); },
                      .xAdDidCollapse = [this](XAdView&) { calls_.emplace_back("didCollapse"); },
                      .xAdViewShouldDisplayAdOnWebViewFinishRender =
                          [this](XAdView&, WebView&) {
                            calls_.emplace_back("shouldDisplay?");
                            return true;
                          }});
  window_ = std::make_unique<Gtk::Window>();
  window_->set_default_size(360, 640);
  window_->set_child(column_);
  makeBanner();
  window_->present();
}

GtkHost::~GtkHost() {
  slot_.reset();
  banner_.reset();
  window_.reset();
  runtime_.reset();
}

void GtkHost::makeBanner(const Rect& frame) {
  if (slot_) column_.remove(*slot_);
  banner_ = XAdView::create(frame);
  banner_->setSlotConfiguration(settings);
  banner_->delegate.set(events_);
  slot_ = std::make_unique<gtk::AdSlot>(banner_);
  column_.append(*slot_);
  calls_.clear();
}

void GtkHost::load(const std::string& campaign) {
  const std::string host = server_->baseUrl().substr(std::string_view{"http://"}.size());
  banner_->loadWithDomainName(host + "/ads", campaign, "Bottom1");
}

bool GtkHost::runUntil(const std::function<bool()>& done) const { return test::runUntil(done); }

bool GtkHost::waitForFrames(Gtk::Widget& widget, int count) const {
  int frames = 0;
  const guint ticks = widget.add_tick_callback([&](const auto&) { return ++frames < count; });
  const bool drawn = runUntil([&] { return frames >= count; });
  if (!drawn) widget.remove_tick_callback(ticks);
  return drawn;
}

void GtkHost::keepPicture(const std::string& name) { keepPicture(*window_, name); }

void GtkHost::keepPicture(Gtk::Widget& widget, const std::string& name) {
  const char* folder = g_getenv("TAVO_TEST_PICTURES");
  if (folder == nullptr) return;
  constexpr int framesToWait = 20;
  EXPECT_TRUE(waitForFrames(widget, framesToWait));
  const std::string file = std::string{folder} + "/" + name + ".png";
  EXPECT_TRUE(runUntil([&] { return adplayer::Screenshot{widget}.save(file); }));
}

Color GtkHost::pixelInSlot(int x, int y) {
  double slotX = 0;
  double slotY = 0;
  if (!slot_->translate_coordinates(*window_, 0, 0, slotX, slotY)) return colors::clear;
  return adplayer::Screenshot{*window_}.pixel(static_cast<int>(slotX) + x,
                                              static_cast<int>(slotY) + y);
}

bool GtkHost::waitForPixel(int x, int y, const Color& color) {
  return runUntil([&] { return isLike(pixelInSlot(x, y), color); });
}

bool GtkHost::waitForPixelInWindow(int x, int y, const Color& color) {
  return runUntil([&] { return isLike(adplayer::Screenshot{*window_}.pixel(x, y), color); });
}

std::size_t GtkHost::recorded(adserver::RequestKind kind) {
  return server_->record().requests(kind).size();
}

}  // namespace tavo::test
