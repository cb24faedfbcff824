#pragma once

#include <string>
#include <vector>

#include <tavo/Url.h>
#include <tavo/VastAd.h>

#include "AdController/ResponseParser/StandardsVast/VastCreativeReader.h"
#include "External/TBXML/XTBXML.h"

namespace tavo {

// Reads one Ad element.
class VastAdReader {
 public:
  // `addresses`: how many of the ad are kept.
  VastAdReader(Url base, std::size_t addresses) : words_{std::move(base), addresses} {}

  // An ad that is neither InLine nor Wrapper is empty and no wrapper.
  [[nodiscard]] VastAd read(const XTBXMLElement* element);

 private:
  void readDescription(VastAd& ad, const XTBXMLElement* content);
  void readAddresses(VastAd& ad, const XTBXMLElement* content);
  void readWrapper(VastAd& ad, const XTBXMLElement* wrapper);
  void readVerifications(VastAd& ad, const XTBXMLElement* parent);
  [[nodiscard]] VastVerification verification(const XTBXMLElement* element);
  void readCreatives(VastAd& ad, const XTBXMLElement* content);

  VastWords words_;
};

}  // namespace tavo
