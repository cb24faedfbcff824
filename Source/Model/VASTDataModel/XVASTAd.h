#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/XInlineAd.h"
#include "Model/VASTDataModel/XWrapperAd.h"

namespace tavo {

// The root of a VAST ad. All documents of one ad, the first and those its wrappers lead to, are
// parsed into the same root, which is shared by the whole process. Whoever keeps the pointer keeps
// that root alive and unchanged by a reset. The instance itself may be asked for and reset on any
// thread; its content is not locked.
struct XVASTAd {
  // The current root, made on the first call.
  [[nodiscard]] static std::shared_ptr<XVASTAd> sharedInstance();

  // Replaces the current root by an empty one.
  static void resetInstance();

  // Filled by VASTAdAttributes only.
  OptionalText identifier;
  OptionalText sequence;

  // Not filled by the parser, which fills the ads below.
  OptionalText adSystem;
  OptionalText adTitle;
  OptionalText description;
  OptionalText advertiser;
  OptionalText survey;
  std::optional<XPricing> pricing;
  std::optional<XImpression> impresssion;
  std::vector<std::string_view> errorArray;
  std::vector<XCreative> creativesArray;

  OptionalText vastTagURI;                             // of the wrapper parsed last
  std::shared_ptr<XInlineAd> inlineAd;                 // the one parsed last, or none
  std::vector<std::shared_ptr<XWrapperAd>> wrapperAd;  // all of them, in the order parsed
  DocumentText document;                               // what vastTagURI stands in

  // Sets identifier and sequence; one whose attribute is absent becomes none.
  void VASTAdAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
