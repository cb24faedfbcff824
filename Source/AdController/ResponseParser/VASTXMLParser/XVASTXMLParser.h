#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Limits.h>

#include "AdController/ResponseParser/VASTXMLParser/VASTFetch.h"
#include "External/TBXML/XTBXML.h"
#include "Model/VASTDataModel/XVASTAd.h"

namespace tavo {

// Turns a VAST document (versions 2 and 3) into the model, adding to the shared root. It does not
// follow wrappers; loadVASTChain does.
//
// The loads and the parses of whole documents throw VASTFailure. A document that is larger, has
// more nodes or is nested deeper than the limits allow fails as invalid XML, so the walks below
// never see one. One parser serves one load at a time, on one thread.
class XVASTXMLParser : public std::enable_shared_from_this<XVASTXMLParser> {
 public:
  // With the limits of the current runtime, or with others.
  XVASTXMLParser();
  explicit XVASTXMLParser(const Limits& limits);

  // Parses text; fails as invalid XML when it is no document.
  std::shared_ptr<XVASTAd> loadXMLContentFromString(std::string_view text);

  // Parses a file; fails as an invalid URL when it cannot be read or is no document.
  std::shared_ptr<XVASTAd> loadXMLContentFromFile(const std::filesystem::path& path);

  // Fetches a document and parses it when it is there; fails as an invalid URL when the text is no
  // URL, the fetch fails, or what it brought is no document. Throws nothing: the completion is
  // told. The parser must be held by a shared pointer and lives until the completion has been
  // called.
  void loadXMLContentFromURL(std::string_view url, const VASTFetch& fetch, Seconds timeout,
                             VASTCompletion completion);

  std::shared_ptr<XVASTAd> parseXMLString(std::string_view text);
  std::shared_ptr<XVASTAd> parseXMLData(std::string_view data);

  // The walks. Each takes the element that it is about, or none, and reads the attributes of what
  // it passes for good: see parseAttributesData. No element gives an empty list, an empty XLinear
  // or an empty XResource where the type cannot be none, and none otherwise.
  std::shared_ptr<XVASTAd> parseXMLRootElement(XTBXMLElement* root);
  std::shared_ptr<XInlineAd> parseInlineXMLData(XTBXMLElement* inLine);
  std::shared_ptr<XWrapperAd> parseWrapperXMLData(XTBXMLElement* wrapper);
  OptionalList<XCreative> parseCreativeXMLData(XTBXMLElement* creatives);
  XLinear parseLinearXMLData(XTBXMLElement* linear);
  OptionalList<XMediaFile> parseMediaFileXMLData(XTBXMLElement* mediaFiles);
  std::vector<XTrackingEvent> parseTrackingEventsXMLData(XTBXMLElement* trackingEvents);
  OptionalList<XVideoClick> parseVideoClicksElement(XTBXMLElement* videoClicks);
  OptionalList<XIcon> parseIconsXMLData(XTBXMLElement* icons);
  std::vector<XIconClick> parseIconClicksXMLElement(XTBXMLElement* iconClicks);
  OptionalList<XCompanion> parseCompanionAdXMLElement(XTBXMLElement* companionAds);
  OptionalList<XNonLinearAds> parseNonLinearAdXMLElement(XTBXMLElement* nonLinearAds);
  XResource parseResourceElement(XTBXMLElement* element);

  // The attributes of an element, once: they are taken from it, and a second call gives none.
  std::optional<AttributeMap> parseAttributesData(XTBXMLElement* element);

  // The pieces of a text between separators, without white space around them.
  [[nodiscard]] std::vector<std::string> getArraySeparatedBy(std::string_view separator,
                                                             std::string_view text) const;
  [[nodiscard]] std::vector<std::string> getArraySeparatedByCommasFromString(
      std::string_view text) const;

  // Whether the text given last could be read as XML.
  [[nodiscard]] bool isXMLValid() const { return isXMLValid_; }

  // Whether the last Linear walked had TrackingEvents.
  [[nodiscard]] bool isTrackingEventValid() const { return isTrackingEventValid_; }

  // The document being parsed, the bytes of the last URL or file, the root, and the last wrapper.
  [[nodiscard]] const XTBXML* tbxml() const { return tbxml_ ? &*tbxml_ : nullptr; }
  [[nodiscard]] const std::string& xmlData() const { return xmlData_; }
  [[nodiscard]] const std::shared_ptr<XVASTAd>& VASTAd() const { return VASTAd_; }
  [[nodiscard]] const std::shared_ptr<XWrapperAd>& wrapperAd() const { return wrapperAd_; }

 private:
  void read(std::string_view document);
  const AttributeMap& takenAttributes(XTBXMLElement* element);
  void readAdContent(XInlineAd& ad, XTBXMLElement* inLine);
  void readWrapperContent(XWrapperAd& wrapper, XTBXMLElement* element);
  void dropExtensions(const XTBXMLElement* ad);
  XImpression parseImpression(XTBXMLElement* element);
  void readCreative(XCreative& creative, XTBXMLElement* element);
  XVideoClick parseVideoClick(XTBXMLElement* videoClicks);
  void readCompanion(XCompanion& companion, XTBXMLElement* element);
  void readNonLinear(XNonLinear& nonLinear, XTBXMLElement* element);
  XClickTracking parseClickTracking(XTBXMLElement* element);

  Limits limits_;
  AttributeMap attributes_;  // of the element read last
  std::optional<XTBXML> tbxml_;
  std::string xmlData_;
  std::shared_ptr<XVASTAd> VASTAd_;
  std::shared_ptr<XWrapperAd> wrapperAd_;
  bool isXMLValid_ = false;
  bool isTrackingEventValid_ = false;
};

}  // namespace tavo
