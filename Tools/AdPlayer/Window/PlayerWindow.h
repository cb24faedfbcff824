#pragma once

#include <gtkmm.h>

#include <memory>
#include <string>
#include <vector>

#include "AdPlayer/Source/Opening.h"
#include "AdPlayer/Source/PlayServer.h"
#include "AdPlayer/Stage/Stage.h"
#include "AdPlayer/Window/DeviceBar.h"
#include "AdPlayer/Window/LedgerView.h"
#include "AdPlayer/Window/Recorder.h"
#include "AdPlayer/Window/ScaledBin.h"
#include "AdPlayer/Window/SlotPanel.h"
#include "AdPlayer/Window/TimelineView.h"

namespace tavo::adplayer {

struct PlayerWindowOptions {
  std::string campaigns{};
  std::string film{};
  std::string source{};  // played at once; empty: nothing
  bool dark = false;
};

// The window: campaigns on the left, the phone in the middle, and on the right what happens.
class PlayerWindow : public Gtk::ApplicationWindow {
 public:
  PlayerWindow(Stage& stage, PlayerWindowOptions options);
  ~PlayerWindow() override;

  void play(const std::string& source);

 private:
  void makeHeader();
  void makeSide();
  void makeBody();
  void makeKeys();
  void addHeaderButton(Gtk::Button& button, const char* icon, const char* name,
                       std::function<void()> pressed);
  void fillCampaigns();
  void playAgain();
  void take(const Opened& opened, int attempt);
  void tell(const std::string& text, const char* cssClass);
  void chooseFile();
  void savePicture();
  void toggleRecording();
  void saveAs(const char* title, const std::string& name, const std::string& bytes);
  void followWidth(int width);
  void readState();
  void writeState();

  Stage& stage_;
  PlayerWindowOptions options_;
  Phone phone_;
  Session session_;
  Gtk::HeaderBar header_;
  Gtk::ToggleButton sideSwitch_;
  Gtk::Entry entry_;
  Gtk::Button open_;
  Gtk::Button again_;
  Gtk::Button close_;
  Gtk::Button picture_;
  Gtk::ToggleButton record_;
  Gtk::ToggleButton tools_;
  Gtk::ToggleButton dark_;
  Gtk::Label notice_;
  Gtk::Paned outer_{Gtk::Orientation::HORIZONTAL};
  Gtk::Paned inner_{Gtk::Orientation::HORIZONTAL};
  Gtk::Box side_{Gtk::Orientation::VERTICAL};
  Gtk::SearchEntry sideSearch_;
  Gtk::ListBox campaigns_;
  Gtk::Box stageBox_{Gtk::Orientation::VERTICAL};
  Gtk::Box bezel_;
  ScaledBin scaled_;
  DeviceBar device_;
  Gtk::Box right_{Gtk::Orientation::VERTICAL};
  Gtk::StackSwitcher switcher_;
  Gtk::Stack pages_;
  TimelineView timeline_;
  LedgerView ledger_;
  SlotPanel slot_;
  Recorder recorder_;
  std::unique_ptr<PlayServer> films_;
  Playable playable_;
  std::string source_;
  int attempt_ = 0;
  bool isNarrow_ = false;
  Glib::RefPtr<Gtk::FileChooserNative> chooser_;
};

}  // namespace tavo::adplayer
