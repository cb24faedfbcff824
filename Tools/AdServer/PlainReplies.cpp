#include "AdServer/PlainReplies.h"

#include <glib.h>

#include <utility>

#include "Gtk/GPtr.h"

namespace tavo::adserver {

namespace {

std::string landingPage(std::string_view title) {
  const gtk::GText safeTitle{g_markup_escape_text(title.data(), static_cast<gssize>(title.size()))};
  return std::string{
             "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
             "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>"} +
         safeTitle.get() +
         "</title>\n<style>\n"
         "body { margin: 0; min-height: 100vh; display: grid; place-content: center;\n"
         "       text-align: center; font: 16px/1.5 sans-serif; color: #2b1810;\n"
         "       background: linear-gradient(#fff7ea, #f1d9b0); }\n"
         "h1 { margin: 0; font-size: 26px; }\np { margin: 8px 24px; }\n"
         "</style>\n</head>\n<body>\n<h1>You clicked the ad</h1>\n<p>" +
         safeTitle.get() + "</p>\n</body>\n</html>\n";
}

}  // namespace

std::string contentTypeOf(std::string_view file) {
  constexpr std::pair<std::string_view, const char*> types[] = {
      {".png", "image/png"},
      {".jpg", "image/jpeg"},
      {".jpeg", "image/jpeg"},
      {".gif", "image/gif"},
      {".svg", "image/svg+xml"},
      {".webp", "image/webp"},
      {".html", "text/html; charset=utf-8"},
      {".htm", "text/html; charset=utf-8"},
      {".css", "text/css"},
      {".js", "text/javascript; charset=utf-8"},
      {".xml", "text/xml"},
      {".json", "application/json"},
      {".mp4", "video/mp4"},
      {".webm", "video/webm"},
      {".mp3", "audio/mpeg"},
      {".woff2", "font/woff2"},
      {".woff", "font/woff"},
      {".ttf", "font/ttf"},
      {".txt", "text/plain; charset=utf-8"},
  };
  for (const auto& [ending, type] : types) {
    if (file.ends_with(ending)) {
      return type;
    }
  }
  return "application/octet-stream";
}

Reply madeReply(std::string contentType, std::string body) {
  return {.body = std::move(body), .delivery = {.contentType = std::move(contentType)}};
}

Reply plainReply(unsigned status, std::string text) {
  Reply reply = madeReply("text/plain; charset=utf-8", std::move(text) + '\n');
  reply.delivery.status = status;
  return reply;
}

Reply pixelReply() {
  constexpr std::string_view gif{
      "GIF89a\x01\x00\x01\x00\x80\x00\x00\x00\x00\x00\xff\xff\xff!\xf9\x04\x01\x00\x00\x00\x00,"
      "\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02"
      "D\x01\x00;",
      43};
  Reply reply = madeReply("image/gif", std::string{gif});
  reply.delivery.headers = {{"Cache-Control", "no-store"}};
  return reply;
}

Reply landingReply(std::string_view title) {
  return madeReply("text/html; charset=utf-8", landingPage(title));
}

}  // namespace tavo::adserver
