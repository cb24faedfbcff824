// Native views that are used again: nothing of the former page is left in them.

#include <array>
#include <memory>
#include <set>
#include <vector>

#include "Gtk/Scene/NativeView.h"
#include "Support/WebPage.h"
#include "Support/WebProcesses.h"

namespace tavo::test {
namespace {

class WebRecyclingTest : public WebPageTest {};

TEST_F(WebRecyclingTest, RecyclingDropsEverythingOfTheAnswerBefore) {
  HostileServer server;
  server.on("/one", html("one"));
  const int owner = 0;
  GtkWidget* widget = nullptr;
  {
    Page first{{.owner = &owner}};
    first.view->addDocumentStartScript("window.injected = 1");
    first.load("<html><body></body></html>", urlOf(server, "/"));
    first.evaluate("location.href = '/one'");
    ASSERT_TRUE(runUntil([&] { return first.client->count("finish") == 2; }));
    EXPECT_EQ(first.evaluate("injected"), "1");
    first.evaluate(
        "name = 'secret'; history.pushState({}, '', '/two'); kept = 5;"
        "setInterval(() => location.href = 'mraid://late', 1)");
    widget = dynamic_cast<gtk::NativeView&>(*first.view).widget();
  }
  Page second{{.owner = &owner}};
  ASSERT_EQ(dynamic_cast<gtk::NativeView&>(*second.view).widget(), widget);
  EXPECT_FALSE(dynamic_cast<gtk::NativeView&>(*second.view).isReadyToShow());
  second.load("<html><body>second</body></html>");
  EXPECT_TRUE(dynamic_cast<gtk::NativeView&>(*second.view).isReadyToShow());
  EXPECT_EQ(
      second.evaluate("[typeof injected, typeof kept, name, document.body.textContent].join()"),
      "undefined,undefined,,second");
  EXPECT_FALSE(second.view->canGoBack());
  second.evaluate("history.go(-1); history.go(-2); history.back()");
  EXPECT_EQ(second.evaluate("document.body.textContent"), "second");
  EXPECT_THAT(second.client->commands, IsEmpty());
  EXPECT_THAT(second.client->events, ElementsAre("start", "finish"));
}

// Also in the first view of the process, and in one that another owner's pages were in.
TEST_F(WebRecyclingTest, HistoryBeginsWithTheOwnersFirstPage) {
  HostileServer server;
  for (const char* name : {"one", "two"}) server.on(std::string{"/"} + name, html(name));
  const int owner = 0;
  for (int use = 0; use < 3; ++use) {
    SCOPED_TRACE(use);
    Page page{{.owner = &owner, .ownProcess = true}};
    const auto shows = [&](const char* text) {
      return runUntil([&] { return page.evaluate("document.body.textContent") == text; });
    };
    page.view->loadUrl(urlOf(server, "/one"));
    ASSERT_TRUE(runUntil([&] { return page.client->count("finish") == 1; }));
    EXPECT_FALSE(page.view->canGoBack());
    page.evaluate("location.href = '/two'");
    ASSERT_TRUE(runUntil([&] { return page.client->count("finish") == 2; }));
    EXPECT_TRUE(page.view->canGoBack());
    page.view->goBack();
    ASSERT_TRUE(shows("one"));
    EXPECT_FALSE(page.view->canGoBack());
    EXPECT_TRUE(page.view->canGoForward());
    page.view->goBack();
    page.evaluate("history.back(); setTimeout(() => window.asked = 1)");
    ASSERT_TRUE(runUntil([&] { return page.evaluate("window.asked") == "1"; }));
    page.evaluate("'The question about the step back is answered.'");
    EXPECT_TRUE(shows("one"));
    page.view->goForward();
    EXPECT_TRUE(shows("two"));
    EXPECT_THAT(page.client->events, Not(Contains(HasSubstr("fail"))));
  }
}

TEST_F(WebRecyclingTest, AViewIsNotSharedWhileItIsInUse) {
  const int owner = 0;
  Page first{{.owner = &owner}};
  Page second{{.owner = &owner}};
  EXPECT_NE(dynamic_cast<gtk::NativeView&>(*first.view).widget(),
            dynamic_cast<gtk::NativeView&>(*second.view).widget());
}

// The engine grows with each page. The old process shows its page until the new one is ready.
TEST_F(WebRecyclingTest, AProcessThatHasShownManyPagesIsLeftForANewOne) {
  Limits limits = impatience();
  limits.pagesPerWebProcess = 3;
  gtk::GtkWebModule module{webServices(limits)};
  const int owner = 0;
  const auto others = webProcesses();
  const auto own = [&] {
    auto all = webProcesses();
    for (const int other : others) all.erase(other);
    return all;
  };
  std::set<int> first;
  std::unique_ptr<Page> page;
  for (int number = 0; number < 40 && (first.empty() || own().contains(*first.begin())); ++number) {
    page.reset();
    page = std::make_unique<Page>(WebViewOptions{.owner = &owner}, Rect{0, 0, 320, 50}, module);
    page->load("<html><body>" + std::to_string(number) + "</body></html>");
    EXPECT_EQ(page->evaluate("document.body.textContent"), std::to_string(number));
    EXPECT_THAT(page->client->events, ElementsAre("start", "finish"));
    if (first.empty()) first = own();
    const bool isWorn = number >= 3;
    EXPECT_TRUE(!isWorn || runUntil([&] { return own().size() == 2 || own() != first; }));
  }
  EXPECT_EQ(first.size(), 1U);
  EXPECT_TRUE(runUntil([&] { return own().size() == 1 && own() != first; }));
}

// The native views that have shown a page, the blank one too, whoever holds them.
class ViewsThatLoad {
 public:
  ViewsThatLoad() {
    hook_ = g_signal_add_emission_hook(
        signal_, 0,
        [](GSignalInvocationHint*, guint, const GValue* values, gpointer all) -> gboolean {
          constexpr int finished = 3;
          if (g_value_get_enum(values + 1) == finished) {
            static_cast<std::set<gpointer>*>(all)->insert(g_value_get_object(values));
          }
          return TRUE;
        },
        &all_, nullptr);
  }
  ~ViewsThatLoad() { g_signal_remove_emission_hook(signal_, hook_); }
  ViewsThatLoad(const ViewsThatLoad&) = delete;
  ViewsThatLoad& operator=(const ViewsThatLoad&) = delete;

