#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Services/HttpClient.h"

namespace tavo {

class JsonObject;

// One served ad, flat. The fields of the first group come out of the server's document, all of them
// as text. In a record made from a document with an ad none of them is absent: what the server left
// out reads "(null)", and so does a JSON null. In a record without an ad they are all absent.
struct XAdInfo {
  using Text = std::optional<std::string>;

  XAdInfo() = default;
  // Reads the first element of the document's array "Ad"; null, no such array, an empty one and one
  // whose first element is no object all leave the record empty.
  explicit XAdInfo(const JsonObject* headers);

  Text impressionTrackingURL;
  Text clickTrackingURL;
  Text adHeight;
  Text adWidth;
  Text adType;   // the kind of creative, as a MIME type
  Text fileURL;  // where an image is
  Text text;     // the creative itself: HTML, VAST, or a redirect
  Text extraHT;
  Text extraTx;
  Text targW;
  Text accCampId;
  Text creId;
  Text advId;
  Text cpm;
  Text cpc;
  Text cpa;
  Text eCpm;
  Text btSeg;
  Text ref;
  Text campKey;
  Text exclCamp;
  Text io;
  Text adPosition;  // the position that was served

  // Set by whoever made the exchange.
  std::int32_t httpResponseCode = 0;  // 0: not known
  std::optional<HttpRequest> httpRequestURL;
  Url servedFrom;        // at the end of all redirects
  Text responseContent;  // the whole body as text
  Text MIMEType;
};

// Whether a key of the server's document goes into the record.
[[nodiscard]] bool isAnswerKey(std::string_view key);

}  // namespace tavo
