#pragma once

#include <libsoup/soup.h>

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <tavo/Limits.h>

#include "Gtk/GPtr.h"
#include "Gtk/Http/HttpCookie.h"

namespace tavo::gtk {

// libsoup's cookie jar with its database, kept within bounds that the jar itself does not know: a
// server could otherwise fill memory and every later request. One thread at a time.
class HttpCookieJar {
 public:
  // One of the two is null: the cookie has been added or removed.
  using Changed = std::function<void(SoupCookie* previous, SoupCookie* current)>;

  // Reads the file, and makes it and its folders when there is none. `changed` is called inside the
  // operation that changes the jar, expired cookies included.
  HttpCookieJar(const std::string& path, const Limits& limits, Changed changed);
  ~HttpCookieJar();
  HttpCookieJar(const HttpCookieJar&) = delete;
  HttpCookieJar& operator=(const HttpCookieJar&) = delete;

  // What a request for `uri` carries, longest path first.
  [[nodiscard]] std::vector<Cookie> cookiesFor(GUri* uri);
  [[nodiscard]] std::vector<Cookie> all();

  // Whether one with this name is kept that may travel over https only.
  [[nodiscard]] bool hasSecure(const std::string& name) const { return secure_.contains(name); }

  // Adds, replaces, or removes when it has expired. With an `origin` the cookie must not be secure
  // if that is not, and must not replace one that is. The oldest cookies of its domain make
  // room, and when the jar is full, some of other domains.
  void add(const Cookie& cookie, GUri* origin);

  void remove(const Cookie& cookie);

 private:
  static void jarChanged(SoupCookieJar* jar, SoupCookie* previous, SoupCookie* current,
                         gpointer self);
  void count(SoupCookie* cookie, int difference);
  void makeRoomFor(const std::string& domain);
  void dropOldest(const std::string& domain, std::size_t count);
  void dropOthers(const std::string& domain, std::size_t count);

  GPtr<SoupCookieJar> jar_;
  std::size_t mostInDomain_;
  std::size_t mostInAll_;
  Changed changed_;
  std::map<std::string, std::size_t> counts_;  // per domain
  std::map<std::string, std::size_t> secure_;  // per name
  std::size_t total_ = 0;
};

}  // namespace tavo::gtk
