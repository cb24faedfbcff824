#include "Gtk/Http/GtkCookieStore.h"

#include <algorithm>
#include <utility>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Gtk/Http/HttpCookieJar.h"
#include "Gtk/Http/HttpUri.h"
#include "Rules/CookieRules.h"

namespace tavo::gtk {

namespace {

bool isSuffix(std::string_view domain) {
  return soup_tld_domain_is_public_suffix(std::string{domain}.c_str()) != FALSE;
}

std::optional<Cookie> optionalCookie(SoupCookie* cookie) {
  return cookie == nullptr ? std::nullopt : std::optional{cookieFrom(cookie)};
}

}  // namespace

GtkCookieStore::GtkCookieStore(std::shared_ptr<RunLoop> runLoop, std::string path,
                               const Limits& limits)
    : runLoop_{std::move(runLoop)}, path_{std::move(path)}, limits_{limits} {}

GtkCookieStore::~GtkCookieStore() = default;

bool GtkCookieStore::isPublicSuffix(std::string_view domain) const { return isSuffix(domain); }

std::string GtkCookieStore::defaultPath(const std::string& applicationId) {
  const GText path{
      g_build_filename(g_get_user_data_dir(), applicationId.c_str(), "cookies.sqlite", nullptr)};
  return textOf(path.get());
}

HttpCookieJar& GtkCookieStore::jar() const {
  if (!jar_) {
    jar_ = std::make_unique<HttpCookieJar>(
        path_, limits_, [this](SoupCookie* previous, SoupCookie* current) {
          if (!listener_ || origin_ == Origin::engine) return;
          announce({optionalCookie(previous), optionalCookie(current)});
        });
  }
  return *jar_;
}

// The listener comes along: one that is replaced before its turn is not called any more.
void GtkCookieStore::announce(CookieChange change) const {
  runLoop_->post([listener = std::weak_ptr{listener_}, change = std::move(change)] {
    if (const auto alive = listener.lock()) (*alive)(change);
  });
}

std::vector<Cookie> GtkCookieStore::cookiesFor(const Url& url) const {
  const GUriPtr uri = httpUri(url);
  if (!uri) return {};
  const std::scoped_lock lock{mutex_};
  auto cookies = jar().cookiesFor(uri.get());
  // The jar goes by the system's clock, and knows nothing of jumps.
  std::erase_if(
      cookies, [now = runLoop_->today()](const Cookie& cookie) { return hasExpired(cookie, now); });
  return cookies;
}

void GtkCookieStore::store(const Cookie& cookie, const Url& url) {
  Cookie bounded = completed(cookie, url);
  if (!maySet(bounded, url, isSuffix, limits_)) return;
  boundLife(bounded, runLoop_->today(), limits_);
  put({bounded}, url);
}

void GtkCookieStore::storeFromHeaders(const std::vector<HttpHeader>& headers, const Url& url) {
  put(cookiesSetBy(headers, url, runLoop_->today(), isSuffix, limits_), url);
}

void GtkCookieStore::put(const std::vector<Cookie>& cookies, const Url& url) {
  const GUriPtr uri = cookies.empty() ? nullptr : httpUri(url);
  if (!uri) return;
  const std::scoped_lock lock{mutex_};
  for (const auto& cookie : cookies) {
    if (mayReplaceStored(cookie, url)) jar().add(cookie, uri.get());
  }
}

// Looking at all there are is slow, and secure ones of the same name are few.
bool GtkCookieStore::mayReplaceStored(const Cookie& cookie, const Url& url) const {
  if (!jar().hasSecure(cookie.name)) return true;
  const auto stored = jar().all();
  return std::none_of(stored.begin(), stored.end(),
                      [&](const Cookie& other) { return mustStay(other, cookie, url); });
}

std::vector<Cookie> GtkCookieStore::all() const {
  const std::scoped_lock lock{mutex_};
  return jar().all();
}

void GtkCookieStore::adopt(const Cookie& cookie) {
  if (!isStorable(cookie, limits_) || cookie.domain.empty()) return;
  Cookie bounded = cookie;
  boundLife(bounded, runLoop_->today(), limits_);
  const std::scoped_lock lock{mutex_};
  origin_ = Origin::engine;
  jar().add(bounded, nullptr);
  origin_ = Origin::requests;
}

void GtkCookieStore::discard(const Cookie& cookie) {
  const std::scoped_lock lock{mutex_};
  origin_ = Origin::engine;
  jar().remove(cookie);
  origin_ = Origin::requests;
}

void GtkCookieStore::setListener(Listener listener) {
  const std::scoped_lock lock{mutex_};
  listener_ = listener ? std::make_shared<const Listener>(std::move(listener)) : nullptr;
}

}  // namespace tavo::gtk
