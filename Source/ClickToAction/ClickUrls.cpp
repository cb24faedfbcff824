#include "ClickToAction/ClickUrls.h"

#include <array>
#include <string_view>

#include "Values/Text.h"

namespace tavo {

namespace {

using Decode = std::string (*)(std::string_view);

std::vector<std::string_view> pieces(std::string_view text, char separator) {
  std::vector<std::string_view> all;
  while (true) {
    const auto end = text.find(separator);
    all.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return all;
    text.remove_prefix(end + 1);
  }
}

std::string asItStands(std::string_view text) { return std::string{text}; }

// Decoded text goes to the user: it must be text whatever the bytes.
std::string decodedText(std::string_view text) { return validUtf8(percentDecoded(text)); }

void addPairs(UrlParameters& parameters, std::string_view query, Decode decode) {
  for (const auto piece : pieces(query, '&')) {
    const auto parts = pieces(piece, '=');
    if (parts.size() == 2) parameters.insert_or_assign(decode(parts[0]), decode(parts[1]));
  }
}

// Where the body begins and how its marker reads; none: the end of the text.
//
// Quirk: which marker counts is decided without its "=", so that "&bodyguard" hides "?body=".
std::size_t bodyMarker(std::string_view text) {
  for (const std::string_view mark : {"&body", "?body", ";body"}) {
    if (contains(text, mark)) return text.find(std::string{mark} + "=");
  }
  return std::string_view::npos;
}

}  // namespace

MessageDraft messageFromUrl(const Url& url) {
  // Quirk: four characters go whatever they are, six where "sms://" stands anywhere.
  const std::string_view text = url.text();
  const std::size_t prefix = contains(text, "sms://") ? 6 : 4;
  const auto rest = text.size() < prefix ? std::string_view{} : text.substr(prefix);
  MessageDraft draft{.recipients = {}, .body = extractSMSBodyFromURL(url)};
  for (const auto recipient : pieces(rest.substr(0, bodyMarker(rest)), ',')) {
    draft.recipients.emplace_back(recipient);
  }
  return draft;
}

std::string extractSMSBodyFromURL(const Url& url) {
  constexpr std::size_t markerLength = 6;
  const std::string_view text = url.text();
  const auto marker = bodyMarker(text);
  return marker == std::string_view::npos ? std::string{}
                                          : decodedText(text.substr(marker + markerLength));
}

UrlParameters parameterDictionaryFromURL(const Url& url) {
  UrlParameters parameters;
  if (url.scheme() != "mailto") {
    addPairs(parameters, url.parameterString(), decodedText);
    return parameters;
  }
  const auto address = std::string_view{url.text()}.substr(std::string_view{"mailto:"}.size());
  const auto question = address.find('?');
  parameters.insert_or_assign("recipient", std::string{address.substr(0, question)});
  // Quirk: nothing of a mail is decoded.
  if (question != std::string_view::npos) {
    addPairs(parameters, address.substr(question + 1), asItStands);
  }
  return parameters;
}

}  // namespace tavo
