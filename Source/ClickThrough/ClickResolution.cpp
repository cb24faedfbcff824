#include "ClickThrough/ClickResolution.h"

#include <utility>

namespace tavo {

ClickResolution::Way::~Way() {
  if (exchange) exchange->cancel();
}

ClickResolution::ClickResolution(std::shared_ptr<Environment> environment)
    : environment_{std::move(environment)} {}

void ClickResolution::follow(HttpRequest request, Arrived arrived) {
  request.idleTimeout = request.deadline = environment_->limits().clickThroughTimeout;
  request.maximumBodyBytes = 1;  // where the page finally is matters; what it says is not read
  way_ = std::make_shared<Way>();
  way_->exchange = environment_->platform().http->send(
      std::move(request),
      [weak = std::weak_ptr{way_}, arrived = std::move(arrived)](const HttpResult& result) {
        if (!weak.expired()) arrived(result);
      });
}

}  // namespace tavo
