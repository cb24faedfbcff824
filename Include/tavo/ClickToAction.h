#pragma once

#include <map>
#include <string>
#include <string_view>
#include <variant>

#include <tavo/Date.h>
#include <tavo/Url.h>

namespace tavo {

// What a click asks for, beside opening a web page.
enum class ClickToAction {
  phone = 1,
  sms = 2,
  email = 3,
  faceTime = 4,
  appStore = 5,
  calendar = 6,
};

// What the host is told about an action before it is carried out, under the keys below.
using ClickToActionParameters =
    std::map<std::string, std::variant<std::string, Url, Date>, std::less<>>;

namespace parameterKeys {
inline constexpr std::string_view commandUrl = "XParameterCommandURL";
inline constexpr std::string_view mailRecipient = "XParameterMailRecipient";
inline constexpr std::string_view mailSubject = "XParameterMailSubject";
inline constexpr std::string_view mailBody = "XParameterMailBody";
inline constexpr std::string_view startDate = "XParameterStartDate";
inline constexpr std::string_view endDate = "XParameterEndDate";
inline constexpr std::string_view description = "XParameterDescription";
inline constexpr std::string_view summary = "XParameterSummary";
inline constexpr std::string_view location = "XParameterLocation";
inline constexpr std::string_view reminder = "XParameterReminder";
}  // namespace parameterKeys

}  // namespace tavo
