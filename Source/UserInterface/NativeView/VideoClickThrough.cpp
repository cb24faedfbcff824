#include "UserInterface/NativeView/VideoClickThrough.h"

#include <algorithm>
#include <array>

#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Runtime.h"
#include "Services/Application.h"
#include "Services/Device.h"
#include "UserInterface/NativeView/VideoTime.h"
#include "Utilities/XUserAgent.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::array<std::string_view, 2> appStoreHosts{"itunes.apple.com", "apps.apple.com"};
constexpr int firstVersionWithStoreSheet = 6;
constexpr Seconds storeSheetDelay{0.5};

// Only where the page finally is matters; what it says is not read.
bool arrived(const HttpResult& result) {
  const bool cut =
      result.error && result.error->code == static_cast<int>(TransportError::bodyTooLarge);
  return result.response && (!result.error || cut);
}

}  // namespace

bool isAppStore(const Url& url) {
  return std::any_of(appStoreHosts.begin(), appStoreHosts.end(),
                     [&](std::string_view host) { return equalsIgnoringCase(url.host(), host); });
}

std::optional<std::int64_t> storeItem(const Url& url) {
  constexpr std::string_view mark = "/id";
  constexpr std::size_t mostDigits = 18;  // fit into the number
  const std::string_view text = url.text();
  const auto found = text.find(mark);
  if (!isAppStore(url) || found == std::string_view::npos) return std::nullopt;
  std::int64_t item = 0;
  std::size_t digits = 0;
  for (const char letter : text.substr(found + mark.size())) {
    if (letter < '0' || letter > '9' || digits == mostDigits) break;
    item = item * 10 + (letter - '0');
    ++digits;
  }
  return digits > 0 ? std::optional{item} : std::nullopt;
}

void VideoClickThrough::open(const Url& url, const XAdSlotConfiguration* slot,
                             std::weak_ptr<VideoClickPresenter> presenter) {
  if (url.empty()) return;
  ++click_;
  presenter_ = std::move(presenter);
  const bool stays = slot != nullptr && slot->shouldOpenClickThroughURLInAppBrowser;
  if (stays && !presenter_.expired()) {
    resolve(url);
  } else {
    leaveApplication(url);
  }
}

void VideoClickThrough::leaveApplication(const Url& url) {
  auto& application = *Runtime::current().platform().application;
  if (!application.canOpenUrl(url)) return;
  const auto held = shared_from_this();
  events_.willLeaveApplication();
  application.openUrl(url);
}

void VideoClickThrough::resolve(const Url& url) {
  auto& runtime = Runtime::current();
  HttpRequest request = XUserAgent::sharedProvider().getUserAgentForUrl(url);
  request.idleTimeout = request.deadline = runtime.limits().clickThroughTimeout;
  request.maximumBodyBytes = 1;
  runtime.platform().http->send(
      std::move(request), [weak = weak_from_this(), url, click = click_](const HttpResult& result) {
        const auto self = weak.lock();
        if (self && self->click_ == click) self->resolved(url, result);
      });
}

void VideoClickThrough::resolved(const Url& url, const HttpResult& result) {
  if (!arrived(result)) return presentBrowser(url);
  const Url& page = result.response->url;
  platformLog(page.text());
  const auto& version = Runtime::current().platform().device->systemVersion();
  if (!isAppStore(page) || leadingWholeNumber(version) < firstVersionWithStoreSheet) {
    return presentBrowser(url);
  }
  const auto item = storeItem(page);
  if (!item) {
    platformLog("TAVOSDK: " + std::string{page.host()} + " error: couldn't locate id.");
    return presentBrowser(url);
  }
  store_ = Runtime::current().platform().runLoop->after(storeSheetDelay, [this, id = *item] {
    if (const auto presenter = presenter_.lock()) presenter->presentStoreProduct(id);
  });
}

void VideoClickThrough::presentBrowser(const Url& url) {
  const auto presenter = presenter_.lock();
  if (!presenter || !Runtime::current().platform().application->canOpenUrl(url)) return;
  const auto held = shared_from_this();
  browserOpen_ = presenter->presentBrowser(url);
  if (browserOpen_) events_.willOpenInAppBrowser();
}

void VideoClickThrough::dismissBrowser() {
  if (const auto presenter = presenter_.lock()) presenter->dismissBrowser();
}

}  // namespace tavo
