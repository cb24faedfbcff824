#pragma once

#include <webkit/webkit.h>

#include <functional>

#include <tavo/Url.h>

#include "Gtk/SignalConnections.h"

namespace tavo::gtk {

// The second way of a creative's commands to the library, by script messages: for pages whose own
// content policy forbids the hidden frames that usually carry them. Main thread only.
class CommandChannel {
 public:
  // `said` hears that the page has sent anything at all, `command` each command (mraid:...).
  CommandChannel(WebKitUserContentManager* content, std::function<void()> said,
                 std::function<void(const Url&)> command);

  // While it is open, pages that start have the channel.
  void open();
  void close();

 private:
  static void onMessage(WebKitUserContentManager*, JSCValue* message, CommandChannel* self);

  WebKitUserContentManager* content_;
  std::function<void()> said_;
  std::function<void(const Url&)> command_;
  SignalConnections connections_;
};

}  // namespace tavo::gtk
