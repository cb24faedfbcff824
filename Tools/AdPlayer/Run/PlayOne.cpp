#include "AdPlayer/Run/PlayOne.h"

#include <fstream>
#include <memory>
#include <utility>

#include "AdPlayer/Run/Result.h"
#include "AdPlayer/Run/ScenarioRun.h"
#include "AdPlayer/Source/PlayServer.h"
#include "AdPlayer/Stage/Style.h"

namespace tavo::adplayer {

namespace {

// One creative from the window to the result. Written line by line: what a crash leaves counts.
class OnePlay {
 public:
  OnePlay(const PlayOneOptions& options, Gtk::Application& application)
      : options_{options},
        application_{application},
        stage_{{.adNetwork = options.adNetwork, .dataFolder = (options.folder / ".data").string()}},
        phone_{{"", options.screenWidth, options.screenHeight}},
        session_{window_, phone_, stage_.log()},
        lines_{options.folder / "events.jsonl"} {
    listener_ = stage_.log().listen([this](const PlayEvent& event) {
      lines_ << event.toJson() << '\n' << std::flush;
    });
    installStyle();
    Inspection::sharedInstance().pageProbe = options_.pageProbe;
    if (options_.givesAddress) Inspection::sharedInstance().pageAddress = addressOfPages;
    window_.set_decorated(false);
    window_.set_child(phone_);
    phone_.set_halign(Gtk::Align::START);
    phone_.set_valign(Gtk::Align::START);
    application_.add_window(window_);
    window_.present();
    lendFilm();
    open(options_.source, options_.opening, stage_.platform().http,
         [this](const Opened& opened) { take(opened); });
  }

 private:
  void lendFilm() {
    if (options_.film.empty()) return;
    const std::filesystem::path film{options_.film};
    films_ = std::make_unique<PlayServer>();
    films_->setFolder(film.parent_path());
    session_.film = Url::fromText(films_->baseUrl() + "/files/" + film.filename().string());
  }

  void take(const Opened& opened) {
    if (const auto* refused = std::get_if<Refusal>(&opened)) return refuse(refused->why);
    playable_ = std::get<Playable>(opened);
    auto steps = stepsToTake();
    if (const auto* mistake = std::get_if<ScenarioMistake>(&steps)) return refuse(mistake->text);
    session_.load(playable_.plan, std::make_shared<XAdSlotConfiguration>(options_.settings));
    run_ =
        std::make_unique<ScenarioRun>(ScenarioRun::Place{stage_, phone_, session_, options_.folder},
                                      std::get<std::vector<Step>>(std::move(steps)),
                                      [this](const Result& result) { finish(result); });
    run_->start();
  }

  void refuse(const std::string& why) {
    Result result;
    result.verdict = Verdict::refused;
    result.why = why;
    finish(std::move(result));
  }

  [[nodiscard]] std::variant<std::vector<Step>, ScenarioMistake> stepsToTake() const {
    if (!options_.steps.empty()) return options_.steps;
    const PlayPlan& plan = playable_.plan;
    if (plan.scenario.empty()) return defaultScenario("loaded");
    return readScenario(plan.scenario, plan.scenarioPlace);
  }

  void finish(Result result) {
    result.name = options_.name;
    result.source = options_.source;
    result.title = playable_.plan.title;
    if (result.verdict != Verdict::refused) {
      result.placement = adserver::nameOf(playable_.plan.placement);
    }
    const auto& events = stage_.log().events();
    result.seconds = events.empty() ? 0 : events.back().time.count();
    std::ofstream{options_.folder / "result.json"} << result.toJson();
    Glib::signal_idle().connect_once([this] {
      session_.end();
      window_.close();
      application_.quit();
    });
  }

  const PlayOneOptions& options_;
  Gtk::Application& application_;
  Stage stage_;
  Gtk::Window window_;
  Phone phone_;
  Session session_;
  std::ofstream lines_;
  std::shared_ptr<void> listener_;
  std::unique_ptr<PlayServer> films_;
  Playable playable_;
  std::unique_ptr<ScenarioRun> run_;
};

}  // namespace

int playOne(const PlayOneOptions& options) {
  std::filesystem::create_directories(options.folder);
  const auto application =
      Gtk::Application::create("com.corvanetavo.adplayer", Gio::Application::Flags::NON_UNIQUE);
  std::unique_ptr<OnePlay> play;
  application->signal_activate().connect(
      [&] { play = std::make_unique<OnePlay>(options, *application.get()); });
  const int status = application->run();
  play.reset();
  std::error_code failure;
  std::filesystem::remove_all(options.folder / ".data", failure);
  return status;
}

}  // namespace tavo::adplayer
