#include "ClickToAction/CreativePictures.h"

namespace tavo {

CreativePictures::CreativePictures(Failed failed)
    : events_{std::make_shared<XPictureManagerDelegate>(XPictureManagerDelegate{
          .pictureManagerDidFailToStorePictureWithError =
              [failed = std::move(failed)](XPictureManager&, const Error& error) {
                failed(error);
              }})},
      manager_{XPictureManager::create(events_)} {}

}  // namespace tavo
