#include "Gtk/Http/GtkCookieStore.h"

#include <algorithm>
#include <utility>

#include "Gtk/GPtr.h"
#include "Gtk/Http/HttpCookieJar.h"
#include "Gtk/Http/HttpUri.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

constexpr int mostInAnswer = 50;
constexpr std::size_t mostBytes = 4096;  // name and value together

bool isAcceptable(const Cookie& cookie) {
  return isStorable(cookie) && cookie.name.size() + cookie.value.size() <= mostBytes;
}

// libsoup would cut the text at a control character and store the front.
bool hasControls(std::string_view header) {
  return std::any_of(header.begin(), header.end(),
                     [](char c) { return g_ascii_iscntrl(c) != FALSE && c != '\t'; });
}

std::optional<Cookie> optionalCookie(SoupCookie* cookie) {
  return cookie == nullptr ? std::nullopt : std::optional{cookieFrom(cookie)};
}

}  // namespace

GtkCookieStore::GtkCookieStore(std::shared_ptr<RunLoop> runLoop, std::string path)
    : runLoop_{std::move(runLoop)}, path_{std::move(path)} {}

GtkCookieStore::~GtkCookieStore() = default;

std::string GtkCookieStore::defaultPath(const std::string& applicationId) {
  const GText path{
      g_build_filename(g_get_user_data_dir(), applicationId.c_str(), "cookies.sqlite", nullptr)};
  return path.get();
}

HttpCookieJar& GtkCookieStore::jar() const {
  if (!jar_) {
    jar_ =
        std::make_unique<HttpCookieJar>(path_, [this](SoupCookie* previous, SoupCookie* current) {
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
  return jar().cookiesFor(uri.get());
}

void GtkCookieStore::store(const Cookie& cookie, const Url& url) {
  const GUriPtr uri = httpUri(url);
  if (!uri || !isAcceptable(cookie)) return;
  Cookie whole = cookie;
  if (whole.domain.empty()) whole.domain = g_uri_get_host(uri.get());
  SoupCookiePtr made = toSoupCookie(whole);
  if (soup_cookie_domain_matches(made.get(), g_uri_get_host(uri.get())) == FALSE) return;
  const std::scoped_lock lock{mutex_};
  jar().add(std::move(made), uri.get());
}

void GtkCookieStore::storeFromHeaders(const std::vector<HttpHeader>& headers, const Url& url) {
  GUriPtr uri;
  int left = mostInAnswer;
  for (const auto& header : headers) {
    if (!equalsIgnoringCase(header.name, "Set-Cookie") || hasControls(header.value)) continue;
    if (!uri) uri = httpUri(url);
    if (!uri || left-- == 0) return;
    SoupCookiePtr cookie{soup_cookie_parse(header.value.c_str(), uri.get())};
    if (!cookie || !isAcceptable(cookieFrom(cookie.get()))) continue;
    const std::scoped_lock lock{mutex_};
    jar().add(std::move(cookie), uri.get());
  }
}

std::vector<Cookie> GtkCookieStore::all() const {
  const std::scoped_lock lock{mutex_};
  return jar().all();
}

void GtkCookieStore::adopt(const Cookie& cookie) {
  if (!isAcceptable(cookie) || cookie.domain.empty()) return;
  const std::scoped_lock lock{mutex_};
  origin_ = Origin::engine;
  jar().add(toSoupCookie(cookie), nullptr);
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
