#include "AdPlayer/MraidChecklist/RunMraidChecklist.h"

#include <gtkmm.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>

#include <tavo/Runtime.h>
#include <tavo/gtk/GtkPlatform.h>

#include "AdPlayer/MraidChecklist/MraidChecklist.h"
#include "AdPlayer/MraidChecklist/MraidResult.h"

namespace tavo::adplayer {

namespace {

int print(const MraidChecklist::Results& results) {
  for (const auto& point : results) {
    std::printf("%s  %-40s %s\n", point.isMet ? "met    " : "not met", point.name.c_str(),
                point.sentence.c_str());
    if (!point.isMet && !point.found.empty())
      std::printf("         found: %s\n", point.found.c_str());
  }
  const auto met =
      std::count_if(results.begin(), results.end(), [](const auto& point) { return point.isMet; });
  std::printf("%zd of %zu points met.\n", met, results.size());
  return static_cast<std::size_t>(met) == results.size() ? 0 : 1;
}

}  // namespace

int runMraidChecklist(const MraidChecklistOptions& options) {
  const std::string id = "com.corvanetavo.adplayer";
  const auto application = Gtk::Application::create(id, Gio::Application::Flags::NON_UNIQUE);
  std::unique_ptr<Runtime> runtime;
  std::unique_ptr<MraidChecklist> checklist;
  const std::string& pictures =
      options.resultFolder.empty() ? options.pictureFolder : options.resultFolder;
  int status = 2;
  application->signal_activate().connect([&] {
    application->hold();
    try {
      if (!pictures.empty()) std::filesystem::create_directories(pictures);
      runtime = std::make_unique<Runtime>(
          gtk::makePlatform({.applicationId = id, .assumeReachable = true}));
      checklist = std::make_unique<MraidChecklist>(MraidChecklist::Settings{
          .stage = {.standards = options.standards, .pictureFolder = pictures},
          .creatives = options.creatives,
          .only = options.only});
      checklist->onNote = [](const std::string& note) {
        std::fprintf(stderr, "%s\n", note.c_str());
      };
      const auto& loop = runtime->platform().runLoop;
      checklist->start([&, loop, start = loop->now()](const auto& results) {
        status = print(results);
        const bool isWritten =
            options.resultFolder.empty() ||
            write(resultOf(results, options, loop->now() - start), options.resultFolder);
        if (!isWritten) status = 2;
        application->quit();
      });
    } catch (const std::exception& trouble) {
      std::fprintf(stderr, "The checklist cannot be played: %s\n", trouble.what());
      application->quit();
    }
  });
  application->run();
  checklist.reset();
  runtime.reset();
  return status;
}

}  // namespace tavo::adplayer
