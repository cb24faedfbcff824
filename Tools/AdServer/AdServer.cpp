#include "AdServer/AdServer.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "AdServer/IdleConnections.h"
#include "AdServer/LocalPort.h"
#include "AdServer/Reply.h"
#include "Gtk/Guarded.h"

namespace tavo::adserver {

namespace {

std::string textOf(const char* text) { return text == nullptr ? std::string{} : text; }

Headers headersOf(SoupMessageHeaders* headers) {
  Headers list;
  soup_message_headers_foreach(
      headers,
      [](const char* name, const char* value, gpointer into) {
        static_cast<Headers*>(into)->push_back({name, value});
      },
      &list);
  return list;
}

struct Subject {
  RequestKind kind = RequestKind::Other;
  std::string campaign;
  std::string detail;
};

Subject subjectOf(const AdRequest& ad) { return {RequestKind::Ad, ad.campaign, ad.position}; }
Subject subjectOf(const AssetRequest& asset) {
  return {RequestKind::Asset, asset.campaign, asset.file};
}
Subject subjectOf(const TrackingPing& ping) {
  return {RequestKind::Tracking, ping.campaign, ping.event};
}
Subject subjectOf(const LandingPage& page) { return {RequestKind::Click, page.campaign, {}}; }
template <typename Any>
Subject subjectOf(const Any&) {
  return {};
}

RecordedRequest recorded(SoupServerMessage* message, const Route& route, const Reply& reply) {
  GUri* const uri = soup_server_message_get_uri(message);
  Subject subject = std::visit([](const auto& wanted) { return subjectOf(wanted); }, route);
  RecordedRequest request;
  request.kind = subject.kind;
  request.campaign = std::move(subject.campaign);
  request.detail = std::move(subject.detail);
  request.method = soup_server_message_get_method(message);
  request.path = g_uri_get_path(uri);
  request.query = textOf(g_uri_get_query(uri));
  request.headers = headersOf(soup_server_message_get_request_headers(message));
  const auto behaviour = reply.delivery.behaviour;
  const bool answers = behaviour == Behaviour::Answer || behaviour == Behaviour::Cut;
  request.status = answers ? reply.delivery.status : 0;
  request.problem = reply.problem;
  return request;
}

// Whether the client means this machine: the pages show cookies and addresses of whole sessions.
bool asksThisMachine(SoupServerMessage* message, const std::string& baseUrl) {
  const char* const host =
      soup_message_headers_get_one(soup_server_message_get_request_headers(message), "Host");
  const std::string port = baseUrl.substr(baseUrl.rfind(':'));
  return host != nullptr && (host == "127.0.0.1" + port || host == "localhost" + port);
}

Question questionOf(SoupServerMessage* message) {
  GUri* const uri = soup_server_message_get_uri(message);
  return {soup_server_message_get_method(message), g_uri_get_path(uri),
          textOf(g_uri_get_query(uri))};
}

Reply refusal() {
  return {.body = "This page is for this machine only.\n",
          .delivery = {.status = 403, .contentType = "text/plain; charset=utf-8"}};
}

// What a forwarded answer is called as a campaign: the page, or the end of the path.
std::string nameFor(const Route& route, const std::string& path) {
  if (const auto* ad = std::get_if<AdRequest>(&route)) return ad->campaign;
  return path.substr(path.rfind('/') + 1);
}

// Bodies are of no use here. What comes of one is dropped piece by piece, and whoever announces
// much is answered at once, on a connection that ends: libsoup itself would read it all first.
void refuseBody(SoupServerMessage* message) {
  constexpr goffset mostBytes = goffset{64} * 1024;
  constexpr std::string_view refusal{
      "HTTP/1.1 405 Method Not Allowed\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"};
  soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
  auto* const headers = soup_server_message_get_request_headers(message);
  if (soup_message_headers_get_content_length(headers) <= mostBytes) return;
  const auto connection =
      gtk::GPtr<GIOStream>::adopt(soup_server_message_steal_connection(message));
  g_output_stream_write_all(g_io_stream_get_output_stream(connection.get()), refusal.data(),
                            refusal.size(), nullptr, nullptr, nullptr);
  g_io_stream_close(connection.get(), nullptr, nullptr);
}

}  // namespace

AdServer::AdServer(const std::filesystem::path& campaignFolder, std::uint16_t port)
    : server_{listeningServer(port)},
      baseUrl_{baseUrlOf(server_.get())},
      replies_{CampaignFolder{campaignFolder}, baseUrl_, record_} {
  soup_server_add_early_handler(
      server_.get(), nullptr,
      [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer) {
        gtk::guarded([&] { refuseBody(message); });
      },
      nullptr, nullptr);
  soup_server_add_handler(
      server_.get(), nullptr,
      [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer self) {
        gtk::guarded([&] { static_cast<AdServer*>(self)->handle(message); });
      },
      this, nullptr);
  closeWithItsClients(server_.get());
}

AdServer::~AdServer() { soup_server_disconnect(server_.get()); }

void AdServer::forwardTo(const std::string& target, const std::filesystem::path& into) {
  forwarder_ = std::make_unique<Forwarder>(target, into, baseUrl_);
}

void AdServer::handle(SoupServerMessage* message) {
  const Question question = questionOf(message);
  const Route route = routeOf(question.path);
  if (isOwnPage(route)) {
    if (!asksThisMachine(message, baseUrl_)) return sender_.send(refusal(), message);
    const bool streams = std::holds_alternative<EventStream>(route) && question.method == "GET";
    if (streams && live_.add(message)) return;
    return sender_.send(replies_.replyTo(question, route), message);
  }
  if (forwarder_ && replies_.isForAnother(question, route)) return forward(message, route);
  conclude(message, route, replies_.replyTo(question, route));
}

void AdServer::forward(SoupServerMessage* message, const Route& route) {
  soup_server_message_pause(message);
  forwarder_->ask(
      message, nameFor(route, g_uri_get_path(soup_server_message_get_uri(message))),
      [this, route, held = gtk::GPtr<SoupServerMessage>::share(message)](const Reply& reply) {
        conclude(held.get(), route, reply);
        soup_server_message_unpause(held.get());
      });
}

void AdServer::conclude(SoupServerMessage* message, const Route& route, const Reply& reply) {
  live_.tell(record_.add(recorded(message, route, reply)));
  sender_.send(reply, message);
}

}  // namespace tavo::adserver
