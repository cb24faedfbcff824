#include "Gtk/Sheets/StoreSheet.h"

#include <utility>

#include "Gtk/Sheets/Sheet.h"
#include "Values/Translation.h"

namespace tavo::gtk {

namespace {

class StoreSheetView : public View {
 public:
  explicit StoreSheetView(std::shared_ptr<WebView> page)
      : toolbar_{std::make_shared<Toolbar>()}, page_{std::move(page)} {
    setBackgroundColor(colors::white);
    toolbar_->setBarStyle(0);
  }

  void fill(const std::shared_ptr<Button>& done) {
    toolbar_->setItems({done});
    addSubview(toolbar_);
    addSubview(page_);
  }

 protected:
  void layoutSubviews() override {
    const Rect all = bounds();
    toolbar_->setFrame({0, 0, all.width, Toolbar::standardHeight});
    page_->setFrame({0, Toolbar::standardHeight, all.width,
                     std::max(0.0, all.height - Toolbar::standardHeight)});
  }

 private:
  std::shared_ptr<Toolbar> toolbar_;
  std::shared_ptr<WebView> page_;
};

}  // namespace

StoreSheet::StoreSheet(const StoreProduct& product, WebViewFactory& webViews,
                       std::function<void()> finished)
    : page_{webViews.create({}, {.ownProcess = true, .kind = PageKind::browser})},
      finished_{std::move(finished)} {
  page_->loadUrl(product.page);
}

std::shared_ptr<View> StoreSheet::loadView() {
  auto view = std::make_shared<StoreSheetView>(page_);
  view->setAccessibilityLabel(translated("Store"));
  const auto done = std::make_shared<Button>();
  done->setTitle(translated("Done"));
  done->setAccessibilityLabel(translated("Close the store"));
  done->setAction([this] { finish(); });
  view->fill(done);
  return view;
}

bool StoreSheet::cancelOperation() {
  finish();
  return true;
}

void StoreSheet::finish() {
  const auto held = shared_from_this();
  if (const auto report = std::exchange(finished_, {})) report();
  closeSheet(*this);
}

}  // namespace tavo::gtk
