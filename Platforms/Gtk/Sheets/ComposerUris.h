#pragma once

#include <string>

#include <tavo/Url.h>

#include "Services/Composers.h"

namespace tavo::gtk {

// What a draft becomes for the application that sends it. Every character that could mean something
// to it is escaped, so that no text of an ad adds a recipient, a header or a parameter.

// sms:<recipients>?body=<body> (RFC 5724)
[[nodiscard]] Url messageUri(const MessageDraft& draft);
// mailto:<recipients>?subject=<subject>&body=<body> (RFC 6068)
[[nodiscard]] Url mailUri(const MailDraft& draft);

}  // namespace tavo::gtk
