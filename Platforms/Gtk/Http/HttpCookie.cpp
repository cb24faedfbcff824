#include "Gtk/Http/HttpCookie.h"

#include <algorithm>

#include "Gtk/ForeignText.h"

namespace tavo::gtk {

namespace {

using std::chrono::duration_cast;
using std::chrono::seconds;

// Years that a clock in nanoseconds does not reach stand for its ends.
Date dateOf(GDateTime* moment) {
  constexpr auto first = duration_cast<seconds>(Date::min().time_since_epoch());
  constexpr auto last = duration_cast<seconds>(Date::max().time_since_epoch());
  return Date{std::clamp(seconds{g_date_time_to_unix(moment)}, first, last)};
}

}  // namespace

Cookie cookieFrom(SoupCookie* cookie) {
  Cookie copy;
  copy.name = textOf(soup_cookie_get_name(cookie));
  copy.value = textOf(soup_cookie_get_value(cookie));
  copy.domain = textOf(soup_cookie_get_domain(cookie));
  copy.path = textOf(soup_cookie_get_path(cookie));
  if (GDateTime* const expires = soup_cookie_get_expires(cookie)) {
    copy.expires = dateOf(expires);
  }
  copy.secure = soup_cookie_get_secure(cookie) != FALSE;
  copy.httpOnly = soup_cookie_get_http_only(cookie) != FALSE;
  return copy;
}

SoupCookiePtr toSoupCookie(const Cookie& cookie) {
  SoupCookiePtr made{soup_cookie_new(cookie.name.c_str(), cookie.value.c_str(),
                                     cookie.domain.c_str(), cookie.path.c_str(), -1)};
  if (cookie.expires) {
    const auto moment = duration_cast<seconds>(cookie.expires->time_since_epoch()).count();
    // GLib knows the years 1 to 9999 only.
    constexpr gint64 first = -62135596800;
    constexpr gint64 last = 253402300799;
    const GDateTimePtr expires{
        g_date_time_new_from_unix_utc(std::clamp<gint64>(moment, first, last))};
    soup_cookie_set_expires(made.get(), expires.get());
  }
  soup_cookie_set_secure(made.get(), cookie.secure ? TRUE : FALSE);
  soup_cookie_set_http_only(made.get(), cookie.httpOnly ? TRUE : FALSE);
  return made;
}

}  // namespace tavo::gtk
