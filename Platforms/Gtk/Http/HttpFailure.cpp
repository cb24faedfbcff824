#include "Gtk/Http/HttpFailure.h"

#include <gio/gio.h>
#include <libsoup/soup.h>

#include "Values/Text.h"

namespace tavo::gtk {

namespace {

TransportError ioErrorCode(int code) {
  switch (code) {
    case G_IO_ERROR_CANCELLED:
      return TransportError::cancelled;
    case G_IO_ERROR_TIMED_OUT:
      return TransportError::timedOut;
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_HOST_UNREACHABLE:
    case G_IO_ERROR_NETWORK_UNREACHABLE:
    case G_IO_ERROR_HOST_NOT_FOUND:
    case G_IO_ERROR_PROXY_FAILED:
    case G_IO_ERROR_PROXY_AUTH_FAILED:
    case G_IO_ERROR_PROXY_NEED_AUTH:
    case G_IO_ERROR_PROXY_NOT_ALLOWED:
    case G_IO_ERROR_PERMISSION_DENIED:
      return TransportError::cannotConnect;
    case G_IO_ERROR_INVALID_DATA:
      return TransportError::cannotDecode;
    default:
      return TransportError::connectionLost;
  }
}

TransportError errorCode(const GError& failure) {
  if (failure.domain == G_IO_ERROR) return ioErrorCode(failure.code);
  if (failure.domain == G_RESOLVER_ERROR || failure.domain == G_TLS_ERROR) {
    return TransportError::cannotConnect;
  }
  // What answered speaks no HTTP that libsoup understands, or a head without end.
  if (failure.domain == SOUP_SESSION_ERROR) return TransportError::badServerResponse;
  return TransportError::connectionLost;
}

}  // namespace

Error httpError(const GError& failure) {
  return makeError(errorCode(failure), validUtf8(failure.message));
}

}  // namespace tavo::gtk
