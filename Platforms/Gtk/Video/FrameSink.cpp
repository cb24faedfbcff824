#include "Gtk/Video/FrameSink.h"

#include <gst/video/video.h>

#include <memory>
#include <utility>

#include "Gtk/Guarded.h"

namespace tavo::gtk {

namespace {

// Larger pictures are made smaller on their way: a texture of that size would stop the host. No
// alpha: a video hides all that lies behind it, and to draw it the toolkit would put the alpha into
// each colour, on the main thread.
constexpr const char* acceptedPictures = "video/x-raw,format=RGB,width=[1,4096],height=[1,4096]";

void unmapFrame(gpointer data) {
  const std::unique_ptr<GstVideoFrame> frame{static_cast<GstVideoFrame*>(data)};
  gst_video_frame_unmap(frame.get());
}

// Null for a sample that is no picture.
GdkTexture* textureOf(GstSample* sample) {
  GstVideoInfo info;
  GstCaps* caps = gst_sample_get_caps(sample);
  GstBuffer* buffer = gst_sample_get_buffer(sample);
  if (caps == nullptr || buffer == nullptr || !gst_video_info_from_caps(&info, caps)) {
    return nullptr;
  }
  auto frame = std::make_unique<GstVideoFrame>();
  if (!gst_video_frame_map(frame.get(), &info, buffer, GST_MAP_READ)) return nullptr;
  const auto stride = static_cast<gsize>(GST_VIDEO_FRAME_PLANE_STRIDE(frame.get(), 0));
  const int width = GST_VIDEO_FRAME_WIDTH(frame.get());
  const int height = GST_VIDEO_FRAME_HEIGHT(frame.get());
  const void* pixels = GST_VIDEO_FRAME_PLANE_DATA(frame.get(), 0);
  GBytes* bytes = g_bytes_new_with_free_func(pixels, stride * static_cast<gsize>(height),
                                             unmapFrame, frame.release());
  GdkTexture* texture = gdk_memory_texture_new(width, height, GDK_MEMORY_R8G8B8, bytes, stride);
  g_bytes_unref(bytes);
  return texture;
}

// The pipeline's threads may outlive the sink; each call looks whether it is still there.
using Weak = std::weak_ptr<FrameSink>;

void forget(gpointer weak) { delete static_cast<Weak*>(weak); }

}  // namespace

std::shared_ptr<FrameSink> FrameSink::create(std::shared_ptr<RunLoop> runLoop,
                                             std::function<void(GdkTexture*)> shown) {
  std::shared_ptr<FrameSink> sink{new FrameSink{std::move(runLoop), std::move(shown)}};
  sink->connect();
  return sink;
}

FrameSink::FrameSink(std::shared_ptr<RunLoop> runLoop, std::function<void(GdkTexture*)> shown)
    : runLoop_{std::move(runLoop)}, shown_{std::move(shown)} {
  element_ = GST_ELEMENT(gst_object_ref_sink(gst_element_factory_make("appsink", nullptr)));
  GstCaps* caps = gst_caps_from_string(acceptedPictures);
  g_object_set(element_, "caps", caps, "max-buffers", 1U, "drop", TRUE, "sync", TRUE,
               "enable-last-sample", FALSE, nullptr);
  gst_caps_unref(caps);
}

FrameSink::~FrameSink() {
  gst_object_unref(element_);
  g_clear_object(&newest_);
}

void FrameSink::connect() {
  GstAppSinkCallbacks callbacks{};
  callbacks.new_preroll = [](GstAppSink* sink, gpointer weak) {
    guarded([&] {
      if (const auto self = static_cast<Weak*>(weak)->lock()) {
        self->take(gst_app_sink_pull_preroll(sink));
      }
    });
    return GST_FLOW_OK;
  };
  callbacks.new_sample = [](GstAppSink* sink, gpointer weak) {
    GstSample* sample = gst_app_sink_pull_sample(sink);
    const auto self = static_cast<Weak*>(weak)->lock();
    if (self) guarded([&] { self->take(sample); });
    if (!self && sample != nullptr) gst_sample_unref(sample);
    return GST_FLOW_OK;
  };
  auto weak = std::make_unique<Weak>(weak_from_this());
  gst_app_sink_set_callbacks(GST_APP_SINK(element_), &callbacks, weak.release(), forget);
}

void FrameSink::take(GstSample* sample) {
  if (sample == nullptr) return;
  GdkTexture* texture = textureOf(sample);
  gst_sample_unref(sample);
  if (texture == nullptr) return;
  const std::unique_lock lock{mutex_};
  GdkTexture* passedOver = std::exchange(newest_, texture);
  if (passedOver != nullptr) return g_object_unref(passedOver);  // one is announced already
  runLoop_->post([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->show();
  });
}

void FrameSink::show() {
  GdkTexture* texture = nullptr;
  {
    const std::scoped_lock lock{mutex_};
    texture = std::exchange(newest_, nullptr);
  }
  const auto shown = shown_;  // whoever is shown the picture may end the playback
  if (texture != nullptr && shown) shown(texture);
  g_clear_object(&texture);
}

}  // namespace tavo::gtk
