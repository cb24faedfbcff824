#pragma once

#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// One media file of a linear ad.
struct XMediaFile {
  OptionalText mediaFileURL;  // text of MediaFile
  OptionalText delivery;      // "progressive" or "streaming"
  OptionalText identifier;    // attribute "id"
  OptionalText type;          // a MIME type such as "video/mp4"
  OptionalText bitrate;       // kilobits a second
  OptionalText minBitrate;
  OptionalText maxBitrate;
  OptionalText width;   // pixels
  OptionalText height;  // pixels
  OptionalText scalable;
  OptionalText maintainAspectRatio;
  OptionalText codec;
  OptionalText apiFramework;

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setMediaFileAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
