#pragma once

#include <map>
#include <string>
#include <string_view>

#include <tavo/Platform.h>

namespace tavo {

// Which features of the device a creative may use. Main thread only.
struct XDeviceSupportProperties {
  // Keys: "sms", "tel", "calendar", "storePicture", "inlineVideo".
  using Features = std::map<std::string, bool, std::less<>>;

  bool deviceSupportsSms = false;
  bool deviceSupportsTel = false;
  bool deviceSupportsCalendar = false;
  bool deviceSupportsStorePicture = false;
  bool deviceSupportsInlineVideo = false;

  // What this device can do now: messages and calls when an application takes them, the calendar
  // unless access is known to be refused.
  [[nodiscard]] static Features deviceSupportFeatures(const Platform& platform);

  // The record of the five keys; an absent key is a feature that is not there.
  [[nodiscard]] static XDeviceSupportProperties propertyWithSupportedFeaturesDictionary(
      const Features& features);

  // The record of this device.
  [[nodiscard]] static XDeviceSupportProperties defaultProperty(const Platform& platform);

  // "supports: {sms: true, ...}", as the creative's side writes it.
  [[nodiscard]] std::string description() const;
  [[nodiscard]] static std::string_view javascriptBooleanStringFromBoolValue(bool value);
};

}  // namespace tavo
