#include "Model/VASTDataModel/LinearAds/XIcon.h"

#include "ErrorHandler/OperationLog.h"
#include "Model/VASTDataModel/Elements/AttributeFields.h"

namespace tavo {
namespace {

constexpr auto iconAttributes = attributeFields<XIcon>({
    {"program", &XIcon::program},
    {"width", &XIcon::width},
    {"height", &XIcon::height},
    {"xPosition", &XIcon::xPosition},
    {"yPosition", &XIcon::yPosition},
    {"duration", &XIcon::duration},
    {"offset", &XIcon::offset},
    {"apiFramework", &XIcon::apiFramework},
});

}  // namespace

void XIcon::setIconAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XIcon setIconAttributes:]"};
  iconAttributes.fill(*this, attributes);
}

}  // namespace tavo
