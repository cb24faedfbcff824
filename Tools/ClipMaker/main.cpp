#include <gst/gst.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

namespace {

// A test picture with bars of colour and a tone, as H.264 and AAC in an MP4 whose index stands in
// front, so that a server without ranges can serve it.
std::string pipelineFor(int seconds, int width, int height, const std::string& file) {
  constexpr int framesPerSecond = 15;
  constexpr int samplesPerBuffer = 1024;
  constexpr int samplesPerSecond = 44100;
  const int buffers = seconds * samplesPerSecond / samplesPerBuffer;
  return "videotestsrc pattern=smpte num-buffers=" + std::to_string(seconds * framesPerSecond) +
         " ! video/x-raw,width=" + std::to_string(width) + ",height=" + std::to_string(height) +
         ",framerate=" + std::to_string(framesPerSecond) +
         "/1 ! timeoverlay ! videoconvert ! openh264enc bitrate=64000 gop-size=15 ! h264parse ! "
         "queue ! mux. audiotestsrc volume=0.02 num-buffers=" +
         std::to_string(buffers) +
         " ! audioconvert ! voaacenc bitrate=32000 ! aacparse ! queue ! mux. mp4mux name=mux "
         "faststart=true ! filesink location=" +
         file;
}

// Runs the pipeline to its end; returns what went wrong, or nothing.
std::string run(const std::string& description) {
  GError* error = nullptr;
  GstElement* pipeline = gst_parse_launch(description.c_str(), &error);
  std::string complaint = error != nullptr ? error->message : "";
  g_clear_error(&error);
  if (pipeline == nullptr || !complaint.empty()) return complaint;
  gst_element_set_state(pipeline, GST_STATE_PLAYING);
  GstBus* bus = gst_element_get_bus(pipeline);
  GstMessage* message = gst_bus_timed_pop_filtered(
      bus, 60 * GST_SECOND, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
  if (message == nullptr) {
    complaint = "It took too long.";
  } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
    gst_message_parse_error(message, &error, nullptr);
    complaint = error->message;
    g_clear_error(&error);
  }
  if (message != nullptr) gst_message_unref(message);
  gst_object_unref(bus);
  gst_element_set_state(pipeline, GST_STATE_NULL);
  gst_object_unref(pipeline);
  return complaint;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Makes a small video for the sample campaigns and the tests."};
  int seconds = 4;
  int width = 320;
  int height = 180;
  std::string file;
  app.add_option("--seconds", seconds)->check(CLI::Range(1, 60));
  app.add_option("--width", width)->check(CLI::Range(16, 1920));
  app.add_option("--height", height)->check(CLI::Range(16, 1080));
  app.add_option("file", file, "Where to write it")->required();
  CLI11_PARSE(app, argc, argv);
  gst_init(nullptr, nullptr);
  const std::string complaint = run(pipelineFor(seconds, width, height, file));
  if (complaint.empty()) return 0;
  std::fprintf(stderr, "%s\n", complaint.c_str());
  return 1;
}
