#include "Gtk/Web/CommandChannel.h"

#include <cstring>
#include <utility>

#include "Gtk/GPtr.h"
#include "Gtk/Guarded.h"

namespace tavo::gtk {
namespace {

constexpr const char* channelName = "mraid";
constexpr std::size_t longestCommand = std::size_t{4} << 20U;

}  // namespace

CommandChannel::CommandChannel(WebKitUserContentManager* content, std::function<void()> said,
                               std::function<void(const Url&)> command)
    : content_{content}, said_{std::move(said)}, command_{std::move(command)} {
  connections_.connect(content_, "script-message-received::mraid",
                       fenced<&CommandChannel::onMessage>, this);
}

void CommandChannel::open() {
  webkit_user_content_manager_register_script_message_handler(content_, channelName, nullptr);
}

void CommandChannel::close() {
  webkit_user_content_manager_unregister_script_message_handler(content_, channelName, nullptr);
}

void CommandChannel::onMessage(WebKitUserContentManager* /*manager*/, JSCValue* message,
                               CommandChannel* self) {
  const auto command = self->command_;  // which may end this channel
  self->said_();
  if (jsc_value_is_string(message) == FALSE) return;
  const GText text{jsc_value_to_string(message)};
  if (!text || std::strlen(text.get()) > longestCommand) return;
  const Url url = Url::fromText(text.get());
  if (url.scheme() == "mraid") command(url);
}

}  // namespace tavo::gtk
