#include "Gtk/Web/PageErrors.h"

#include <gio/gio.h>
#include <webkit/webkit.h>

#include <tavo/WebView.h>

#include "Gtk/ForeignText.h"

namespace tavo::gtk {
namespace {

TransportError transportCode(const GError& error) {
  if (error.domain == G_RESOLVER_ERROR || error.domain == G_TLS_ERROR) {
    return TransportError::cannotConnect;
  }
  if (error.domain != G_IO_ERROR) return TransportError::unknown;
  switch (error.code) {
    case G_IO_ERROR_TIMED_OUT:
      return TransportError::timedOut;
    // The engine itself, which gives up a connection whose certificate it refuses and may tell of
    // that first. A load that was stopped or replaced has an error of the engine's own.
    case G_IO_ERROR_CANCELLED:
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_HOST_UNREACHABLE:
    case G_IO_ERROR_NETWORK_UNREACHABLE:
    case G_IO_ERROR_HOST_NOT_FOUND:
      return TransportError::cannotConnect;
    case G_IO_ERROR_CONNECTION_CLOSED:
    case G_IO_ERROR_PARTIAL_INPUT:
      return TransportError::connectionLost;
    default:
      return TransportError::unknown;
  }
}

}  // namespace

Error pageError(const GError& error) {
  const std::string text = textOf(error.message);
  if (error.domain == WEBKIT_POLICY_ERROR) {
    return {std::string{webErrorDomain}, error.code, text};
  }
  if (g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) != FALSE) {
    return makeError(TransportError::cancelled, text);
  }
  if (g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_UNKNOWN_PROTOCOL) !=
      FALSE) {
    return cannotShowError(text);
  }
  return makeError(transportCode(error), text);
}

bool isInterruption(const GError& error) {
  return g_error_matches(&error, WEBKIT_POLICY_ERROR,
                         WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE) != FALSE;
}

Error cannotShowError(const std::string& what) {
  return {std::string{webErrorDomain}, cannotShowUrlError, what};
}

}  // namespace tavo::gtk
