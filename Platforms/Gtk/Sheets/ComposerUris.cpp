#include "Gtk/Sheets/ComposerUris.h"

#include <glib.h>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

std::string escaped(const std::string& text, const char* allowed) {
  const GText result{g_uri_escape_string(text.c_str(), allowed, FALSE)};
  return textOf(result.get());
}

std::string recipientList(const std::vector<std::string>& recipients) {
  std::string list;
  for (const auto& recipient : recipients) {
    const std::string address{trimmed(recipient)};
    if (address.empty()) continue;
    if (!list.empty()) list += ",";
    list += escaped(address, "+@");
  }
  return list;
}

// Mail knows one line end only.
std::string withMailLines(const std::string& text) {
  std::string lines;
  for (const char letter : text) {
    if (letter == '\n') lines += '\r';
    lines += letter;
  }
  return lines;
}

}  // namespace

Url messageUri(const MessageDraft& draft) {
  std::string uri = "sms:" + recipientList(draft.recipients);
  if (!draft.body.empty()) uri += "?body=" + escaped(draft.body, nullptr);
  return Url::parse(std::move(uri));
}

Url mailUri(const MailDraft& draft) {
  std::string uri = "mailto:" + recipientList(draft.recipients);
  char separator = '?';
  const auto add = [&](const char* key, const std::string& value) {
    if (value.empty()) return;
    uri += separator;
    uri += key + escaped(value, nullptr);
    separator = '&';
  };
  add("subject=", draft.subject);
  add("body=", withMailLines(draft.body));
  return Url::parse(std::move(uri));
}

}  // namespace tavo::gtk
