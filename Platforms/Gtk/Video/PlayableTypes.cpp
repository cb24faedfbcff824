#include "Gtk/Video/PlayableTypes.h"

#include <gst/gst.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tavo::gtk {

namespace {

struct Container {
  std::string_view type;
  const char* caps;
  std::array<const char*, 4> codecs;  // null: no more
};
constexpr std::array<Container, 3> containers{
    {{"video/mp4",
      "video/quicktime",
      {"video/x-h264", "video/mpeg, mpegversion=(int)4", "video/x-h265", "video/x-av1"}},
     {"video/webm", "video/webm", {"video/x-vp8", "video/x-vp9", "video/x-av1"}},
     {"video/ogg", "application/ogg", {"video/x-theora"}}}};

// Whether an element of this kind takes `text`.
bool hasElement(GstElementFactoryListType kind, const char* text) {
  GstCaps* const caps = gst_caps_from_string(text);
  if (caps == nullptr) return false;
  GList* const all = gst_element_factory_list_get_elements(kind, GST_RANK_MARGINAL);
  GList* const fitting = gst_element_factory_list_filter(all, caps, GST_PAD_SINK, FALSE);
  const bool found = fitting != nullptr;
  gst_plugin_feature_list_free(fitting);
  gst_plugin_feature_list_free(all);
  gst_caps_unref(caps);
  return found;
}

}  // namespace

bool isPlayable(const std::string& type) {
  return std::any_of(containers.begin(), containers.end(), [&](const Container& container) {
    return container.type == type && hasElement(GST_ELEMENT_FACTORY_TYPE_DEMUXER, container.caps) &&
           std::any_of(container.codecs.begin(), container.codecs.end(), [](const char* codec) {
             return codec != nullptr && hasElement(GST_ELEMENT_FACTORY_TYPE_DECODER, codec);
           });
  });
}

}  // namespace tavo::gtk
