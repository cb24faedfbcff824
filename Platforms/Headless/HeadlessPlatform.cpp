#include "Headless/HeadlessPlatform.h"

#include "Runtime/NotificationCenter.h"

namespace tavo::headless {

HeadlessPlatform::HeadlessPlatform(const Limits& bounds)
    : limits{bounds},
      notifications{std::make_shared<NotificationCenter>()},
      runLoop{std::make_shared<HeadlessRunLoop>()},
      inspection{std::make_shared<Inspection>([loop = runLoop] { return loop->now(); })},
      log{std::make_shared<HeadlessLog>()},
      cookies{std::make_shared<HeadlessCookieStore>(runLoop, limits)},
      http{
          std::make_shared<HeadlessHttpClient>(runLoop, cookies, limits.httpRedirects, inspection)},
      network{std::make_shared<HeadlessNetworkMonitor>()},
      screen{std::make_shared<HeadlessScreen>()},
      device{std::make_shared<HeadlessDevice>()},
      userDefaults{std::make_shared<HeadlessUserDefaults>()},
      bundle{std::make_shared<HeadlessBundle>()},
      images{std::make_shared<HeadlessImageDecoder>(runLoop, limits.picturePixels)},
      application{std::make_shared<HeadlessApplication>(notifications)},
      webViews{std::make_shared<HeadlessWebViewFactory>(runLoop)},
      alerts{std::make_shared<HeadlessAlerts>()},
      calendarAccess{std::make_shared<HeadlessCalendarAccess>(runLoop)},
      composers{std::make_shared<HeadlessComposers>()},
      photoAlbum{std::make_shared<HeadlessPhotoAlbum>(runLoop)},
      moviePlayers{std::make_shared<HeadlessMoviePlayerFactory>(runLoop, limits)},
      adNetwork{std::make_shared<HeadlessAdNetworkLibrary>()},
      folders{std::make_shared<HeadlessFolders>()},
      telephony{std::make_shared<HeadlessTelephony>()} {
  bundle->files["/bundle/CorvaneTAVOSDKMRAID.bundle/XMraid.js"] = "/* mraid */";
}

Platform HeadlessPlatform::another() const {
  Platform other = platform();
  other.notifications = std::make_shared<NotificationCenter>();
  return other;
}

Platform HeadlessPlatform::platform() const {
  return {.limits = limits,
          .adNetwork = adNetwork,
          .alerts = alerts,
          .application = application,
          .bundle = bundle,
          .calendarAccess = calendarAccess,
          .composers = composers,
          .cookies = cookies,
          .device = device,
          .folders = folders,
          .http = http,
          .images = images,
          .inspection = inspection,
          .log = log,
          .moviePlayers = moviePlayers,
          .network = network,
          .notifications = notifications,
          .photoAlbum = photoAlbum,
          .runLoop = runLoop,
          .screen = screen,
          .telephony = telephony,
          .userDefaults = userDefaults,
          .webViews = webViews};
}

}  // namespace tavo::headless
