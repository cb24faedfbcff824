#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "Rules/Presence.h"
#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"
#include "Services/Bundle.h"
#include "Services/Device.h"
#include "Services/ImageDecoder.h"
#include "Services/Log.h"
#include "Services/RunLoop.h"
#include "Services/Screen.h"
#include "Services/Telephony.h"
#include "Services/UserDefaults.h"

namespace tavo::headless {

// The small services in memory; tests set their public fields.

class HeadlessLog : public Log {
 public:
  void write(LogLevel level, std::string_view message) override;
  // Those of at least that level.
  [[nodiscard]] std::vector<std::string> messages(LogLevel least = LogLevel::debug) const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::pair<LogLevel, std::string>> messages_;
};

class HeadlessScreen : public Screen {
 public:
  [[nodiscard]] Rect bounds() const override { return rect; }
  [[nodiscard]] std::optional<double> scale() const override { return factor; }
  Rect rect{0, 0, 320, 480};
  std::optional<double> factor = 2;
};

class HeadlessDevice : public Device {
 public:
  [[nodiscard]] std::string model() const override { return "Headless"; }
  [[nodiscard]] std::string hardwareMachine() const override { return "Headless1,1"; }
  [[nodiscard]] std::string systemVersion() const override { return "3.18"; }
  [[nodiscard]] std::string contractVersion() const override { return version; }
  [[nodiscard]] std::string applicationVersion() const override { return "1.0"; }
  [[nodiscard]] std::vector<std::string> preferredLanguages() const override { return {"en"}; }
  [[nodiscard]] std::string localeIdentifier() const override { return "en_US"; }
  std::string version = "12.0";
};

class HeadlessUserDefaults : public UserDefaults {
 public:
  [[nodiscard]] std::optional<std::string> value(std::string_view key) const override;
  void setValue(std::string_view key, std::optional<std::string> value) override;
  void synchronize() override { ++synchronized; }
  int synchronized = 0;

 private:
  std::map<std::string, std::string, std::less<>> values_;
};

class HeadlessBundle : public Bundle {
 public:
  [[nodiscard]] std::optional<std::string> pathForResource(std::string_view bundle,
                                                           std::string_view name,
                                                           std::string_view type) const override;
  [[nodiscard]] std::optional<std::string> contents(const std::string& path) const override;
  // Path to bytes; paths read "/bundle/<bundle>.bundle/<name>.<type>".
  std::map<std::string, std::string> files;
};

// Reads pictures of the form "image <width>x<height>"; everything else is no picture. What it
// makes is one grey pixel value all over.
class HeadlessImageDecoder : public ImageDecoder {
 public:
  HeadlessImageDecoder(std::shared_ptr<RunLoop> runLoop, std::size_t picturePixels)
      : runLoop_{std::move(runLoop)}, picturePixels_{picturePixels} {}
  void decode(std::string bytes, std::function<void(Image)> completion) override;
  [[nodiscard]] Image decodeNow(const std::string& bytes) const override;

 private:
  std::shared_ptr<RunLoop> runLoop_;
  std::size_t picturePixels_;
};

// A device whose carrier nobody knows, until a test says so.
class HeadlessTelephony : public Telephony {
 public:
  [[nodiscard]] std::optional<Carrier> subscriberCarrier() const override { return carrier; }
  std::optional<Carrier> carrier;
};

class HeadlessApplication : public Application {
 public:
  explicit HeadlessApplication(std::shared_ptr<NotificationCenter> notifications)
      : notifications_{std::move(notifications)} {}
  [[nodiscard]] std::vector<std::shared_ptr<Window>> windows() const override { return allWindows; }
  [[nodiscard]] std::shared_ptr<Window> keyWindow() const override {
    return allWindows.empty() ? nullptr : allWindows.front();
  }
  [[nodiscard]] InterfaceOrientation statusBarOrientation() const override { return orientation; }
  [[nodiscard]] Rect statusBarFrame() const override { return statusBar; }
  [[nodiscard]] bool isStatusBarHidden() const override { return statusBarHidden; }
  void setStatusBarHidden(bool hidden, StatusBarAnimation animation) override;
  [[nodiscard]] bool canOpenUrl(const Url& url) const override;
  bool openUrl(const Url& url) override;
  [[nodiscard]] std::string localizedString(std::string_view key) const override;

  // Plays the host, whose windows come and go, and the person at the screen. Posts what is due.
  void showWindows(bool shown);
  void lockScreen(bool locked);

  std::vector<std::shared_ptr<Window>> allWindows;
  InterfaceOrientation orientation = InterfaceOrientation::portrait;
  Rect statusBar{0, 0, 320, 20};
  bool statusBarHidden = false;
  std::set<std::string, std::less<>> openableSchemes{"http", "https"};
  std::vector<Url> openedUrls;
  std::map<std::string, std::string, std::less<>> translations;

 private:
  void post(const Presence::Due& due);

  std::shared_ptr<NotificationCenter> notifications_;
  Presence presence_;
};

}  // namespace tavo::headless
