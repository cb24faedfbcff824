#pragma once

#include <any>
#include <vector>

#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/XCreative.h"
#include "Model/VASTDataModel/XExtension.h"
#include "Model/VASTDataModel/XImpression.h"
#include "Model/VASTDataModel/XPricing.h"

namespace tavo {

// The content of an InLine element: an ad that is complete in its document.
struct XInlineAd {
  OptionalText adSystem;
  OptionalText adTitle;
  OptionalText adDescription;
  OptionalText advertiser;
  std::optional<XPricing> pricing;
  OptionalText survey;
  std::vector<std::string_view> errorArray;   // places to tell when the ad cannot be shown
  std::vector<XImpression> impresssionArray;  // those that have a text
  OptionalList<XCreative> creativesArray = std::vector<XCreative>{};
  std::vector<XExtension> extensions;  // never filled
  OptionalText vastTagURI;             // never filled
  std::any tempObject;                 // free for whoever uses the model
  bool wrapperEventsMerged = false;    // the wrappers' events are in the first creative's list
  // What the texts stand in: its own document, and those of the wrappers whose events were merged.
  std::vector<DocumentText> documents;
};

}  // namespace tavo
