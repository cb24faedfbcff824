#include "Headless/HeadlessUserStores.h"

namespace tavo::headless {

void HeadlessCalendarAccess::requestAccess(std::function<void(bool)> answered) {
  ++requests;
  runLoop_->background([granted = grants, answered = std::move(answered)] { answered(granted); });
}

void HeadlessCalendarAccess::save(const CalendarEvent& event,
                                  std::function<void(const std::optional<Error>&)> done) {
  if (!saveError) saved.push_back(event);
  runLoop_->post([error = saveError, done = std::move(done)] { done(error); });
}

void HeadlessPhotoAlbum::save(std::string bytes, const Image& picture,
                              std::function<void(const std::optional<Error>&)> done) {
  auto error = saveError;
  if (picture.empty()) {
    error = Error{std::string{albumErrorDomain}, albumNoPictureError, "There is no picture."};
  }
  if (!error) saved.push_back(std::move(bytes));
  runLoop_->post([error = std::move(error), done = std::move(done)] { done(error); });
}

}  // namespace tavo::headless
