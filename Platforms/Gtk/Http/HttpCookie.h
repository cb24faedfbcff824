#pragma once

#include <libsoup/soup.h>

#include "Gtk/GPtr.h"
#include "Services/CookieStore.h"

namespace tavo::gtk {

using SoupCookiePtr = GOwned<SoupCookie, &soup_cookie_free>;

// Our cookies and libsoup's (the web engine uses the same), turned into each other. A domain with a
// leading dot stands for the host and all below it, one without for the host alone.
[[nodiscard]] Cookie cookieFrom(SoupCookie* cookie);
[[nodiscard]] SoupCookiePtr toSoupCookie(const Cookie& cookie);

}  // namespace tavo::gtk
