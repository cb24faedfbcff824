#include "Runtime/NotificationCenter.h"

namespace tavo {

namespace {
void dropEnded(std::vector<std::weak_ptr<const NotificationCenter::Handler>>& handlers) {
  std::erase_if(handlers, [](const auto& handler) { return handler.expired(); });
}
}  // namespace

Subscription NotificationCenter::subscribe(std::string_view name, Handler handler) {
  const auto token = std::make_shared<Handler>(std::move(handler));
  auto& handlers = handlers_[std::string{name}];
  // Ended ones are swept before the list would grow: many subscribe anew and nothing is ever
  // posted.
  if (handlers.size() == handlers.capacity()) dropEnded(handlers);
  handlers.push_back(token);
  return Subscription{token};
}

void NotificationCenter::post(const Notification& notification) {
  const auto entry = handlers_.find(notification.name);
  if (entry == handlers_.end()) return;
  dropEnded(entry->second);
  const auto current = entry->second;
  for (const auto& weak : current) {
    if (const auto handler = weak.lock()) (*handler)(notification);
  }
}

void NotificationCenter::post(std::string_view name) {
  post({.name = std::string{name}, .userInfo = {}});
}

}  // namespace tavo
