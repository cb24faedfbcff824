#pragma once

#include <string>

#include <tavo/Export.h>
#include <tavo/InterfaceOrientation.h>
#include <tavo/Limits.h>
#include <tavo/Platform.h>

namespace tavo::gtk {

// What the GTK platform has to know of the host. Only the application id must be given. Folders and
// files are absolute paths.
struct GtkPlatformOptions {
  // Names the folders of cookies, settings and the error log; use the application's own id.
  std::string applicationId;
  // The host's version, as its users know it.
  std::string applicationVersion = "1.0";
  // Folder for all of these; empty: the user's own for the application.
  std::string dataFolder{};
  // Folder with the host's own pictures that its settings name; empty: none.
  std::string resourceFolder{};
  // Requests are sent even when the system sees no network: for a server on this machine.
  bool assumeReachable = false;
  // The shared library of an external ad network; empty: the one that the environment variable
  // TAVO_AD_NETWORK names, or none; that variable, like the others that lead to code, counts only
  // with an absolute path, and not in a program with more rights than whoever started it. It runs
  // inside the host, with all the host's rights.
  std::string adNetworkLibrary{};
  // Where the library's modules lie, and its own scripts and pictures, for a host that carries them
  // in a place of its own; empty: where the environment variables TAVO_MODULE_DIR and
  // TAVO_RESOURCE_DIR say, by the same rules, or where the library is installed, seen from its
  // file.
  std::string moduleFolder{};
  std::string libraryResourceFolder{};
  // How ads that allow one orientation only are shown in a window of the other shape.
  OrientationFit orientationFit = OrientationFit::letterbox;
  // The bounds of everything that comes from the network; the runtime's, too.
  Limits limits{};
};

// The services of a GTK application, for the Runtime:
//
//   tavo::Runtime runtime{tavo::gtk::makePlatform({.applicationId = "com.example.host"})};
//
// Call it once (while a runtime lives on it, a second call for the same application answers the
// same platform, whatever its other options), on the main thread, after the toolkit was set up (in
// a Gtk::Application, from its start-up on). The web engine, video and calendars are modules that
// are loaded when the first ad needs them; where one is missing such ads fail, with the reason in
// the log.
[[nodiscard]] TAVO_EXPORT Platform makePlatform(const GtkPlatformOptions& options);

}  // namespace tavo::gtk
