// The sample ad server as a program: serves a folder of campaigns until it is interrupted.

#include <glib-unix.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string>

#include "AdServer/AdServer.h"
#include "Gtk/GPtr.h"
#include "InstalledFiles.h"

namespace {

using tavo::adserver::AdServer;
using tavo::adserver::CampaignFolder;
using tavo::adserver::RecordedRequest;

constexpr const char* examples = R"(
Examples:
  adserver                                    the sample campaigns, on any free port
  adserver --port 8080 --campaigns creatives  a folder of campaigns, .html, .xml and .json files
  adserver --port 8080 --record asked.jsonl   one line of JSON for each request
  adserver --forward http://ads.example.com --into recorded
                                              in front of a real server; what it answers becomes
                                              campaigns in "recorded"
  adserver --campaigns recorded               plays them again without it
  adserver --list                             what there is to play

Open the address that it prints in a browser to see campaigns and requests as they come.)";

struct Options {
  std::uint16_t port = 0;
  std::string campaigns = tavo::besideProgram(TAVO_SAMPLE_CAMPAIGNS);
  std::string recordFile;
  std::string forward;
  std::string into = "recorded";
  bool list = false;
};

void describe(CLI::App& program, Options& options) {
  program.add_option("--port", options.port, "Port to listen on; 0 takes any free one")
      ->capture_default_str();
  program
      .add_option("--campaigns", options.campaigns,
                  "Folder of campaigns: a folder or a .html, .xml, .vast or .json file each")
      ->capture_default_str();
  program.add_option("--record", options.recordFile,
                     "File that gets one line of JSON for each request");
  const auto* const forward =
      program.add_option("--forward", options.forward,
                         "Address of a real server to ask, whose answers are written down");
  program.add_option("--into", options.into, "Folder for what --forward writes down")
      ->needs(const_cast<CLI::Option*>(forward))
      ->capture_default_str();
  program.add_flag("--list", options.list, "Print the campaigns and end");
  program.set_version_flag("--version", TAVO_VERSION);
  program.footer(examples);
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
  if (!request.problem.empty()) std::cout << "      " << request.problem << std::endl;
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

void checkCampaigns(const Options& options) {
  if (std::filesystem::is_directory(options.campaigns)) return;
  throw std::runtime_error{"There is no folder \"" + options.campaigns +
                           "\": --campaigns wants one with a folder or a file for each campaign."};
}

void list(const Options& options) {
  const CampaignFolder folder{options.campaigns};
  for (const auto& name : folder.names()) {
    const auto campaign = folder.campaign(name);
    if (!campaign) continue;
    const auto& note = campaign->problem.empty() ? campaign->description : campaign->problem;
    std::cout << std::left << std::setw(26) << name << std::setw(13) << nameOf(campaign->placement)
              << note << '\n';
  }
}

void serve(const Options& options) {
  std::ofstream recordFile;
  if (!options.recordFile.empty()) {
    recordFile.open(options.recordFile, std::ios::trunc);
    if (!recordFile) {
      throw std::runtime_error{"Cannot write \"" + options.recordFile + "\"."};
    }
  }
  AdServer server{options.campaigns, options.port};
  if (!options.forward.empty()) server.forwardTo(options.forward, options.into);
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

int fail(const std::string& why) {
  std::cerr << "adserver: " << why << std::endl;
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program{"An ad server for trying out campaigns, on the loopback interface.", "adserver"};
  Options options;
  describe(program, options);
  try {
    program.parse(argc, argv);
    checkCampaigns(options);
    if (options.list) {
      list(options);
    } else {
      serve(options);
    }
  } catch (const CLI::ParseError& wanted) {
    if (wanted.get_exit_code() == 0) return program.exit(wanted);
    return fail(std::string{wanted.what()} + " (see --help)");
  } catch (const std::exception& failure) {
    return fail(failure.what());
  }
  return 0;
}
