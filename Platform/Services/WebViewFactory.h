#pragma once

#include <functional>
#include <memory>
#include <string>

#include <tavo/WebView.h>

namespace tavo {

// Whose page a web view shows.
enum class PageKind {
  // An ad's. It plays its media by itself, but what it stores ends with it, and nothing of it runs
  // on: no service workers, no databases.
  creative,
  // One that a person asked for. It sees the creatives' cookies as they were when its view was made
  // and gives none back; media with sound waits for the person. Its questions reach the person, and
  // what it opens in a new window on the person's wish takes its place.
  browser,
};

struct WebViewOptions {
  // Who shows pages one after the other: web views with the same owner may reuse one native view.
  // Null: a native view of its own.
  const void* owner = nullptr;
  // The page gets a web process that it shares with no other page.
  bool ownProcess = false;
  PageKind kind = PageKind::creative;
};

// Makes web views. Main thread only.
class WebViewFactory {
 public:
  virtual ~WebViewFactory() = default;

  // Never null. Where the engine cannot run (no engine installed, no sandbox to be had) the view's
  // loads end in webViewDidFailLoad with webEngineUnavailableError; the host is never at risk.
  [[nodiscard]] virtual std::shared_ptr<WebView> create(const Rect& frame,
                                                        const WebViewOptions& options) = 0;

  // Starts the engine ahead of the first page of the options' owner; harmless when repeated.
  virtual void warmUp(const WebViewOptions& options) = 0;

  // Finds the user-agent text out beside the loop; `found` is called once, inside this call when
  // the text is known already. `userAgent` answers at once from then on.
  virtual void findUserAgent(std::function<void()> found) = 0;

  // The engine's user-agent text, found without loading a page; never empty. The caller waits while
  // nobody has found it out.
  [[nodiscard]] virtual std::string userAgent() = 0;
};

}  // namespace tavo
