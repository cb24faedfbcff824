#include "RequestEnrichment/XDeviceSupportProperties.h"

#include "ErrorHandler/OperationLog.h"
#include "Services/Application.h"
#include "Services/CalendarAccess.h"

namespace tavo {

namespace {

bool canOpen(const Application& application, const char* url) {
  return application.canOpenUrl(Url::parse(url));
}

bool mayUse(const CalendarAccess& calendar) {
  const auto status = calendar.authorization();
  return status != CalendarAuthorization::restricted && status != CalendarAuthorization::denied;
}

}  // namespace

XDeviceSupportProperties::Features XDeviceSupportProperties::deviceSupportFeatures(
    const Platform& platform) {
  const OperationLog log{"+[XDeviceSupportProperties deviceSupportFeatures]"};
  return {{"sms", canOpen(*platform.application, "sms://")},
          {"tel", canOpen(*platform.application, "tel://")},
          {"calendar", mayUse(*platform.calendarAccess)},
          {"storePicture", true},
          {"inlineVideo", true}};
}

XDeviceSupportProperties XDeviceSupportProperties::propertyWithSupportedFeaturesDictionary(
    const Features& features) {
  const OperationLog log{"+[XDeviceSupportProperties propertyWithSupportedFeaturesDictionary:]"};
  const auto has = [&](std::string_view key) {
    const auto feature = features.find(key);
    return feature != features.end() && feature->second;
  };
  return {.deviceSupportsSms = has("sms"),
          .deviceSupportsTel = has("tel"),
          .deviceSupportsCalendar = has("calendar"),
          .deviceSupportsStorePicture = has("storePicture"),
          .deviceSupportsInlineVideo = has("inlineVideo")};
}

XDeviceSupportProperties XDeviceSupportProperties::defaultProperty(const Platform& platform) {
  const OperationLog log{"+[XDeviceSupportProperties defaultProperty]"};
  return propertyWithSupportedFeaturesDictionary(deviceSupportFeatures(platform));
}

std::string XDeviceSupportProperties::description() const {
  const OperationLog log{"-[XDeviceSupportProperties description]"};
  const auto word = [](bool value) {
    return std::string{javascriptBooleanStringFromBoolValue(value)};
  };
  return "supports: {sms: " + word(deviceSupportsSms) + ", tel: " + word(deviceSupportsTel) +
         ", calendar: " + word(deviceSupportsCalendar) +
         ", storePicture: " + word(deviceSupportsStorePicture) +
         ", inlineVideo: " + word(deviceSupportsInlineVideo) + "}";
}

std::string_view XDeviceSupportProperties::javascriptBooleanStringFromBoolValue(bool value) {
  return value ? "true" : "false";
}

}  // namespace tavo
