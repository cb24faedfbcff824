#include "AdServer/Forwarder.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "AdServer/CampaignFolder.h"
#include "AdServer/JsonText.h"
#include "Gtk/Guarded.h"

namespace tavo::adserver {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostBytes = std::size_t{64} * 1024 * 1024;
constexpr std::size_t pieceBytes = std::size_t{256} * 1024;
constexpr guint timeoutSeconds = 30;

// Of one connection only, or written anew on the way back.
bool staysBehind(std::string_view name) {
  constexpr const char* names[] = {"connection",
                                   "keep-alive",
                                   "proxy-authenticate",
                                   "proxy-connection",
                                   "te",
                                   "trailer",
                                   "transfer-encoding",
                                   "upgrade",
                                   "host",
                                   "content-length",
                                   "content-type",
                                   "content-encoding",
                                   "accept-encoding",
                                   "date",
                                   "server",
                                   "strict-transport-security"};
  return std::any_of(std::begin(names), std::end(names), [name](const char* one) {
    return g_ascii_strncasecmp(one, name.data(), name.size()) == 0 &&
           std::string_view{one}.size() == name.size();
  });
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

// A cookie for another host, or for https alone, would not come back here.
std::string ownCookie(std::string_view cookie) {
  std::string kept;
  while (!cookie.empty()) {
    const auto end = std::min(cookie.find(';'), cookie.size());
    std::string part{cookie.substr(0, end)};
    cookie.remove_prefix(std::min(end + 1, cookie.size()));
    const gtk::GText trimmed{g_ascii_strdown(g_strstrip(part.data()), -1)};
    const std::string_view word{trimmed.get()};
    if (word.starts_with("domain") || word == "secure" || word.starts_with("samesite=none"))
      continue;
    kept += (kept.empty() ? "" : "; ") + std::string{part.c_str()};
  }
  return kept;
}

bool isText(std::string_view contentType) {
  for (const char* kind : {"text/", "json", "xml", "javascript"}) {
    if (contentType.find(kind) != contentType.npos) return true;
  }
  return false;
}

std::string endingOf(std::string_view contentType) {
  constexpr std::pair<std::string_view, const char*> endings[] = {
      {"json", ".json"}, {"html", ".html"},     {"xml", ".xml"},        {"javascript", ".js"},
      {"css", ".css"},   {"image/png", ".png"}, {"image/jpeg", ".jpg"}, {"image/gif", ".gif"},
      {"svg", ".svg"},   {"video/mp4", ".mp4"}, {"text/", ".txt"}};
  for (const auto& [kind, ending] : endings) {
    if (contentType.find(kind) != contentType.npos) return ending;
  }
  return ".bin";
}

std::string campaignJson(const std::string& asked, const Reply& reply, const std::string& file) {
  std::string json = "{\n  \"title\": " + jsonString("Recorded: " + asked) +
                     ",\n  \"description\": \"An answer of a real server, as it was received.\"" +
                     ",\n  \"path\": " + jsonString(asked) +
                     ",\n  \"status\": " + std::to_string(reply.delivery.status) +
                     ",\n  \"contentType\": " + jsonString(reply.delivery.contentType) +
                     ",\n  \"answerFile\": " + jsonString(file) + ",\n  \"headers\": {";
  std::map<std::string, std::string> lines;
  for (const auto& [name, value] : reply.delivery.headers) {
    auto& list = lines[name];
    list += (list.empty() ? "" : ", ") + jsonString(value);
  }
  bool first = true;
  for (const auto& [name, values] : lines) {
    json += (first ? "\n    " : ",\n    ") + jsonString(name) + ": [" + values + "]";
    first = false;
  }
  return json + "\n  }\n}\n";
}

std::string visibleName(std::string name) {
  std::replace_if(
      name.begin(), name.end(),
      [](char c) { return !g_ascii_isalnum(c) && c != '-' && c != '_' && c != '.'; }, '-');
  name.erase(0, std::min(name.find_first_not_of('.'), name.size()));
  return name.empty() ? "answer" : name.substr(0, 100);
}

}  // namespace

struct Forwarder::Exchange {
  Forwarder* owner = nullptr;
  gtk::GPtr<GCancellable> end;
  std::string asked;
  std::string name;
  std::function<void(Reply)> then;
  gtk::GPtr<SoupMessage> message;
  gtk::GPtr<GInputStream> stream{};
  std::string body{};
};

Forwarder::Forwarder(const std::string& target, fs::path into, std::string ownBaseUrl)
    : target_{target}, into_{std::move(into)}, own_{std::move(ownBaseUrl)} {
  while (target_.ends_with('/')) target_.pop_back();
  const gtk::GUriPtr uri{g_uri_parse(target_.c_str(), G_URI_FLAGS_NONE, nullptr)};
  const std::string scheme = uri ? g_uri_get_scheme(uri.get()) : "";
  const char* const host = uri ? g_uri_get_host(uri.get()) : nullptr;
  if ((scheme != "http" && scheme != "https") || host == nullptr || *host == '\0') {
    throw std::runtime_error{"--forward wants an address such as http://ads.example.com, not \"" +
                             target + "\"."};
  }
  const int port = g_uri_get_port(uri.get());
  targetHost_ = host + (port < 0 ? std::string{} : ":" + std::to_string(port));
  std::error_code error;
  fs::create_directories(into_, error);
  if (error) {
    throw std::runtime_error{"Cannot make the folder \"" + into_.string() +
                             "\" for recordings: " + error.message() + "."};
  }
  session_ = gtk::GPtr<SoupSession>::adopt(soup_session_new());
  soup_session_set_timeout(session_.get(), timeoutSeconds);
  end_ = gtk::GPtr<GCancellable>::adopt(g_cancellable_new());
}

Forwarder::~Forwarder() {
  g_cancellable_cancel(end_.get());
  soup_session_abort(session_.get());
}

void Forwarder::ask(SoupServerMessage* message, const std::string& name,
                    std::function<void(Reply)> then) {
  GUri* const uri = soup_server_message_get_uri(message);
  const char* const query = g_uri_get_query(uri);
  auto exchange = std::make_unique<Exchange>();
  exchange->owner = this;
  exchange->end = end_;
  exchange->asked =
      g_uri_get_path(uri) + (query == nullptr ? std::string{} : std::string{"?"} + query);
  exchange->name = visibleName(name);
  exchange->then = std::move(then);
  exchange->message = gtk::GPtr<SoupMessage>::adopt(soup_message_new(
      soup_server_message_get_method(message), (target_ + exchange->asked).c_str()));
  if (!exchange->message) return failed(*exchange, "the address cannot be asked for");
  soup_message_add_flags(exchange->message.get(), SOUP_MESSAGE_NO_REDIRECT);
  soup_message_headers_foreach(
      soup_server_message_get_request_headers(message),
      [](const char* header, const char* value, gpointer into) {
        if (!staysBehind(header)) {
          soup_message_headers_append(static_cast<SoupMessageHeaders*>(into), header, value);
        }
      },
      soup_message_get_request_headers(exchange->message.get()));
  auto* const sent = exchange.release();
  soup_session_send_async(
      session_.get(), sent->message.get(), G_PRIORITY_DEFAULT, end_.get(),
      [](GObject* session, GAsyncResult* result, gpointer data) {
        gtk::guarded([&] {
          std::unique_ptr<Exchange> one{static_cast<Exchange*>(data)};
          gtk::GFailure failure;
          one->stream = gtk::GPtr<GInputStream>::adopt(
              soup_session_send_finish(SOUP_SESSION(session), result, failure.out()));
          if (g_cancellable_is_cancelled(one->end.get())) return;
          if (!one->stream) return one->owner->failed(*one, failure.message());
          auto* const owner = one->owner;
          owner->readOn(*one.release());
        });
      },
      sent);
}

// Owns the exchange through the callbacks.
void Forwarder::readOn(Exchange& exchange) {
  g_input_stream_read_bytes_async(
      exchange.stream.get(), pieceBytes, G_PRIORITY_DEFAULT, end_.get(),
      [](GObject* stream, GAsyncResult* result, gpointer data) {
        gtk::guarded([&] {
          std::unique_ptr<Exchange> one{static_cast<Exchange*>(data)};
          gtk::GFailure failure;
          const gtk::GBytesPtr bytes{
              g_input_stream_read_bytes_finish(G_INPUT_STREAM(stream), result, failure.out())};
          if (g_cancellable_is_cancelled(one->end.get())) return;
          if (!bytes) return one->owner->failed(*one, failure.message());
          gsize size = 0;
          const auto* const piece = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
          if (size == 0) return one->owner->received(*one);
          if (one->body.size() + size > mostBytes) {
            return one->owner->failed(*one, "the answer is longer than 64 MB");
          }
          one->body.append(piece, size);
          auto* const owner = one->owner;
          owner->readOn(*one.release());
        });
      },
      &exchange);
}

void Forwarder::failed(Exchange& exchange, const std::string& why) {
  Reply reply;
  reply.delivery.status = 502;
  reply.problem = target_ + ": " + why;
  reply.body = reply.problem + '\n';
  exchange.then(std::move(reply));
}

std::string Forwarder::withOwnAddress(std::string text, const std::string& own) const {
  for (const char* scheme : {"http", "https"}) {
    replaceAll(text, std::string{scheme} + "://" + targetHost_, own);
    std::string escaped = own;
    replaceAll(escaped, "/", "\\/");
    replaceAll(text, std::string{scheme} + ":\\/\\/" + targetHost_, escaped);
  }
  return text;
}

void Forwarder::received(Exchange& exchange) {
  Reply reply;
  reply.delivery.status = soup_message_get_status(exchange.message.get());
  auto* const headers = soup_message_get_response_headers(exchange.message.get());
  const char* const type = soup_message_headers_get_one(headers, "Content-Type");
  reply.delivery.contentType = type == nullptr ? "application/octet-stream" : type;
  soup_message_headers_foreach(
      headers,
      [](const char* name, const char* value, gpointer into) {
        if (staysBehind(name)) return;
        const bool isCookie = g_ascii_strcasecmp(name, "Set-Cookie") == 0;
        static_cast<Headers*>(into)->push_back({name, isCookie ? ownCookie(value) : value});
      },
      &reply.delivery.headers);
  reply.body = std::move(exchange.body);
  record(exchange, reply);
  if (isText(reply.delivery.contentType)) reply.body = withOwnAddress(std::move(reply.body), own_);
  for (auto& header : reply.delivery.headers) header.value = withOwnAddress(header.value, own_);
  exchange.then(std::move(reply));
}

// The same answer to the same question is written once; another answer gets a folder of its own.
void Forwarder::record(const Exchange& exchange, const Reply& reply) {
  const auto hash = std::hash<std::string>{}(reply.body + std::to_string(reply.delivery.status));
  const auto [known, isNew] = recorded_.try_emplace(exchange.asked, hash);
  if (!isNew && std::exchange(known->second, hash) == hash) return;
  const auto folder = freeFolder(exchange.name);
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  Reply neutral = reply;
  for (auto& header : neutral.delivery.headers) {
    header.value = withOwnAddress(header.value, "${server}");
  }
  const bool text = isText(reply.delivery.contentType);
  const auto file = "answer" + endingOf(reply.delivery.contentType);
  std::ofstream{folder / file, std::ios::binary}
      << (text ? withOwnAddress(reply.body, "${server}") : reply.body);
  std::ofstream{folder / "campaign.json"} << campaignJson(exchange.asked, neutral, file);
}

fs::path Forwarder::freeFolder(const std::string& name) const {
  std::error_code ignored;
  auto folder = into_ / name;
  for (int number = 2; fs::exists(folder, ignored) && number < 10'000; ++number) {
    folder = into_ / (name + "-" + std::to_string(number));
  }
  return folder;
}

}  // namespace tavo::adserver
