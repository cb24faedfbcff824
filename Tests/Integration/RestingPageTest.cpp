// A page that nobody sees: its script hears of it, its frames stand still, and it plays on.

#include <gtkmm.h>

#include <tavo/ViewController.h>
#include <tavo/gtk/AdWindow.h>

#include "Support/GtkHost.h"
#include "Support/HostLoop.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

constexpr const char* creative = R"(<style>body { background: #f00 }</style><script>
var heard = [], frames = 0;
document.addEventListener('visibilitychange', () => heard.push(document.visibilityState));
(function next() { ++frames; requestAnimationFrame(next); })();
</script>)";

std::string campaigns(const TemporaryFolder& folder) {
  folder.write("moving/creative.html", creative);
  folder.write("moving/campaign.json", R"({"title": "Moving"})");
  folder.write("moving/answer.json",
               R"({"Ad": [{"AdType": "text/html", "Text": "${creative.html}"}]})");
  return folder.path("");
}

GtkHost& host() {
  static const TemporaryFolder folder;
  static GtkHost only{campaigns(folder)};
  return only;
}

class RestingPageTest : public testing::Test {
 protected:
  RestingPageTest() { *host().settings = {}; }

  // A fresh slot in a place of the host's own, which ends with the scope.
  class Place {
   public:
    explicit Place(const std::function<void(Gtk::Box&)>& build) {
      host().makeBanner();
      host().column().remove(host().slot());
      host().column().append(box_);
      build(box_);
    }
    ~Place() {
      if (auto* const box = dynamic_cast<Gtk::Box*>(host().slot().get_parent())) {
        box->remove(host().slot());
      } else if (auto* const stack = dynamic_cast<Gtk::Stack*>(host().slot().get_parent())) {
        stack->remove(host().slot());
      }
      host().column().remove(box_);
      host().column().append(host().slot());
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

   private:
    Gtk::Box box_{Gtk::Orientation::VERTICAL};
  };

