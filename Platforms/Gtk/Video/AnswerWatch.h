#pragma once

#include <gst/gst.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace tavo::gtk {

// Knows whether a pipeline waits for a server to answer. A request that is given up after its
// answer has come, and before the source has heard of it, ends the process (libsoup 3.2): the body
// of such an answer belongs to nobody and is closed when its message is gone. So whoever ends a
// pipeline waits for the answer first. The player ends it by itself for an error, which is
// therefore told later while an answer is awaited. Any thread.
class AnswerWatch {
 public:
  // Watches the sources that `pipeline` makes from now on.
  [[nodiscard]] static std::shared_ptr<AnswerWatch> on(GstElement* pipeline);

  // A request is about to be sent.
  void expect() { set(true); }
  // Blocks until nothing is awaited, half a second at most.
  void await();

 private:
  static void elementAdded(GstBin* pipeline, GstBin* bin, GstElement* element, gpointer self);
  static GstPadProbeReturn passed(GstPad* pad, GstPadProbeInfo* info, gpointer self);
  static GstBusSyncReply said(GstBus* bus, GstMessage* message, gpointer self);

  void pass(GstEvent* event);
  void hearError(GstObject* teller);
  void settle() { set(false); }
  void set(bool isAwaited);

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isAwaited_ = false;  // guarded
  // What passes belongs to the former answer: a jump to another place of the file has begun.
  std::atomic<bool> isJumping_ = false;
};

}  // namespace tavo::gtk
