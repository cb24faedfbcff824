#include <tavo/Button.h>
#include <tavo/ImageView.h>
#include <tavo/TapRecognizer.h>
#include <tavo/ViewController.h>

#include "Rules/KeyboardReach.h"
#include "Scene/LayoutView.h"
#include "Scene/Window.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

std::shared_ptr<View> view(Rect frame) { return std::make_shared<View>(frame); }

Image picture(int width, int height) {
  auto pixels =
      std::make_shared<std::vector<std::uint8_t>>(static_cast<std::size_t>(width * height * 4));
  return {width, height, static_cast<std::size_t>(width) * 4,
          Image::Pixels{pixels, pixels->data()}};
}

TEST(ViewTest, SubviewsFollowASizeByTheirMask) {
  using Case = std::tuple<const char*, unsigned, Rect>;
  // A view of 20 x 10 at (40, 20) in a superview that grows from 100 x 50 to 200 x 100.
  const Case cases[] = {
      {"nothing flexible keeps the leading margins", flexibleNothing, {40, 20, 20, 10}},
      {"width and height take the growth", flexibleWidth | flexibleHeight, {40, 20, 120, 60}},
      {"left margin keeps the distance to the right", flexibleLeftMargin, {140, 20, 20, 10}},
      {"both margins keep the middle", flexibleLeftMargin | flexibleRightMargin, {90, 20, 20, 10}},
      {"all flexible scales", flexibleAll, {80, 40, 40, 20}},
  };
  for (const auto& [name, mask, expected] : cases) {
    SCOPED_TRACE(name);
    const auto parent = view({0, 0, 100, 50});
    const auto child = view({40, 20, 20, 10});
    child->setAutoresizingMask(mask);
    parent->addSubview(child);
    parent->setFrame({0, 0, 200, 100});
    EXPECT_EQ(child->frame(), expected);
  }
}

TEST(ViewTest, AViewStandsInOnePlaceAndNeverBelowItself) {
  const auto first = view({0, 0, 10, 10});
  const auto second = view({0, 0, 10, 10});
  const auto child = view({0, 0, 5, 5});
  first->addSubview(child);
  second->addSubview(child);
  EXPECT_TRUE(first->subviews().empty());
  EXPECT_EQ(child->superview(), second.get());

  child->addSubview(second);
  EXPECT_TRUE(child->subviews().empty());
  child->addSubview(child);
  EXPECT_TRUE(child->subviews().empty());
}

class CountingListener : public View::Listener {
 public:
  void treeChanged() override { ++changes; }
  int changes = 0;
};

// A platform draws and lays out all that it shows when it is told.
TEST(ViewTest, TheSameAgainIsNotTold) {
  const auto root = view({0, 0, 100, 100});
  const auto button = std::make_shared<Button>(Rect{0, 0, 44, 44});
  root->addSubview(view({0, 0, 10, 10}));
  root->addSubview(button);
  CountingListener listener;
  root->setListener(&listener);
  using Change = std::pair<const char*, std::function<void()>>;
  const Change changes[] = {
      {"title", [&] { button->setTitle("0:04"); }},
      {"title's style", [&] { button->setTitleStyle(ButtonTitleStyle{colors::white}); }},
      {"image", [&, image = picture(1, 1)] { button->setImage(image); }},
      {"name", [&] { button->setAccessibilityLabel("Close"); }},
      {"colour", [&] { button->setBackgroundColor(colors::black); }},
      {"alpha", [&] { button->setAlpha(0.5F); }},
      {"input", [&] { button->setUserInteractionEnabled(false); }},
      {"clip", [&] { button->setClipsToBounds(true); }},
      {"order", [&] { root->bringSubviewToFront(*root->subviews().front()); }},
  };
  for (const auto& [name, change] : changes) {
    SCOPED_TRACE(name);
    const int before = listener.changes;
    change();
    EXPECT_EQ(listener.changes, before + 1);
    if (name != std::string_view{"order"}) change();
    EXPECT_EQ(listener.changes, before + 1);
  }
  root->bringSubviewToFront(*root->subviews().back());
  EXPECT_EQ(listener.changes, static_cast<int>(std::size(changes)));
  root->setListener(nullptr);
}

