// Creatives that mean harm, through the whole library in a real window: the host's loop goes on,
// nothing happens but what an ad may do, and the next ad loads.

#include <chrono>
#include <filesystem>
#include <fstream>

#include <tavo/ViewController.h>

#include "Services/Application.h"
#include "Services/RunLoop.h"
#include "Support/GtkHost.h"
#include "Support/HostLoop.h"
#include "Support/StandInHandlers.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

StandInHandlers handlers;  // before GLib reads where the user's folders are

// Far longer than any turn of a host's loop may take, and far shorter than a page that holds it up.
constexpr std::chrono::seconds longestTurn{3};

struct Creative {
  const char* name;
  const char* script;                             // runs once MRAID is ready ...
  const char* earlyScript = "";                   // ... and this one in the document's head
  Lines calls{"shouldDisplay?", "didLoad"};       // of the host
  Lines requests{"ad Bottom1", "tracking done"};  // at the server; "done" ends the script
  Lines opened{};                                 // by other applications
  bool mayDie = false;  // of the work that it makes; the host is told then
};

void PrintTo(const Creative& creative, std::ostream* stream) { *stream << creative.name; }

class Campaigns {
 public:
  Campaigns() {
    write("next", "<html><head></head><body><p>Next</p></body></html>");
    folder_.write("hostile/elsewhere.html",
                  "<html><body><img src='${server}/track/hostile/done'></body></html>");
  }
  [[nodiscard]] std::string path() const { return folder_.path(""); }

  void write(const std::string& campaign, const std::string& creative) const {
    folder_.write(campaign + "/creative.html", creative);
    folder_.write(campaign + "/answer.json",
                  R"({"Ad": [{"AdType": "text/html", "Text": "${creative.html}"}]})");
  }

 private:
  TemporaryFolder folder_;
};

// The longest time between two turns of the host's loop.
class Pulse {
 public:
  Pulse() = default;
  [[nodiscard]] Clock::duration longestGap() const { return longest_; }

 private:
  void beat() {
    const auto now = Clock::now();
    longest_ = std::max(longest_, now - last_);
    last_ = now;
  }

  Clock::time_point last_ = Clock::now();
  Clock::duration longest_{};
  const Timer timer_ =
      Runtime::current().platform().runLoop->every(Seconds{0.01}, [this] { beat(); });
};

