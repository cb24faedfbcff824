// The processes behind pages: how they end, and whom they take along.

#include <csignal>

#include "Gtk/Scene/NativeView.h"
#include "Support/WebPage.h"
#include "Support/WebProcesses.h"

namespace tavo::test {
namespace {

class WebProcessTest : public WebPageTest {};

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

// Longer than an evaluation is waited for, but something arrives all the while.
TEST_F(WebProcessTest, APageAtWorkHasMoreTimeButNotForEver) {
  const std::string sends = R"js((milliseconds) => {
    const pause = (end) => { while (Date.now() < end); };
    for (const end = Date.now() + milliseconds; Date.now() < end; pause(Date.now() + 50)) {
      const frame = document.createElement('iframe');
      frame.src = 'mraid://Command';
      document.body.appendChild(frame);
      frame.remove();
    }
    return 'done';
  })js";
  Page page{{.ownProcess = true}};
  page.load("<html><body></body></html>");
  EXPECT_EQ(page.evaluate("(" + sends + ")(4000)"), "done");
  page.view->evaluate("(" + sends + ")(1e9)", [](const std::string&) {});
  EXPECT_TRUE(runUntil([&] { return page.client->count("gone 1101") == 1; }));
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

TEST_F(WebProcessTest, SlotsShareAProcessAndOwnProcessesAreNotShared) {
  Page first;
  first.load("<html><body>first</body></html>");
  const auto before = webProcesses();
  Page second;
  second.load("<html><body>second</body></html>");
  EXPECT_EQ(webProcesses(), before);
  Page own{{.ownProcess = true}};
  own.load("<html><body>own</body></html>");
  EXPECT_GT(webProcesses().size(), before.size());
}

}  // namespace
}  // namespace tavo::test
