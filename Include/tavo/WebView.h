#pragma once

#include <functional>
#include <memory>
#include <string>

#include <tavo/Error.h>
#include <tavo/Export.h>
#include <tavo/Url.h>
#include <tavo/View.h>

namespace tavo {

class WebView;

// What made a page navigate, as the engine tells it. A script that presses a link counts as the
// person: it is no proof of a touch.
enum class NavigationType {
  linkClicked,
  formSubmitted,
  backForward,
  reload,
  formResubmitted,
  // A script asks for a window of its own. There is none: whoever allows it shows the document
  // elsewhere, or nothing happens.
  newWindow,
  other
};

// One navigation of one frame, before it happens.
struct Navigation {
  Url url;
  // Equal to `url` when the navigation is one of the main frame, as far as the engine can tell;
  // empty when a frame loads the main document's own address.
  Url mainDocumentUrl;
  NavigationType type = NavigationType::other;
};

// The address of the empty page.
inline constexpr const char* blankPage = "about:blank";

// Codes of load failures that a web view's owner may want to tell apart; their domain is
// "WebKitErrorDomain" unless they come from the transport.
inline constexpr int cannotShowUrlError = 101;
inline constexpr int webProcessGoneError = 1101;
inline constexpr int webEngineUnavailableError = 1102;
// A page was ended because it had passed a budget and no person had touched it: the bytes that it
// may fetch, the processor time in a window of time, and that in all. Limits.h has the budgets.
inline constexpr int webPageNetworkError = 1103;
inline constexpr int webPageProcessorPeakError = 1104;
inline constexpr int webPageProcessorTotalError = 1105;
inline constexpr std::string_view webErrorDomain = "WebKitErrorDomain";

// Hears what a web view does. Calls arrive on the main thread, never inside a call to the web view.
class TAVO_EXPORT WebViewClient {
 public:
  virtual ~WebViewClient() = default;

  // Asked before every navigation of any frame; false refuses it, and nothing else is reported of
  // it then.
  virtual bool webViewShouldStartLoad(WebView& webView, const Navigation& navigation) = 0;
  virtual void webViewDidStartLoad(WebView& webView) = 0;
  // The main document and what it needs have loaded.
  virtual void webViewDidFinishLoad(WebView& webView) = 0;
  // The main document could not be loaded; what was shown before stays. Code -999: cancelled.
  virtual void webViewDidFailLoad(WebView& webView, const Error& error) = 0;
  // The process behind the page has died or was ended because it no longer answered. The page is
  // lost; a new load starts a new process.
  virtual void webViewProcessDidTerminate(WebView& webView, const Error& error) = 0;
};

// A page of the system's web engine in the scene. The engine runs in processes of its own: loads,
// evaluations and reports arrive later, in order, and what a hostile page does to its process never
// reaches the host. Main thread only. Made by the library; a host meets the page of its ad in
// `xAdViewShouldDisplayAdOnWebViewFinishRender`, may look at it and evaluate scripts in it, and
// does not keep it.
class TAVO_EXPORT WebView : public View {
 public:
  using View::View;

  // Held weakly; a client that is gone hears nothing and allows every navigation.
  virtual void setClient(std::weak_ptr<WebViewClient> client) = 0;

  // Replaces the page. An empty `baseUrl` gives the page no base. Failures reach the client.
  virtual void loadHtml(const std::string& html, const Url& baseUrl) = 0;
  virtual void loadUrl(const Url& url) = 0;
  // The same, past every cache on the way to the server.
  virtual void loadUrlIgnoringCache(const Url& url) = 0;
  virtual void stopLoading() = 0;

  // A script that every later page of this view runs in its main frame before its own first one.
  virtual void addDocumentStartScript(const std::string& script) = 0;

  // Evaluates a script in the page; scripts run in the order of the calls. `completion`, when
  // given, is called on the main thread with the result's text ("" for undefined, null, an
  // exception or a page that is gone), never inside this call.
  virtual void evaluate(const std::string& script,
                        std::function<void(const std::string& result)> completion = {}) = 0;

  // What the engine last said about the page; empty before the first load.
  [[nodiscard]] virtual Url url() const = 0;
  [[nodiscard]] virtual std::string title() const = 0;
  [[nodiscard]] virtual bool isLoading() const = 0;
  [[nodiscard]] virtual double estimatedProgress() const = 0;  // 0 to 1
  // The pages that were shown in this view. Without one in that direction nothing happens.
  [[nodiscard]] virtual bool canGoBack() const = 0;
  [[nodiscard]] virtual bool canGoForward() const = 0;
  virtual void goBack() = 0;
  virtual void goForward() = 0;
  virtual void reload() = 0;

  // Whether the page rests, because nobody can see it: the engine treats it as hidden. It hears
  // `visibilitychange`, its animations stand still and its timers go slowly, while loads and
  // evaluations go on. Its last picture stays where it stands. The library says so to pages that
  // are scrolled away or covered.
  [[nodiscard]] bool isAtRest() const { return atRest_; }
  void setAtRest(bool rests);

  // Video plays inside the page; it may start without a touch. Set before the first load.
  bool allowsInlineMediaPlayback = false;
  bool mediaPlaybackRequiresUserAction = true;

 private:
  bool atRest_ = false;
};

}  // namespace tavo
