#include "Model/VASTDataModel/CompanionAds/XCompanion.h"

#include "ErrorHandler/OperationLog.h"
#include "Model/VASTDataModel/Elements/AttributeFields.h"

namespace tavo {
namespace {

constexpr auto companionAttributes = attributeFields<XCompanion>({
    {"id", &XCompanion::identifier},
    {"width", &XCompanion::width},
    {"height", &XCompanion::height},
    {"assetWidth", &XCompanion::assetWidth},
    {"assetHeight", &XCompanion::assetHeight},
    {"expandedHeight", &XCompanion::expandedHeight},
    {"expandedWidth", &XCompanion::expandedWidth},
    {"apiFramework", &XCompanion::apiFramework},
    {"adSlotID", &XCompanion::adSlotID},
});

}  // namespace

void XCompanion::setCompanionAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XCompanion setCompanionAttributes:]"};
  companionAttributes.fill(*this, attributes);
}

}  // namespace tavo
