#include "Gtk/Http/HttpUri.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <string>

#include "Values/Text.h"

namespace tavo::gtk {

namespace {

constexpr auto uriFlags = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS);

bool isPlainHost(std::string_view host) {
  return !host.empty() && std::none_of(host.begin(), host.end(), [](char c) {
    return g_ascii_iscntrl(c) != FALSE || g_ascii_isspace(c) != FALSE;
  });
}

}  // namespace

GUriPtr httpUri(const Url& url) {
  if (!url.isHttp()) return nullptr;
  GUriPtr uri{g_uri_parse(url.text().c_str(), uriFlags, nullptr)};
  if (!uri) return nullptr;
  const char* const host = g_uri_get_host(uri.get());
  if (host == nullptr || !isPlainHost(host)) return nullptr;
  // One that other code takes for the host must be the one that is connected to.
  if (!equalsIgnoringCase(percentDecoded(url.host()), host)) return nullptr;
  return uri;
}

Url redirectTarget(const Url& from, std::string_view location) {
  const GUriPtr base = httpUri(from);
  const Url reference = Url::fromText(location);
  if (!base || !reference) return {};
  const GUriPtr target{
      g_uri_parse_relative(base.get(), reference.text().c_str(), uriFlags, nullptr)};
  if (!target) return {};
  const GText text{g_uri_to_string(target.get())};
  return Url::parse(text.get());
}

}  // namespace tavo::gtk
