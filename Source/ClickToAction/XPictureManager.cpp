#include "ClickToAction/XPictureManager.h"

#include <tavo/SdkErrors.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Relay.h"
#include "Services/Alerts.h"
#include "Services/Application.h"
#include "Services/ImageDecoder.h"
#include "Services/PhotoAlbum.h"

namespace tavo {

namespace {
constexpr std::size_t cancelButton = 0;
constexpr std::size_t saveButton = 1;
}  // namespace

std::shared_ptr<XPictureManager> XPictureManager::create(
    std::shared_ptr<Environment> environment,
    const std::shared_ptr<const XPictureManagerDelegate>& delegate) {
  const OperationLog log{"-[XPictureManager initWithDelegate:]"};
  std::shared_ptr<XPictureManager> manager{new XPictureManager{std::move(environment)}};
  manager->delegate.set(delegate);
  return manager;
}

void XPictureManager::fail(const Error& error) {
  delegate.tell(&XPictureManagerDelegate::pictureManagerDidFailToStorePictureWithError, *this,
                error);
}

void XPictureManager::storePicture(
    const std::map<std::string, std::string, std::less<>>& parameters) {
  const OperationLog log{"-[XPictureManager storePicture:]"};
  const auto found = parameters.find("url");
  imageURL_ = found == parameters.end() ? Url{} : Url::fromText(found->second);
  platformLog("ImageURL: " + (imageURL_.empty() ? "(null)" : imageURL_.text()));
  const auto& platform = environment_->platform();
  if (imageURL_.empty()) {
    platformLog("URI is not valid", LogLevel::warning);
    return fail(makeError(SdkError::invalidPictureUri, "URI was not valid."));
  }
  const auto title = [&](std::string_view key) {
    return platform.application->localizedString(key);
  };
  // Quirk: the message is not translated, and a host without translations shows the keys.
  platform.alerts->show({.title = {},
                         .message = "Save Photos",
                         .buttons = {title("No_Title"), title("Yes_Title")},
                         .cancelButton = cancelButton},
                        [weak = weak_from_this(), picture = imageURL_](std::size_t button) {
                          const auto self = weak.lock();
                          if (self) self->alertViewClickedButtonAtIndex(button, picture);
                        });
}

void XPictureManager::alertViewClickedButtonAtIndex(std::size_t button, const Url& picture) {
  const OperationLog log{"-[XPictureManager alertView:clickedButtonAtIndex:]"};
  if (button == cancelButton) {
    platformLog("Action Cancelled");
    fail(makeError(SdkError::userCancelled, "The user canceled the action."));
  } else if (button == saveButton) {
    platformLog("OK Button Pressed");
    download(picture);
  }
}

void XPictureManager::download(const Url& picture) {
  const auto& limits = environment_->limits();
  HttpRequest request{.url = picture};
  request.idleTimeout = limits.requestIdleTimeout;
  request.deadline = limits.requestDeadline;
  request.maximumBodyBytes = limits.pictureBytes;
  environment_->platform().http->send(std::move(request),
                                      Relay{*this}.call(&XPictureManager::downloaded));
}

void XPictureManager::downloaded(const HttpResult& result) {
  if (result.error) {
    platformLog("Error while processing the OK Button Request", LogLevel::warning);
    return fail(*result.error);
  }
  // Quirk: the message comes before the picture is looked at.
  platformLog("Image saved to gallery");
  const auto& platform = environment_->platform();
  const std::string bytes = result.response ? result.response->body : std::string{};
  // A picture that cannot be decoded goes on as nothing: the album says what is wrong with it.
  platform.images->decode(bytes, [weak = weak_from_this(), album = platform.photoAlbum,
                                  bytes](const Image& picture) {
    album->save(bytes, picture, [weak](const std::optional<Error>& error) {
      const OperationLog saved{"-[XPictureManager image:didFinishSavingWithError:contextInfo:]"};
      const auto self = weak.lock();
      if (self && error) self->fail(*error);
    });
  });
}

}  // namespace tavo
