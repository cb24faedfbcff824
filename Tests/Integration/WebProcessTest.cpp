// The processes behind pages: how they end, and whom they take along.

#include <algorithm>
#include <csignal>
#include <fstream>

#include "Gtk/Scene/NativeView.h"
#include "Support/ScreenPointer.h"
#include "Support/WebPage.h"
#include "Support/WebProcesses.h"

namespace tavo::test {
namespace {

class WebProcessTest : public WebPageTest {};

// The first one here: a view that is made ready for the slots of other tests may start a process.
TEST_F(WebProcessTest, SlotsShareAProcessAndOwnProcessesAreNotShared) {
  gtk::GtkWebModule module{webServices(impatience())};
  const Rect frame{0, 0, 320, 50};
  Page first{{}, frame, module};
  first.load("<html><body>first</body></html>");
  const auto before = webProcesses();
  const auto isAnotherThere = [&] {
    const auto now = webProcesses();
    return !std::includes(before.begin(), before.end(), now.begin(), now.end());
  };
  Page second{{}, frame, module};
  second.load("<html><body>second</body></html>");
  EXPECT_FALSE(isAnotherThere());
  Page own{{.ownProcess = true}, frame, module};
  own.load("<html><body>own</body></html>");
  EXPECT_TRUE(isAnotherThere());
}

TEST_F(WebProcessTest, EndsAScriptThatLoops) {
  for (const char* loop : {"for (;;);", "for (;;) alert('again')"}) {
    Page other{{.ownProcess = true}};
    other.load("<html><body>other</body></html>");
    Page page{{.ownProcess = true}};
    page.load("<html><body></body></html>");
    std::vector<std::string> results;
    for (const auto* script : {loop, "1 + 1"}) {
      page.view->evaluate(script, [&](const std::string& result) { results.push_back(result); });
    }
    ASSERT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; })) << loop;
    EXPECT_TRUE(runUntil([&] { return results.size() == 2; }));
    EXPECT_THAT(results, ElementsAre("", ""));
    EXPECT_EQ(other.evaluate("document.body.textContent"), "other");
    EXPECT_THAT(other.client->events, ElementsAre("start", "finish"));
    page.load("<html><body>again</body></html>");
    EXPECT_EQ(page.evaluate("document.body.textContent"), "again");
    EXPECT_THAT(page.client->events,
                ElementsAre("start", "finish", "gone 1101", "start", "finish"));
  }
}

TEST_F(WebProcessTest, EndsAScriptThatLoopsWhenNobodyAsks) {
  for (const char* script : {"for (;;);", "setTimeout(() => { for (;;); }, 50)"}) {
    Page page{{.ownProcess = true}};
    page.view->loadHtml("<html><body><script>" + std::string{script} + "</script></body></html>",
                        noBase);
    EXPECT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; })) << script;
  }
}

TEST_F(WebProcessTest, APageThatDoesNotAnswerIsEndedWhateverItAsks) {
  Page page{{.ownProcess = true}};
  page.load("<html><body></body></html>");
  page.view->evaluate(R"js((() => {
    const pause = (end) => { while (Date.now() < end); };
    for (const end = Date.now() + 4000; Date.now() < end; pause(Date.now() + 50)) {
      const frame = document.createElement('iframe');
      frame.src = 'mraid://Command';
      document.body.appendChild(frame);
      frame.remove();
    }
    location.href = 'mraid://done';
  })())js",
                      [](const std::string&) {});
  EXPECT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; }));
  EXPECT_THAT(page.client->commands, testing::Not(testing::Contains("mraid://done")));
}

struct Budget {
  const char* name;
  void (*set)(Limits&);
  const char* script;
  const char* end;
};

class WebBudgetTest : public WebPageTest, public testing::WithParamInterface<Budget> {};

TEST_P(WebBudgetTest, APageThatPassesItIsEnded) {
  HostileServer server;
  server.on("/big", PlainAnswer{.body = std::string(3'000'000, 'x'), .contentType = "text/plain"});
  server.on("/endless",
            HugeBody{.bytes = std::uint64_t{1} << 50U, .length = HugeBody::Length::Undeclared});
  Limits limits = impatience();
  GetParam().set(limits);
  gtk::GtkWebModule module{webServices(limits)};
  Page page{{.ownProcess = true}, {0, 0, 320, 50}, module};
  page.load("<html><body></body></html>", urlOf(server, "/"));
  page.view->evaluate(GetParam().script);
  ASSERT_TRUE(runUntil([&] { return page.client->events.size() == 3; }));
  EXPECT_EQ(page.client->events.back(), GetParam().end);
}

constexpr const char* loopingWorkers = R"js(for (let count = 0; count < 4; ++count) {
  new Worker(URL.createObjectURL(new Blob(['for (;;);'])));
})js";

