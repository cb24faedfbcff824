#include "Gtk/Http/HttpCookieJar.h"

#include <glib/gstdio.h>

#include <utility>

#include "Gtk/ForeignText.h"
#include "Gtk/Guarded.h"

namespace tavo::gtk {

namespace {

void freeCookies(GSList* cookies) {
  g_slist_free_full(cookies,
                    [](gpointer cookie) { soup_cookie_free(static_cast<SoupCookie*>(cookie)); });
}
using CookieList = GOwned<GSList, &freeCookies>;

SoupCookie* cookieAt(const GSList* node) { return static_cast<SoupCookie*>(node->data); }

std::vector<Cookie> copied(const CookieList& list) {
  std::vector<Cookie> cookies;
  for (const GSList* node = list.get(); node != nullptr; node = node->next) {
    cookies.push_back(cookieFrom(cookieAt(node)));
  }
  return cookies;
}

GPtr<SoupCookieJar> openJar(const std::string& path) {
  const GText folder{g_path_get_dirname(path.c_str())};
  g_mkdir_with_parents(folder.get(), 0700);
  return GPtr<SoupCookieJar>::adopt(soup_cookie_jar_db_new(path.c_str(), FALSE));
}

}  // namespace

HttpCookieJar::HttpCookieJar(const std::string& path, const Limits& limits, Changed changed)
    : jar_{openJar(path)},
      mostInDomain_{limits.cookiesPerDomain},
      mostInAll_{limits.cookies},
      changed_{std::move(changed)} {
  const CookieList stored{soup_cookie_jar_all_cookies(jar_.get())};
  for (const GSList* node = stored.get(); node != nullptr; node = node->next) {
    count(cookieAt(node), 1);
  }
  g_signal_connect(jar_.get(), "changed", G_CALLBACK(fenced<&HttpCookieJar::jarChanged>), this);
}

HttpCookieJar::~HttpCookieJar() { g_signal_handlers_disconnect_by_data(jar_.get(), this); }

std::vector<Cookie> HttpCookieJar::cookiesFor(GUri* uri) {
  return copied(CookieList{soup_cookie_jar_get_cookie_list(jar_.get(), uri, TRUE)});
}

std::vector<Cookie> HttpCookieJar::all() {
  return copied(CookieList{soup_cookie_jar_all_cookies(jar_.get())});
}

void HttpCookieJar::add(const Cookie& cookie, GUri* origin) {
  soup_cookie_jar_add_cookie_full(jar_.get(), toSoupCookie(cookie).release(), origin, nullptr);
  makeRoomFor(cookie.domain);
}

void HttpCookieJar::remove(const Cookie& cookie) {
  const SoupCookiePtr gone = toSoupCookie(cookie);
  soup_cookie_jar_delete_cookie(jar_.get(), gone.get());
}

void HttpCookieJar::jarChanged(SoupCookieJar* /*jar*/, SoupCookie* previous, SoupCookie* current,
                               gpointer self) {
  auto& jar = *static_cast<HttpCookieJar*>(self);
  if (previous != nullptr) jar.count(previous, -1);
  if (current != nullptr) jar.count(current, 1);
  jar.changed_(previous, current);
}

void HttpCookieJar::count(SoupCookie* cookie, int difference) {
  const auto change = [difference](auto& counts, const std::string& key) {
    const auto entry = counts.try_emplace(key, 0).first;
    entry->second += static_cast<std::size_t>(difference);
    if (entry->second == 0) counts.erase(entry);
  };
  change(counts_, textOf(soup_cookie_get_domain(cookie)));
  if (soup_cookie_get_secure(cookie) != FALSE) {
    change(secure_, textOf(soup_cookie_get_name(cookie)));
  }
  total_ += static_cast<std::size_t>(difference);
}

// Room is made for several at a time, because finding what can go means looking at all.
void HttpCookieJar::makeRoomFor(const std::string& domain) {
  const auto entry = counts_.find(domain);
  if (entry != counts_.end() && entry->second > mostInDomain_) {
    dropOldest(domain, entry->second - mostInDomain_ * 5 / 6);
  }
  if (total_ > mostInAll_) dropOthers(domain, total_ - mostInAll_ * 5 / 6);
}

void HttpCookieJar::dropOldest(const std::string& domain, std::size_t count) {
  std::size_t kept = counts_.at(domain) - count;
  const CookieList cookies{soup_cookie_jar_all_cookies(jar_.get())};
  // The jar lists the cookies of one domain with the newest first.
  for (const GSList* node = cookies.get(); node != nullptr; node = node->next) {
    if (domain != textOf(soup_cookie_get_domain(cookieAt(node)))) continue;
    if (kept > 0) {
      --kept;
    } else {
      soup_cookie_jar_delete_cookie(jar_.get(), cookieAt(node));
    }
  }
}

// The jar does not know which of two domains was asked for last, so chance decides.
void HttpCookieJar::dropOthers(const std::string& domain, std::size_t count) {
  const CookieList cookies{soup_cookie_jar_all_cookies(jar_.get())};
  for (const GSList* node = cookies.get(); node != nullptr && count > 0; node = node->next) {
    if (domain == textOf(soup_cookie_get_domain(cookieAt(node)))) continue;
    soup_cookie_jar_delete_cookie(jar_.get(), cookieAt(node));
    --count;
  }
}

}  // namespace tavo::gtk
