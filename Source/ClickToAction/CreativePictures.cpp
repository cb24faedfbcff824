#include "ClickToAction/CreativePictures.h"

#include <utility>

namespace tavo {

CreativePictures::CreativePictures(std::shared_ptr<Environment> environment, Failed failed)
    : events_{std::make_shared<XPictureManagerDelegate>(XPictureManagerDelegate{
          .pictureManagerDidFailToStorePictureWithError =
              [failed = std::move(failed)](XPictureManager&, const Error& error) {
                failed(error);
              }})},
      manager_{XPictureManager::create(std::move(environment), events_)} {}

}  // namespace tavo