INSTANTIATE_TEST_SUITE_P(
    , WebBudgetTest,
    testing::Values(
        Budget{"processorInAWindow", [](Limits& limits) { limits.pageProcessorTime = Seconds{3}; },
               loopingWorkers, "gone 1104"},
        Budget{"processorInAll", [](Limits& limits) { limits.pageProcessorTotal = Seconds{3}; },
               loopingWorkers, "gone 1105"},
        Budget{"network", [](Limits& limits) { limits.pageBytes = 2'000'000; },
               "fetch('/big').then((answer) => answer.text())", "gone 1103"},
        Budget{"networkWithoutAnEnd", [](Limits& limits) { limits.pageBytes = 2'000'000; },
               R"js(fetch('/endless').then((answer) => {
                 const bytes = answer.body.getReader();
                 const next = () => bytes.read().then(next);
                 next();
               }))js",
               "gone 1103"},
        // It is too busy to look at itself.
        Budget{"memory",
               [](Limits& limits) {
                 limits.webProcessPing = Seconds{300};
                 limits.webProcessMegabytes = 300;
               },
               "let all = []; for (;;) all.push(new Uint8Array(1e6).fill(1))", "gone 1101"}),
    [](const auto& test) { return test.param.name; });

bool isPaused(int process) {
  std::ifstream file{"/proc/" + std::to_string(process) + "/stat"};
  std::string word;
  return file >> word >> word >> word && word == "T";
}

TEST_F(WebProcessTest, WhatIsPausedGoesOnWhenAPersonTouchesIt) {
  ScreenPointer pointer;
  if (!pointer.works()) GTEST_SKIP() << "libXtst.so.6 is not installed";
  Limits limits = impatience();
  limits.webProcessPing = limits.webProcessWatch = Seconds{300};
  limits.pageProcessorTotal = Seconds{3};
  gtk::GtkWebModule module{webServices(limits)};
  Page page{{.ownProcess = true}, {0, 0, 320, 200}, module};
  const PageWindow window{page};
  page.load("<html><body></body></html>");
  page.view->evaluate(loopingWorkers);
  const auto paused = [] { return std::ranges::any_of(webProcesses(), isPaused); };
  ASSERT_TRUE(runUntil(paused));
  pointer.moveTo(100, 100);
  ASSERT_TRUE(runUntil([&] {
    pointer.press();
    pointer.release();
    return !paused();
  }));
  EXPECT_EQ(page.evaluate("1 + 1"), "2");
  EXPECT_THAT(page.client->events, ElementsAre("start", "finish"));
}

// It answers, but later and later: each frame is a question to the policy, and one to the page.
TEST_F(WebProcessTest, APageThatIsBusyWithFramesForEverIsEnded) {
  Page page{{.ownProcess = true}};
  page.load("<html><body></body></html>");
  page.view->evaluate(R"js(setInterval(() => {
    for (let number = 0; number < 500; ++number) {
      const frame = document.createElement('iframe');
      frame.srcdoc = '<p>busy';
      document.body.appendChild(frame);
    }
  }, 0))js");
  EXPECT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; }));
}

TEST_F(WebProcessTest, ADeadProcessIsToldOnceAndTouchesNoOtherPage) {
  Page other{{.ownProcess = true}};
  other.load("<html><body>other</body></html>");
  const auto before = webProcesses();
  Page page{{.ownProcess = true}};
  page.load("<html><body></body></html>");
  for (const int id : webProcesses()) {
    if (!before.contains(id)) kill(id, SIGKILL);
  }
  ASSERT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; }));
  EXPECT_FALSE(dynamic_cast<gtk::NativeView&>(*page.view).isReadyToShow());
  EXPECT_EQ(page.evaluate("1 + 1"), "");
  EXPECT_EQ(other.evaluate("document.body.textContent"), "other");
  EXPECT_THAT(other.client->events, ElementsAre("start", "finish"));
  EXPECT_THAT(page.client->events, ElementsAre("start", "finish", "gone 1101"));
}

TEST_F(WebProcessTest, APageThatHangsWhenItsSlotGoesTakesNoLaterSlotAlong) {
  const int owner = 0;
  {
    Page hanging{{.owner = &owner}};
    hanging.load("<html><body></body></html>");
    hanging.view->evaluate("for (;;);", [](const std::string&) {});
  }
  const auto during = webProcesses();
  Page later;
  later.load("<html><body>later</body></html>");
  ASSERT_TRUE(runUntil([&] {
    const auto left = webProcesses();
    return !std::includes(left.begin(), left.end(), during.begin(), during.end());
  })) << "the one that hangs is ended";
  EXPECT_EQ(later.evaluate("document.body.textContent"), "later");
  EXPECT_THAT(later.client->events, ElementsAre("start", "finish"));
}

TEST_F(WebProcessTest, APageThatKeepsDyingIsNotStartedForEver) {
  const int owner = 0;
  std::vector<std::string> ends;
  for (int n = 0; n < 5; ++n) {
    Page page{{.owner = &owner, .ownProcess = true}};
    const auto before = webProcesses();
    page.view->loadHtml("<html><body></body></html>", noBase);
    ASSERT_TRUE(runUntil([&] {
      return page.client->count("finish") == 1 ||
             page.client->count("fail WebKitErrorDomain 1101") == 1;
    }));
    for (const int id : webProcesses()) {
      if (!before.contains(id)) kill(id, SIGKILL);
    }
    if (page.client->count("finish") == 1) {
      ASSERT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; }));
    }
    ends.push_back(page.client->events.back());
  }
  EXPECT_THAT(ends, ElementsAre("gone 1101", "gone 1101", "gone 1101", "gone 1101",
                                "fail WebKitErrorDomain 1101"));
}

}  // namespace
}  // namespace tavo::test
