#pragma once

#include <memory>

#include <tavo/Inspection.h>
#include <tavo/Limits.h>
#include <tavo/Platform.h>

#include "Headless/HeadlessAdNetworkLibrary.h"
#include "Headless/HeadlessComposers.h"
#include "Headless/HeadlessCookieStore.h"
#include "Headless/HeadlessHttpClient.h"
#include "Headless/HeadlessMoviePlayerFactory.h"
#include "Headless/HeadlessNetworkMonitor.h"
#include "Headless/HeadlessRunLoop.h"
#include "Headless/HeadlessServices.h"
#include "Headless/HeadlessUserStores.h"
#include "Headless/HeadlessWebViewFactory.h"

namespace tavo::headless {

// The whole platform in memory, every part within reach of a test.
struct HeadlessPlatform {
  explicit HeadlessPlatform(const Limits& bounds = {});

  // The same parts, as the SDK sees them.
  [[nodiscard]] Platform platform() const;
  // The same parts as another platform, for a runtime of its own beside the first one.
  [[nodiscard]] Platform another() const;

  Limits limits;
  std::shared_ptr<NotificationCenter> notifications;
  std::shared_ptr<HeadlessRunLoop> runLoop;
  std::shared_ptr<Inspection> inspection;
  std::shared_ptr<HeadlessLog> log;
  std::shared_ptr<HeadlessCookieStore> cookies;
  std::shared_ptr<HeadlessHttpClient> http;
  std::shared_ptr<HeadlessNetworkMonitor> network;
  std::shared_ptr<HeadlessScreen> screen;
  std::shared_ptr<HeadlessDevice> device;
  std::shared_ptr<HeadlessUserDefaults> userDefaults;
  std::shared_ptr<HeadlessBundle> bundle;
  std::shared_ptr<HeadlessImageDecoder> images;
  std::shared_ptr<HeadlessApplication> application;
  std::shared_ptr<HeadlessWebViewFactory> webViews;
  std::shared_ptr<HeadlessAlerts> alerts;
  std::shared_ptr<HeadlessCalendarAccess> calendarAccess;
  std::shared_ptr<HeadlessComposers> composers;
  std::shared_ptr<HeadlessPhotoAlbum> photoAlbum;
  std::shared_ptr<HeadlessMoviePlayerFactory> moviePlayers;
  std::shared_ptr<HeadlessAdNetworkLibrary> adNetwork;
  std::shared_ptr<HeadlessFolders> folders;
  std::shared_ptr<HeadlessTelephony> telephony;
};

}  // namespace tavo::headless