class HostileCreatives : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    campaigns_ = std::make_unique<Campaigns>();
    shared_ = std::make_unique<GtkHost>(campaigns_->path());
    host().runUntil([] { return host().window().get_mapped() && host().window().get_width() > 0; });
    host().settings->shouldOpenClickThroughURLInAppBrowser = false;
    // The first page of a process takes its time to start the engine, whoever made it.
    host().load("next");
    host().runUntil([] { return !host().calls().empty() && host().calls().back() == "didLoad"; });
  }
  static void TearDownTestSuite() {
    former_.clear();
    shared_.reset();
    campaigns_.reset();
  }

  // Slots are told apart by where they live, and one whose pages die too often is refused new ones
  // for a while: no slot may move in where another one was.
  HostileCreatives() {
    former_.push_back(host().banner());
    host().makeBanner();
    host().banner()->delegate.set(events_);
    host().server().record().clear();
    handlers.clear();
  }

  static GtkHost& host() { return *shared_; }
  static XAdView& ad() { return *host().banner(); }

  static void load(const Creative& creative) {
    campaigns_->write("hostile",
                      std::string{"<html><head><script>"
                                  "var server = '${server}', broken = false;"
                                  "function ping(name) {"
                                  "  new Image().src = server + '/track/hostile/' + name;"
                                  "}"
                                  "function command(url) {"
                                  "  var frame = document.createElement('iframe');"
                                  "  frame.src = url;"
                                  "  document.documentElement.appendChild(frame);"
                                  "}"} +
                          creative.earlyScript +
                          "</script></head><body>Hostile<script>"
                          "mraid.addEventListener('ready', function () {" +
                          creative.script + "});</script></body></html>");
    host().load("hostile");
  }

  static std::string evaluate(const std::string& script) {
    return askPage(ad().webViewInstance().get(), script);
  }

  static Lines requests() {
    Lines all;
    for (const auto& request : host().server().record().requests()) {
      all.push_back(std::string{adserver::nameOf(request.kind)} + " " + request.detail);
    }
    return all;
  }

  // What the page asked for before now has been answered.
  static void settle() {
    evaluate("0");
    settleRuntime();
  }

  // What has reached other applications, once one that is known to arrive has.
  static Lines opened() {
    const std::string last = "tel:1";
    EXPECT_TRUE(Runtime::current().platform().application->openUrl(Url::parse(last)));
    Lines all;
    host().runUntil([&] {
      all = handlers.received();
      return std::find(all.begin(), all.end(), last) != all.end();
    });
    std::erase(all, last);
    return all;
  }

  void expectNextAd() {
    const auto before = calls.size();
    host().load("next");
    ASSERT_TRUE(host().runUntil([&] { return calls.size() >= before + 2; }));
    EXPECT_THAT(Lines(calls.begin() + static_cast<std::ptrdiff_t>(before), calls.end()),
                ElementsAre("shouldDisplay?", "didLoad"));
    ASSERT_TRUE(host().runUntil([] { return ad().webViewInstance() != nullptr; }));
    EXPECT_EQ(evaluate("document.body.textContent + mraid.getState()"), "Nextdefault");
  }

  Lines calls;

 private:
  template <typename... Ignored>
  std::function<void(XAdView&, Ignored...)> note(const char* name) {
    return [this, name](XAdView&, Ignored...) { calls.emplace_back(name); };
  }

  static inline std::unique_ptr<Campaigns> campaigns_;
  static inline std::unique_ptr<GtkHost> shared_;
  static inline std::vector<std::shared_ptr<XAdView>> former_;
  const std::shared_ptr<const XAdViewDelegate> events_ = std::make_shared<XAdViewDelegate>(
      XAdViewDelegate{.xAdViewDidLoad = note("didLoad"),
                      .xAdViewDidFailWithError =
                          [this](XAdView&, const std::optional<Error>& error) {
                            calls.push_back("didFail " + std::to_string(error ? error->code : 0));
                          },
                      .xAdViewWillOpenInInAppBrowser = note("willOpenBrowser"),
                      .xAdViewWillLeaveApplication = note("willLeave"),
                      .xAdDidExpand = note("didExpand"),
                      .xAdDidCollapse = note("didCollapse"),
                      .xAdViewShouldDisplayAdOnWebViewFinishRender =
                          [this](XAdView&, WebView&) {
                            calls.emplace_back("shouldDisplay?");
                            return true;
                          },
                      .xAdViewShouldHandleCustomURL =
                          [this](XAdView&, const Url&) {
                            calls.emplace_back("customUrl");
                            return true;
                          },
                      .xAdViewShouldHandleClickToAction =
                          [this](XAdView&, ClickToAction, const ClickToActionParameters&) {
                            calls.emplace_back("clickToAction?");
                            return true;
                          }});
};

// What leaves the application without a tap is limited to one action a second.
TEST_F(HostileCreatives, AFloodOfClicksLeavesTheApplicationSeldom) {
  const auto start = Clock::now();
  load({"",
        "for (var i = 0; i < 5000; i += 1) mraid.open('tel:' + i); mraid.open('app:done');"
        "setInterval(function () { mraid.open('app:done'); }, 100);"});
  ASSERT_TRUE(host().runUntil(
      [&] { return std::find(calls.begin(), calls.end(), "customUrl") != calls.end(); }));
  const auto all = opened();
  const auto seconds = std::chrono::ceil<std::chrono::seconds>(Clock::now() - start).count();
  ASSERT_FALSE(all.empty());
  EXPECT_EQ(all.front(), "tel:0");
  EXPECT_LE(all.size(), static_cast<std::size_t>(1 + seconds));
  expectNextAd();
}

class HostileCreativesTable : public HostileCreatives,
                              public testing::WithParamInterface<Creative> {};

