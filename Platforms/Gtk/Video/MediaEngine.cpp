#include "Gtk/Video/MediaEngine.h"

#include <gst/gst.h>

#include <string_view>
#include <utility>

namespace tavo::gtk {

namespace {

// What a video over HTTP takes. A plugin that is not there is missed when it is needed, not here.
constexpr const char* pluginsToMap[] = {"coreelements", "playback",      "typefindfunctions",
                                        "soup",         "isomp4",        "videoparsersbad",
                                        "libav",        "audioparsers",  "videoconvertscale",
                                        "audioconvert", "audioresample", "volume",
                                        "app",          "autodetect"};

// Whether sound can be heard: the automatic sink stands in for itself where there is no device, but
// only after it has tried and complained about every kind of sound server.
bool findsSoundDevice() {
  GstElement* sink = gst_element_factory_make("autoaudiosink", nullptr);
  if (sink == nullptr) return false;
  gst_object_ref_sink(sink);
  gst_element_set_state(sink, GST_STATE_READY);
  GValue child = G_VALUE_INIT;
  GstIterator* children = gst_bin_iterate_sinks(GST_BIN(sink));
  bool found = false;
  if (gst_iterator_next(children, &child) == GST_ITERATOR_OK) {
    GstElementFactory* factory = gst_element_get_factory(GST_ELEMENT(g_value_get_object(&child)));
    found = factory != nullptr &&
            std::string_view{GST_OBJECT_NAME(factory)}.find("fake") == std::string_view::npos;
    g_value_unset(&child);
  }
  gst_iterator_free(children);
  gst_element_set_state(sink, GST_STATE_NULL);
  gst_object_unref(sink);
  return found;
}

bool setUp() {
  GError* failure = nullptr;
  if (gst_init_check(nullptr, nullptr, &failure) == FALSE) {
    g_clear_error(&failure);
    return false;
  }
  for (const char* name : pluginsToMap) {
    if (GstPlugin* plugin = gst_plugin_load_by_name(name)) gst_object_unref(plugin);
  }
  return true;
}

}  // namespace

void MediaEngine::start() {
  if (state_ != State::idle) return;
  state_ = State::starting;
  // Whoever lets go of the loop waits for its workers, and none of them can: they hold it weakly.
  services_.runLoop->background([weak = weak_from_this(), loop = std::weak_ptr{services_.runLoop}] {
    const bool usable = setUp();
    const bool sound = usable && findsSoundDevice();
    const auto runLoop = loop.lock();
    if (!runLoop) return;
    runLoop->post([weak, usable, sound] {
      if (const auto self = weak.lock()) self->started(usable, sound);
    });
  });
}

void MediaEngine::started(bool usable, bool sound) {
  soundDevice_ = sound;
  state_ = usable ? State::usable : State::unusable;
  if (!usable) services_.log->write(LogLevel::error, "No video ads: GStreamer does not start.");
  const auto held = shared_from_this();
  for (const auto& task : std::exchange(waiting_, {})) task(usable);
}

void MediaEngine::whenReady(std::function<void(bool)> task) {
  start();
  if (state_ == State::starting) {
    waiting_.push_back(std::move(task));
  } else {
    task(state_ == State::usable);
  }
}

}  // namespace tavo::gtk
