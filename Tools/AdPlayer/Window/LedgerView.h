#pragma once

#include <gtkmm.h>

#include <map>
#include <memory>
#include <string>

#include "AdPlayer/Events/EventLog.h"

namespace tavo::adplayer {

// The tracking pings of the ad: how many were due, sent, answered and doubled, and each of them.
class LedgerView : public Gtk::Box {
 public:
  explicit LedgerView(EventLog& log);

 private:
  void clear();
  void add(const PlayEvent& event);
  void showTotals();

  Gtk::Label totals_;
  Gtk::ScrolledWindow scroller_;
  Gtk::ListBox list_;
  std::map<std::string, int> seen_;  // by URL
  int doubled_ = 0;
  std::uint64_t base_[4] = {};  // the ledger's totals when the play began
  std::shared_ptr<void> listener_;
};

}  // namespace tavo::adplayer
