#include "AdPlayer/EventReport.h"

#include <cstdio>

namespace tavo::adplayer {

void EventReport::begin(const std::string& campaign) {
  campaign_ = campaign;
  started_ = std::chrono::steady_clock::now();
}

void EventReport::add(const std::string& kind, const std::string& text) {
  const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now() - started_);
  events_.push_back({time, campaign_, kind, text});
  if (listener_) listener_(events_.back());
}

std::string EventReport::lineOf(const PlayerEvent& event) {
  char start[96];
  std::snprintf(start, sizeof start, "%-14s %6lld ms  %-10s ", event.campaign.c_str(),
                static_cast<long long>(event.time.count()), event.kind.c_str());
  return start + event.text;
}

std::string EventReport::toText() const {
  std::string text;
  std::string campaign;
  for (const auto& event : events_) {
    if (!text.empty() && event.campaign != campaign) text += '\n';
    campaign = event.campaign;
    text += lineOf(event) + '\n';
  }
  return text;
}

}  // namespace tavo::adplayer
