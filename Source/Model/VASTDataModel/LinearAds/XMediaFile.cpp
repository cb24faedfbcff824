#include "Model/VASTDataModel/LinearAds/XMediaFile.h"

#include "ErrorHandler/OperationLog.h"
#include "Model/VASTDataModel/Elements/AttributeFields.h"

namespace tavo {
namespace {

constexpr auto mediaFileAttributes = attributeFields<XMediaFile>({
    {"delivery", &XMediaFile::delivery},
    {"id", &XMediaFile::identifier},
    {"type", &XMediaFile::type},
    {"bitrate", &XMediaFile::bitrate},
    {"minBitrate", &XMediaFile::minBitrate},
    {"maxBitrate", &XMediaFile::maxBitrate},
    {"width", &XMediaFile::width},
    {"height", &XMediaFile::height},
    {"scalable", &XMediaFile::scalable},
    {"maintainAspectRatio", &XMediaFile::maintainAspectRatio},
    {"codec", &XMediaFile::codec},
    {"apiFramework", &XMediaFile::apiFramework},
});

}  // namespace

void XMediaFile::setMediaFileAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XMediaFile setMediaFileAttributes:]"};
  mediaFileAttributes.fill(*this, attributes);
}

}  // namespace tavo