TEST_P(HostileCreativesTable, HarmsNobody) {
  Creative creative = GetParam();
  const Pulse pulse;
  load(creative);
  const auto hasFailed = [&] { return !calls.empty() && calls.back() == "didFail 1101"; };
  const auto isDone = [] {
    const auto asked = requests();
    return std::find(asked.begin(), asked.end(), "tracking done") != asked.end();
  };
  const bool mustDie = creative.calls.back() == "didFail 1101";
  ASSERT_TRUE(host().runUntil([&] {
    if (mustDie || (creative.mayDie && hasFailed())) return hasFailed();
    return isDone() && calls.size() >= creative.calls.size();
  })) << testing::PrintToString(calls)
      << testing::PrintToString(requests());
  settle();
  const bool died = hasFailed();
  if (died && creative.mayDie) {
    creative.calls.emplace_back("didFail 1101");
    if (!isDone()) creative.requests.pop_back();
  }
  EXPECT_EQ(calls, creative.calls);
  EXPECT_EQ(requests(), creative.requests);
  EXPECT_EQ(opened(), creative.opened);
  EXPECT_NE(evaluate("window.broken === true"), "true");
  EXPECT_EQ(ad().getRootViewController()->presentedViewController(), nullptr);
  expectNextAd();
  EXPECT_LT(pulse.longestGap(), longestTurn);
}

