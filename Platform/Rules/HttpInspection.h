#pragma once

#include <memory>
#include <optional>

#include <tavo/Date.h>
#include <tavo/Error.h>
#include <tavo/Inspection.h>

#include "Services/HttpClient.h"

namespace tavo {

// Tells the inspection of one exchange, hop by hop; every transport has one for each exchange.
// Main thread only, but for construction. Does nothing while nobody looks.
class HttpInspection {
 public:
  HttpInspection(std::shared_ptr<Inspection> inspection, const HttpRequest& request);

  // A hop leaves, with the headers that it has on the wire.
  void sent(const HttpRequest& hop, Seconds now);
  // The hop was answered by a redirect, which is followed.
  void redirected(const HttpResponse& head, Seconds now);
  // The exchange is over.
  void ended(const std::optional<HttpResponse>& response, const std::optional<Error>& error,
             Seconds now);

 private:
  [[nodiscard]] bool isOn() const { return inspection_ && inspection_->isOn(); }
  void answered(const HttpResponse* response, const std::optional<Error>& error, Seconds now);

  std::shared_ptr<Inspection> inspection_;
  const void* slot_;
  const bool tracks_;
  int hop_ = 0;
  std::string method_;
  std::string url_;  // of the hop under way
  Seconds sentAt_{};
};

}  // namespace tavo
