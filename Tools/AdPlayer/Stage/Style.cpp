#include "AdPlayer/Stage/Style.h"

namespace tavo::adplayer {

namespace {

// Colours by the theme's own names, so that light and dark follow it.
constexpr const char* css = R"css(
.stage { background-color: mix(@theme_bg_color, @theme_fg_color, 0.06); }
.stage-bar { padding: 6px 10px; border-bottom: 1px solid @borders;
  background-color: @theme_bg_color; }
.phone-bezel { background-color: #15171b; border-radius: 38px; padding: 13px 11px; margin: 18px;
  box-shadow: 0 14px 34px rgba(0,0,0,.30), 0 0 0 1px rgba(255,255,255,.10) inset; }
.phone-screen { border-radius: 27px; background-color: #ffffff; }
.phone-status { background-color: #ffffff; color: #22252a; font-size: 11px; font-weight: 600; }
.phone-article { padding: 16px; background-color: #ffffff; }
.phone-line { background-color: #e8eaee; border-radius: 5px; }
.phone-cover { background-color: #f1f3f7; color: #5a626e; }
.phone-lock { background-color: #10131a; color: #e8ebf2; }
.side { background-color: @theme_base_color; border-right: 1px solid @borders; }
.side-title { padding: 10px 12px 2px; font-weight: 700; }
.side row { padding: 7px 12px; }
.side row label.name { font-weight: 600; }
.pane-tools { padding: 8px; border-bottom: 1px solid @borders; }
.timeline row { padding: 3px 8px; }
.event-time { font-size: 11px; opacity: .65; font-feature-settings: "tnum"; }
.event-kind { font-size: 11px; font-weight: 600; border-radius: 9px; padding: 1px 6px;
  background-color: alpha(@theme_fg_color, .09); }
.k-scriptError, .k-process, .k-pause { background-color: alpha(#e0443a, .22); }
.k-outcome, .k-expect { background-color: alpha(#1f9d61, .24); }
.k-request, .k-answer, .k-resource { background-color: alpha(#3b6fe0, .20); }
.k-ping { background-color: alpha(#8a56d6, .22); }
.k-console { background-color: alpha(#2a9bb5, .22); }
.k-wrapper, .k-media, .k-navigation, .k-stall { background-color: alpha(#d48a10, .24); }
.k-classified, .k-callback { background-color: alpha(#1f9d61, .14); }
.detail { font-size: 12px; }
.ledger-totals { padding: 12px; font-weight: 600; border-bottom: 1px solid @borders; }
.ledger-row { padding: 7px 10px; }
.warning-text { color: #c77700; }
.slot-panel { padding: 4px 14px 20px; }
.group-title { font-weight: 700; padding: 14px 2px 6px; }
.group { border: 1px solid @borders; border-radius: 9px; }
.caption-text { font-size: 11px; }
.notice { padding: 8px 12px; }
.notice.good { background-color: alpha(#1f9d61, .20); }
.notice.bad { background-color: alpha(#e0443a, .20); }
)css";

}  // namespace

void installStyle() {
  const auto provider = Gtk::CssProvider::create();
  provider->load_from_data(css);
  Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), provider,
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace tavo::adplayer
