#include "Gtk/Web/EngineCookies.h"

#include <utility>

#include "Gtk/Guarded.h"
#include "Gtk/Http/HttpCookie.h"

namespace tavo::gtk {
namespace {

constexpr Seconds readPeriod{1};
constexpr Seconds secondLookDelay{0.25};

// Lets go of the session in a later turn: the question that was asked keeps the session's manager
// until its answer has been dealt with, and the engine ends the process when the manager goes last.
void releaseLater(GPtr<WebKitNetworkSession> session) {
  g_idle_add_full(
      G_PRIORITY_DEFAULT, [](gpointer) -> gboolean { return G_SOURCE_REMOVE; }, session.release(),
      g_object_unref);
}

}  // namespace

// A list of cookies that was asked for.
struct EngineCookies::Reading {
  std::shared_ptr<EngineCookies*> reader;
  GPtr<WebKitNetworkSession> session;
};

EngineCookies::EngineCookies(WebKitNetworkSession* session, std::shared_ptr<CookieSource> source,
                             std::shared_ptr<RunLoop> runLoop)
    : session_{GPtr<WebKitNetworkSession>::share(session)},
      manager_{webkit_network_session_get_cookie_manager(session)},
      source_{std::move(source)},
      runLoop_{std::move(runLoop)} {
  // A creative without a base is no site of its own: every cookie of its server would count as a
  // third party's.
  webkit_cookie_manager_set_accept_policy(manager_, WEBKIT_COOKIE_POLICY_ACCEPT_ALWAYS);
  for (const auto& cookie : source_->all()) put(cookie);
  source_->setListener(
      [this](const std::optional<Cookie>& previous, const std::optional<Cookie>& current) {
        if (current) {
          put(*current);
        } else if (previous) {
          remove(*previous);
        }
      });
  connections_.connect(manager_, "changed", fenced<&EngineCookies::onChanged>, this);
  read();
  process_.watch();
}

// What the engine was known to have is gone, and nobody has removed it.
void EngineCookies::startAnew() {
  known_.clear();
  for (const auto& cookie : source_->all()) put(cookie);
  bool watched = process_.watch();
  reader_ = runLoop_->every(readPeriod, [this, watched]() mutable {
    if (!watched) watched = process_.watch();
    read();
  });
}

EngineCookies::~EngineCookies() {
  source_->setListener({});
  *alive_ = nullptr;
}

EngineCookies::Key EngineCookies::keyOf(const Cookie& cookie) {
  return {cookie.domain, cookie.path, cookie.name};
}

void EngineCookies::put(const Cookie& cookie) {
  outdated_ = true;
  webkit_cookie_manager_add_cookie(manager_, toSoupCookie(cookie).get(), nullptr, nullptr, nullptr);
}

void EngineCookies::remove(const Cookie& cookie) {
  outdated_ = true;
  known_.erase(keyOf(cookie));
  webkit_cookie_manager_delete_cookie(manager_, toSoupCookie(cookie).get(), nullptr, nullptr,
                                      nullptr);
}

void EngineCookies::onChanged(WebKitCookieManager* /*manager*/, EngineCookies* self) {
  self->read();
}

void EngineCookies::read() {
  outdated_ = std::exchange(reading_, true);
  if (outdated_) return;
  webkit_cookie_manager_get_all_cookies(manager_, nullptr, fenced<&EngineCookies::onRead>,
                                        new Reading{alive_, session_});
}

void EngineCookies::onRead(GObject* manager, GAsyncResult* result, gpointer reading) {
  const std::unique_ptr<Reading> asked{static_cast<Reading*>(reading)};
  releaseLater(std::move(asked->session));
  GFailure failure;
  GList* list = webkit_cookie_manager_get_all_cookies_finish(WEBKIT_COOKIE_MANAGER(manager), result,
                                                             failure.out());
  Cookies current;
  for (GList* item = list; item != nullptr; item = item->next) {
    const Cookie cookie = cookieFrom(static_cast<SoupCookie*>(item->data));
    current.emplace(keyOf(cookie), cookie);
  }
  g_list_free_full(list,
                   [](gpointer cookie) { soup_cookie_free(static_cast<SoupCookie*>(cookie)); });

  EngineCookies* self = *asked->reader;
  if (self == nullptr) return;
  self->reading_ = false;
  if (std::exchange(self->outdated_, false)) return self->read();
  if (!failure) self->take(std::move(current));
}

// A process that ends answers with an empty list, a moment before its end can be seen: such a list
// is believed the second time only.
void EngineCookies::take(Cookies current) {
  if (process_.hasEnded()) return;
  const bool isEmptied = current.empty() && !known_.empty();
  if (isEmptied && !std::exchange(doubted_, true)) {
    secondLook_ = runLoop_->after(secondLookDelay, [this] { read(); });
    return;
  }
  doubted_ = false;
  compare(std::move(current));
}

void EngineCookies::compare(Cookies current) {
  const Cookies before = std::exchange(known_, std::move(current));
  for (const auto& [key, cookie] : known_) {
    const auto old = before.find(key);
    if (old == before.end() || old->second != cookie) source_->adopt(cookie);
  }
  for (const auto& [key, cookie] : before) {
    if (!known_.contains(key)) source_->discard(cookie);
  }
}

void copyCookies(const CookieSource& source, WebKitNetworkSession* session) {
  auto* const manager = webkit_network_session_get_cookie_manager(session);
  webkit_cookie_manager_set_accept_policy(manager, WEBKIT_COOKIE_POLICY_ACCEPT_ALWAYS);
  for (const auto& cookie : source.all()) {
    webkit_cookie_manager_add_cookie(manager, toSoupCookie(cookie).get(), nullptr, nullptr,
                                     nullptr);
  }
}

}  // namespace tavo::gtk
