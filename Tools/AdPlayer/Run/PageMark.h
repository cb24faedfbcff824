#pragma once

#include <functional>
#include <memory>
#include <string>

#include <tavo/WebView.h>

#include "AdPlayer/Stage/Phone.h"
#include "AdPlayer/Stage/Session.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

// Finds out when what a creative's page shows has come to the screen. The engine draws in a process
// of its own and says nothing of it, so the page is given a coloured corner for some frames: once
// that is seen on the screen and gone again, everything from before is there too. Main thread only.
class PageMark {
 public:
  PageMark(Session& session, Phone& phone, std::shared_ptr<RunLoop> runLoop);

  // One look; to be asked again until `told` hears yes, which begins a new round. Yes soon where
  // nobody can see the page, and at last where its corner never shows.
  void look(const std::function<void(bool)>& told);

 private:
  enum class State { none, asked, drawn, goingAway };
  void heard(const std::string& answer);
  [[nodiscard]] Point corner() const;
  [[nodiscard]] bool isSeen() const;
  [[nodiscard]] bool isOnScreen() const;
  void begin(const std::shared_ptr<WebView>& page);
  bool end();

  Session& session_;
  Phone& phone_;
  std::shared_ptr<RunLoop> runLoop_;
  std::weak_ptr<WebView> page_;
  State state_ = State::none;
  bool isHidden_ = false;
  Seconds patienceEnds_{0};
  Seconds hiddenEnds_{0};
  std::shared_ptr<PageMark*> self_ = std::make_shared<PageMark*>(this);
};

}  // namespace tavo::adplayer
