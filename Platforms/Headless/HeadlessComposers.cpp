#include "Headless/HeadlessComposers.h"

namespace tavo::headless {

std::shared_ptr<ViewController> HeadlessComposers::makeSheet() {
  auto sheet = std::make_shared<ViewController>();
  lastSheet_ = sheet;
  return sheet;
}

std::shared_ptr<ViewController> HeadlessComposers::messageComposer(
    const MessageDraft& draft, std::function<void(MessageComposeResult)> finished) {
  messages.push_back(draft);
  messageFinished = std::move(finished);
  return makeSheet();
}

std::shared_ptr<ViewController> HeadlessComposers::mailComposer(
    const MailDraft& draft, std::function<void(MailComposeResult)> finished) {
  mails.push_back(draft);
  mailFinished = std::move(finished);
  return makeSheet();
}

std::shared_ptr<ViewController> HeadlessComposers::eventEditor(
    const CalendarEvent& event,
    std::function<void(EventEditAction, const CalendarEvent&)> finished) {
  events.push_back(event);
  eventFinished = std::move(finished);
  return makeSheet();
}

std::shared_ptr<ViewController> HeadlessComposers::storeSheet(const StoreProduct& product,
                                                              std::function<void()> finished) {
  products.push_back(product);
  storeFinished = std::move(finished);
  return makeSheet();
}

}  // namespace tavo::headless