  static void load() {
    const auto isLoaded = [] {
      return !host().calls().empty() && host().calls().back() == "didLoad";
    };
    host().load("moving");
    ASSERT_TRUE(host().runUntil(isLoaded));
  }
  static std::shared_ptr<WebView> page() {
    for (const auto& view : host().banner()->subviews()) {
      if (auto page = std::dynamic_pointer_cast<WebView>(view)) return page;
    }
    return nullptr;
  }
  static std::string ask(const std::string& script) { return askPage(page().get(), script); }
  static bool becomes(const std::string& script, const std::string& expected) {
    return host().runUntil([&] { return ask(script) == expected; });
  }
  static bool plays() {
    const int before = std::stoi("0" + ask("frames"));
    return host().runUntil([&] { return std::stoi("0" + ask("frames")) > before + 3; });
  }
};

// Something with the slot in it that can take it out of sight and back.
struct Way {
  const char* name;
  std::function<void(Gtk::Box&)> build;
  std::function<void()> hide;
  std::function<void()> show;
};

std::vector<Way> ways() {
  static Gtk::ScrolledWindow* scroller = nullptr;
  static Gtk::Stack* tabs = nullptr;
  static Gtk::Box* around = nullptr;
  static std::shared_ptr<ViewController> cover;
  const auto root = [] { return gtk::rootViewControllerOf(host().window()); };
  return {{"scrolled away",
           [](Gtk::Box& place) {
             scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
             auto* const content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
             auto* const below = Gtk::make_managed<Gtk::Label>("far below");
             below->set_margin_top(3'000);
             content->append(host().slot());
             content->append(*below);
             scroller->set_child(*content);
             scroller->set_vexpand(true);
             place.append(*scroller);
           },
           [] { scroller->get_vadjustment()->set_value(2'000); },
           [] { scroller->get_vadjustment()->set_value(0); }},
          {"on another tab",
           [](Gtk::Box& place) {
             tabs = Gtk::make_managed<Gtk::Stack>();
             tabs->add(host().slot(), "ad");
             tabs->add(*Gtk::make_managed<Gtk::Label>("another"), "other");
             place.append(*tabs);
           },
           [] { tabs->set_visible_child("other"); }, [] { tabs->set_visible_child("ad"); }},
          {"covered", [](Gtk::Box& place) { place.append(host().slot()); },
           [root] {
             cover = std::make_shared<ViewController>();
             root()->presentViewController(cover, Animated::no);
           },
           [root] { root()->dismissViewController(Animated::no); }},
          {"hidden by the host", [](Gtk::Box& place) { place.append(host().slot()); },
           [] { host().banner()->setAlpha(0); }, [] { host().banner()->setAlpha(1); }},
          {"in something that fades",
           [](Gtk::Box& place) {
             around = Gtk::make_managed<Gtk::Box>();
             around->append(host().slot());
             place.append(*around);
           },
           [] { around->set_opacity(0); }, [] { around->set_opacity(1); }},
          {"faded itself", [](Gtk::Box& place) { place.append(host().slot()); },
           [] { host().slot().set_opacity(0); }, [] { host().slot().set_opacity(1); }}};
}

TEST_F(RestingPageTest, APageThatNobodySeesHearsOfItStandsStillAndPlaysOn) {
  for (const bool standards : {false, true}) {
    for (const auto& way : ways()) {
      SCOPED_TRACE(std::string{way.name} + (standards ? " by the standard" : ""));
      host().settings->standardsMode = standards;
      const Place place{way.build};
      load();
      EXPECT_TRUE(host().waitForPixel(5, 5, {1, 0, 0, 1}));
      EXPECT_TRUE(becomes("document.visibilityState", "visible"));
      EXPECT_TRUE(plays());
      ask("heard.length = 0");
      const auto calls = host().calls();
      way.hide();
      EXPECT_TRUE(becomes("heard.join()", "hidden"));
      // Two answers later no frame was made.
      const std::string frames = ask("frames");
      EXPECT_TRUE(host().waitForFrames(host().window(), 20));
      EXPECT_EQ(ask("frames"), frames);
      way.show();
      EXPECT_TRUE(becomes("heard.join()", "hidden,visible")) << ask("heard.join()");
      EXPECT_TRUE(plays());
      EXPECT_TRUE(host().waitForPixel(5, 5, {1, 0, 0, 1}));
      EXPECT_EQ(host().calls(), calls);
    }
  }
}

// The dimmed host behind a sheet looks as before.
TEST_F(RestingPageTest, ItsLastPictureStaysWhereItStands) {
  const Place place{[](Gtk::Box& box) { box.append(host().slot()); }};
  load();
  EXPECT_TRUE(host().waitForPixel(5, 5, {1, 0, 0, 1}));
  const auto cover = std::make_shared<ViewController>();
  gtk::rootViewControllerOf(host().window())->presentViewController(cover, Animated::no);
  EXPECT_TRUE(becomes("document.visibilityState", "hidden"));
  host().keepPicture("resting");
  EXPECT_TRUE(host().waitForPixel(5, 5, {1, 0, 0, 1}));
  gtk::rootViewControllerOf(host().window())->dismissViewController(Animated::no);
  EXPECT_TRUE(becomes("document.visibilityState", "visible"));
  EXPECT_TRUE(host().waitForPixel(5, 5, {1, 0, 0, 1}));
}

TEST_F(RestingPageTest, AnAdThatComesWhileNobodyLooksLoadsAndRests) {
  const auto way = ways().front();
  const Place place{way.build};
  EXPECT_TRUE(host().waitForFrames());
  way.hide();
  EXPECT_TRUE(host().waitForFrames());
  load();
  EXPECT_TRUE(host().runUntil([] { return page()->isAtRest(); }));
  EXPECT_TRUE(becomes("document.visibilityState", "hidden"));
  way.show();
  EXPECT_TRUE(host().waitForPixel(5, 5, {1, 0, 0, 1}));
  EXPECT_TRUE(plays());
}

}  // namespace
}  // namespace tavo::test
