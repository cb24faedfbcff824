#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Limits.h>

#include "AdController/ResponseParser/VASTXMLParser/CreativeWalk.h"
#include "AdController/ResponseParser/VASTXMLParser/VastFetch.h"
#include "External/TBXML/XTBXML.h"
#include "Model/VASTDataModel/XVASTAd.h"

namespace tavo {

// Turns a VAST document (versions 2 and 3) into the model, adding to the shared root. It does not
// follow wrappers; loadVastChain does.
//
// The loads and the parses of whole documents throw VastFailure. A document that is larger, has
// more nodes or is nested deeper than the limits allow fails as invalid XML, so the walks below
// never see one. One parser serves one load at a time, on one thread.
class XVASTXMLParser : public CreativeWalk, public std::enable_shared_from_this<XVASTXMLParser> {
 public:
  explicit XVASTXMLParser(const Limits& limits = {});

  // Parses text; fails as invalid XML when it is no document.
  std::shared_ptr<XVASTAd> loadXMLContentFromString(std::string_view text);

  // Parses a file; fails as an invalid URL when it cannot be read or is no document.
  std::shared_ptr<XVASTAd> loadXMLContentFromFile(const std::filesystem::path& path);

  // Fetches a document and parses it when it is there; fails as an invalid URL when the text is no
  // URL, the fetch fails, or what it brought is no document. Throws nothing: the completion is
  // told. The parser must be held by a shared pointer and lives until the completion has been
  // called.
  void loadXMLContentFromURL(std::string_view url, const VastFetch& fetch, Seconds timeout,
                             VastCompletion completion);

  std::shared_ptr<XVASTAd> parseXMLString(std::string_view text);
  std::shared_ptr<XVASTAd> parseXMLData(std::string_view data);

  // The walks down to the creatives. Each gives none for no element. The element is one of the
  // parser's document, which the model keeps then; the texts of another one go with it.
  std::shared_ptr<XVASTAd> parseXMLRootElement(XTBXMLElement* root);
  std::shared_ptr<XInlineAd> parseInlineXMLData(XTBXMLElement* inLine);
  std::shared_ptr<XWrapperAd> parseWrapperXMLData(XTBXMLElement* wrapper);

  // The attributes of an element, once: they are taken from it, and a second call gives none.
  std::optional<AttributeMap> parseAttributesData(XTBXMLElement* element);

  // The pieces of a text between separators, without white space around them.
  [[nodiscard]] std::vector<std::string> getArraySeparatedBy(std::string_view separator,
                                                             std::string_view text) const;
  [[nodiscard]] std::vector<std::string> getArraySeparatedByCommasFromString(
      std::string_view text) const;

  // Whether the text given last could be read as XML.
  [[nodiscard]] bool isXMLValid() const { return isXMLValid_; }

  // The document being parsed, the bytes of the last URL or file, the root, and the last wrapper.
  [[nodiscard]] const XTBXML* tbxml() const { return tbxml_ ? &*tbxml_ : nullptr; }
  [[nodiscard]] const std::string& xmlData() const { return xmlData_; }
  [[nodiscard]] const std::shared_ptr<XVASTAd>& VASTAd() const { return VASTAd_; }
  [[nodiscard]] const std::shared_ptr<XWrapperAd>& wrapperAd() const { return wrapperAd_; }

 private:
  void read(std::string_view document);
  [[nodiscard]] DocumentText documentText() const { return tbxml_ ? tbxml_->text() : nullptr; }
  void readAdContent(XInlineAd& ad, XTBXMLElement* inLine);
  void readWrapperContent(XWrapperAd& wrapper, XTBXMLElement* element);
  void dropExtensions(const XTBXMLElement* ad);
  XImpression parseImpression(XTBXMLElement* element);

  Limits limits_;
  std::optional<XTBXML> tbxml_;
  std::string xmlData_;
  std::shared_ptr<XVASTAd> VASTAd_;
  std::shared_ptr<XWrapperAd> wrapperAd_;
  bool isXMLValid_ = false;
};

}  // namespace tavo
