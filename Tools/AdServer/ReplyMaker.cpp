#include "AdServer/ReplyMaker.h"

#include <glib.h>

#include <utility>

#include "AdServer/JsonText.h"
#include "AdServer/Placeholders.h"
#include "Gtk/GPtr.h"

namespace tavo::adserver {

namespace {

std::string contentTypeOf(std::string_view file) {
  constexpr std::pair<std::string_view, const char*> types[] = {
      {".png", "image/png"},
      {".jpg", "image/jpeg"},
      {".jpeg", "image/jpeg"},
      {".gif", "image/gif"},
      {".svg", "image/svg+xml"},
      {".html", "text/html; charset=utf-8"},
      {".css", "text/css"},
      {".js", "text/javascript; charset=utf-8"},
      {".xml", "text/xml"},
      {".json", "application/json"},
      {".mp4", "video/mp4"},
      {".webm", "video/webm"},
      {".txt", "text/plain; charset=utf-8"},
  };
  for (const auto& [ending, type] : types) {
    if (file.ends_with(ending)) {
      return type;
    }
  }
  return "application/octet-stream";
}

// Pages and documents link to the server, whose port is known only now. Scripts are left alone:
// template literals look the same.
bool hasPlaceholders(std::string_view file) {
  return file.ends_with(".html") || file.ends_with(".xml");
}

Reply plainReply(unsigned status, std::string text) {
  return {.status = status, .body = std::move(text) + '\n'};
}

// One transparent pixel, which the `img` of a creative loads as gladly as a bare ping does.
Reply pixel() {
  constexpr std::string_view gif{
      "GIF89a\x01\x00\x01\x00\x80\x00\x00\x00\x00\x00\xff\xff\xff!\xf9\x04\x01\x00\x00\x00\x00,"
      "\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02"
      "D\x01\x00;",
      43};
  return {.contentType = "image/gif",
          .body = std::string{gif},
          .headers = {{"Cache-Control", "no-store"}}};
}

std::string landingPage(std::string_view title) {
  const gtk::GText safeTitle{g_markup_escape_text(title.data(), static_cast<gssize>(title.size()))};
  return std::string{
             "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
             "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>"} +
         safeTitle.get() +
         "</title>\n<style>\n"
         "body { margin: 0; min-height: 100vh; display: grid; place-content: center;\n"
         "       text-align: center; font: 16px/1.5 sans-serif; color: #2b1810;\n"
         "       background: linear-gradient(#fff7ea, #f1d9b0); }\n"
         "h1 { margin: 0; font-size: 26px; }\np { margin: 8px 24px; }\n"
         "</style>\n</head>\n<body>\n<h1>You clicked the ad</h1>\n<p>" +
         safeTitle.get() + "</p>\n</body>\n</html>\n";
}

}  // namespace

ReplyMaker::ReplyMaker(CampaignFolder folder, std::string server, RequestRecord& record)
    : folder_{std::move(folder)}, server_{std::move(server)}, record_{record} {}

Reply ReplyMaker::replyTo(std::string_view method, const Route& route) const {
  if (method == "DELETE" && std::holds_alternative<RecordPage>(route)) {
    record_.clear();
    return {.status = 204};
  }
  if (method != "GET" && method != "HEAD") {
    return plainReply(405, "This server answers GET and HEAD.");
  }
  return std::visit([this](const auto& wanted) { return reply(wanted); }, route);
}

Reply ReplyMaker::reply(const AdRequest& request) const {
  const auto campaign = folder_.campaign(request.campaign);
  if (!campaign) {
    return plainReply(404, "There is no campaign \"" + request.campaign + "\".");
  }
  return campaign->problem.empty() ? answerOf(*campaign) : plainReply(500, campaign->problem);
}

Reply ReplyMaker::answerOf(const Campaign& campaign) const {
  auto body = folder_.answer(campaign, server_);
  if (!body) {
    return plainReply(500, "The campaign has no file \"" + campaign.answerFile + "\".");
  }
  Reply answer{.status = campaign.status,
               .contentType = campaign.contentType,
               .body = std::move(*body),
               .headers = campaign.headers,
               .delay = campaign.delay,
               .behaviour = campaign.behaviour};
  for (auto& header : answer.headers) {
    header.value = fillServerAndCampaign(header.value, server_, campaign.name);
  }
  return answer;
}

Reply ReplyMaker::reply(const AssetRequest& request) const {
  auto bytes = folder_.file(request.campaign, request.file);
  if (!bytes) {
    return plainReply(404, "The campaign has no file \"" + request.file + "\".");
  }
  if (hasPlaceholders(request.file)) {
    bytes = fillServerAndCampaign(*bytes, server_, request.campaign);
  }
  return {.contentType = contentTypeOf(request.file), .body = std::move(*bytes)};
}

Reply ReplyMaker::reply(const TrackingPing&) const { return pixel(); }

Reply ReplyMaker::reply(const LandingPage& page) const {
  const auto campaign = folder_.campaign(page.campaign);
  return {.contentType = "text/html; charset=utf-8",
          .body = landingPage(campaign ? campaign->title : page.campaign)};
}

Reply ReplyMaker::reply(const EmptyPicture&) const { return pixel(); }

Reply ReplyMaker::reply(const RecordPage&) const {
  return {.contentType = "application/json", .body = record_.toJson()};
}

Reply ReplyMaker::reply(const CampaignList&) const {
  std::string json = "[";
  for (const auto& name : folder_.names()) {
    const auto campaign = folder_.campaign(name).value_or(Campaign{});
    json += json.size() > 1 ? ",\n" : "\n";
    json += "{\"name\":" + jsonString(name) + ",\"title\":" + jsonString(campaign.title) +
            ",\"description\":" + jsonString(campaign.description) + '}';
  }
  return {.contentType = "application/json", .body = json + "\n]\n"};
}

Reply ReplyMaker::reply(const RefusedPath&) const {
  return plainReply(403, "This path leads out of the campaigns and is refused.");
}

Reply ReplyMaker::reply(const UnknownPath&) const {
  return plainReply(404,
                    "Nothing is here. The server answers\n"
                    "  <any path>/sdk|sdkl/<campaign>/@<position>\n"
                    "  /assets/<campaign>/<file>   /track/<campaign>/<event>\n"
                    "  /clicked/<campaign>   /campaigns   /record");
}

}  // namespace tavo::adserver