TEST(ViewTest, CoordinatesConvertBetweenBranches) {
  const auto root = view({100, 100, 500, 500});
  const auto left = view({10, 20, 100, 100});
  const auto right = view({200, 50, 100, 100});
  const auto leaf = view({5, 5, 10, 10});
  root->addSubview(left);
  root->addSubview(right);
  left->addSubview(leaf);
  EXPECT_EQ(leaf->convertTo(root.get(), leaf->bounds()), (Rect{15, 25, 10, 10}));
  EXPECT_EQ(leaf->convertTo(right.get(), leaf->bounds()), (Rect{-185, -25, 10, 10}));
  EXPECT_EQ(leaf->convertTo(nullptr, leaf->bounds()), (Rect{115, 125, 10, 10}));
}

TEST(ViewTest, TouchesReachTheFrontmostViewThatTakesThem) {
  const auto root = view({0, 0, 100, 100});
  const auto back = view({0, 0, 50, 50});
  const auto front = view({25, 25, 50, 50});
  root->addSubview(back);
  root->addSubview(front);
  EXPECT_EQ(root->hitTest({30, 30}), front.get());
  front->setHidden(true);
  EXPECT_EQ(root->hitTest({30, 30}), back.get());
  front->setHidden(false);
  front->setUserInteractionEnabled(false);
  EXPECT_EQ(root->hitTest({30, 30}), back.get());
  front->setUserInteractionEnabled(true);
  front->setAlpha(0.001F);
  EXPECT_EQ(root->hitTest({30, 30}), back.get());
  EXPECT_EQ(root->hitTest({90, 10}), root.get());
  EXPECT_EQ(root->hitTest({100, 10}), nullptr);
}

TEST(TapTest, AButtonIsPressedAndKeepsItsTouchFromARecognizerThatDeclinesButtons) {
  const auto root = view({0, 0, 100, 100});
  const auto button = std::make_shared<Button>(Rect{0, 0, 20, 20});
  root->addSubview(button);
  int presses = 0;
  int taps = 0;
  button->setAction([&] { ++presses; });
  const auto recognizer = std::make_shared<TapRecognizer>();
  recognizer->shouldReceiveTouch = [](View& touched) {
    return dynamic_cast<Button*>(&touched) == nullptr;
  };
  recognizer->action = [&](TapRecognizer& tap) {
    EXPECT_EQ(tap.state, TapRecognizer::State::ended);
    ++taps;
  };
  root->addTapRecognizer(recognizer);
  deliverTap(*root, {10, 10});
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(taps, 0);
  deliverTap(*root, {50, 50});
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(taps, 1);
}

TEST(TapTest, TheKeyboardReachesWhatListensTakesInputAndHasAName) {
  const auto picture = std::make_shared<ImageView>();
  EXPECT_FALSE(isReachedByKeyboard(*picture));
  picture->addTapRecognizer(std::make_shared<TapRecognizer>());
  EXPECT_FALSE(isReachedByKeyboard(*picture)) << "nobody could say what it is";
  picture->setAccessibilityLabel("Open the advertisement");
  EXPECT_TRUE(isReachedByKeyboard(*picture));
  picture->setUserInteractionEnabled(false);
  EXPECT_FALSE(isReachedByKeyboard(*picture));
  Button button;
  button.addTapRecognizer(std::make_shared<TapRecognizer>());
  button.setAccessibilityLabel("Close");
  EXPECT_FALSE(isReachedByKeyboard(button)) << "it has its own way";
}

TEST(TapTest, AnActionMayTakeTheViewsApart) {
  auto root = view({0, 0, 100, 100});
  auto child = std::make_shared<Button>(Rect{0, 0, 100, 100});
  bool ran = false;
  child->setAction([&] {
    root->removeAllSubviews();
    child.reset();
    root.reset();
    ran = true;
  });
  root->addSubview(child);
  View& top = *root;
  deliverTap(top, {10, 10});
  EXPECT_TRUE(ran);
}

