#include "Gtk/Services/GtkPhotoAlbum.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <ctime>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Gtk/Services/NewFile.h"

namespace tavo::gtk {

namespace {

// Formats that are not kept as they are become plain pixels.
std::string asPng(const Image& picture) {
  const auto pixels = GPtr<GdkPixbuf>::adopt(gdk_pixbuf_new_from_data(
      picture.pixels().get(), GDK_COLORSPACE_RGB, TRUE, 8, picture.width(), picture.height(),
      static_cast<int>(picture.stride()), nullptr, nullptr));
  char* data = nullptr;
  gsize size = 0;
  if (!pixels || gdk_pixbuf_save_to_buffer(pixels.get(), &data, &size, "png", nullptr,
                                           static_cast<void*>(nullptr)) == FALSE) {
    return {};
  }
  const GText owned{data};
  return {data, size};
}

std::string nameOf(Date moment) {
  constexpr std::size_t longest = 64;
  const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
  std::tm brokenDown{};
  char text[longest];
  localtime_r(&seconds, &brokenDown);
  return {text, std::strftime(text, sizeof text, "Picture %Y-%m-%d %H.%M.%S", &brokenDown)};
}

std::optional<Error> write(const std::string& folder, const std::string& name, std::string bytes,
                           const Image& picture) {
  std::string ending = pictureEnding(bytes);
  if (ending.empty()) {
    bytes = asPng(picture);
    ending = ".png";
  }
  std::string reason;
  if (!bytes.empty() && writeNewFile(folder, name, ending, bytes, reason)) return std::nullopt;
  return Error{std::string{albumErrorDomain}, albumCannotWriteError,
               "The picture could not be written: " + reason};
}

}  // namespace

std::string pictureEnding(std::string_view bytes) {
  using namespace std::string_view_literals;
  constexpr std::size_t riffKind = 8;
  if (bytes.starts_with("\x89PNG\r\n\x1a\n")) return ".png";
  if (bytes.starts_with("\xff\xd8\xff")) return ".jpg";
  if (bytes.starts_with("GIF87a") || bytes.starts_with("GIF89a")) return ".gif";
  if (bytes.starts_with("RIFF") && bytes.substr(riffKind).starts_with("WEBP")) return ".webp";
  return {};
}

std::string GtkPhotoAlbum::defaultFolder() {
  if (const char* folder = g_get_user_special_dir(G_USER_DIRECTORY_PICTURES)) return folder;
  const GText path{g_build_filename(g_get_home_dir(), "Pictures", nullptr)};
  return textOf(path.get());
}

void GtkPhotoAlbum::save(std::string bytes, const Image& picture,
                         std::function<void(const std::optional<Error>&)> done) {
  if (picture.empty()) {
    runLoop_->post([done = std::move(done)] {
      done(Error{std::string{albumErrorDomain}, albumNoPictureError, "There is no picture."});
    });
    return;
  }
  runLoop_->background([loop = runLoop_.get(), folder = folder_, name = nameOf(runLoop_->today()),
                        bytes = std::move(bytes), picture, done = std::move(done)] {
    auto error = write(folder, name, bytes, picture);
    loop->post([error = std::move(error), done] { done(error); });
  });
}

}  // namespace tavo::gtk
