#pragma once

#include <gst/gst.h>

#include <condition_variable>
#include <memory>
#include <mutex>

#include <tavo/Date.h>

namespace tavo::gtk {

// Knows whether a pipeline waits for a server to answer. A request that is given up after its
// answer has come, and before the source has heard of it, ends the process (libsoup 3.2): the body
// of such an answer belongs to nobody and is closed when its message is gone. So whoever ends a
// pipeline waits for the answer first. Any thread.
class AnswerWatch {
 public:
  // Watches the sources that `pipeline` makes from now on.
  [[nodiscard]] static std::shared_ptr<AnswerWatch> on(GstElement* pipeline);

  // A request is about to be sent.
  void expect() { set(true); }
  // Nothing is awaited any more.
  void settle() { set(false); }
  // Blocks until nothing is awaited, or for `patience`.
  void await(Seconds patience);

 private:
  static void elementAdded(GstBin* pipeline, GstBin* bin, GstElement* element, gpointer self);
  static GstPadProbeReturn passed(GstPad* pad, GstPadProbeInfo* info, gpointer self);

  void set(bool isAwaited);

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isAwaited_ = false;  // guarded
};

}  // namespace tavo::gtk
