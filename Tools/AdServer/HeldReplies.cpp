#include "AdServer/HeldReplies.h"

namespace tavo::adserver {

void endConnection(SoupServerMessage* message) {
  if (auto* socket = soup_server_message_get_socket(message)) {
    g_socket_shutdown(socket, TRUE, TRUE, nullptr);
  }
}

void HeldReplies::endSource(GSource* timer) {
  g_source_destroy(timer);
  g_source_unref(timer);
}

HeldReplies::~HeldReplies() {
  for (const auto& held : held_) {
    endConnection(held.message.get());
  }
}

HeldReplies::Held& HeldReplies::hold(SoupServerMessage* message) {
  soup_server_message_pause(message);
  return held_.emplace_back(Held{this, gtk::GPtr<SoupServerMessage>::share(message), nullptr});
}

void HeldReplies::holdForGood(SoupServerMessage* message) { hold(message); }

void HeldReplies::holdFor(std::chrono::milliseconds delay, SoupServerMessage* message) {
  Held& held = hold(message);
  held.timer.reset(g_timeout_source_new(static_cast<guint>(delay.count())));
  g_source_set_callback(
      held.timer.get(),
      [](gpointer data) -> gboolean {
        const auto* due = static_cast<const Held*>(data);
        due->owner->release(*due);
        return G_SOURCE_REMOVE;
      },
      &held, nullptr);
  g_source_attach(held.timer.get(), g_main_context_get_thread_default());
}

void HeldReplies::release(const Held& held) {
  soup_server_message_unpause(held.message.get());
  held_.remove_if([&held](const Held& candidate) { return &candidate == &held; });
}

}  // namespace tavo::adserver
