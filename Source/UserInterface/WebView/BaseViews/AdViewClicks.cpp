#include "UserInterface/WebView/BaseViews/AdViewClicks.h"

#include "Scene/Window.h"

namespace tavo {

AdViewClicks::AdViewClicks(const std::shared_ptr<Environment>& environment, XAdView& view,
                           MraidPresentation& presentation)
    : AdViewPart{view},
      presentation_{presentation},
      actions_{ClickActions::create(environment, *this)} {}

ViewController* AdViewClicks::windowRootViewController() {
  const Window* const window = view().window();
  return window == nullptr ? nullptr : window->rootViewController().get();
}

void AdViewClicks::appBrowserClosed() {
  view().setHidden(false);
  tell(&Told::xAdViewWillCloseInAppBrowser);
}

bool AdViewClicks::shouldHandleClickToAction(ClickToAction action,
                                             const ClickToActionParameters& parameters) {
  return view()
      .delegate.ask(&Told::xAdViewShouldHandleClickToAction, view(), action, parameters)
      .value_or(true);
}

void AdViewClicks::reportErrorMessage(std::string_view message, std::string_view action) {
  presentation_.reportError(message, action);
}

}  // namespace tavo
