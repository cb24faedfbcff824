#include "Model/VASTDataModel/LinearAds/XMediaFile.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XMediaFile::setMediaFileAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XMediaFile setMediaFileAttributes:]"};
  delivery = attributes["delivery"];
  identifier = attributes["id"];
  type = attributes["type"];
  bitrate = attributes["bitrate"];
  minBitrate = attributes["minBitrate"];
  maxBitrate = attributes["maxBitrate"];
  width = attributes["width"];
  height = attributes["height"];
  scalable = attributes["scalable"];
  maintainAspectRatio = attributes["maintainAspectRatio"];
  codec = attributes["codec"];
  apiFramework = attributes["apiFramework"];
}

}  // namespace tavo
