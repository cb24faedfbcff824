#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Services/Alerts.h"
#include "Services/CalendarAccess.h"
#include "Services/Folders.h"
#include "Services/PhotoAlbum.h"
#include "Services/RunLoop.h"

namespace tavo::headless {

// What belongs to the user, in memory: answers to alerts, the calendar, the pictures. Tests set the
// public fields.

// Alerts that wait for the test to answer them.
class HeadlessAlerts : public Alerts {
 public:
  void show(const Alert& alert, std::function<void(std::size_t)> answered) override {
    shown.push_back(alert);
    answers.push_back(std::move(answered));
  }
  std::vector<Alert> shown;
  std::vector<std::function<void(std::size_t)>> answers;
};

// A calendar whose answers come from another thread.
class HeadlessCalendarAccess : public CalendarAccess {
 public:
  explicit HeadlessCalendarAccess(std::shared_ptr<RunLoop> runLoop)
      : runLoop_{std::move(runLoop)} {}

  [[nodiscard]] std::optional<CalendarAuthorization> authorization() const override {
    return status;
  }
  [[nodiscard]] bool canRequestAccess() const override { return requestable; }
  void requestAccess(std::function<void(bool)> answered) override;
  void save(const CalendarEvent& event,
            std::function<void(const std::optional<Error>&)> done) override;

  std::optional<CalendarAuthorization> status;
  bool requestable = true;
  bool grants = true;
  int requests = 0;
  std::optional<Error> saveError;
  std::vector<CalendarEvent> saved;

 private:
  std::shared_ptr<RunLoop> runLoop_;
};

class HeadlessPhotoAlbum : public PhotoAlbum {
 public:
  explicit HeadlessPhotoAlbum(std::shared_ptr<RunLoop> runLoop) : runLoop_{std::move(runLoop)} {}

  void save(std::string bytes, const Image& picture,
            std::function<void(const std::optional<Error>&)> done) override;

  std::optional<Error> saveError;
  std::vector<std::string> saved;  // the bytes

 private:
  std::shared_ptr<RunLoop> runLoop_;
};

class HeadlessFolders : public Folders {
 public:
  [[nodiscard]] std::vector<std::string> documentFolders() const override { return folders; }
  std::vector<std::string> folders;
};

}  // namespace tavo::headless
