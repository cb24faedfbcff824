#include "Model/VASTDataModel/NonLinearAds/XNonLinear.h"

#include "ErrorHandler/OperationLog.h"
#include "Model/VASTDataModel/Elements/AttributeFields.h"

namespace tavo {
namespace {

constexpr auto nonLinearAttributes = attributeFields<XNonLinear>({
    {"id", &XNonLinear::identifier},
    {"width", &XNonLinear::width},
    {"height", &XNonLinear::height},
    {"expandedWidth", &XNonLinear::expandedWidth},
    {"expandedHeight", &XNonLinear::expandedHeight},
    {"scalable", &XNonLinear::scalable},
    {"maintainAspectRatio", &XNonLinear::maintainAspectRatio},
    {"minSuggestedDuration", &XNonLinear::minSuggestedDuration},
    {"apiFramework", &XNonLinear::apiFramework},
});

}  // namespace

void XNonLinear::setNonLinearAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XNonLinear setNonLinearAttributes:]"};
  nonLinearAttributes.fill(*this, attributes);
}

}  // namespace tavo
