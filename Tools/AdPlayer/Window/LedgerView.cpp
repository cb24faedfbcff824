#include "AdPlayer/Window/LedgerView.h"

#include <tavo/TrackingLedger.h>

#include "Values/Translation.h"

namespace tavo::adplayer {

LedgerView::LedgerView(EventLog& log) : Gtk::Box{Gtk::Orientation::VERTICAL} {
  totals_.set_xalign(0);
  totals_.set_wrap(true);
  totals_.add_css_class("ledger-totals");
  list_.set_selection_mode(Gtk::SelectionMode::NONE);
  auto* const nothing =
      Gtk::make_managed<Gtk::Label>(translated("No tracking ping has come to an end yet."));
  nothing->add_css_class("dim-label");
  nothing->set_margin(24);
  list_.set_placeholder(*nothing);
  gtk_accessible_update_property(GTK_ACCESSIBLE(list_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 translated("Tracking pings").c_str(), -1);
  scroller_.set_child(list_);
  scroller_.set_vexpand(true);
  append(totals_);
  append(scroller_);
  listener_ = log.listen([this](const PlayEvent& event) {
    if (event.kind == "step" && event.text.starts_with("load ")) clear();
    if (event.kind == "ping") add(event);
    if (event.kind == "ping" || event.kind == "outcome") showTotals();
  });
  clear();
}

void LedgerView::clear() {
  while (auto* row = list_.get_row_at_index(0)) list_.remove(*row);
  seen_.clear();
  doubled_ = 0;
  const PingTotals& totals = TrackingLedger::sharedInstance().totals();
  base_[0] = totals.due;
  base_[1] = totals.sent;
  base_[2] = totals.answered;
  base_[3] = totals.failed + totals.suppressed + totals.dropped;
  showTotals();
}

void LedgerView::showTotals() {
  const PingTotals& totals = TrackingLedger::sharedInstance().totals();
  const auto lost = totals.failed + totals.suppressed + totals.dropped;
  const auto text = [](const char* what, std::uint64_t number) {
    return filledIn(translated(what), std::to_string(number));
  };
  constexpr const char* gap = "    ";
  totals_.set_text(text(toTranslate("%1 due"), totals.due - base_[0]) + gap +
                   text(toTranslate("%1 sent"), totals.sent - base_[1]) + gap +
                   text(toTranslate("%1 answered"), totals.answered - base_[2]) + gap +
                   text(toTranslate("%1 lost"), lost - base_[3]) + gap +
                   text(toTranslate("%1 doubled"), static_cast<std::uint64_t>(doubled_)));
}

void LedgerView::add(const PlayEvent& event) {
  const std::string url{event.field("url")};
  const bool isDouble = ++seen_[url] > 1;
  if (isDouble) ++doubled_;
  auto* const line = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
  line->add_css_class("ledger-row");
  auto* const what = Gtk::make_managed<Gtk::Label>(
      std::string{event.field("context")} + ": " + std::string{event.field("outcome")} + " after " +
      std::string{event.field("seconds")} + " s" + (isDouble ? "  (sent before)" : ""));
  what->set_xalign(0);
  what->set_wrap(true);
  if (isDouble) what->add_css_class("warning-text");
  auto* const where = Gtk::make_managed<Gtk::Label>(url);
  where->set_xalign(0);
  where->set_selectable(true);
  where->set_ellipsize(Pango::EllipsizeMode::MIDDLE);
  where->set_tooltip_text(url);
  where->add_css_class("dim-label");
  line->append(*what);
  line->append(*where);
  list_.append(*line);
}

}  // namespace tavo::adplayer