TEST(ImageViewTest, PicturesAreFittedByTheContentMode) {
  using Case = std::pair<ContentMode, Rect>;
  const Case cases[] = {
      {ContentMode::scaleToFill, {0, 0, 320, 50}},
      {ContentMode::aspectFit, {0, 0, 320, 50}},
      {ContentMode::center, {-160, -25, 640, 100}},
      {ContentMode::topLeft, {0, 0, 640, 100}},
  };
  ImageView banner{{0, 0, 320, 50}};
  EXPECT_EQ(banner.imageRect(), Rect{});
  banner.setImage(picture(640, 100));
  for (const auto& [mode, expected] : cases) {
    banner.setContentMode(mode);
    EXPECT_EQ(banner.imageRect(), expected) << static_cast<int>(mode);
  }
  banner.setImage(picture(50, 50));
  banner.setContentMode(ContentMode::aspectFit);
  EXPECT_EQ(banner.imageRect(), (Rect{135, 0, 50, 50}));
  banner.setContentMode(ContentMode::aspectFill);
  EXPECT_EQ(banner.imageRect(), (Rect{0, -135, 320, 320}));
}

class Recorder : public ViewController {
 public:
  Recorder(std::string name, std::vector<std::string>& log) : name_{std::move(name)}, log_{log} {}

 protected:
  void viewDidLoad() override { log_.push_back(name_ + " loaded"); }
  void viewWillAppear(Animated) override { log_.push_back(name_ + " will appear"); }
  void viewDidAppear(Animated) override { log_.push_back(name_ + " did appear"); }
  void viewWillDisappear(Animated) override { log_.push_back(name_ + " will disappear"); }
  void viewDidDisappear(Animated) override { log_.push_back(name_ + " did disappear"); }

 private:
  std::string name_;
  std::vector<std::string>& log_;
};

TEST(ViewControllerTest, PresentedControllersFillTheWindowAndLeaveInOrder) {
  std::vector<std::string> log;
  const auto window = std::make_shared<Window>(Rect{0, 0, 320, 480});
  const auto root = std::make_shared<Recorder>("root", log);
  window->setRootViewController(root);
  const auto first = std::make_shared<Recorder>("first", log);
  const auto second = std::make_shared<Recorder>("second", log);

  root->presentViewController(first, Animated::yes, [&] { log.emplace_back("presented"); });
  first->presentViewController(second, Animated::no);
  root->presentViewController(second, Animated::no);  // it presents already: nothing
  EXPECT_EQ(second->view()->frame(), (Rect{0, 0, 320, 480}));
  EXPECT_EQ(window->topViewController(), second.get());
  EXPECT_EQ(first->presentingViewController(), root.get());

  root->dismissViewController(Animated::yes, [&] { log.emplace_back("dismissed"); });
  EXPECT_EQ(window->topViewController(), root.get());
  EXPECT_EQ(window->subviews().size(), 1U);
  EXPECT_THAT(log,
              ElementsAre("root loaded", "first loaded", "first will appear", "first did appear",
                          "presented", "second loaded", "second will appear", "second did appear",
                          "second will disappear", "second did disappear", "first will disappear",
                          "first did disappear", "dismissed"));
}

// Counts the sizes of its view.
class OneWayController : public ViewController {
 public:
  OrientationMask supported = landscapeOrientations;
  int sizes = 0;
  bool follows = true;
  const Window* screen = nullptr;
  Size sizeWhileItLoads;
  [[nodiscard]] bool shouldAutorotate() const override { return follows; }
  [[nodiscard]] OrientationMask supportedInterfaceOrientations() const override {
    return supported;
  }

 protected:
  [[nodiscard]] std::shared_ptr<View> loadView() override {
    auto view = std::make_shared<LayoutView>();
    view->onLayout = [this] { ++sizes; };
    sizeWhileItLoads = screen->interfaceSize();
    return view;
  }
};

