#include "TlsFront.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace tavo::benchmarks {

namespace {

std::string newFolder() {
  gchar* made = g_dir_make_tmp("tavo-front-XXXXXX", nullptr);
  const std::string folder = made == nullptr ? "" : made;
  g_free(made);
  return folder;
}

guint16 freePort() {
  GSocketListener* listener = g_socket_listener_new();
  const guint16 port = g_socket_listener_add_any_inet_port(listener, nullptr, nullptr);
  g_object_unref(listener);
  return port;
}

bool isListening(int port) {
  GSocketClient* client = g_socket_client_new();
  GSocketConnection* connection = g_socket_client_connect_to_host(
      client, "127.0.0.1", static_cast<guint16>(port), nullptr, nullptr);
  g_object_unref(client);
  if (connection == nullptr) return false;
  g_object_unref(connection);
  return true;
}

bool comesUp(int port) {
  constexpr int tries = 500;
  for (int i = 0; i < tries && port != 0; ++i) {
    if (isListening(port)) return true;
    g_usleep(10'000);
  }
  return false;
}

std::string address(int port) { return "https://127.0.0.1:" + std::to_string(port); }

}  // namespace

TlsFront::TlsFront(const PingServer& server) : folder_{newFolder()} {
  makeCertificate();
  portTwo_ = start(server, "h2");
  portOne_ = start(server, "http/1.1");
  isRunning_ = comesUp(portTwo_) && comesUp(portOne_);
}

TlsFront::~TlsFront() {
  for (GSubprocess* process : processes_) {
    g_subprocess_force_exit(process);
    g_subprocess_wait(process, nullptr, nullptr);
    g_object_unref(process);
  }
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string TlsFront::httpTwo() const { return address(portTwo_); }
std::string TlsFront::httpOne() const { return address(portOne_); }

void TlsFront::makeCertificate() const {
  const std::string command =
      "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 "
      "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 -keyout " +
      file("key") + " -out " + file("certificate");
  gchar* said = nullptr;
  g_spawn_command_line_sync(command.c_str(), nullptr, &said, nullptr, nullptr);
  g_free(said);
  GTlsDatabase* trusted = g_tls_file_database_new(file("certificate").c_str(), nullptr);
  if (trusted == nullptr) return;
  g_tls_backend_set_default_database(g_tls_backend_get_default(), trusted);
  g_object_unref(trusted);
}

int TlsFront::start(const PingServer& server, const std::string& protocol) {
  const int port = freePort();
  const std::string front = "--frontend=127.0.0.1," + std::to_string(port);
  const std::string back = "--backend=127.0.0.1," + std::to_string(server.port());
  const std::string protocols = "--npn-list=" + protocol;
  const std::string streams = "--frontend-http2-max-concurrent-streams=" + std::to_string(granted);
  const std::string errors = "--errorlog-file=" + file("log");
  // Without the settings of this machine, and without a process that restarts it.
  GSubprocess* process =
      g_subprocess_new(G_SUBPROCESS_FLAGS_STDERR_SILENCE, nullptr, "nghttpx", "--conf=/dev/null",
                       "--single-process", "--no-ocsp", "--accesslog-file=/dev/null",
                       errors.c_str(), front.c_str(), back.c_str(), protocols.c_str(),
                       streams.c_str(), file("key").c_str(), file("certificate").c_str(), nullptr);
  if (process == nullptr) return 0;
  processes_.push_back(process);
  return port;
}

}  // namespace tavo::benchmarks
