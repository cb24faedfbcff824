#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Services/Composers.h"

namespace tavo::headless {

// Sheets without a face: each draft is kept, and a test plays the user by calling the report of the
// newest sheet of a kind.
class HeadlessComposers : public Composers {
 public:
  [[nodiscard]] bool canSendText() const override { return textCanBeSent; }
  [[nodiscard]] std::shared_ptr<ViewController> messageComposer(
      const MessageDraft& draft, std::function<void(MessageComposeResult)> finished) override;
  [[nodiscard]] std::shared_ptr<ViewController> mailComposer(
      const MailDraft& draft, std::function<void(MailComposeResult)> finished) override;
  [[nodiscard]] std::shared_ptr<ViewController> eventEditor(
      const CalendarEvent& event,
      std::function<void(EventEditAction, const CalendarEvent&)> finished) override;
  [[nodiscard]] std::shared_ptr<ViewController> storeSheet(const StoreProduct& product,
                                                           std::function<void()> finished) override;

  bool textCanBeSent = true;
  std::vector<MessageDraft> messages;
  std::vector<MailDraft> mails;
  std::vector<CalendarEvent> events;
  std::vector<StoreProduct> products;
  std::function<void(MessageComposeResult)> messageFinished;
  std::function<void(MailComposeResult)> mailFinished;
  std::function<void(EventEditAction, const CalendarEvent&)> eventFinished;
  std::function<void()> storeFinished;

  // The newest sheet of any kind, or null once nobody holds it.
  [[nodiscard]] std::shared_ptr<ViewController> lastSheet() const { return lastSheet_.lock(); }

 private:
  [[nodiscard]] std::shared_ptr<ViewController> makeSheet();

  std::weak_ptr<ViewController> lastSheet_;
};

}  // namespace tavo::headless
