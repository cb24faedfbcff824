#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <tavo/TapRecognizer.h>

#include "Support/GtkHost.h"
#include "Support/HostLoop.h"
#include "Support/Places.h"
#include "Support/Testing.h"
#include "Support/WidgetTree.h"

namespace tavo::test {

// A campaign for each creative of the tests' own.
inline std::string campaignsOfCreatives(const TemporaryFolder& folder) {
  for (const auto& creative : std::filesystem::directory_iterator{testData() + "/creatives"}) {
    const std::string campaign = creative.path().stem();
    folder.write(campaign + "/creative.html", contentsOf(creative.path()));
    folder.write(campaign + "/campaign.json", R"({"title": "Creative"})");
    folder.write(campaign + "/answer.json",
                 R"({"Ad": [{"AdType": "text/html", "Text": "${creative.html}"}]})");
  }
  return folder.path("");
}

inline GtkHost& host() {
  static const TemporaryFolder folder;
  static GtkHost only{campaignsOfCreatives(folder)};
  return only;
}

inline std::string nameAt(double x, double y) { return buttonNameAt(host().window(), x, y); }

inline bool pressEscape() { return pressKey(host().window(), GDK_KEY_Escape); }

// A fresh slot of the one host; a creative of Tests/Data/creatives goes into it, is asked and told.
class CreativeScreenTest : public testing::Test {
 protected:
  CreativeScreenTest() {
    host().runUntil([] { return width() > 0; });
    host().makeBanner();
    *host().settings = {};
  }

  void show(const std::string& creative) {
    host().load(creative);
    ASSERT_TRUE(host().runUntil([] { return host().banner()->webViewInstance() != nullptr; }));
    ASSERT_TRUE(host().runUntil(
        [] { return !host().calls().empty() && host().calls().back() == "didLoad"; }));
    ASSERT_TRUE(becomes("mraid.getState() !== 'loading'", "true"));
  }

  // Ends the test, and not the program, where there is none.
  static std::shared_ptr<WebView> page() {
    auto page = host().banner()->webViewInstance();
    return page ? page : throw std::runtime_error{"The slot has no page."};
  }

  static std::string evaluate(const std::string& script) {
    return askPage(host().banner()->webViewInstance().get(), script);
  }

  // The script's result becomes `expected`, now or later.
  static bool becomes(const std::string& script, const std::string& expected) {
    std::string last;
    const bool done = host().runUntil([&] { return (last = evaluate(script)) == expected; });
    EXPECT_EQ(last, expected) << script;
    return done;
  }

  // A person taps the page, and its script does something about it.
  static void tapAndDo(const std::string& script) {
    recognizeTap(*page());
    evaluate(script);
  }

  static bool becomesSized(const std::string& state, int width, int height) {
    return becomes("mraid.getState() + ' ' + innerWidth + 'x' + innerHeight",
                   state + " " + std::to_string(width) + "x" + std::to_string(height));
  }

  // What the page heard since the last call.
  static std::string heard() { return evaluate("heard.splice(0).join('\\n')"); }

  static int width() { return host().window().get_width(); }
  static int height() { return host().window().get_height(); }
};

}  // namespace tavo::test
