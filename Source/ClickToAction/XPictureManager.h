#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include <tavo/Error.h>
#include <tavo/Observer.h>
#include <tavo/Url.h>

#include "Runtime/Environment.h"
#include "Services/HttpClient.h"

namespace tavo {

class XPictureManager;

// What a picture manager reports; there is no report of success.
struct XPictureManagerDelegate {
  std::function<void(XPictureManager&, const Error&)>
      pictureManagerDidFailToStorePictureWithError{};
};

// Saves a picture that a creative offers: asks the user, downloads the picture and puts it into the
// photo album. Main thread only. A manager that goes takes its unanswered questions and downloads
// with it.
class XPictureManager : public std::enable_shared_from_this<XPictureManager> {
 public:
  [[nodiscard]] static std::shared_ptr<XPictureManager> create(
      std::shared_ptr<Environment> environment,
      const std::shared_ptr<const XPictureManagerDelegate>& delegate);

  Observer<XPictureManagerDelegate> delegate;

  // Starts with the picture under "url" among the command's parameters. A text that forms no URL is
  // reported inside this call, everything else later.
  void storePicture(const std::map<std::string, std::string, std::less<>>& parameters);

  // The picture to save, the last one that was asked for.
  [[nodiscard]] const Url& imageURL() const { return imageURL_; }

 private:
  explicit XPictureManager(std::shared_ptr<Environment> environment)
      : environment_{std::move(environment)} {}

  void alertViewClickedButtonAtIndex(std::size_t button, const Url& picture);
  void download(const Url& picture);
  void downloaded(const HttpResult& result);
  void fail(const Error& error);

  std::shared_ptr<Environment> environment_;
  Url imageURL_;
};

}  // namespace tavo
