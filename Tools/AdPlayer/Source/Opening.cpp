#include "AdPlayer/Source/Opening.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "AdPlayer/Source/PlayServer.h"
#include "AdServer/AdServer.h"
#include "AdServer/CampaignFolder.h"
#include "AdServer/JsonText.h"
#include "AdServer/NearestNames.h"
#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

constexpr std::string_view scheme = "http://";
constexpr const char* scenarioFile = "scenario.txt";

// One line, whatever stands in a path.
std::string shown(const std::string& text) {
  std::string line = validUtf8(text.substr(0, 300));
  for (auto& letter : line) {
    if (static_cast<unsigned char>(letter) < ' ') letter = '?';
  }
  return line;
}

Refusal refusal(const std::string& text, const std::string& why) {
  return {shown(text) + " " + why + "."};
}

std::variant<std::string, Refusal> contentsOf(const std::string& path) {
  std::error_code failure;
  if (!std::filesystem::is_regular_file(path, failure)) return Refusal{"is no file"};
  const auto size = std::filesystem::file_size(path, failure);
  if (!failure && size > largestMaterial) {
    return Refusal{"is too large for an ad: " + std::to_string(size) +
                   " bytes; the library takes at most " + std::to_string(largestMaterial)};
  }
  std::ifstream file{path, std::ios::binary};
  if (!file) return Refusal{"cannot be read; look at its rights"};
  return std::string{std::istreambuf_iterator<char>{file}, {}};
}

// The answer of an ad server that brings `bytes`. `file` is where they come from.
std::string answerFor(const Material& material, const std::string& bytes, const std::string& file,
                      const std::string& server) {
  using adserver::jsonString;
  if (material.kind == MaterialKind::answer) return bytes;
  const char* type = material.kind == MaterialKind::vast ? "text/xml" : "text/html";
  if (material.kind == MaterialKind::picture) type = "image/png";
  std::string ad = "{\"Ad\": [{\"AdType\": \"" + std::string{type} + "\"";
  if (material.kind != MaterialKind::picture) ad += ", \"Text\": " + jsonString(bytes);
  if (material.kind != MaterialKind::vast) ad += ", \"FileUrl\": " + jsonString(file);
  ad += ", \"ImpUrl\": " + jsonString(server + "/track/impression");
  ad += ", \"ClkUrl\": " + jsonString(server + "/clicked");
  return ad + "}]}";
}

class Opener {
 public:
  Opener(std::string text, OpeningOptions options, std::shared_ptr<HttpClient> http,
         std::function<void(const Opened&)> done)
      : text_{std::move(text)},
        options_{std::move(options)},
        http_{std::move(http)},
        done_{std::move(done)} {}

  void operator()(const Refusal& refused) const { done_(refusal(text_, refused.why)); }

  void operator()(const FileSource& file) const {
    auto contents = contentsOf(file.path);
    if (const auto* refused = std::get_if<Refusal>(&contents)) return (*this)(*refused);
    const std::filesystem::path path{file.path};
    serve(std::get<std::string>(contents), path.parent_path(), path.filename().string());
  }

  void operator()(const UrlSource& source) const {
    HttpRequest request;
    request.url = Url::fromText(source.url);
    request.deadline = Seconds{30};
    request.maximumBodyBytes = largestMaterial;
    http_->send(std::move(request), [self = *this](const HttpResult& result) {
      if (result.error) return self(Refusal{"could not be fetched: " + result.error->description});
      if (!result.response || result.response->status >= 400) {
        return self(Refusal{"answered with status " +
                            std::to_string(result.response ? result.response->status : 0)});
      }
      self.serve(result.response->body, {}, {});
    });
  }

  void operator()(const ServerSource& server) const { finish(server.plan, nullptr); }

  void operator()(const CampaignSource& source) const {
    const adserver::CampaignFolder folder{options_.campaigns};
    const auto campaign = folder.campaign(source.name);
    if (!campaign) {
      return (*this)(Refusal{"is neither a file, a URL nor a campaign; the nearest campaigns are " +
                             adserver::nearestNames(source.name, folder.names())});
    }
    try {
      const auto server = std::make_shared<adserver::AdServer>(options_.campaigns);
      PlayPlan plan;
      plan.title = campaign->title;
      plan.domain = server->baseUrl().substr(scheme.size()) + "/play";
      plan.page = source.name;
      plan.placement = campaign->placement;
      plan.size = {static_cast<double>(campaign->width), static_cast<double>(campaign->height)};
      plan.position = plan.placement == Placement::interstitial ? "Full" : "Bottom1";
      plan.standards = campaign->standards;
      plan.scenario = folder.file(source.name, scenarioFile).value_or("");
      plan.scenarioPlace = options_.campaigns + "/" + source.name + "/" + scenarioFile;
      finish(plan, server);
    } catch (const std::runtime_error& failure) {
      done_(Refusal{failure.what()});
    }
  }

 private:
  void serve(const std::string& bytes, const std::filesystem::path& folder,
             const std::string& name) const {
    const auto recognised = recognise(bytes);
    if (const auto* refused = std::get_if<Refusal>(&recognised)) return (*this)(*refused);
    const auto& material = std::get<Material>(recognised);
    try {
      const auto server = std::make_shared<PlayServer>();
      std::string file = text_;
      if (!name.empty()) {
        server->setFolder(folder);
        file = server->baseUrl() + "/files/" + escapedForUrl(name);
      }
      server->setAnswer(answerFor(material, bytes, file, server->baseUrl()));
      PlayPlan plan;
      plan.title = name.empty() ? text_ : shown(name);
      plan.domain = server->baseUrl().substr(scheme.size()) + "/play";
      plan.page = "creative";
      plan.placement = material.placement;
      plan.size = material.size;
      plan.position = plan.placement == Placement::interstitial ? "Full" : "Top";
      finish(plan, server);
    } catch (const std::runtime_error& failure) {
      done_(Refusal{failure.what()});
    }
  }

  static std::string escapedForUrl(const std::string& name) {
    char* const escaped = g_uri_escape_string(name.c_str(), nullptr, FALSE);
    std::string text = escaped == nullptr ? "" : escaped;
    g_free(escaped);
    return text;
  }

  void finish(PlayPlan plan, std::shared_ptr<void> server) const {
    if (options_.placement) plan.placement = *options_.placement;
    if (options_.size) plan.size = *options_.size;
    done_(Playable{std::move(plan), std::move(server)});
  }

  std::string text_;
  OpeningOptions options_;
  std::shared_ptr<HttpClient> http_;
  std::function<void(const Opened&)> done_;
};

}  // namespace

void open(const std::string& text, const OpeningOptions& options, std::shared_ptr<HttpClient> http,
          const std::function<void(const Opened&)>& done) {
  std::visit(Opener{text, options, std::move(http), done}, sourceFrom(text, options.source));
}

std::vector<std::string> campaignNames(const std::string& folder) {
  return adserver::CampaignFolder{folder}.names();
}

}  // namespace tavo::adplayer
