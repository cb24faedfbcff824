#include "AdServer/ReplyMaker.h"

#include <glib.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "AdServer/CampaignReader.h"
#include "AdServer/JsonText.h"
#include "AdServer/LivePage.h"
#include "AdServer/NearestNames.h"
#include "AdServer/Placeholders.h"
#include "AdServer/PlainReplies.h"
#include "Gtk/GPtr.h"

namespace tavo::adserver {

namespace {

// Pages and documents link to the server, whose port is known only now. Scripts are left alone:
// template literals look the same.
bool hasPlaceholders(std::string_view file) {
  return file.ends_with(".html") || file.ends_with(".xml");
}

// A mistake in a campaign goes to whoever asked, who may be looking at a player and not at this.
Reply mistake(const Campaign& campaign, const std::string& what) {
  Reply reply = plainReply(500, "Campaign \"" + campaign.name + "\": " + what);
  reply.problem = what;
  return reply;
}

constexpr std::string_view hopName = "adserver-hop=";

// The query without its hop, and how many redirects led here.
std::pair<std::string, int> withoutHop(const std::string& query) {
  const auto at = query.find(hopName);
  if (at == query.npos) return {query, 0};
  const auto end = std::min(query.find('&', at), query.size());
  const int hop = std::atoi(query.substr(at + hopName.size(), end - at - hopName.size()).c_str());
  std::string rest = query.substr(0, at) + query.substr(std::min(end + 1, query.size()));
  if (rest.ends_with('&')) rest.pop_back();
  return {std::move(rest), std::max(hop, 0)};
}

// Sends the client to the next hop, with a cookie to carry.
Reply redirect(const std::string& server, const Question& question) {
  const auto [query, hop] = withoutHop(question.query);
  const std::string next = std::string{hopName} + std::to_string(hop + 1);
  Reply reply = plainReply(302, "Hop " + std::to_string(hop + 1) + ".");
  reply.delivery.headers = {
      {"Location", server + question.path + '?' + (query.empty() ? "" : query + '&') + next},
      {"Set-Cookie", "adserver-hop=" + std::to_string(hop + 1) + "; Path=/"}};
  return reply;
}

}  // namespace

ReplyMaker::ReplyMaker(CampaignFolder folder, std::string server, RequestRecord& record)
    : folder_{std::move(folder)}, server_{std::move(server)}, record_{record} {}

Reply ReplyMaker::replyTo(const Question& question, const Route& route) const {
  if (question.method == "DELETE" && std::holds_alternative<RecordPage>(route)) {
    record_.clear();
    return plainReply(204, "");
  }
  if (question.method != "GET" && question.method != "HEAD") {
    return plainReply(405, "This server answers GET and HEAD.");
  }
  return std::visit([&](const auto& wanted) { return reply(wanted, question); }, route);
}

bool ReplyMaker::isForAnother(const Question& question, const Route& route) const {
  return !isOwnPage(route) && (question.method == "GET" || question.method == "HEAD");
}

Reply ReplyMaker::reply(const AdRequest& request, const Question& question) const {
  if (const auto campaign = folder_.campaign(request.campaign)) {
    return campaign->problem.empty() ? answerOf(*campaign, question)
                                     : mistake(*campaign, campaign->problem);
  }
  const auto nearest = nearestName(request.campaign, folder_.names());
  Reply missing =
      plainReply(404, "There is no campaign \"" + request.campaign + "\"" +
                          (nearest.empty() ? "." : "; did you mean \"" + nearest + "\"?"));
  missing.problem = missing.body.substr(0, missing.body.size() - 1);
  return recordedOr(question, std::move(missing));
}

Reply ReplyMaker::answerOf(const Campaign& campaign, const Question& question) const {
  std::string missing;
  auto body = folder_.answer(campaign, server_, &missing);
  if (!body) {
    return mistake(campaign, "the campaign has no file \"" + campaign.answerFile +
                                 "\", which answerFile names");
  }
  return delivered({.body = std::move(*body), .delivery = campaign.delivery, .problem = missing},
                   campaign.name, question);
}

// What the delivery says beside the body: hops before it, and headers that name the server.
Reply ReplyMaker::delivered(Reply reply, const std::string& campaign,
                            const Question& question) const {
  const int hops = reply.delivery.redirects;
  const int hop = withoutHop(question.query).second;
  if (hops == Delivery::endless || hop < hops) return redirect(server_, question);
  for (auto& header : reply.delivery.headers) {
    header.value = fillServerAndCampaign(header.value, server_, campaign);
  }
  return reply;
}

Reply ReplyMaker::recordedOr(const Question& question, Reply otherwise) const {
  const auto asked = question.query.empty() ? question.path : question.path + '?' + question.query;
  const auto recorded = folder_.recordedFor(asked);
  return recorded ? answerOf(*recorded, question) : std::move(otherwise);
}

Reply ReplyMaker::reply(const AssetRequest& request, const Question& question) const {
  const auto campaign = folder_.campaign(request.campaign).value_or(Campaign{});
  const auto odd = campaign.files.find(request.file);
  Reply asset{.delivery = odd == campaign.files.end() ? Delivery{} : odd->second};
  auto bytes = folder_.file(request.campaign, request.file);
  // A file that is to fail need not be there.
  if (!bytes && asset.delivery.status < 400) {
    return recordedOr(question,
                      plainReply(404, "The campaign has no file \"" + request.file + "\"."));
  }
  const int hop = withoutHop(question.query).second;
  asset.body = bytes.value_or("");
  if (hasPlaceholders(request.file)) {
    asset.body = fillServerAndCampaign(asset.body, server_, request.campaign, hop);
  }
  if (asset.delivery.contentType.empty()) asset.delivery.contentType = contentTypeOf(request.file);
  return delivered(std::move(asset), request.campaign, question);
}

Reply ReplyMaker::reply(const TrackingPing& ping, const Question& question) const {
  Reply answer = pixelReply();
  const auto campaign = folder_.campaign(ping.campaign);
  if (!campaign) return answer;
  const auto odd = campaign->files.find("track/" + ping.event);
  if (odd == campaign->files.end()) return answer;
  const auto contentType = answer.delivery.contentType;
  answer.delivery = odd->second;
  if (answer.delivery.contentType.empty()) answer.delivery.contentType = contentType;
  return delivered(std::move(answer), ping.campaign, question);
}

Reply ReplyMaker::reply(const LandingPage& page, const Question&) const {
  const auto campaign = folder_.campaign(page.campaign);
  return landingReply(campaign ? campaign->title : page.campaign);
}

Reply ReplyMaker::reply(const EmptyPicture&, const Question&) const { return pixelReply(); }

Reply ReplyMaker::reply(const LivePage&, const Question&) const {
  Reply page = madeReply("text/html; charset=utf-8", std::string{livePage()});
  // What it shows came from strangers; nothing but its own script may run, and nobody frames it.
  page.delivery.headers = {
      {"Content-Security-Policy",
       "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; "
       "connect-src 'self'; img-src data:; frame-ancestors 'none'"},
      {"Cache-Control", "no-store"}};
  return page;
}

// Only a client that cannot take a stream comes here.
Reply ReplyMaker::reply(const EventStream&, const Question&) const {
  return plainReply(503, "Too many pages listen already.");
}

Reply ReplyMaker::reply(const RecordPage&, const Question&) const {
  return madeReply("application/json", record_.toJson());
}

Reply ReplyMaker::reply(const CampaignList&, const Question&) const {
  std::string json = "[";
  for (const auto& name : folder_.names()) {
    const auto campaign = folder_.campaign(name).value_or(Campaign{});
    json += json.size() > 1 ? ",\n" : "\n";
    json += "{\"name\":" + jsonString(name) + ",\"title\":" + jsonString(campaign.title) +
            ",\"description\":" + jsonString(campaign.description) +
            ",\"placement\":" + jsonString(nameOf(campaign.placement)) +
            ",\"problem\":" + jsonString(campaign.problem) + '}';
  }
  return madeReply("application/json", json + "\n]\n");
}

Reply ReplyMaker::reply(const RefusedPath&, const Question&) const {
  return plainReply(403, "This path leads out of the campaigns and is refused.");
}

Reply ReplyMaker::reply(const UnknownPath&, const Question& question) const {
  return recordedOr(question,
                    plainReply(404,
                               "Nothing is here. The server answers\n"
                               "  <any path>/sdk|sdkl/<campaign>/@<position>\n"
                               "  /assets/<campaign>/<file>   /track/<campaign>/<event>\n"
                               "  /clicked/<campaign>   /   /events   /campaigns   /record"));
}

}  // namespace tavo::adserver
