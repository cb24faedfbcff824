#include "Gtk/Video/Playback.h"

#include <algorithm>
#include <utility>

#include "Gtk/ForeignText.h"
#include "Gtk/Guarded.h"
#include "Gtk/Video/SourcePolicy.h"

namespace tavo::gtk {

namespace {

constexpr guint tickMilliseconds = 500;
// A worker waits so long:
constexpr GstClockTime seekPatience = GST_SECOND / 2;
constexpr GstClockTime stopPatience = 10 * GST_SECOND;
// What a film that goes is replaced by. It is never played, but GstPlay 1.22 ends the process when
// a film is ready just then and there is no address to describe it by.
constexpr const char* nowhere = "nowhere:";

double secondsOf(GstClockTime time) {
  return GST_CLOCK_TIME_IS_VALID(time) ? static_cast<double>(time) / GST_SECOND : 0;
}

// A sink of our own choice: the framework would try every kind there is, each time.
void chooseAudioSink(GstElement* pipeline, bool soundDevice) {
  GstElement* sink = gst_element_factory_make(soundDevice ? "autoaudiosink" : "fakesink", nullptr);
  if (sink == nullptr) return;
  if (!soundDevice) g_object_set(sink, "sync", TRUE, nullptr);
  g_object_set(pipeline, "audio-sink", sink, nullptr);
}

// GstPlay 1.22 takes the stream whose tags have changed as found: while a film starts or ends there
// may be none, which ends the process. Nobody here asks for tags.
void ignoreTags(GstPlay* play, GstElement* pipeline) {
  for (const char* change : {"video-tags-changed", "audio-tags-changed", "text-tags-changed"}) {
    const guint signal = g_signal_lookup(change, G_OBJECT_TYPE(pipeline));
    if (signal == 0) continue;  // another kind of pipeline
    g_signal_handlers_disconnect_matched(
        pipeline, static_cast<GSignalMatchType>(G_SIGNAL_MATCH_ID | G_SIGNAL_MATCH_DATA), signal, 0,
        nullptr, nullptr, play);
  }
}

bool isAbout(GstMessage* message, GstPlayMessage what) {
  GstPlayMessage type{};
  if (!gst_play_is_play_message(message)) return false;
  gst_play_message_parse_type(message, &type);
  return type == what;
}

bool tellsOfSeek(GstMessage* message) { return isAbout(message, GST_PLAY_MESSAGE_SEEK_DONE); }

bool tellsOfEmptiness(GstMessage* message) {
  return isAbout(message, GST_PLAY_MESSAGE_URI_LOADED) &&
         textOf(gst_structure_get_string(gst_message_get_structure(message), "uri")) == nowhere;
}

// Takes messages off the bus up to the one that is meant, for `patience` at most.
void takeUntil(bool (*isMeant)(GstMessage*), GstBus* bus, GstClockTime patience) {
  const GstClockTime end = gst_util_get_timestamp() + patience;
  bool isOver = false;
  while (!isOver) {
    const GstClockTime now = gst_util_get_timestamp();
    GstMessage* const message = now < end ? gst_bus_timed_pop(bus, end - now) : nullptr;
    if (message == nullptr) return;
    isOver = isMeant(message);
    gst_message_unref(message);
  }
}

// Blocks until the pipeline has stopped and the player has nothing more to tell. Whatever it tells
// holds it, on any of its threads: were that the last hold, the thread would have to end the player
// there, and so to wait for itself (GstPlay 1.22).
void empty(GstPlay* play, GstBus* bus) {
  gst_play_set_uri(play, nowhere);
  takeUntil(&tellsOfEmptiness, bus, stopPatience);
}

// Returns what knows when the pipeline can be ended.
std::shared_ptr<AnswerWatch> configure(GstPlay* play, const MediaEngine& engine) {
  const VideoModuleServices& services = engine.services();
  GstStructure* settings = gst_play_get_config(play);
  gst_play_config_set_position_update_interval(settings, tickMilliseconds);
  gst_play_config_set_seek_accurate(settings, FALSE);
  if (services.userAgent) {
    gst_play_config_set_user_agent(settings, services.userAgent().c_str());
  }
  gst_play_set_config(play, settings);
  GstElement* pipeline = gst_play_get_pipeline(play);
  ignoreTags(play, pipeline);
  chooseAudioSink(pipeline, engine.hasSoundDevice());
  // The player's own watch knows what it waited for, so it speaks first.
  const Limits& limits = services.limits;
  allowHttpOnly(pipeline, std::max(limits.firstFrameTimeout, limits.stallTimeout) + Seconds{2});
  auto answers = AnswerWatch::on(pipeline);
  gst_object_unref(pipeline);
  return answers;
}

}  // namespace

Playback::Playback(const MediaEngine& engine, const std::string& url,
                   std::function<void(GdkTexture*)> show, Events events)
    : events_{std::move(events)}, runLoop_{engine.services().runLoop} {
  sink_ = FrameSink::create(runLoop_, [this, show = std::move(show)](GdkTexture* picture) {
    show(picture);
    const auto told = events_.picture;
    told();
  });
  play_ =
      gst_play_new(gst_play_video_overlay_video_renderer_new_with_sink(nullptr, sink_->element()));
  answers_ = configure(play_, engine);
  bus_ = gst_play_get_message_bus(play_);
  gst_bus_add_watch(bus_, onMessage, this);
  gst_play_set_uri(play_, url.c_str());
}

// Letting go of a pipeline waits for its threads, which may wait for a server: not here. Nor is it
// ended while it waits for an answer.
Playback::~Playback() {
  sink_->stop();
  gst_bus_remove_watch(bus_);
  runLoop_->background([play = play_, bus = bus_, answers = answers_, isSeeking = isSeeking_] {
    if (isSeeking) takeUntil(&tellsOfSeek, bus, seekPatience);
    answers->await();
    empty(play, bus);
    // A message that nobody takes off the bus holds the player that holds the bus.
    gst_bus_set_flushing(bus, TRUE);
    gst_object_unref(bus);
    gst_object_unref(play);
  });
}

void Playback::play() {
  begin();
  gst_play_play(play_);
}

void Playback::pause() {
  begin();
  gst_play_pause(play_);
}

// The first call of either makes the pipeline ask the server, on a thread of its own.
void Playback::begin() {
  if (!std::exchange(hasBegun_, true)) answers_->expect();
}

void Playback::seek(double seconds) {
  isSeeking_ = hasBegun_;
  gst_play_seek(play_, static_cast<GstClockTime>(std::max(seconds, 0.0) * GST_SECOND));
}

double Playback::position() const { return secondsOf(gst_play_get_position(play_)); }

double Playback::duration() const { return secondsOf(gst_play_get_duration(play_)); }

bool Playback::hasVideo() const {
  GstPlayMediaInfo* info = gst_play_get_media_info(play_);
  if (info == nullptr) return false;
  const bool video = gst_play_media_info_get_number_of_video_streams(info) > 0;
  g_object_unref(info);
  return video;
}

gboolean Playback::onMessage(GstBus* /*bus*/, GstMessage* message, gpointer self) {
  guarded([&] { static_cast<Playback*>(self)->hear(message); });
  return G_SOURCE_CONTINUE;
}

// An event may end the playback; nothing of it is touched afterwards.
void Playback::hear(GstMessage* message) {
  if (!gst_play_is_play_message(message)) return;
  GstPlayMessage type{};
  gst_play_message_parse_type(message, &type);
  switch (type) {
    case GST_PLAY_MESSAGE_STATE_CHANGED:
      return hearState(message);
    case GST_PLAY_MESSAGE_DURATION_CHANGED:
    case GST_PLAY_MESSAGE_MEDIA_INFO_UPDATED:
    case GST_PLAY_MESSAGE_POSITION_UPDATED: {
      const auto told = events_.moved;
      return told();
    }
    case GST_PLAY_MESSAGE_SEEK_DONE: {
      isSeeking_ = false;
      const auto told = events_.sought;
      return told();
    }
    case GST_PLAY_MESSAGE_END_OF_STREAM: {
      const auto told = events_.ended;
      return told();
    }
    case GST_PLAY_MESSAGE_ERROR:
      return hearError(message);
    default:
      return;
  }
}

void Playback::hearState(GstMessage* message) {
  GstPlayState state{};
  gst_play_message_parse_state_changed(message, &state);
  if (state != GST_PLAY_STATE_PLAYING && state != GST_PLAY_STATE_PAUSED) return;
  const auto told = state == GST_PLAY_STATE_PLAYING ? events_.playing : events_.paused;
  told();
}

void Playback::hearError(GstMessage* message) {
  GError* error = nullptr;
  gst_play_message_parse_error(message, &error, nullptr);
  const std::string why = error != nullptr ? textOf(error->message) : std::string{};
  g_clear_error(&error);
  const auto told = events_.failed;
  told(why);
}

}  // namespace tavo::gtk
