#pragma once

#include <map>
#include <string>
#include <string_view>
#include <variant>

#include <tavo/Date.h>
#include <tavo/Url.h>

namespace tavo {

// What a click asks for, beside opening a web page.
// The host is asked by `shouldHandleClickToAction` of its delegate before each; without an answer
// the library carries it out. The values are part of the interface.
enum class ClickToAction {
  phone = 1,     // a call: "tel:"
  sms = 2,       // a message in a composer, sent by the person only: "sms:"
  email = 3,     // the same for mail: "mailto:"
  faceTime = 4,  // a video call: "facetime:"
  appStore = 5,  // a store's page for an application
  calendar = 6,  // an event in an editor, saved by the person only
};

// What the host is told about an action before it is carried out, under the keys below; a key whose
// value the creative left out is absent. A host that answers no may carry the action out itself
// with them, and one that wants the library to do it later hands them to `performClickToAction`.
using ClickToActionParameters =
    std::map<std::string, std::variant<std::string, Url, Date>, std::less<>>;

namespace parameterKeys {
// A Url: what the creative asked for, for every action but the calendar's.
inline constexpr std::string_view commandUrl = "XParameterCommandURL";
// Texts of a mail, decoded.
inline constexpr std::string_view mailRecipient = "XParameterMailRecipient";
inline constexpr std::string_view mailSubject = "XParameterMailSubject";
inline constexpr std::string_view mailBody = "XParameterMailBody";
// Dates of an event.
inline constexpr std::string_view startDate = "XParameterStartDate";
inline constexpr std::string_view endDate = "XParameterEndDate";
// Texts of an event; the reminder as the creative wrote it.
inline constexpr std::string_view description = "XParameterDescription";
inline constexpr std::string_view summary = "XParameterSummary";
inline constexpr std::string_view location = "XParameterLocation";
inline constexpr std::string_view reminder = "XParameterReminder";
}  // namespace parameterKeys

}  // namespace tavo
