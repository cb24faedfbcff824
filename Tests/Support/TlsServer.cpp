#include "Support/TlsServer.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <array>
#include <string_view>

namespace tavo::test {

TlsServer::TlsServer()
    : service_{gtk::GPtr<GSocketService>::adopt(g_threaded_socket_service_new(8))} {
  const std::string file = makeCertificate(folder_);
  certificate_ = gtk::GPtr<GTlsCertificate>::adopt(
      g_tls_certificate_new_from_files((file + ".cert").c_str(), file.c_str(), nullptr));
  EXPECT_NE(certificate_.get(), nullptr);
  port_ = g_socket_listener_add_any_inet_port(G_SOCKET_LISTENER(service_.get()), nullptr, nullptr);
  EXPECT_NE(port_, 0U);
  g_signal_connect(service_.get(), "run", G_CALLBACK(onConnection), this);
}

TlsServer::~TlsServer() {
  g_socket_service_stop(service_.get());
  g_socket_listener_close(G_SOCKET_LISTENER(service_.get()));
}

std::string TlsServer::url(const std::string& path) const {
  return "https://127.0.0.1:" + std::to_string(port_) + path;
}

std::string makeCertificate(const TemporaryFolder& folder) {
  const std::string file = folder.path("server.pem");
  const std::string command =
      "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 "
      "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 -keyout " +
      file + " -out " + file + ".cert";
  int status = 1;
  g_spawn_command_line_sync(command.c_str(), nullptr, nullptr, &status, nullptr);
  EXPECT_EQ(status, 0) << "is openssl installed?";
  return file;
}

// On a thread of the service.
gboolean TlsServer::onConnection(GThreadedSocketService* /*service*/, GSocketConnection* connection,
                                 GObject* /*source*/, TlsServer* self) {
  ++self->connections_;
  const auto secure = gtk::GPtr<GIOStream>::adopt(
      g_tls_server_connection_new(G_IO_STREAM(connection), self->certificate_.get(), nullptr));
  std::array<char, 4096> request{};
  if (g_input_stream_read(g_io_stream_get_input_stream(secure.get()), request.data(),
                          request.size(), nullptr, nullptr) > 0) {
    ++self->requests_;
    constexpr std::string_view answer{
        "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nAccess-Control-Allow-Origin: *\r\n"
        "Content-Length: 4\r\nConnection: close\r\n\r\nread"};
    g_output_stream_write_all(g_io_stream_get_output_stream(secure.get()), answer.data(),
                              answer.size(), nullptr, nullptr, nullptr);
  }
  g_io_stream_close(secure.get(), nullptr, nullptr);
  return TRUE;
}

}  // namespace tavo::test
