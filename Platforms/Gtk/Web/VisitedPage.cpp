#include "Gtk/Web/VisitedPage.h"

#include <string>
#include <utility>

#include <tavo/Url.h>

#include "Gtk/Guarded.h"
#include "Values/Text.h"
#include "Values/Translation.h"

namespace tavo::gtk {
namespace {

constexpr std::size_t longestText = 2'000;  // bytes
constexpr int mostQuestions = 5;            // of one page; then it is answered for the person

std::string shownText(const char* text) {
  return text == nullptr ? std::string{} : validUtf8(std::string_view{text}.substr(0, longestText));
}

}  // namespace

VisitedPage::VisitedPage(WebKitWebView* view, SignalConnections& connections,
                         std::function<void(bool)> waits)
    : waits_{std::move(waits)} {
  connections.connect(view, "create", fenced<&VisitedPage::onCreate>, nullptr);
  connections.connect(view, "script-dialog", fenced<&VisitedPage::onQuestion>, this);
  connections.connect(view, "load-changed", fenced<&VisitedPage::onLoad>, this);
}

VisitedPage::~VisitedPage() {
  waits_ = nullptr;
  answer(false);
}

GtkWidget* VisitedPage::onCreate(WebKitWebView* view, WebKitNavigationAction* action,
                                 gpointer /*self*/) {
  auto* request = webkit_navigation_action_get_request(action);
  const char* text = webkit_uri_request_get_uri(request);
  const bool isWished = webkit_navigation_action_is_user_gesture(action) != FALSE;
  if (isWished && text != nullptr && Url::fromText(text).isHttp()) {
    webkit_web_view_load_uri(view, text);
  }
  return nullptr;
}

gboolean VisitedPage::onQuestion(WebKitWebView* view, WebKitScriptDialog* question,
                                 VisitedPage* self) {
  const auto type = webkit_script_dialog_get_dialog_type(question);
  const bool isForPerson =
      type == WEBKIT_SCRIPT_DIALOG_ALERT || type == WEBKIT_SCRIPT_DIALOG_CONFIRM;
  auto* root = gtk_widget_get_root(GTK_WIDGET(view));
  if (!isForPerson || self->question_ != nullptr || !GTK_IS_WINDOW(root) ||
      ++self->asked_ > mostQuestions) {
    return FALSE;
  }
  self->question_ = webkit_script_dialog_ref(question);
  self->show(view, GTK_WINDOW(root));
  self->waits_(true);
  return TRUE;
}

void VisitedPage::onLoad(WebKitWebView* /*view*/, WebKitLoadEvent event, VisitedPage* self) {
  if (event == WEBKIT_LOAD_COMMITTED) self->asked_ = 0;
}

// Beside the window, not in front of it: the person may leave the page instead of answering it.
void VisitedPage::show(WebKitWebView* view, GtkWindow* parent) {
  const char* address = webkit_web_view_get_uri(view);
  const Url page = Url::fromText(address == nullptr ? "" : address);
  const bool isChoice =
      webkit_script_dialog_get_dialog_type(question_) == WEBKIT_SCRIPT_DIALOG_CONFIRM;
  // Translators: %1 is the name of the site whose script asks something.
  auto* dialog = gtk_message_dialog_new(parent, GtkDialogFlags{},
                                        isChoice ? GTK_MESSAGE_QUESTION : GTK_MESSAGE_INFO,
                                        isChoice ? GTK_BUTTONS_OK_CANCEL : GTK_BUTTONS_OK, "%s",
                                        filledIn(translated("%1 says:"), page.host()).c_str());
  gtk_message_dialog_format_secondary_text(
      GTK_MESSAGE_DIALOG(dialog), "%s",
      shownText(webkit_script_dialog_get_message(question_)).c_str());
  g_signal_connect(dialog, "response", G_CALLBACK(fenced<&VisitedPage::onAnswer>), this);
  dialog_ = GTK_WINDOW(dialog);
  gtk_window_present(dialog_);
}

void VisitedPage::onAnswer(GtkDialog* /*dialog*/, int response, VisitedPage* self) {
  self->answer(response == GTK_RESPONSE_OK);
}

void VisitedPage::answer(bool yes) {
  auto* const question = std::exchange(question_, nullptr);
  auto* const dialog = std::exchange(dialog_, nullptr);
  if (dialog != nullptr) {
    g_signal_handlers_disconnect_by_data(dialog, this);
    gtk_window_destroy(dialog);
  }
  if (question == nullptr) return;
  if (webkit_script_dialog_get_dialog_type(question) == WEBKIT_SCRIPT_DIALOG_CONFIRM) {
    webkit_script_dialog_confirm_set_confirmed(question, yes ? TRUE : FALSE);
  }
  webkit_script_dialog_close(question);
  webkit_script_dialog_unref(question);
  if (waits_) waits_(false);
}

}  // namespace tavo::gtk
