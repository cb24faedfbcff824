#pragma once

#include <map>
#include <string>
#include <vector>

#include <tavo/Url.h>

#include "Services/Composers.h"

namespace tavo {

// What creatives write into the URLs of messages and mails. Pure functions; no URL makes them fail.

// The recipients and the body of a message: "sms:123,456?body=Hi%20there".
[[nodiscard]] MessageDraft messageFromUrl(const Url& url);
// Its body alone, decoded; empty without a body marker.
[[nodiscard]] std::string extractSMSBodyFromURL(const Url& url);

using UrlParameters = std::map<std::string, std::string, std::less<>>;

// The parameters of a URL. For "mailto" the recipient, under "recipient", and the pairs of the
// query as they stand; for every other scheme the pairs behind the first ";", decoded. Pieces that
// are not "key=value" are left away.
[[nodiscard]] UrlParameters parameterDictionaryFromURL(const Url& url);

}  // namespace tavo
