#include "AdController/ResponseParser/VASTXMLParser/XVASTXMLParser.h"

#include <simdjson.h>

#include <utility>

#include "AdController/ResponseParser/VASTXMLParser/ElementWalk.h"
#include "ErrorHandler/OperationLog.h"
#include "Extensions/CompressedData.h"
#include "Values/Text.h"

namespace tavo {
namespace {

XmlReadLimits readLimits(const Limits& limits) {
  return {.bytes = limits.vastBytes,
          .nodes = limits.vastNodes,
          .depth = static_cast<std::size_t>(limits.vastDepth)};
}

}  // namespace

XVASTXMLParser::XVASTXMLParser(const Limits& limits) : limits_(limits) {}

std::shared_ptr<XVASTAd> XVASTXMLParser::loadXMLContentFromString(std::string_view text) {
  const OperationLog log{"-[XVASTXMLParser loadXMLContentFromString:]"};
  return parseXMLString(text);
}

std::shared_ptr<XVASTAd> XVASTXMLParser::loadXMLContentFromFile(const std::filesystem::path& path) {
  const OperationLog log{"-[XVASTXMLParser loadXMLContentFromFile:]"};
  xmlData_ = dataWithUncompressedContentsOfFile(path, limits_.vastBytes).value_or(std::string{});
  return parseXMLData(xmlData_);
}

void XVASTXMLParser::loadXMLContentFromURL(std::string_view url, const VastFetch& fetch,
                                           Seconds timeout, VastCompletion completion) {
  const OperationLog log{"-[XVASTXMLParser loadXMLContentFromURL:]"};
  auto parse = [self = shared_from_this(),
                completion = std::move(completion)](std::optional<std::string> body) {
    self->xmlData_ = std::move(body).value_or(std::string{});
    completion(outcomeOf([&self] { return self->parseXMLData(self->xmlData_); }));
  };
  const Url address = Url::fromText(url);
  if (address.empty()) {
    parse(std::nullopt);
  } else {
    fetch(address, timeout, std::move(parse));
  }
}

// Makes the reader of a document; without one when the document is beyond a limit.
void XVASTXMLParser::read(std::string_view document) {
  if (document.size() <= limits_.vastBytes &&
      !simdjson::validate_utf8(document.data(), document.size())) {
    tbxml_.emplace(validUtf8(document), readLimits(limits_));
  } else {
    tbxml_.emplace(document, readLimits(limits_));
  }
  if (tbxml_->passedLimit()) {
    tbxml_.reset();
  }
}

std::shared_ptr<XVASTAd> XVASTXMLParser::parseXMLString(std::string_view text) {
  const OperationLog log{"-[XVASTXMLParser parseXMLString:]"};
  read(text);
  isXMLValid_ = tbxml_ && tbxml_->rootXMLElement() != nullptr;
  if (!isXMLValid_) throw VastFailure::invalidXML();
  return parseXMLRootElement(tbxml_->rootXMLElement());
}

std::shared_ptr<XVASTAd> XVASTXMLParser::parseXMLData(std::string_view data) {
  const OperationLog log{"-[XVASTXMLParser parseXMLData:]"};
  read(data);
  if (!tbxml_) throw VastFailure::invalidXML();
  if (tbxml_->rootXMLElement() == nullptr) throw VastFailure::invalidURL();
  return parseXMLRootElement(tbxml_->rootXMLElement());
}

std::shared_ptr<XVASTAd> XVASTXMLParser::parseXMLRootElement(XTBXMLElement* root) {
  const OperationLog log{"-[XVASTXMLParser parseXMLRootElement:]"};
  if (root == nullptr) return nullptr;
  VASTAd_ = XVASTAd::sharedInstance();
  forChildren(root, "Ad", [this](XTBXMLElement* ad) {
    if (XTBXMLElement* const inLine = childOf(ad, "InLine"); inLine != nullptr) {
      VASTAd_->inlineAd = std::make_shared<XInlineAd>();
      VASTAd_->inlineAd = parseInlineXMLData(inLine);
    }
    std::size_t count = 0;
    forChildren(ad, "Wrapper", [this, &count](XTBXMLElement* wrapper) {
      // An ad has one wrapper. Documents with more are still read, but each wrapper takes in the
      // content of every InLine beside it, so that a document of nothing but wrappers would
      // multiply itself.
      if (++count > limits_.vastWrappersInAd) throw VastFailure::invalidURL();
      VASTAd_->wrapperAd.push_back(parseWrapperXMLData(wrapper));
    });
  });
  return VASTAd_;
}

std::shared_ptr<XInlineAd> XVASTXMLParser::parseInlineXMLData(XTBXMLElement* inLine) {
  const OperationLog log{"-[XVASTXMLParser parseInlineXMLData:]"};
  if (inLine == nullptr) return nullptr;
  auto ad = std::make_shared<XInlineAd>();
  ad->documents.push_back(documentText());
  forThisAndSiblings(inLine, "InLine",
                     [this, &ad](XTBXMLElement* element) { readAdContent(*ad, element); });
  return ad;
}

void XVASTXMLParser::readAdContent(XInlineAd& ad, XTBXMLElement* inLine) {
  takenAttributes(childOf(inLine, "AdSystem"));
  readText(ad.adSystem, inLine, "AdSystem");
  readText(ad.adTitle, inLine, "AdTitle");
  readText(ad.adDescription, inLine, "Description");
  readText(ad.advertiser, inLine, "Advertiser");
  if (XTBXMLElement* const pricing = childOf(inLine, "Pricing"); pricing != nullptr) {
    takenAttributes(pricing);
    ad.pricing = XPricing{.url = textOf(pricing), .model = {}, .currency = {}};
  }
  readText(ad.survey, inLine, "Survey");
  ad.errorArray = textsOf(inLine, "Error");
  ad.impresssionArray.clear();
  ad.impresssionArray.reserve(countOfChildren(inLine, "Impression"));
  forChildren(inLine, "Impression", [this, &ad](XTBXMLElement* impression) {
    if (!impression->text.empty()) {
      ad.impresssionArray.push_back(parseImpression(impression));
    }
  });
  ad.creativesArray = parseCreativeXMLData(childOf(inLine, "Creatives"));
  dropExtensions(inLine);
}

std::shared_ptr<XWrapperAd> XVASTXMLParser::parseWrapperXMLData(XTBXMLElement* wrapper) {
  const OperationLog log{"-[XVASTXMLParser parseWrapperXMLData:]"};
  if (wrapper == nullptr) return nullptr;
  wrapperAd_ = std::make_shared<XWrapperAd>();
  wrapperAd_->document = documentText();
  // Quirk: the walk steps on to InLine siblings, whose content overwrites the wrapper's. Ads that
  // have both are read by players that rely on it.
  forThisAndSiblings(wrapper, "InLine",
                     [this](XTBXMLElement* element) { readWrapperContent(*wrapperAd_, element); });
  return wrapperAd_;
}

void XVASTXMLParser::readWrapperContent(XWrapperAd& wrapper, XTBXMLElement* element) {
  takenAttributes(childOf(element, "AdSystem"));
  readText(wrapper.adSystem, element, "AdSystem");
  if (const XTBXMLElement* const uri = childOf(element, "VASTAdTagURI"); uri != nullptr) {
    wrapper.vastTagURI = textOf(uri);
    if (VASTAd_ != nullptr) {
      VASTAd_->vastTagURI = wrapper.vastTagURI;
      VASTAd_->document = wrapper.document;
    }
  }
  wrapper.errorArray = textsOf(element, "Error");
  // Quirk: impressions without a text are kept here, unlike those of an InLine.
  wrapper.impresssionArray.clear();
  wrapper.impresssionArray.reserve(countOfChildren(element, "Impression"));
  forChildren(element, "Impression", [this, &wrapper](XTBXMLElement* impression) {
    wrapper.impresssionArray.push_back(parseImpression(impression));
  });
  wrapper.creativesArray = parseCreativeXMLData(childOf(element, "Creatives"));
  dropExtensions(element);
}

XImpression XVASTXMLParser::parseImpression(XTBXMLElement* element) {
  XImpression impression{.identifier = {}, .url = textOf(element)};
  impression.setImpressionAttributes(takenAttributes(element));
  return impression;
}

// Extensions are read and not kept.
void XVASTXMLParser::dropExtensions(const XTBXMLElement* ad) {
  forChildren(ad, "Extensions", [this](XTBXMLElement* extensions) {
    forChildren(extensions, "Extension",
                [this](XTBXMLElement* extension) { takenAttributes(extension); });
  });
}

std::optional<AttributeMap> XVASTXMLParser::parseAttributesData(XTBXMLElement* element) {
  const AttributeMap attributes = takenAttributes(element);
  return attributes.empty() ? std::nullopt : std::optional{attributes};
}

std::vector<std::string> XVASTXMLParser::getArraySeparatedBy(std::string_view separator,
                                                             std::string_view text) const {
  const OperationLog log{"-[XVASTXMLParser getArraySeparatedBy:fromString:]"};
  std::vector<std::string> pieces;
  std::size_t end = separator.empty() ? std::string_view::npos : text.find(separator);
  while (end != std::string_view::npos) {
    pieces.emplace_back(trimmed(text.substr(0, end)));
    text.remove_prefix(end + separator.size());
    end = text.find(separator);
  }
  pieces.emplace_back(trimmed(text));
  return pieces;
}

std::vector<std::string> XVASTXMLParser::getArraySeparatedByCommasFromString(
    std::string_view text) const {
  const OperationLog log{"-[XVASTXMLParser getArraySeparatedByCommasFromString:]"};
  return getArraySeparatedBy(",", text);
}

}  // namespace tavo
