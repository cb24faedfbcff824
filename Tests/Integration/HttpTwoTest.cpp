// Pings to a server that speaks HTTP/2: one connection carries them all, as many at a time as the
// server grants.
#include <gio/gio.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <tavo/Runtime.h>
#include <tavo/TrackingLedger.h>

#include "Gtk/Http/GtkHttpClient.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessPlatform.h"
#include "OnlineRequest/PingQueue.h"
#include "OnlineRequest/XTrackingRequest.h"
#include "Runtime/Environment.h"
#include "Support/HostLoop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"
#include "Support/TlsServer.h"

namespace tavo::test {
namespace {

// A server of its own process, with a certificate that this process trusts from then on.
class HttpTwoServer {
 public:
  HttpTwoServer(int granted, const std::string& answer) {
    const std::string key = makeCertificate(folder_);
    const std::string certificate = key + ".cert";
    const auto trusted =
        gtk::GPtr<GTlsDatabase>::adopt(g_tls_file_database_new(certificate.c_str(), nullptr));
    g_tls_backend_set_default_database(g_tls_backend_get_default(), trusted.get());
    std::ofstream{folder_.path("pixel")} << answer;
    port_ = freePort();
    const std::string port = std::to_string(port_);
    const std::string streams = "--max-concurrent-streams=" + std::to_string(granted);
    const std::string files = "--htdocs=" + folder_.path("");
    const auto launcher = gtk::GPtr<GSubprocessLauncher>::adopt(
        g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_STDERR_MERGE));
    g_subprocess_launcher_set_stdout_file_path(launcher.get(), folder_.path("log").c_str());
    process_ = gtk::GPtr<GSubprocess>::adopt(g_subprocess_launcher_spawn(
        launcher.get(), nullptr, "nghttpd", "--verbose", streams.c_str(), files.c_str(),
        port.c_str(), key.c_str(), certificate.c_str(), nullptr));
    EXPECT_NE(process_.get(), nullptr) << "is nghttp2-server installed?";
    EXPECT_TRUE(runUntil([this] { return isListening(); }));
  }
  ~HttpTwoServer() { g_subprocess_force_exit(process_.get()); }
  HttpTwoServer(const HttpTwoServer&) = delete;
  HttpTwoServer& operator=(const HttpTwoServer&) = delete;

  // Ends the server and answers what it has said.
  [[nodiscard]] std::string stop() const {
    g_subprocess_send_signal(process_.get(), SIGTERM);
    g_subprocess_wait(process_.get(), nullptr, nullptr);
    std::ifstream log{folder_.path("log")};
    return {std::istreambuf_iterator<char>{log}, {}};
  }
  [[nodiscard]] std::string url() const {
    return "https://127.0.0.1:" + std::to_string(port_) + "/pixel";
  }

 private:
  static unsigned freePort() {
    const auto listener = gtk::GPtr<GSocketListener>::adopt(g_socket_listener_new());
    return g_socket_listener_add_any_inet_port(listener.get(), nullptr, nullptr);
  }
  [[nodiscard]] bool isListening() const {
    const auto client = gtk::GPtr<GSocketClient>::adopt(g_socket_client_new());
    const auto connection = gtk::GPtr<GSocketConnection>::adopt(g_socket_client_connect_to_host(
        client.get(), "127.0.0.1", static_cast<guint16>(port_), nullptr, nullptr));
    return connection.get() != nullptr;
  }

  TemporaryFolder folder_;
  unsigned port_ = 0;
  gtk::GPtr<GSubprocess> process_;
};

// The numbers of the connections over which something was asked for.
std::set<std::string> askedOver(const std::string& log) {
  std::set<std::string> connections;
  std::size_t at = 0;
  while ((at = log.find("recv HEADERS", at)) != std::string::npos) {
    const std::size_t id = log.rfind("[id=", at);
    connections.insert(log.substr(id, log.find(']', id) - id));
    ++at;
  }
  return connections;
}

std::size_t timesOf(const std::string& text, const std::string& piece) {
  std::size_t times = 0;
  for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++times;
  return times;
}

// Sends pings until all are answered; returns the most that were under way at a time.
int sendPings(const HttpTwoServer& server, std::size_t pings) {
  Limits limits;
  limits.queuedPings = limits.queuedPingsPerHost = pings;
  Platform platform = headless::HeadlessPlatform{limits}.platform();
  const auto runLoop = std::make_shared<gtk::GtkRunLoop>();
  platform.runLoop = runLoop;
  platform.http = std::make_shared<gtk::GtkHttpClient>(runLoop, platform.cookies, limits);
  const Runtime runtime{platform};
  auto& queue = runtime.environment()->shared<PingQueue>();
  for (std::size_t i = 0; i < pings; ++i) {
    XTrackingRequest::sendAsynchronousRequest(*runtime.environment(), Url::parse(server.url()),
                                              "ping", nullptr);
  }
  int most = 0;
  const auto& totals = TrackingLedger::sharedInstance().totals();
  EXPECT_TRUE(runUntil([&] {
    most = std::max(most, queue.underWay());
    return totals.answered + totals.failed == pings;
  }));
  EXPECT_EQ(totals.answered, pings);
  return most;
}

TEST(HttpTwoTest, OneConnectionCarriesAsManyAsTheServerGrants) {
  const HttpTwoServer server{20, "x"};
  EXPECT_GT(sendPings(server, 300), Limits{}.pingConnectionsPerHost);
  EXPECT_EQ(askedOver(server.stop()).size(), 1U);
}

// Servers take many of them for an attack, and end the connection with all that is under way.
TEST(HttpTwoTest, EmptyAnswersAreNotReset) {
  const HttpTwoServer server{20, ""};
  sendPings(server, 100);
  EXPECT_EQ(timesOf(server.stop(), "recv RST_STREAM"), 0U);
}

}  // namespace
}  // namespace tavo::test