  [[nodiscard]] const std::set<gpointer>& all() const { return all_; }

 private:
  const guint signal_ = g_signal_lookup("load-changed", g_type_from_name("WebKitWebView"));
  gulong hook_ = 0;
  std::set<gpointer> all_;
};

// The engine needs most of the time for a view's first page, and for a process's still more.
TEST_F(WebRecyclingTest, ANewSlotTakesTheViewThatIsReady) {
  gtk::GtkWebModule module{webServices(impatience())};
  const std::array<int, 6> owners{};
  std::vector<std::unique_ptr<Page>> pages;
  const auto show = [&](const int& owner) {
    module.warmUp({.owner = &owner});
    const WebViewOptions options{.owner = &owner};
    pages.push_back(std::make_unique<Page>(options, Rect{0, 0, 320, 50}, module));
    pages.back()->load("<html><body></body></html>");
    return dynamic_cast<gtk::NativeView&>(*pages.back()->view).widget();
  };
  show(owners[0]);
  const ViewsThatLoad views;
  show(owners[1]);
  for (std::size_t slot = 2; slot < owners.size(); ++slot) {
    ASSERT_TRUE(runUntil([&] { return views.all().size() == slot; })) << "none for the next slot";
    const auto before = views.all();
    EXPECT_TRUE(before.contains(show(owners[slot]))) << "slot " << slot;
  }
}

// A process for one blank view would weigh as much as most of the ten pages.
TEST_F(WebRecyclingTest, TenSlotsAndTheViewForTheNextShareAProcess) {
  gtk::GtkWebModule module{webServices(impatience())};
  const auto others = webProcesses();
  const std::array<int, 10> owners{};
  std::vector<std::unique_ptr<Page>> pages;
  const auto show = [&](const int& owner) {
    const WebViewOptions options{.owner = &owner};
    pages.push_back(std::make_unique<Page>(options, Rect{0, 0, 320, 50}, module));
    pages.back()->load("<html><body></body></html>");
  };
  show(owners[0]);
  const ViewsThatLoad views;
  for (std::size_t slot = 1; slot < owners.size(); ++slot) show(owners[slot]);
  EXPECT_TRUE(runUntil([&] { return views.all().size() == owners.size(); }));
  auto own = webProcesses();
  for (const int other : others) own.erase(other);
  EXPECT_EQ(own.size(), 1U);
}

}  // namespace
}  // namespace tavo::test
