#include "Gtk/Video/AnswerWatch.h"

#include <chrono>

#include "Gtk/Guarded.h"
#include "Gtk/Video/SourcePolicy.h"

namespace tavo::gtk {

namespace {

constexpr std::chrono::milliseconds answerPatience{500};

// The pipeline's threads may outlive whoever made it: each hook owns a share.
using Shared = std::shared_ptr<AnswerWatch>;

AnswerWatch& watchOf(gpointer shared) { return **static_cast<Shared*>(shared); }

void letGo(gpointer shared) { delete static_cast<Shared*>(shared); }

// What passes a source when its server has answered, or when it has given up.
bool tellsOfAnswer(GstEvent* event) {
  return GST_EVENT_TYPE(event) == GST_EVENT_EOS || gst_event_has_name(event, "http-headers");
}

}  // namespace

std::shared_ptr<AnswerWatch> AnswerWatch::on(GstElement* pipeline) {
  auto watch = std::make_shared<AnswerWatch>();
  g_signal_connect_data(
      pipeline, "deep-element-added", G_CALLBACK(fenced<&elementAdded>), new Shared{watch},
      [](gpointer shared, GClosure* /*closure*/) { letGo(shared); }, GConnectFlags{});
  GstBus* const bus = gst_element_get_bus(pipeline);
  gst_bus_set_sync_handler(bus, &said, new Shared{watch}, letGo);
  gst_object_unref(bus);
  return watch;
}

void AnswerWatch::elementAdded(GstBin* /*pipeline*/, GstBin* /*bin*/, GstElement* element,
                               gpointer self) {
  if (!isSource(element)) return;
  GstPad* pad = gst_element_get_static_pad(element, "src");
  if (pad == nullptr) return;
  watchOf(self).expect();
  const auto passing = static_cast<GstPadProbeType>(
      GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_BOTH | GST_PAD_PROBE_TYPE_EVENT_FLUSH);
  gst_pad_add_probe(pad, passing, fenced<&passed>, new Shared{*static_cast<Shared*>(self)}, letGo);
  gst_object_unref(pad);
}

GstPadProbeReturn AnswerWatch::passed(GstPad* /*pad*/, GstPadProbeInfo* info, gpointer self) {
  const bool isData = (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0;
  watchOf(self).pass(isData ? nullptr : GST_PAD_PROBE_INFO_EVENT(info));
  return GST_PAD_PROBE_OK;
}

// Null stands for data.
void AnswerWatch::pass(GstEvent* event) {
  if (event != nullptr && GST_EVENT_TYPE(event) == GST_EVENT_SEEK) {
    isJumping_ = true;
    expect();
  } else if (event != nullptr && GST_EVENT_TYPE(event) == GST_EVENT_FLUSH_STOP) {
    isJumping_ = false;
  } else if (!isJumping_ && (event == nullptr || tellsOfAnswer(event))) {
    settle();
  }
}

GstBusSyncReply AnswerWatch::said(GstBus* /*bus*/, GstMessage* message, gpointer self) {
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
    guarded([&] { watchOf(self).hearError(GST_MESSAGE_SRC(message)); });
  }
  return GST_BUS_PASS;
}

// On the thread that tells.
void AnswerWatch::hearError(GstObject* teller) {
  if (GST_IS_ELEMENT(teller) && isSource(GST_ELEMENT(teller))) {
    settle();  // this is what came of the request
  } else {
    await();
  }
}

void AnswerWatch::await() {
  std::unique_lock lock{mutex_};
  changed_.wait_for(lock, answerPatience, [this] { return !isAwaited_; });
}

void AnswerWatch::set(bool isAwaited) {
  {
    const std::scoped_lock lock{mutex_};
    if (isAwaited_ == isAwaited) return;
    isAwaited_ = isAwaited;
  }
  changed_.notify_all();
}

}  // namespace tavo::gtk
