#include "AdInfo/XAdInfo.h"

#include <simdjson.h>

#include <array>
#include <string_view>

#include "AdController/ResponseParser/JsonObject.h"
#include "AdController/ResponseParser/JsonText.h"
#include "ErrorHandler/OperationLog.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::string_view nullText = "(null)";

struct Entry {
  std::string_view key;
  XAdInfo::Text XAdInfo::*field;
};

constexpr std::array entries{
    Entry{"ImpUrl", &XAdInfo::impressionTrackingURL},
    Entry{"ClkUrl", &XAdInfo::clickTrackingURL},
    Entry{"H", &XAdInfo::adHeight},
    Entry{"W", &XAdInfo::adWidth},
    Entry{"AdType", &XAdInfo::adType},
    Entry{"FileUrl", &XAdInfo::fileURL},
    Entry{"Text", &XAdInfo::text},
    Entry{"ExtraHT", &XAdInfo::extraHT},
    Entry{"ExtraTx", &XAdInfo::extraTx},
    Entry{"TargW", &XAdInfo::targW},
    Entry{"AccCampId", &XAdInfo::accCampId},
    Entry{"CreId", &XAdInfo::creId},
    Entry{"AdvId", &XAdInfo::advId},
    Entry{"CPM", &XAdInfo::cpm},
    Entry{"CPC", &XAdInfo::cpc},
    Entry{"CPA", &XAdInfo::cpa},
    Entry{"eCPM", &XAdInfo::eCpm},
    Entry{"BTSeg", &XAdInfo::btSeg},
    Entry{"Ref", &XAdInfo::ref},
    Entry{"CampKey", &XAdInfo::campKey},
    Entry{"ExclCamp", &XAdInfo::exclCamp},
    Entry{"IO", &XAdInfo::io},
    Entry{"Pos", &XAdInfo::adPosition},
};

// The entry of `key`, or the number of entries. Servers write the keys in the order of the table,
// so the search starts at `expected`, where the last one ended.
std::size_t indexOf(std::string_view key, std::size_t expected) {
  for (std::size_t step = 0; step < entries.size(); ++step) {
    const auto index = (expected + step) % entries.size();
    if (entries[index].key == key) return index;
  }
  return entries.size();
}

// The object that describes the ad, if there is one.
simdjson::simdjson_result<simdjson::dom::object> firstAd(const JsonObject& document) {
  return document.root()["Ad"].get_array().at(0).get_object();
}

}  // namespace

bool isAnswerKey(std::string_view key) { return indexOf(key, 0) != entries.size(); }

XAdInfo::XAdInfo(const JsonObject* headers) {
  const OperationLog log{"-[XAdInfo initWithHeaders:]"};
  simdjson::dom::object ad;
  if (headers == nullptr || firstAd(*headers).get(ad) != simdjson::SUCCESS) return;
  std::size_t expected = 0;
  for (const auto member : ad) {
    const auto index = indexOf(member.key, expected);
    if (index == entries.size()) continue;
    this->*entries[index].field = jsonText(member.value);
    expected = index + 1;
  }
  for (const auto& entry : entries) {
    if (!(this->*entry.field)) this->*entry.field = nullText;
  }
  log.debug("\n\nvalues for adInfo set successfully");
}

}  // namespace tavo
