#include "Gtk/Sheets/GtkComposers.h"

#include <optional>
#include <utility>

#include "Gtk/Sheets/ComposerUris.h"
#include "Gtk/Sheets/EventSheet.h"
#include "Gtk/Sheets/Sheet.h"
#include "Gtk/Sheets/StoreSheet.h"
#include "Values/Translation.h"

namespace tavo::gtk {

namespace {

constexpr std::size_t longestLine = 2'000;
constexpr std::size_t longestBody = 10'000;

std::string joined(const std::vector<std::string>& recipients) {
  std::string list;
  for (const auto& recipient : recipients) {
    if (list.size() > longestLine) break;
    list += (list.empty() ? "" : ", ") + recipient;
  }
  return list;
}

std::vector<std::string> splitList(const std::string& list) {
  std::vector<std::string> recipients;
  for (std::size_t start = 0; start <= list.size();) {
    const auto end = std::min(list.find(',', start), list.size());
    recipients.push_back(list.substr(start, end - start));
    start = end + 1;
  }
  return recipients;
}

// Whatever the user does first is the report; what follows it in the same turn is none.
template <typename Result>
std::function<void(Result)> once(std::function<void(Result)> finished) {
  return [waiting =
              std::make_shared<std::function<void(Result)>>(std::move(finished))](Result result) {
    if (const auto report = std::exchange(*waiting, {})) report(result);
  };
}

}  // namespace

bool GtkComposers::canSendText() const { return application_->canOpenUrl(Url::parse("sms:")); }

std::shared_ptr<ViewController> GtkComposers::messageComposer(
    const MessageDraft& draft, std::function<void(MessageComposeResult)> finished) {
  using enum MessageComposeResult;
  const auto report = once(std::move(finished));
  auto* form = Gtk::make_managed<SheetForm>(translated("New Message"));
  auto& to = form->addEntry(translated("To"),
                            presentable(joined(draft.recipients), Lines::one, longestLine));
  auto& body =
      form->addText(translated("Message"), presentable(draft.body, Lines::many, longestBody));
  form->addButton(translated("Cancel"), SheetForm::Role::cancel, [report] { report(cancelled); });
  form->addButton(
      translated("Send"), SheetForm::Role::suggested, [report, &to, &body, app = application_] {
        const Url uri = messageUri(
            {.recipients = splitList(to.get_text()), .body = body.get_buffer()->get_text()});
        report(app->openUrl(uri) ? sent : failed);
      });
  return std::make_shared<Sheet>(*form, [report] { report(cancelled); });
}

std::shared_ptr<ViewController> GtkComposers::mailComposer(
    const MailDraft& draft, std::function<void(MailComposeResult)> finished) {
  using enum MailComposeResult;
  const auto report = once(std::move(finished));
  auto* form = Gtk::make_managed<SheetForm>(translated("New Mail"));
  auto& to = form->addEntry(translated("To"),
                            presentable(joined(draft.recipients), Lines::one, longestLine));
  auto& subject =
      form->addEntry(translated("Subject"), presentable(draft.subject, Lines::one, longestLine));
  auto& body = form->addText(translated("Mail"), presentable(draft.body, Lines::many, longestBody));
  form->addButton(translated("Cancel"), SheetForm::Role::cancel, [report] { report(cancelled); });
  form->addButton(translated("Send"), SheetForm::Role::suggested,
                  [report, &to, &subject, &body, app = application_] {
                    const Url uri = mailUri({.recipients = splitList(to.get_text()),
                                             .subject = subject.get_text(),
                                             .body = body.get_buffer()->get_text()});
                    report(app->openUrl(uri) ? sent : failed);
                  });
  return std::make_shared<Sheet>(*form, [report] { report(cancelled); });
}

std::shared_ptr<ViewController> GtkComposers::eventEditor(
    const CalendarEvent& event,
    std::function<void(EventEditAction, const CalendarEvent&)> finished) {
  return makeEventSheet(event, std::move(finished));
}

std::shared_ptr<ViewController> GtkComposers::storeSheet(const StoreProduct& product,
                                                         std::function<void()> finished) {
  return std::make_shared<StoreSheet>(product, *webViews_, std::move(finished));
}

}  // namespace tavo::gtk
