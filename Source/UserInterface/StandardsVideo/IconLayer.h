#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Tracker/VastPings.h"
#include "UserInterface/StandardsVideo/IconPlace.h"
#include "UserInterface/StandardsVideo/VastResourceView.h"

namespace tavo {

// The icons of a film, such as the mark of an advertising programme: each on the film for its time,
// with its view tracking, its click, and the pictures that stand in for a page that cannot be
// opened. Main thread only; dropping it takes everything off the film.
class IconLayer : public std::enable_shared_from_this<IconLayer> {
 public:
  struct Events {
    std::function<bool(const Url&)> canOpen{};
    std::function<void(const Url&)> open{};
  };

  IconLayer(std::shared_ptr<Environment> environment, std::vector<VastIcon> icons,
            std::shared_ptr<VastPings> pings, Events events);
  ~IconLayer() { remove(); }
  IconLayer(const IconLayer&) = delete;
  IconLayer& operator=(const IconLayer&) = delete;

  // Draws what is due so many seconds into the film, and takes away what is not.
  void showAt(View& film, double time);
  void remove();

 private:
  struct Shown {
    VastIcon icon;
    std::string name;  // for its pings
    std::shared_ptr<VastResourceView> view{};
    bool failed = false;
  };

  void put(Shown& one, View& film);
  void clicked(std::size_t index);
  void showFallback(const VastIcon& icon);

  const std::shared_ptr<Environment> environment_;
  const std::shared_ptr<VastPings> pings_;
  const Events events_;
  std::vector<Shown> icons_;
  std::weak_ptr<View> film_;
  std::shared_ptr<VastResourceView> fallback_;
};

}  // namespace tavo
