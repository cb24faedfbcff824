#pragma once

#include <memory>
#include <string>

#include "Services/PhotoAlbum.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// The user's folder for pictures. A picture is written on another thread, under a name made of the
// day and the time; nothing of an ad gets into the name.
class GtkPhotoAlbum : public PhotoAlbum {
 public:
  GtkPhotoAlbum(std::shared_ptr<RunLoop> runLoop, std::string folder)
      : runLoop_{std::move(runLoop)}, folder_{std::move(folder)} {}

  // The folder as the desktop names it in the user's language; "Pictures" where it names none.
  [[nodiscard]] static std::string defaultFolder();

  void save(std::string bytes, const Image& picture,
            std::function<void(const std::optional<Error>&)> done) override;

 private:
  std::shared_ptr<RunLoop> runLoop_;
  std::string folder_;
};

// The ending for the picture in `bytes`, ".png" and the like, by how it begins; empty for a format
// that is not kept as it is.
[[nodiscard]] std::string pictureEnding(std::string_view bytes);

}  // namespace tavo::gtk
