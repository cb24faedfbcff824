#include <cstdio>
#include <memory>

#include "AdPlayer/Commands/Command.h"
#include "AdPlayer/Commands/PlayOptions.h"
#include "AdPlayer/Window/PlayerWindow.h"

namespace tavo::adplayer {

namespace {

struct WindowOptions {
  Surroundings surroundings;
  PlayerWindowOptions window;
  std::string network;
};

int openWindow(const WindowOptions& options) {
  if (gtk_init_check() == FALSE) {
    std::fprintf(stderr,
                 "adplayer: There is no display for a window; without one, use adplayer run.\n");
    return wrongCall;
  }
  const auto application =
      Gtk::Application::create("com.corvanetavo.adplayer", Gio::Application::Flags::NON_UNIQUE);
  std::unique_ptr<Stage> stage;
  std::unique_ptr<PlayerWindow> window;
  application->signal_activate().connect([&] {
    if (window) return window->present();
    stage = std::make_unique<Stage>(StageOptions{.adNetwork = options.network});
    window = std::make_unique<PlayerWindow>(*stage, options.window);
    application->add_window(*window);
    window->present();
  });
  const int status = application->run();
  window.reset();
  stage.reset();
  return status;
}

}  // namespace

void addWindowCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen) {
  const auto options = std::make_shared<WindowOptions>();
  options->surroundings = surroundings;
  options->window.campaigns = surroundings.campaigns;
  options->window.film = surroundings.film;
  options->network = surroundings.network;
  auto* const command =
      program.add_subcommand("window", "Open the window (also without a command)");
  addSources(*command, options->window.source);
  addSources(program, options->window.source);
  command->add_option("--campaigns", options->window.campaigns, "Folder of the campaigns listed");
  command->add_option("--network", options->network, "Library of the ad network for mediated ads");
  command->add_option("--film", options->window.film, "The host's own film behind a pre-roll");
  command->add_flag("--dark", options->window.dark, "Begin dark");
  command->footer("Example:\n  adplayer window banner.html");
  chosen = [options] { return openWindow(*options); };
  command->callback([options, &chosen] { chosen = [options] { return openWindow(*options); }; });
}

}  // namespace tavo::adplayer
