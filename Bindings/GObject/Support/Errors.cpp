#include "Support/Errors.h"

#include <array>
#include <utility>

#include <tavo/MoviePlayer.h>
#include <tavo/WebView.h>

GQuark tavo_ads_error_quark(void) { return g_quark_from_static_string("tavo-ads-error-quark"); }
GQuark tavo_ads_ad_error_quark(void) {
  return g_quark_from_static_string("tavo-ads-ad-error-quark");
}
GQuark tavo_ads_transport_error_quark(void) {
  return g_quark_from_static_string("tavo-ads-transport-error-quark");
}
GQuark tavo_ads_film_error_quark(void) {
  return g_quark_from_static_string("tavo-ads-film-error-quark");
}
GQuark tavo_ads_page_error_quark(void) {
  return g_quark_from_static_string("tavo-ads-page-error-quark");
}
GQuark tavo_ads_network_error_quark(void) {
  return g_quark_from_static_string("tavo-ads-network-error-quark");
}

namespace tavo::gobject {

namespace {

// Whatever has another domain was reported by a network.
GQuark domainOf(const Error& error) {
  const auto domains = std::to_array<std::pair<std::string_view, GQuark>>({
      {sdkErrorDomain, TAVO_ADS_AD_ERROR},
      {transportErrorDomain, TAVO_ADS_TRANSPORT_ERROR},
      {movieErrorDomain, TAVO_ADS_FILM_ERROR},
      {webErrorDomain, TAVO_ADS_PAGE_ERROR},
  });
  for (const auto& [name, domain] : domains) {
    if (error.domain == name) return domain;
  }
  return TAVO_ADS_NETWORK_ERROR;
}

}  // namespace

ErrorPtr errorOf(const std::optional<Error>& error) {
  if (!error) return errorOf(TAVO_ADS_ERROR_NO_ANSWER, "There was no answer.");
  // A message is for logs, and may have come from outside: it is made valid text.
  char* const message = g_utf8_make_valid(error->description.c_str(), -1);
  ErrorPtr made{g_error_new_literal(domainOf(*error), error->code, message)};
  g_free(message);
  return made;
}

ErrorPtr errorOf(TavoAdsError code, const char* message) {
  return ErrorPtr{g_error_new_literal(TAVO_ADS_ERROR, code, message)};
}

}  // namespace tavo::gobject
