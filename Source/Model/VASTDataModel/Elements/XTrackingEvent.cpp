#include "Model/VASTDataModel/Elements/XTrackingEvent.h"

#include "ErrorHandler/OperationLog.h"
#include "External/TBXML/NameTable.h"

namespace tavo {
namespace {

// Two names stand for one type each, from two versions of the standard.
constexpr NameEntry<TrackingEventType> eventNames[] = {
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
constexpr NameTable eventTypes{eventNames};

}  // namespace

XTrackingEvent XTrackingEvent::getTrackingEventWithEvent(std::string_view event, OptionalText URL) {
  const OperationLog log{"+[XTrackingEvent getTrackingEventWithEvent:URL:]"};
  const TrackingEventType* const type = eventTypes.find(event);
  return {type != nullptr ? *type : TrackingEventType::unknown, URL};
}

}  // namespace tavo
