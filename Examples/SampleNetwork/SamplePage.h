#pragma once

#include <functional>
#include <string>

#include <tavo/ViewController.h>

namespace sample {

// A full-screen page of the network: a picture, a line of text and a button that closes it, as the
// Escape key does.
class SamplePage : public tavo::ViewController {
 public:
  // `willClose` and `didClose` are called once each, around the page's leaving.
  SamplePage(std::string text, std::function<void()> willClose, std::function<void()> didClose)
      : text_{std::move(text)}, willClose_{std::move(willClose)}, didClose_{std::move(didClose)} {}

  bool cancelOperation() override;

 protected:
  [[nodiscard]] std::shared_ptr<tavo::View> loadView() override;

 private:
  void close();

  std::string text_;
  std::function<void()> willClose_;
  std::function<void()> didClose_;
};

}  // namespace sample