TEST(ViewControllerTest, AControllerOfOneOrientationKeepsItInEveryWindow) {
  const auto window = std::make_shared<Window>(Rect{0, 0, 360, 640});
  const auto root = std::make_shared<ViewController>();
  window->setRootViewController(root);
  const auto wide = std::make_shared<OneWayController>();
  wide->screen = window.get();
  root->presentViewController(wide, Animated::no);
  const Rect letterbox{0, 200, 360, 240};
  EXPECT_EQ(wide->view()->frame(), letterbox);
  EXPECT_EQ(wide->sizes, 1);
  EXPECT_EQ(wide->sizeWhileItLoads, (Size{360, 640}));
  EXPECT_EQ(window->interfaceSize(), letterbox.size());
  EXPECT_EQ(window->hitTest({180, 100}), window->subviews()[1].get()) << "the bars take touches";
  window->setFrame({0, 0, 360, 700});
  EXPECT_EQ(wide->view()->frame(), (Rect{0, 230, 360, 240}));
  EXPECT_EQ(wide->sizes, 1) << "only its place has changed";
  window->setFrame({0, 0, 640, 360});
  EXPECT_EQ(wide->view()->frame(), window->bounds());
  EXPECT_EQ(window->subviews().size(), 2U);
  wide->supported = allOrientations;
  wide->follows = false;
  window->setFrame({0, 0, 360, 640});
  EXPECT_EQ(wide->view()->frame(), letterbox) << "it stays as it stood";
  wide->follows = true;
  wide->orientationRulesDidChange();
  EXPECT_EQ(wide->view()->frame(), window->bounds());
  root->dismissViewController(Animated::no);
  EXPECT_EQ(window->subviews().size(), 1U);
}

TEST(ViewTest, ATurnedViewTakesTouchesWhereItIsDrawn) {
  const auto root = view({0, 0, 300, 600});
  const auto turned = view({0, 0, 600, 300});
  const auto corner = view({0, 0, 50, 20});  // drawn at the top right, 20 wide and 50 high
  turned->setTurned(true);
  root->addSubview(turned);
  turned->addSubview(corner);
  EXPECT_EQ(corner->convertTo(root.get(), corner->bounds()), (Rect{280, 0, 20, 50}));
  EXPECT_EQ(root->hitTest({290, 40}), corner.get());
  EXPECT_EQ(root->hitTest({290, 60}), turned.get());
  EXPECT_EQ(root->hitTest({10, 590}), turned.get());
}

TEST(ViewControllerTest, ADismissalMayBeAskedForAgainWhileItIsUnderWay) {
  class Impatient : public ViewController {
   public:
    int leaving = 0;

   protected:
    void viewWillDisappear(Animated animated) override {
      leaving += isBeingDismissed() ? 1 : 0;
      dismissViewController(animated);
    }
    void viewDidDisappear(Animated) override { leaving += isBeingDismissed() ? 1 : 0; }
  };
  const auto window = std::make_shared<Window>(Rect{0, 0, 320, 480});
  const auto root = std::make_shared<ViewController>();
  window->setRootViewController(root);
  const auto impatient = std::make_shared<Impatient>();
  root->presentViewController(impatient, Animated::yes);
  impatient->dismissViewController(Animated::yes);
  EXPECT_EQ(impatient->leaving, 2);
  EXPECT_FALSE(impatient->isBeingDismissed());
  EXPECT_EQ(window->topViewController(), root.get());
}

TEST(ViewControllerTest, AControllerOffTheScreenPresentsNothing) {
  std::vector<std::string> log;
  const auto lonely = std::make_shared<Recorder>("lonely", log);
  const auto other = std::make_shared<Recorder>("other", log);
  lonely->presentViewController(other, Animated::no, [&] { log.emplace_back("presented"); });
  (void)lonely->view();
  lonely->presentViewController(other, Animated::no, [&] { log.emplace_back("presented"); });
  lonely->dismissViewController(Animated::no, [&] { log.emplace_back("dismissed"); });
  EXPECT_EQ(log, std::vector<std::string>{"lonely loaded"});
  EXPECT_EQ(lonely->presentedViewController(), nullptr);
}

}  // namespace
}  // namespace tavo::test
