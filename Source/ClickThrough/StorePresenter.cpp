#include "ClickThrough/StorePresenter.h"

#include <utility>

#include "ClickThrough/AppStore.h"
#include "Runtime/Relay.h"
#include "Services/Composers.h"

namespace tavo {

namespace {
constexpr Seconds storeSheetDelay{0.5};
}  // namespace

StorePresenter::StorePresenter(std::shared_ptr<Environment> environment, Events events)
    : environment_{std::move(environment)}, events_{std::move(events)} {}

std::shared_ptr<StorePresenter> StorePresenter::create(std::shared_ptr<Environment> environment,
                                                       Events events) {
  return std::shared_ptr<StorePresenter>{
      new StorePresenter{std::move(environment), std::move(events)}};
}

void StorePresenter::show(std::int64_t application) {
  const auto& platform = environment_->platform();
  const auto& store = environment_->shared<AppStoreConfiguration>();
  const Relay relay{*this};
  const auto sheet = platform.composers->storeSheet(
      {.identifier = application, .page = productPage(application, store)},
      relay.call(&StorePresenter::sheetFinished));
  sheet_ = sheet;
  delay_ = platform.runLoop->after(storeSheetDelay, [this, sheet] { present(sheet); });
}

void StorePresenter::present(const std::shared_ptr<ViewController>& sheet) {
  if (auto* presenter = events_.presenter()) sheets_.present(*presenter, sheet);
}

void StorePresenter::end() {
  forget();
  sheets_.dismissAll();
}

void StorePresenter::sheetFinished() {
  const auto sheet = sheet_.lock();
  if (!sheet || sheet->presentingViewController() == nullptr) return;
  sheet->presentingViewController()->dismissViewController(Animated::yes, events_.closed);
}

}  // namespace tavo
