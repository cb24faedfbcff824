#include "Runtime/NotificationCenter.h"

namespace tavo {

Subscription NotificationCenter::subscribe(std::string_view name, Handler handler) {
  const auto token = std::make_shared<Handler>(std::move(handler));
  handlers_[std::string{name}].push_back(token);
  return Subscription{token};
}

void NotificationCenter::post(const Notification& notification) {
  const auto entry = handlers_.find(notification.name);
  if (entry == handlers_.end()) return;
  std::erase_if(entry->second, [](const auto& handler) { return handler.expired(); });
  const auto current = entry->second;
  for (const auto& weak : current) {
    if (const auto handler = weak.lock()) (*handler)(notification);
  }
}

}  // namespace tavo
