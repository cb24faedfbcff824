#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/Url.h>
#include <tavo/ViewController.h>

#include "Values/CalendarEvent.h"

namespace tavo {

// A message or a mail as a creative drafts it. Nothing about the texts is known: they may be empty,
// very long, and hold any character.
struct MessageDraft {
  std::vector<std::string> recipients;
  std::string body;
  friend bool operator==(const MessageDraft&, const MessageDraft&) = default;
};

struct MailDraft {
  std::vector<std::string> recipients;
  std::string subject;
  std::string body;  // plain text
  friend bool operator==(const MailDraft&, const MailDraft&) = default;
};

// An application in the store, and the page that describes it.
struct StoreProduct {
  std::int64_t identifier = 0;
  Url page;
  friend bool operator==(const StoreProduct&, const StoreProduct&) = default;
};

enum class MessageComposeResult { cancelled = 0, sent = 1, failed = 2 };
enum class MailComposeResult { cancelled = 0, saved = 1, sent = 2, failed = 3 };
enum class EventEditAction { cancelled = 0, saved = 1, deleted = 2 };

// Makes the system's sheets in which the user looks over what a creative wants done, changes it,
// and goes on or not. Whoever asks for a sheet presents it, and may dismiss it once it reports; a
// sheet that is still there after its report leaves by itself. Nothing leaves the machine before
// the user has said so. A sheet reports once, on the main thread, never inside the call that made
// it; it may be dropped from inside the report. Main thread only.
class Composers {
 public:
  virtual ~Composers() = default;

  [[nodiscard]] virtual bool canSendText() const = 0;

  // None of these returns null.
  [[nodiscard]] virtual std::shared_ptr<ViewController> messageComposer(
      const MessageDraft& draft, std::function<void(MessageComposeResult)> finished) = 0;
  [[nodiscard]] virtual std::shared_ptr<ViewController> mailComposer(
      const MailDraft& draft, std::function<void(MailComposeResult)> finished) = 0;
  // Reports the event as the user left it; saving it is for the caller.
  [[nodiscard]] virtual std::shared_ptr<ViewController> eventEditor(
      const CalendarEvent& event,
      std::function<void(EventEditAction, const CalendarEvent&)> finished) = 0;
  [[nodiscard]] virtual std::shared_ptr<ViewController> storeSheet(
      const StoreProduct& product, std::function<void()> finished) = 0;
};

}  // namespace tavo
