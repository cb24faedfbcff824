#pragma once

#include <memory>

#include <tavo/Limits.h>

namespace tavo {

class AdNetworkLibrary;
class Alerts;
class Application;
class Bundle;
class CalendarAccess;
class Composers;
class CookieStore;
class Device;
class Folders;
class HttpClient;
class ImageDecoder;
class Inspection;
class Log;
class MoviePlayerFactory;
class NetworkMonitor;
class NotificationCenter;
class PhotoAlbum;
class RunLoop;
class Screen;
class Telephony;
class UserDefaults;
class WebViewFactory;

// The services of one platform, and the bounds within which they and the SDK keep hostile input. A
// platform's make function fills it whole: `gtk::makePlatform` for GTK. A host hands it to its
// Runtime, which refuses one that lacks a service, and never looks inside.
//
// A host that replaces a service (a test, a kiosk with a transport of its own) derives from the
// service's class in the platform boundary and sets the pointer before it makes the runtime; the
// runtime and everything made in it share the service and keep it for as long as they live. Each
// class says in its header which thread it is called on.
struct Platform {
  Limits limits{};

  std::shared_ptr<AdNetworkLibrary> adNetwork{};
  std::shared_ptr<Alerts> alerts{};
  std::shared_ptr<Application> application{};
  std::shared_ptr<Bundle> bundle{};
  std::shared_ptr<CalendarAccess> calendarAccess{};
  std::shared_ptr<Composers> composers{};
  std::shared_ptr<CookieStore> cookies{};
  std::shared_ptr<Device> device{};
  std::shared_ptr<Folders> folders{};
  std::shared_ptr<HttpClient> http{};
  std::shared_ptr<ImageDecoder> images{};
  std::shared_ptr<Inspection> inspection{};
  std::shared_ptr<Log> log{};
  std::shared_ptr<MoviePlayerFactory> moviePlayers{};
  std::shared_ptr<NetworkMonitor> network{};
  std::shared_ptr<NotificationCenter> notifications{};
  std::shared_ptr<PhotoAlbum> photoAlbum{};
  std::shared_ptr<RunLoop> runLoop{};
  std::shared_ptr<Screen> screen{};
  std::shared_ptr<Telephony> telephony{};
  std::shared_ptr<UserDefaults> userDefaults{};
  std::shared_ptr<WebViewFactory> webViews{};

  // The same services and bounds.
  friend bool operator==(const Platform&, const Platform&) = default;
};

}  // namespace tavo
