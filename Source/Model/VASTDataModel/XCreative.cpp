#include "Model/VASTDataModel/XCreative.h"

#include "ErrorHandler/OperationLog.h"
#include "Model/VASTDataModel/Elements/AttributeFields.h"

namespace tavo {
namespace {

constexpr auto creativeAttributes = attributeFields<XCreative>({
    {"id", &XCreative::identifier},
    {"sequence", &XCreative::sequence},
    {"adIdentifier", &XCreative::adIdentifier},
    {"apiFramework", &XCreative::apiFramework},
});

}  // namespace

void XCreative::setCreativeAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XCreative setCreativeAttributes:]"};
  creativeAttributes.fill(*this, attributes);
}

}  // namespace tavo
