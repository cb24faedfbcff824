#include "Rules/HttpInspection.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>
#include <vector>

#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::array<std::string_view, 4> textTypes{"json", "xml", "javascript", "urlencoded"};

bool isText(std::string_view mimeType) {
  return mimeType.empty() || mimeType.starts_with("text/") ||
         std::any_of(textTypes.begin(), textTypes.end(),
                     [&](std::string_view type) { return contains(mimeType, type); });
}

// Pictures and films are told by their size: nobody reads them as text.
std::string shownBody(std::string_view body, std::string_view mimeType) {
  const bool isBinary = body.find('\0') != std::string_view::npos || !isText(mimeType);
  if (isBinary) return std::to_string(body.size()) + " bytes, not shown";
  return validUtf8(body.substr(0, Inspection::longestValue + 1));
}

std::string secondsText(Seconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%d.%03d", static_cast<int>(time.count()),
                static_cast<int>(time.count() * 1000) % 1000);
  return text;
}

}  // namespace

HttpInspection::HttpInspection(std::shared_ptr<Inspection> inspection, const HttpRequest& request)
    : inspection_{std::move(inspection)},
      slot_{request.slot},
      tracks_{request.traffic == TrafficClass::tracking} {}

void HttpInspection::sent(const HttpRequest& hop, Seconds now) {
  ++hop_;
  if (!isOn()) return;
  sentAt_ = now;
  method_ = hop.method;
  url_ = hop.url.text();
  std::vector<InspectionField> fields{{"url", url_},
                                      {"method", method_},
                                      {"hop", std::to_string(hop_)},
                                      {"traffic", tracks_ ? "tracking" : "content"}};
  for (const auto& header : hop.headers) fields.push_back({"> " + header.name, header.value});
  if (!hop.body.empty()) fields.push_back({"body", shownBody(hop.body, {})});
  inspection_->tell(InspectionKind::request, slot_, method_ + " " + url_, std::move(fields));
}

void HttpInspection::redirected(const HttpResponse& head, Seconds now) {
  answered(&head, std::nullopt, now);
}

void HttpInspection::ended(const std::optional<HttpResponse>& response,
                           const std::optional<Error>& error, Seconds now) {
  answered(response ? &*response : nullptr, error, now);
}

void HttpInspection::answered(const HttpResponse* response, const std::optional<Error>& error,
                              Seconds now) {
  if (!isOn() || url_.empty()) return;
  std::vector<InspectionField> fields{{"url", url_}, {"method", method_}};
  std::string text = method_ + " " + url_ + " -> ";
  if (response != nullptr) fields.push_back({"status", std::to_string(response->status)});
  if (error) {
    text += error->description;
    fields.push_back({"error", std::to_string(error->code) + " " + error->description});
  } else if (response != nullptr) {
    text += std::to_string(response->status);
  }
  fields.push_back({"seconds", secondsText(now - sentAt_)});
  fields.push_back({"traffic", tracks_ ? "tracking" : "content"});
  if (response != nullptr) {
    fields.push_back({"type", response->mimeType});
    fields.push_back({"bytes", std::to_string(response->body.size())});
    for (const auto& header : response->headers) {
      fields.push_back({"< " + header.name, header.value});
    }
    if (!response->body.empty()) {
      fields.push_back({"body", shownBody(response->body, response->mimeType)});
    }
  }
  inspection_->tell(InspectionKind::answer, slot_, std::move(text), std::move(fields));
}

}  // namespace tavo
