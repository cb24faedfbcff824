// mistakes NAME SERVER: a host that makes one mistake. It prints what it was told, one line each,
// and ends with 0; the library's log goes to the standard error output. .ci/install says what each
// has to show.
#include <gtkmm.h>

#include <iostream>
#include <stdexcept>
#include <thread>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

namespace {

using tavo::Error;
using tavo::XAdView;

class Host {
 public:
  Host(std::string mistake, std::string server)
      : mistake_{std::move(mistake)}, server_{std::move(server)} {}

  int run() {
    app_->signal_activate().connect([this] { activate(); });
    // One that hangs is told of, too.
    Glib::signal_timeout().connect_seconds_once(
        [this] {
          say("nothing more in 60 s");
          app_->quit();
        },
        60);
    app_->run();
    if (mistake_ == "views-last") {
      other_.reset();
      runtime_.reset();
    }
    banner_.reset();
    window_.reset();
    runtime_.reset();
    say("end");
    return 0;
  }

 private:
  void say(const std::string& line) { std::cout << line << std::endl; }

  void makeRuntime() {
    tavo::gtk::GtkPlatformOptions options{.applicationId = "com.example.mistakes"};
    options.assumeReachable = mistake_ != "offline";
    if (mistake_ == "no-module") options.moduleFolder = "/nowhere";
    if (mistake_ == "no-resources") options.libraryResourceFolder = "/nowhere";
    runtime_ = std::make_unique<tavo::Runtime>(tavo::gtk::makePlatform(options));
  }

  // Ends in the opposite order of a stack, the first one before its views.
  void makeTwoRuntimes() {
    makeRuntime();
    other_ = std::make_unique<tavo::Runtime>(
        tavo::gtk::makePlatform({.applicationId = "com.example.other", .assumeReachable = true}));
    std::swap(runtime_, other_);
    banner_ = XAdView::create({0, 0, 320, 50});
    other_.reset();
  }

  void activate() {
    say("activated");
    // What the engine is to inherit; the toolkit is on the display already.
    if (mistake_ == "no-authority") Glib::setenv("XAUTHORITY", "/nowhere/authority");
    if (mistake_ != "no-runtime") makeRuntime();
    if (++activations_ == 1 && mistake_ == "activated-twice") return app_->activate();
    if (banner_) return quitWhenDone();
    if (mistake_ == "two-runtimes" || mistake_ == "views-last") makeTwoRuntimes();
    if (!banner_) banner_ = XAdView::create({0, 0, 320, 50});
    banner_->delegate.set(events_);
    window_ = std::make_unique<Gtk::Window>();
    window_->set_child(
        *Gtk::make_managed<tavo::gtk::AdSlot>(mistake_ == "null-slot" ? nullptr : banner_));
    app_->add_window(*window_);
    window_->present();
    if (mistake_ == "null-slot") return later([this] { app_->quit(); });
    if (mistake_ == "wrong-thread") return std::thread{[this] { load(); }}.join();
    load();
    say("asked");
    if (mistake_ == "runtime-first") runtime_.reset();
  }

  void later(const sigc::slot<void()>& task) { Glib::signal_timeout().connect_once(task, 100); }

  void load() {
    const std::string scheme = mistake_ == "scheme" ? "http://" : "";
    const bool picture =
        mistake_ == "exception" || mistake_ == "activated-twice" || mistake_ == "runtime-first";
    banner_->loadWithDomainName(scheme + server_ + "/ads", picture ? "image-banner" : "html-banner",
                                "Bottom1");
  }

  void loaded() {
    say("loaded");
    loaded_ = true;
    quitWhenDone();
    if (mistake_ == "exception") throw std::runtime_error{"the host's own"};
  }

  void quitWhenDone() {
    if (loaded_ && (mistake_ != "started-twice" || activations_ == 2)) {
      later([this] { app_->quit(); });
    }
  }

  void failed(const std::optional<Error>& error) {
    say("failed: " + (error ? error->description : "no answer"));
    if (mistake_ == "offline" && ++failures_ < 1000) return load();
    later([this] { app_->quit(); });
  }

  const std::string mistake_;
  const std::string server_;
  const Glib::RefPtr<Gtk::Application> app_ = Gtk::Application::create(
      "com.example.mistakes", mistake_ == "started-twice" ? Gio::Application::Flags::NONE
                                                          : Gio::Application::Flags::NON_UNIQUE);
  std::unique_ptr<tavo::Runtime> runtime_;
  std::unique_ptr<tavo::Runtime> other_;
  std::unique_ptr<Gtk::Window> window_;
  std::shared_ptr<XAdView> banner_;
  bool loaded_ = false;
  int activations_ = 0;
  int failures_ = 0;
  const std::shared_ptr<const tavo::XAdViewDelegate> events_ =
      std::make_shared<tavo::XAdViewDelegate>(tavo::XAdViewDelegate{
          .xAdViewDidLoad = [this](XAdView&) { loaded(); },
          .xAdViewDidFailWithError = [this](XAdView&,
                                            const std::optional<Error>& error) { failed(error); }});
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  return Host{argv[1], argv[2]}.run();
}
