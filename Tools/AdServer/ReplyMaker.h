#pragma once

#include <string>
#include <string_view>

#include "AdServer/CampaignFolder.h"
#include "AdServer/Reply.h"
#include "AdServer/RequestRecord.h"
#include "AdServer/Route.h"

namespace tavo::adserver {

// Decides what each route is answered with. Knows files and the record, nothing of connections.
class ReplyMaker {
 public:
  // The record is the server's own and outlives this.
  ReplyMaker(CampaignFolder folder, std::string server, RequestRecord& record);

  // `method` is the HTTP method in capitals.
  [[nodiscard]] Reply replyTo(std::string_view method, const Route& route) const;

 private:
  [[nodiscard]] Reply reply(const AdRequest& request) const;
  [[nodiscard]] Reply reply(const AssetRequest& request) const;
  [[nodiscard]] Reply reply(const TrackingPing& ping) const;
  [[nodiscard]] Reply reply(const LandingPage& page) const;
  [[nodiscard]] Reply reply(const EmptyPicture& picture) const;
  [[nodiscard]] Reply reply(const RecordPage& page) const;
  [[nodiscard]] Reply reply(const CampaignList& list) const;
  [[nodiscard]] Reply reply(const RefusedPath& path) const;
  [[nodiscard]] Reply reply(const UnknownPath& path) const;

  [[nodiscard]] Reply answerOf(const Campaign& campaign) const;

  CampaignFolder folder_;
  std::string server_;
  RequestRecord& record_;
};

}  // namespace tavo::adserver
