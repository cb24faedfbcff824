#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "AdServer/Header.h"

namespace tavo::adserver {

// What a recorded request was for.
enum class RequestKind { Ad, Asset, Tracking, Click, Other };

[[nodiscard]] const char* nameOf(RequestKind kind);  // "ad", "asset", "tracking", "click", "other"

struct RecordedRequest {
  std::uint64_t sequence = 0;      // 1 for the first request, also after the record was cleared
  std::int64_t monotonicTime = 0;  // microseconds of the system's monotonic clock
  RequestKind kind = RequestKind::Other;
  std::string campaign;  // empty where the path names none
  std::string detail;    // the position, the file or the event, after the kind
  std::string method;
  std::string path;     // escapes kept; "." and ".." already resolved by the HTTP library
  std::string query;    // escapes kept, without the "?"
  Headers headers;      // as they came, in order
  unsigned status = 0;  // the status it is answered with; 0 where it gets no answer
  std::string problem;  // what is wrong with the campaign that answers it, or empty

  // The value of the first header of this name, in whatever case, or an empty text.
  [[nodiscard]] std::string header(std::string_view name) const;

  [[nodiscard]] std::string toJson() const;
};

// What the server was asked, in order: the last `mostRequests`. All operations may be called on any
// thread.
class RequestRecord {
 public:
  using Listener = std::function<void(const RecordedRequest&)>;
  static constexpr std::size_t mostRequests = 10'000;

  // Completes the request with its sequence number and time, keeps it, tells the listener and
  // returns it.
  RecordedRequest add(RecordedRequest request);

  [[nodiscard]] std::vector<RecordedRequest> requests() const;

  // The requests of one kind, in order.
  [[nodiscard]] std::vector<RecordedRequest> requests(RequestKind kind) const;

  void clear();

  // Hears of each request after it was recorded, on the server's thread. Set it before the first
  // request; an empty function ends it.
  void setListener(Listener listener);

  // All requests as a JSON array.
  [[nodiscard]] std::string toJson() const;

 private:
  mutable std::mutex mutex_;
  std::uint64_t lastSequence_ = 0;
  std::deque<RecordedRequest> requests_;
  Listener listener_;
};

}  // namespace tavo::adserver
