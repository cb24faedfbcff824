// The sample ad server as a program: serves a folder of campaigns until it is interrupted.

#include <glib-unix.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string>

#include "AdServer/AdServer.h"
#include "Gtk/GPtr.h"

namespace {

using tavo::adserver::AdServer;
using tavo::adserver::RecordedRequest;

struct Options {
  std::uint16_t port = 0;
  std::string campaigns = TAVO_SAMPLE_CAMPAIGNS;
  std::string recordFile;
};

void describe(CLI::App& program, Options& options) {
  program.add_option("--port", options.port, "Port to listen on; 0 takes any free one")
      ->capture_default_str();
  program.add_option("--campaigns", options.campaigns, "Folder with one folder per campaign")
      ->check(CLI::ExistingDirectory)
      ->capture_default_str();
  program.add_option("--record", options.recordFile,
                     "File that gets one line of JSON for each request");
}

// "  12    3.408 s  ad        200  image-banner Bottom1  /Halvern/..."
void printLine(const RecordedRequest& request, double seconds) {
  const auto url = request.path + (request.query.empty() ? "" : "?" + request.query);
  const auto status = request.status == 0 ? "---" : std::to_string(request.status);
  std::cout << std::setw(4) << request.sequence << std::setw(9) << std::fixed
            << std::setprecision(3) << seconds << " s  " << std::left << std::setw(8)
            << nameOf(request.kind) << ' ' << status << "  " << request.campaign
            << (request.detail.empty() ? "" : " ") << request.detail << "  " << std::right
            << request.method << ' ' << url << std::endl;
}

void serveUntilInterrupted() {
  const tavo::gtk::GOwned<GMainLoop, &g_main_loop_unref> loop{g_main_loop_new(nullptr, FALSE)};
  const auto quit = [](gpointer quitLoop) -> gboolean {
    g_main_loop_quit(static_cast<GMainLoop*>(quitLoop));
    return G_SOURCE_CONTINUE;
  };
  g_unix_signal_add(SIGINT, quit, loop.get());
  g_unix_signal_add(SIGTERM, quit, loop.get());
  g_main_loop_run(loop.get());
}

void serve(const Options& options) {
  std::ofstream recordFile;
  if (!options.recordFile.empty()) {
    recordFile.open(options.recordFile, std::ios::trunc);
    if (!recordFile) {
      throw std::runtime_error{"Cannot write " + options.recordFile};
    }
  }
  AdServer server{options.campaigns, options.port};
  const auto start = g_get_monotonic_time();
  server.record().setListener([&recordFile, start](const RecordedRequest& request) {
    printLine(request, static_cast<double>(request.monotonicTime - start) / G_USEC_PER_SEC);
    if (recordFile.is_open()) {
      recordFile << request.toJson() << std::endl;  // flushed, so that nothing is lost at the end
    }
  });
  std::cout << server.baseUrl() << std::endl;
  serveUntilInterrupted();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program{"A sample ad server on the loopback interface."};
  Options options;
  describe(program, options);
  CLI11_PARSE(program, argc, argv);
  try {
    serve(options);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << std::endl;
    return 1;
  }
  return 0;
}
