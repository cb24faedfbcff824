#include "AdController/ResponseParser/StandardsVast/VastDocument.h"

#include <simdjson.h>

#include "AdController/ResponseParser/StandardsVast/VastAdReader.h"
#include "AdController/ResponseParser/StandardsVast/VastText.h"
#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr int oldestVersion = 2;
constexpr int newestVersion = 4;
constexpr std::size_t mostAddressesOfDocument = 16;

// A type declaration stands around the document here, because nothing closes it.
const XTBXMLElement* documentElement(const XTBXML& xml) {
  const XTBXMLElement* root = xml.rootXMLElement();
  while (root != nullptr && root->name.starts_with('!')) root = root->firstChild;
  return root;
}

// A document without a version is read; servers leave it out.
std::optional<VastErrorCode> failureOf(const XTBXMLElement& root, const std::string& version) {
  if (root.name == "VideoAdServingTemplate") return VastErrorCode::badVersion;
  if (root.name != "VAST") return VastErrorCode::badSchema;
  const int major = leadingWholeNumber(version);
  const bool known = version.empty() || (major >= oldestVersion && major <= newestVersion);
  return known ? std::nullopt : std::optional{VastErrorCode::badVersion};
}

VastDocument read(const XTBXML& xml, const Url& base, const Limits& limits) {
  VastDocument document;
  const XTBXMLElement* const root = xml.passedLimit() ? nullptr : documentElement(xml);
  if (root == nullptr) {
    document.failure = VastErrorCode::badXml;
    return document;
  }
  document.version = attributeText(root, "version");
  document.failure = failureOf(*root, document.version);
  VastWords words{base, mostAddressesOfDocument};
  document.errors = words.addresses(root, "Error");
  if (document.failure) return document;
  forChildren(root, "Ad", [&](const XTBXMLElement* element) {
    auto ad = std::make_shared<VastAd>(VastAdReader{base, limits.vastAddresses}.read(element));
    ad->version = document.version;
    document.ads.push_back(std::move(ad));
  });
  return document;
}

}  // namespace

VastDocument readVastDocument(std::string_view text, const Url& base, const Limits& limits) {
  const XmlReadLimits bounds{.bytes = limits.vastBytes,
                             .nodes = limits.vastNodes,
                             .depth = static_cast<std::size_t>(limits.vastDepth)};
  const bool readable =
      text.size() > limits.vastBytes || simdjson::validate_utf8(text.data(), text.size());
  return readable ? read(XTBXML{text, bounds}, base, limits)
                  : read(XTBXML{validUtf8(text), bounds}, base, limits);
}

}  // namespace tavo