const Creative creatives[] = {
    {.name = "AlertLoops",
     .script = R"(for (var i = 0; i < 2000; i += 1) {
                    alert('a'); if (confirm('b') || prompt('c') !== null) broken = true;
                  }
                  ping('done');)",
     .mayDie = true},
    {.name = "FloodOfFrames",
     .script = R"(var left = 10000;
                         (function some() {
                           for (var i = 0; i < 1000; i += 1) command('mraid://close');
                           document.documentElement.innerHTML = '';
                           if ((left -= 1000) > 0) setTimeout(some); else ping('done');
                         }());)",
     .mayDie = true},
    {.name = "FloodOfMessages",
     .script = R"(for (var i = 0; i < 100000; i += 1) {
                    webkit.messageHandlers.mraid.postMessage('mraid://nonsense');
                  }
                  ping('done');)",
     .mayDie = true},
    {"MegabyteParameters",
     R"(var large = new Array(1000001).join('x');
        ['expand', 'resize', 'setExpandProperties', 'setResizeProperties', 'updateCurrentPosition',
         'setOrientationProperties', 'close'].forEach(function (name) {
          command('mraid://' + name + '?width=' + large + '&height=9e' + large + '&' + large);
        });
        command('mraid://' + large);
        command('mraid://close?' + new Array(100001).join('a=b&'));
        webkit.messageHandlers.mraid.postMessage('mraid://' + large + large + large + large + large);
        ping('done');)",
     "",
     {"shouldDisplay?", "didLoad", "didExpand", "didCollapse"}},
    {"QuotesAndLineEnds",
     R"(var evil = '\');broken=true;(\'"\\\n\r\u2028<\/script>';
        mraid.setResizeProperties({ width: evil, height: evil, offsetX: evil, offsetY: evil });
        mraid.setExpandProperties({ width: evil, useCustomClose: evil });
        mraid.setOrientationProperties({ forceOrientation: evil });
        [evil, encodeURIComponent(evil), evil.replace(/[\\\n\r]/g, '')].forEach(function (text) {
          ['setExpandProperties?width=', 'setResizeProperties?customClosePosition=', 'x',
           'setOrientationProperties?forceOrientation=', 'updateCurrentPosition?'
          ].forEach(function (start) {
            command('mraid://' + start + text);
            webkit.messageHandlers.mraid.postMessage('mraid://' + start + text);
          });
        });
        ping('done');)"},
    {"MalformedUrls",
     R"(['mraid:', 'mraid:/', 'mraid://', 'mraid:///', 'mraid://?', 'mraid://%', 'mraid://%00',
         'mraid://[', 'mraid://a:b@c:99999/', 'mraid://open?url=%ff%fe', 'mraid://open', 'MRAID://x',
         'mraid://open?url=%', 'mraid://open?url=javascript:broken=true', 'mraid://é', 'http://',
         'http://[', 'http:///', 'https://%00/', 'foo:', ':', '//',
         'data:text/html,<script>top.broken=true<\/script>'].forEach(function (url) {
          command(url);
          webkit.messageHandlers.mraid.postMessage(url);
        });
        ping('done');)"},
    {"TopFrameElsewhere", R"(['tel:1', 'sms:1', 'mailto:a@b', 'foo:1', 'file:///etc/passwd',
                               'data:text/html,gone', 'about:config', 'app:x', 'webkit://gpu',
                               'resource:///org', 'blob:x'].forEach(function (url) {
                               try { location.href = url; top.location.replace(url); }
                               catch (refused) {}
                             });
                             ping('done');)"},
    {"TopFrameOnTheWeb",
     "location.href = server + '/assets/hostile/elsewhere.html';",
     "",
     {"shouldDisplay?", "didLoad"},
     {"ad Bottom1", "asset elsewhere.html", "tracking done"}},
    {"OpensAMegabyte",
     "mraid.open('tel:' + new Array(1000001).join('x')); ping('done');",
     "",
     {"shouldDisplay?", "didLoad", "clickToAction?"}},
    {"OpensQuotesAndLineEnds",
     R"(mraid.open('tel:\');broken=true;(\'"\\\n\r'); ping('done');)",
     "",
     {"shouldDisplay?", "didLoad", "clickToAction?", "willLeave"},
     {"ad Bottom1", "tracking done"},
     {"tel:');broken=true;('%22%5C"}},
    {.name = "Windows",
     .script = R"(for (var i = 0; i < 500; i += 1) {
                     if (window.open(server + '/clicked/hostile')) broken = true;
                     if (window.open('file:///etc/passwd', '_blank', 'popup')) broken = true;
                     if (window.open('mraid://expand', 'x' + i)) broken = true;
                   }
                   ping('done');)",
     .mayDie = true},
    {"QuestionsForAPerson",
     R"(for (var i = 0; i < 100; i += 1) {
          print(); document.execCommand('copy');
          window.Notification && Notification.requestPermission();
          var a = document.createElement('a'); a.href = 'data:application/zip,PK';
          a.download = 'x.zip'; document.body.appendChild(a); a.click();
          var input = document.createElement('input'); input.type = i % 2 ? 'file' : 'color';
          document.body.appendChild(input); input.click();
          navigator.geolocation && navigator.geolocation.getCurrentPosition(function () {
            broken = true;
          });
          if (document.body.webkitRequestFullscreen) document.body.webkitRequestFullscreen();
        }
        window.onbeforeunload = function () { return 'Stay'; };
        ping('done');)"},
    {"ExpandsBeforeReady",
     "ping('done');",
     "command('mraid://expand');",
     {"didExpand", "didCollapse", "shouldDisplay?", "didLoad"}},
    {"MetaRefreshOfItself", "",
     "ping('done'); document.write('<meta http-equiv=refresh content=0>');"},
    {"FramesInFrames", R"(var page = '<script>onload=function(){for(var i=0;i<3;i++){'
                            + 'var f=document.createElement("iframe");'
                            + 'if(depth<4){f.srcdoc="<script>depth="+(depth+1)+"<\/script>"'
                            + '+document.documentElement.innerHTML}else{f.src="mraid://x"}'
                            + 'document.body.appendChild(f)}}<\/script>';
                          var frame = document.createElement('iframe');
                          frame.srcdoc = '<script>depth=0<\/script>' + page;
                          document.body.appendChild(frame);
                          setTimeout(function () { ping('done'); }, 200);)"},
    {"EndlessLoop", "for (;;);", "", {"shouldDisplay?", "didLoad", "didFail 1101"}, {"ad Bottom1"}},
    {"EndlessLoopWhileLoading", "", "for (;;);", {"didFail 1101"}, {"ad Bottom1"}},
    {"EndlessLoopLater",
     "setTimeout(function () { for (;;); }, 300);",
     "",
     {"shouldDisplay?", "didLoad", "didFail 1101"},
     {"ad Bottom1"}},
    {"EndlessAlerts",
     "for (;;) alert('again');",
     "",
     {"shouldDisplay?", "didLoad", "didFail 1101"},
     {"ad Bottom1"}},
    {"EatsMemoryAtLeisure",
     R"(var eaten = []; setInterval(function () { eaten.push(new Uint8Array(1 << 24).fill(1)); }, 20);)",
     "",
     {"shouldDisplay?", "didLoad", "didFail 1101"},
     {"ad Bottom1"}},
    {"EatsMemoryAtOnce",
     "var eaten = []; for (;;) eaten.push(new Uint8Array(1 << 24).fill(1));",
     "",
     {"shouldDisplay?", "didLoad", "didFail 1101"},
     {"ad Bottom1"}},
};

INSTANTIATE_TEST_SUITE_P(All, HostileCreativesTable, testing::ValuesIn(creatives),
                         [](const auto& row) { return std::string{row.param.name}; });

}  // namespace
}  // namespace tavo::test
