#include "AdServer/RequestRecord.h"

#include <glib.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "AdServer/JsonText.h"

namespace tavo::adserver {

namespace {

std::string headersToJson(const Headers& headers) {
  std::string json = "[";
  for (const auto& [name, value] : headers) {
    json += json.size() > 1 ? "," : "";
    json += "{\"name\":" + jsonString(name) + ",\"value\":" + jsonString(value) + '}';
  }
  return json + ']';
}

}  // namespace

const char* nameOf(RequestKind kind) {
  switch (kind) {
    case RequestKind::Ad:
      return "ad";
    case RequestKind::Asset:
      return "asset";
    case RequestKind::Tracking:
      return "tracking";
    case RequestKind::Click:
      return "click";
    case RequestKind::Other:
      break;
  }
  return "other";
}

std::string RecordedRequest::header(std::string_view name) const {
  const auto found = std::find_if(headers.begin(), headers.end(), [name](const Header& header) {
    return header.name.size() == name.size() &&
           g_ascii_strncasecmp(header.name.data(), name.data(), name.size()) == 0;
  });
  return found == headers.end() ? std::string{} : found->value;
}

std::string RecordedRequest::toJson() const {
  return "{\"sequence\":" + std::to_string(sequence) +
         ",\"monotonicTime\":" + std::to_string(monotonicTime) +
         ",\"kind\":" + jsonString(nameOf(kind)) + ",\"campaign\":" + jsonString(campaign) +
         ",\"detail\":" + jsonString(detail) + ",\"method\":" + jsonString(method) +
         ",\"path\":" + jsonString(path) + ",\"query\":" + jsonString(query) +
         ",\"status\":" + std::to_string(status) + ",\"problem\":" + jsonString(problem) +
         ",\"headers\":" + headersToJson(headers) + '}';
}

RecordedRequest RequestRecord::add(RecordedRequest request) {
  Listener listener;
  {
    const std::lock_guard lock{mutex_};
    request.sequence = ++lastSequence_;
    request.monotonicTime = g_get_monotonic_time();
    requests_.push_back(request);
    if (requests_.size() > mostRequests) requests_.pop_front();
    listener = listener_;
  }
  // Outside the lock, so that a listener may read the record.
  if (listener) {
    listener(request);
  }
  return request;
}

std::vector<RecordedRequest> RequestRecord::requests() const {
  const std::lock_guard lock{mutex_};
  return {requests_.begin(), requests_.end()};
}

std::vector<RecordedRequest> RequestRecord::requests(RequestKind kind) const {
  const std::lock_guard lock{mutex_};
  std::vector<RecordedRequest> ofKind;
  std::copy_if(requests_.begin(), requests_.end(), std::back_inserter(ofKind),
               [kind](const RecordedRequest& request) { return request.kind == kind; });
  return ofKind;
}

void RequestRecord::clear() {
  const std::lock_guard lock{mutex_};
  requests_.clear();
  lastSequence_ = 0;
}

void RequestRecord::setListener(Listener listener) {
  const std::lock_guard lock{mutex_};
  listener_ = std::move(listener);
}

std::string RequestRecord::toJson() const {
  std::string json = "[";
  for (const auto& request : requests()) {
    json += (json.size() > 1 ? ",\n" : "\n") + request.toJson();
  }
  return json + "\n]\n";
}

}  // namespace tavo::adserver
