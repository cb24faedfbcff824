#include "Model/VASTDataModel/Elements/XTrackingEvent.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "ErrorHandler/OperationLog.h"
#include "External/TBXML/NameMatch.h"

namespace tavo {
namespace {

struct NamedType {
  std::string_view name;
  TrackingEventType type;
};

// Two names stand for one type each, from two versions of the standard.
constexpr NamedType types[] = {
    {"start", TrackingEventType::start},
    {"midpoint", TrackingEventType::midpoint},
    {"firstQuartile", TrackingEventType::firstQuartile},
    {"thirdQuartile", TrackingEventType::thirdQuartile},
    {"complete", TrackingEventType::complete},
    {"mute", TrackingEventType::mute},
    {"unmute", TrackingEventType::unmute},
    {"pause", TrackingEventType::pause},
    {"rewind", TrackingEventType::rewind},
    {"resume", TrackingEventType::resume},
    {"fullscreen", TrackingEventType::fullscreen},
    {"acceptInvitationLinear", TrackingEventType::acceptInvitation},
    {"acceptInvitation", TrackingEventType::acceptInvitation},
    {"closeLinear", TrackingEventType::close},
    {"close", TrackingEventType::close},
    {"exitFullscreen", TrackingEventType::exitFullscreen},
    {"skip", TrackingEventType::skip},
    {"progress", TrackingEventType::progress},
};

}  // namespace

XTrackingEvent XTrackingEvent::getTrackingEventWithEvent(std::string_view event, OptionalText URL) {
  const OperationLog log{"+[XTrackingEvent getTrackingEventWithEvent:URL:]"};
  const auto* const found =
      std::find_if(std::begin(types), std::end(types),
                   [event](const NamedType& one) { return isSameName(one.name, event); });
  return {found != std::end(types) ? found->type : TrackingEventType::unknown, std::move(URL)};
}

}  // namespace tavo
