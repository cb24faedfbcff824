#pragma once

#include <memory>

#include "Services/Application.h"
#include "Services/Composers.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"

namespace tavo::gtk {

// Sheets above the host's window. What the user has looked over goes, as a URI, to the application
// that the desktop has for it; that application sends it, or asks once more.
class GtkComposers : public Composers {
 public:
  GtkComposers(std::shared_ptr<Application> application, std::shared_ptr<WebViewFactory> webViews)
      : application_{std::move(application)}, webViews_{std::move(webViews)} {}

  [[nodiscard]] bool canSendText() const override;
  [[nodiscard]] std::shared_ptr<ViewController> messageComposer(
      const MessageDraft& draft, std::function<void(MessageComposeResult)> finished) override;
  [[nodiscard]] std::shared_ptr<ViewController> mailComposer(
      const MailDraft& draft, std::function<void(MailComposeResult)> finished) override;
  [[nodiscard]] std::shared_ptr<ViewController> eventEditor(
      const CalendarEvent& event,
      std::function<void(EventEditAction, const CalendarEvent&)> finished) override;
  [[nodiscard]] std::shared_ptr<ViewController> storeSheet(const StoreProduct& product,
                                                           std::function<void()> finished) override;

 private:
  std::shared_ptr<Application> application_;
  std::shared_ptr<WebViewFactory> webViews_;
};

}  // namespace tavo::gtk
