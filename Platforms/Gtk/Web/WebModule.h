#pragma once

#include <memory>

#include <tavo/Inspection.h>
#include <tavo/Limits.h>

#include "Gtk/Web/CookieSource.h"
#include "Services/Log.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"

namespace tavo::gtk {

// What the web module is given when it starts; none of it is null but the inspection, which may be.
// The module carries its own copy of the platform's code, and no runtime to look things up in.
struct WebModuleServices {
  std::shared_ptr<RunLoop> runLoop;
  std::shared_ptr<Log> log;
  std::shared_ptr<CookieSource> cookies;
  std::shared_ptr<Inspection> inspection{};
  Limits limits;
};

// The one function that the module exports. Returns a factory that the caller owns, or null when
// the engine cannot run here; the reason is in the log. Called once, on the main thread, with the
// toolkit set up.
using CreateWebViewFactory = WebViewFactory* (*)(const WebModuleServices& services);
inline constexpr const char* createWebViewFactoryName = "tavo_create_web_view_factory";

}  // namespace tavo::gtk
