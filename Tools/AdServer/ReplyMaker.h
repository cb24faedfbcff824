#pragma once

#include <string>
#include <string_view>

#include "AdServer/CampaignFolder.h"
#include "AdServer/Reply.h"
#include "AdServer/RequestRecord.h"
#include "AdServer/Route.h"

namespace tavo::adserver {

// What of a request decides about its answer.
struct Question {
  std::string method{};  // in capitals
  std::string path{};    // escapes kept
  std::string query{};   // escapes kept, without the "?"
};

// Decides what each route is answered with. Knows files and the record, nothing of connections.
class ReplyMaker {
 public:
  // The record is the server's own and outlives this.
  ReplyMaker(CampaignFolder folder, std::string server, RequestRecord& record);

  [[nodiscard]] Reply replyTo(const Question& question, const Route& route) const;

  // Whether only the server behind this one, if there is one, can know the answer.
  [[nodiscard]] bool isForAnother(const Question& question, const Route& route) const;

 private:
  [[nodiscard]] Reply reply(const AdRequest& request, const Question& question) const;
  [[nodiscard]] Reply reply(const AssetRequest& request, const Question& question) const;
  [[nodiscard]] Reply reply(const TrackingPing& ping, const Question& question) const;
  [[nodiscard]] Reply reply(const LandingPage& page, const Question& question) const;
  [[nodiscard]] Reply reply(const EmptyPicture& picture, const Question& question) const;
  [[nodiscard]] Reply reply(const LivePage& page, const Question& question) const;
  [[nodiscard]] Reply reply(const EventStream& stream, const Question& question) const;
  [[nodiscard]] Reply reply(const RecordPage& page, const Question& question) const;
  [[nodiscard]] Reply reply(const CampaignList& list, const Question& question) const;
  [[nodiscard]] Reply reply(const RefusedPath& path, const Question& question) const;
  [[nodiscard]] Reply reply(const UnknownPath& path, const Question& question) const;

  [[nodiscard]] Reply answerOf(const Campaign& campaign, const Question& question) const;
  [[nodiscard]] Reply recordedOr(const Question& question, Reply otherwise) const;
  [[nodiscard]] Reply delivered(Reply reply, const std::string& campaign,
                                const Question& question) const;

  CampaignFolder folder_;
  std::string server_;
  RequestRecord& record_;
};

}  // namespace tavo::adserver
