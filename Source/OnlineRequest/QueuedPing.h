#pragma once

#include <optional>
#include <utility>

#include <tavo/Url.h>

#include "Services/HttpClient.h"

namespace tavo {

// One tracking ping on its way through the queue, which tells it what becomes of it.
class QueuedPing {
 public:
  explicit QueuedPing(Url url) : url_{std::move(url)} {}
  virtual ~QueuedPing() = default;
  QueuedPing(const QueuedPing&) = delete;
  QueuedPing& operator=(const QueuedPing&) = delete;

  [[nodiscard]] const Url& url() const { return url_; }

  // Makes the request, when the ping's turn has come; none when it is not to leave any more. Main
  // thread.
  [[nodiscard]] virtual std::optional<HttpRequest> prepare() = 0;
  // The ping lost its place, or never got one: too many are waiting. Main thread.
  virtual void dropped() = 0;
  // The exchange is over. Background thread; not called once the queue is gone.
  virtual void answered(const HttpResult& result) = 0;
  // The same a moment later, with the time it took. Main thread; not called once the queue is gone.
  virtual void settled(const HttpResult& result, Seconds took) = 0;

 private:
  const Url url_;
};

}  // namespace tavo
