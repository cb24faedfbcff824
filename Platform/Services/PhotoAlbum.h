#pragma once

#include <functional>
#include <optional>
#include <string>

#include <tavo/Error.h>
#include <tavo/Image.h>

namespace tavo {

// Domain of the errors of a photo album.
inline constexpr std::string_view albumErrorDomain = "com.CorvaneTAVO.album";
inline constexpr int albumNoPictureError = 1;
inline constexpr int albumCannotWriteError = 2;

// The pictures that the user keeps.
class PhotoAlbum {
 public:
  virtual ~PhotoAlbum() = default;

  // Adds a picture: `picture` decoded, `bytes` as they were downloaded, which are kept as they are.
  // An empty picture is refused with albumNoPictureError. No other picture is ever overwritten, and
  // nothing is left behind after a failure. `done` is called once on the main thread, never inside
  // this call. Main thread only.
  virtual void save(std::string bytes, const Image& picture,
                    std::function<void(const std::optional<Error>&)> done) = 0;
};

}  // namespace tavo
