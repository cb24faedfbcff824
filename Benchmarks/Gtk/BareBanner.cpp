#include "BareBanner.h"

namespace tavo::benchmark {

BareBanner::BareBanner(Gtk::Box& place, const std::string& html, const std::string& base,
                       const BareBanner* related)
    : place_{place},
      view_{GTK_WIDGET(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view",
                                    related == nullptr ? nullptr : related->view_, nullptr))} {
  gtk_widget_set_size_request(view_, 320, 50);
  g_signal_connect(view_, "load-changed",
                   G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
                     if (event == WEBKIT_LOAD_FINISHED)
                       static_cast<BareBanner*>(self)->loaded_ = true;
                   }),
                   this);
  gtk_box_append(place_.gobj(), view_);
  load(html, base);
}

void BareBanner::load(const std::string& html, const std::string& base) {
  loaded_ = false;
  webkit_web_view_load_html(WEBKIT_WEB_VIEW(view_), html.c_str(), base.c_str());
}

BareBanner::~BareBanner() {
  g_signal_handlers_disconnect_by_data(view_, this);
  gtk_box_remove(place_.gobj(), view_);
}

}  // namespace tavo::benchmark
