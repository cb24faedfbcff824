#pragma once

#include <string>

#include <tavo/Url.h>

namespace tavo {

// What a creative may ask of its view beside opening a page. Each operation first asks the host,
// and carries the action out only when the host has nothing against it; a refusal, and a system
// that cannot do it, end the action silently. Main thread only.
class ClickActionsHost {
 public:
  virtual ~ClickActionsHost() = default;

  virtual void openDiallerWithUrl(const Url& /*url*/) {}
  virtual void sendSMSWithUrl(const Url& /*url*/) {}
  virtual void sendEmailWithUrl(const Url& /*url*/) {}
  virtual void makeFaceTimeCallWithUrl(const Url& /*url*/) {}
  virtual void openAppStoreWithURL(const Url& /*url*/) {}
  // `event` is the creative's description of the event, the text of a script object. What goes
  // wrong is reported to the creative.
  virtual void createCalenderEvent(const std::string& /*event*/) {}
  // Plays a video over the whole window; the host is not asked.
  virtual void handlePlayVideoWithURL(const Url& /*url*/) {}
};

}  // namespace tavo
