#include "Gtk/Http/HttpMessage.h"

#include "Gtk/ForeignText.h"
#include "Gtk/Http/HttpUri.h"
#include "Rules/HttpHops.h"

namespace tavo::gtk {

namespace {

void setBody(SoupMessage* message, const std::string& body) {
  if (body.empty()) return;
  const GBytesPtr bytes{g_bytes_new(body.data(), body.size())};
  soup_message_set_request_body_from_bytes(message, nullptr, bytes.get());
}

}  // namespace

GPtr<SoupMessage> makeMessage(const HttpRequest& hop) {
  const GUriPtr uri = httpUri(hop.url);
  if (!uri) return nullptr;
  auto message = GPtr<SoupMessage>::adopt(soup_message_new_from_uri(hop.method.c_str(), uri.get()));
  constexpr auto flags =
      static_cast<SoupMessageFlags>(SOUP_MESSAGE_NO_REDIRECT | SOUP_MESSAGE_COLLECT_METRICS);
  soup_message_set_flags(message.get(), flags);
  setBody(message.get(), hop.body);
  SoupMessageHeaders* const sent = soup_message_get_request_headers(message.get());
  for (const auto& header : hop.headers) {
    soup_message_headers_append(sent, header.name.c_str(), header.value.c_str());
  }
  return message;
}

HttpResponse responseHead(SoupMessage* message, const Url& url) {
  HttpResponse response;
  response.url = url;
  response.status = static_cast<int>(soup_message_get_status(message));
  SoupMessageHeadersIter iterator;
  soup_message_headers_iter_init(&iterator, soup_message_get_response_headers(message));
  const char* name = nullptr;
  const char* value = nullptr;
  while (soup_message_headers_iter_next(&iterator, &name, &value) != FALSE) {
    response.headers.push_back({textOf(name), textOf(value)});
  }
  if (const auto* type = response.header("Content-Type")) response.mimeType = mimeTypeOf(*type);
  return response;
}

std::optional<std::uint64_t> announcedLength(SoupMessage* message) {
  const bool hasNoBody = soup_message_get_method(message) == SOUP_METHOD_HEAD ||
                         soup_message_get_status(message) == SOUP_STATUS_NO_CONTENT ||
                         soup_message_get_status(message) == SOUP_STATUS_NOT_MODIFIED;
  SoupMessageHeaders* const headers = soup_message_get_response_headers(message);
  if (hasNoBody || soup_message_headers_get_encoding(headers) != SOUP_ENCODING_CONTENT_LENGTH) {
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(soup_message_headers_get_content_length(headers));
}

bool isCutOff(SoupMessage* message) {
  const auto announced = announcedLength(message);
  // HTTP/2 has a check of its own.
  if (!announced || soup_message_get_http_version(message) == SOUP_HTTP_2_0) return false;
  SoupMessageMetrics* const metrics = soup_message_get_metrics(message);
  return soup_message_metrics_get_response_body_bytes_received(metrics) < *announced;
}

}  // namespace tavo::gtk
