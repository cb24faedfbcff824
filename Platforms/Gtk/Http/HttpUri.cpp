#include "Gtk/Http/HttpUri.h"

#include <libsoup/soup.h>

#include <string>

#include "Gtk/ForeignText.h"
#include "Rules/HttpHops.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

constexpr auto uriFlags = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS);

}  // namespace

GUriPtr httpUri(const Url& url) {
  if (!isHttpTarget(url)) return nullptr;
  GUriPtr uri{g_uri_parse(url.text().c_str(), uriFlags, nullptr)};
  if (!uri) return nullptr;
  // One that other code takes for the host must be the one that is connected to.
  const std::string host = textOf(g_uri_get_host(uri.get()));
  if (!equalsIgnoringCase(percentDecoded(url.host()), host)) return nullptr;
  return uri;
}

}  // namespace tavo::gtk
