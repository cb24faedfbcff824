#include <optional>

#include <tavo/Runtime.h>
#include <tavo/gtk/GtkPlatform.h>

#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Http/GtkHttpClient.h"
#include "Gtk/Http/GtkNetworkMonitor.h"
#include "Gtk/Modules/GtkAdNetworkLibrary.h"
#include "Gtk/Modules/GtkVideoModule.h"
#include "Gtk/Modules/GtkWebModule.h"
#include "Gtk/Services/EnvironmentPath.h"
#include "Gtk/Services/GtkApplication.h"
#include "Gtk/Services/GtkBundle.h"
#include "Gtk/Services/GtkDevice.h"
#include "Gtk/Services/GtkFolders.h"
#include "Gtk/Services/GtkImageDecoder.h"
#include "Gtk/Services/GtkLog.h"
#include "Gtk/Services/GtkPhotoAlbum.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Gtk/Services/GtkScreen.h"
#include "Gtk/Services/GtkTelephony.h"
#include "Gtk/Services/GtkUserDefaults.h"
#include "Gtk/Services/OwnFolders.h"
#include "Gtk/Services/Translations.h"
#include "Gtk/Sheets/GtkAlerts.h"
#include "Gtk/Sheets/GtkCalendarAccess.h"
#include "Gtk/Sheets/GtkComposers.h"
#include "Runtime/Environment.h"
#include "Runtime/NotificationCenter.h"

namespace tavo::gtk {

namespace {

std::string cookiePath(const GtkPlatformOptions& options) {
  return options.dataFolder.empty() ? GtkCookieStore::defaultPath(options.applicationId)
                                    : options.dataFolder + "/cookies.sqlite";
}

std::string documentFolder(const GtkPlatformOptions& options) {
  return options.dataFolder.empty() ? GtkFolders::defaultFolder(options.applicationId)
                                    : options.dataFolder;
}

std::string defaultsPath(const GtkPlatformOptions& options) {
  return options.dataFolder.empty() ? GtkUserDefaults::defaultPath(options.applicationId)
                                    : options.dataFolder + "/defaults.ini";
}

std::vector<std::string> resourceRoots(const GtkPlatformOptions& options) {
  std::vector<std::string> roots{gtk::resourceFolder(options.libraryResourceFolder)};
  if (!options.resourceFolder.empty()) roots.push_back(options.resourceFolder);
  return roots;
}

std::string adNetworkPath(const GtkPlatformOptions& options) {
  return options.adNetworkLibrary.empty() ? pathOfEnvironment("TAVO_AD_NETWORK")
                                          : options.adNetworkLibrary;
}

std::string eventFolder(const GtkPlatformOptions& options) {
  return options.dataFolder.empty() ? GtkCalendarAccess::defaultFolder(options.applicationId)
                                    : options.dataFolder + "/events";
}

// What the user sees and keeps: sheets, alerts, the calendar, the pictures.
// The product token of the application, as every platform request of it has one.
std::string userAgent(const GtkPlatformOptions& options) {
  if (options.applicationId.empty() || options.applicationVersion.empty()) {
    return options.applicationId;
  }
  return options.applicationId + "/" + options.applicationVersion;
}

void addUserServices(Platform& platform, const GtkPlatformOptions& options) {
  const auto application = std::make_shared<GtkApplication>(
      platform.notifications, platform.limits.widgetSide, options.orientationFit);
  platform.application = application;
  platform.screen = std::make_shared<GtkScreen>(application);
  platform.alerts = std::make_shared<GtkAlerts>(platform.runLoop, application);
  platform.calendarAccess = std::make_shared<GtkCalendarAccess>(
      platform.runLoop, eventFolder(options), moduleFolder(options.moduleFolder));
  platform.composers = std::make_shared<GtkComposers>(application, platform.webViews);
  platform.photoAlbum =
      std::make_shared<GtkPhotoAlbum>(platform.runLoop, GtkPhotoAlbum::defaultFolder());
}

}  // namespace

namespace {

// Whose platform is the current one.
struct Made {
  std::string applicationId;
  std::string dataFolder;
  std::weak_ptr<RunLoop> runLoop;
};

Made& lastMade() {
  static Made only;
  return only;
}

// The current platform, when it is the same application's. Two sets of services would fight over
// one store of cookies and one of settings.
std::optional<Platform> livingPlatform(const GtkPlatformOptions& options) {
  const auto environment = Runtime::currentEnvironment();
  if (!environment) return std::nullopt;
  const auto& last = lastMade();
  const auto& current = environment->platform();
  const bool isSame = last.applicationId == options.applicationId &&
                      last.dataFolder == options.dataFolder &&
                      last.runLoop.lock() == current.runLoop;
  return isSame ? std::optional{current} : std::nullopt;
}

}  // namespace

Platform makePlatform(const GtkPlatformOptions& options) {
  if (auto living = livingPlatform(options)) return *living;
  bindInstalledTranslations(gtk::resourceFolder(options.libraryResourceFolder));
  Platform platform{.limits = options.limits};
  platform.notifications = std::make_shared<NotificationCenter>();
  platform.runLoop = std::make_shared<GtkRunLoop>();
  lastMade() = {options.applicationId, options.dataFolder, platform.runLoop};
  platform.inspection =
      std::make_shared<Inspection>([loop = platform.runLoop] { return loop->now(); });
  platform.log = std::make_shared<GtkLog>();
  platform.adNetwork = std::make_shared<GtkAdNetworkLibrary>(adNetworkPath(options), platform.log);
  const auto cookies =
      std::make_shared<GtkCookieStore>(platform.runLoop, cookiePath(options), options.limits);
  platform.cookies = cookies;
  platform.http = std::make_shared<GtkHttpClient>(
      platform.runLoop, platform.cookies, options.limits, userAgent(options), platform.inspection);
  platform.network = std::make_shared<GtkNetworkMonitor>(
      options.assumeReachable ? GtkNetworkMonitor::Assumption::reachable
                              : GtkNetworkMonitor::assumptionOfEnvironment());
  platform.userDefaults = std::make_shared<GtkUserDefaults>(defaultsPath(options));
  platform.bundle = std::make_shared<GtkBundle>(resourceRoots(options));
  platform.device = std::make_shared<GtkDevice>(options.applicationVersion);
  platform.folders = std::make_shared<GtkFolders>(documentFolder(options));
  platform.images =
      std::make_shared<GtkImageDecoder>(platform.runLoop, options.limits.picturePixels);
  platform.telephony = std::make_shared<GtkTelephony>();
  platform.webViews =
      std::make_shared<GtkWebModule>(GtkWebModule::Services{.runLoop = platform.runLoop,
                                                            .userDefaults = platform.userDefaults,
                                                            .log = platform.log,
                                                            .cookies = cookies,
                                                            .inspection = platform.inspection,
                                                            .limits = options.limits},
                                     moduleFolder(options.moduleFolder));
  platform.webViews->findUserAgent([] {});  // while nobody waits for it yet
  addUserServices(platform, options);
  platform.moviePlayers = std::make_shared<GtkVideoModule>(
      GtkVideoModule::Services{
          .runLoop = platform.runLoop,
          .log = platform.log,
          .userAgent = [webViews = platform.webViews] { return webViews->userAgent(); },
          .limits = options.limits},
      moduleFolder(options.moduleFolder));
  return platform;
}

}  // namespace tavo::gtk
