#pragma once

#include <gst/app/gstappsink.h>
#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <mutex>

#include "Services/RunLoop.h"

namespace tavo::gtk {

// Takes the pictures of a video as they are due and hands the newest one to the main thread as a
// texture. The pixels are not copied. Made on the main thread; pictures arrive on another.
class FrameSink : public std::enable_shared_from_this<FrameSink> {
 public:
  // `shown` is called on the main thread for the newest picture; pictures that come faster than the
  // main thread can take them are passed over.
  [[nodiscard]] static std::shared_ptr<FrameSink> create(std::shared_ptr<RunLoop> runLoop,
                                                         std::function<void(GdkTexture*)> shown);
  ~FrameSink();

  // The element that goes into the pipeline; owned by the sink.
  [[nodiscard]] GstElement* element() const { return element_; }
  // No picture is shown any more.
  void stop() { shown_ = {}; }

 private:
  FrameSink(std::shared_ptr<RunLoop> runLoop, std::function<void(GdkTexture*)> shown);

  void connect();
  void take(GstSample* sample);
  void show();

  std::shared_ptr<RunLoop> runLoop_;
  std::function<void(GdkTexture*)> shown_;
  GstElement* element_ = nullptr;
  std::mutex mutex_;
  GdkTexture* newest_ = nullptr;  // not shown yet; guarded
};

}  // namespace tavo::gtk
