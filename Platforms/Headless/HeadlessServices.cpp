#include "Headless/HeadlessServices.h"

#include <cstdio>

#include "Runtime/NotificationCenter.h"

namespace tavo::headless {

void HeadlessLog::write(LogLevel level, std::string_view message) {
  const std::scoped_lock lock{mutex_};
  messages_.emplace_back(level, message);
}

std::vector<std::string> HeadlessLog::messages(LogLevel least) const {
  const std::scoped_lock lock{mutex_};
  std::vector<std::string> texts;
  for (const auto& [level, text] : messages_) {
    if (level >= least) texts.push_back(text);
  }
  return texts;
}

std::optional<std::string> HeadlessUserDefaults::value(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void HeadlessUserDefaults::setValue(std::string_view key, std::optional<std::string> value) {
  if (key.empty()) return;
  if (value) {
    values_[std::string{key}] = std::move(*value);
  } else if (const auto found = values_.find(key); found != values_.end()) {
    values_.erase(found);
  }
}

std::optional<std::string> HeadlessBundle::pathForResource(std::string_view bundle,
                                                           std::string_view name,
                                                           std::string_view type) const {
  std::string path = "/bundle/";
  if (!bundle.empty()) path += std::string{bundle} + ".bundle/";
  path += name;
  if (!type.empty()) path += "." + std::string{type};
  if (!files.contains(path)) return std::nullopt;
  return path;
}

std::optional<std::string> HeadlessBundle::contents(const std::string& path) const {
  const auto found = files.find(path);
  if (found == files.end()) return std::nullopt;
  return found->second;
}

Image HeadlessImageDecoder::decodeNow(const std::string& bytes) const {
  int width = 0;
  int height = 0;
  if (std::sscanf(bytes.c_str(), "image %dx%d", &width, &height) != 2) return {};
  if (width <= 0 || height <= 0) return {};
  const auto rows = static_cast<std::size_t>(height);
  const auto stride = static_cast<std::size_t>(width) * 4;
  const auto size = stride * rows;
  if (size / 4 > picturePixels_) return {};
  auto pixels = std::make_shared<std::vector<std::uint8_t>>(size, std::uint8_t{0x80});
  return {width, height, stride, Image::Pixels{pixels, pixels->data()}};
}

void HeadlessImageDecoder::decode(std::string bytes, std::function<void(Image)> completion) {
  runLoop_->post(
      [image = decodeNow(bytes), completion = std::move(completion)] { completion(image); });
}

void HeadlessApplication::showWindows(bool shown) { post(presence_.windowsShown(shown)); }

void HeadlessApplication::lockScreen(bool locked) { post(presence_.screenLocked(locked)); }

void HeadlessApplication::post(const Presence::Due& due) {
  if (due) notifications_->post(*due);
}

void HeadlessApplication::setStatusBarHidden(bool hidden, StatusBarAnimation /*animation*/) {
  statusBarHidden = hidden;
}

bool HeadlessApplication::canOpenUrl(const Url& url) const {
  return openableSchemes.contains(url.scheme());
}

bool HeadlessApplication::openUrl(const Url& url) {
  if (!canOpenUrl(url)) return false;
  openedUrls.push_back(url);
  return true;
}

std::string HeadlessApplication::localizedString(std::string_view key) const {
  const auto found = translations.find(key);
  return std::string{found == translations.end() ? key : found->second};
}

}  // namespace tavo::headless
