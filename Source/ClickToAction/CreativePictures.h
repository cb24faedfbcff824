#pragma once

#include <memory>

#include "AdController/AdGenerator/PictureSaver.h"
#include "ClickToAction/XPictureManager.h"

namespace tavo {

// The picture manager of one creative.
class CreativePictures : public PictureSaver {
 public:
  CreativePictures(std::shared_ptr<Environment> environment, Failed failed);

  void storePicture(const MraidParameters& parameters) override {
    manager_->storePicture(parameters);
  }

 private:
  const std::shared_ptr<const XPictureManagerDelegate> events_;
  const std::shared_ptr<XPictureManager> manager_;
};

}  // namespace tavo
