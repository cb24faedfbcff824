#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tavo/Color.h>
#include <tavo/Export.h>
#include <tavo/Geometry.h>
#include <tavo/Image.h>
#include <tavo/TapRecognizer.h>

namespace tavo {

class ViewController;
class Window;

// How a view's frame follows a change of its superview's size; bits that can be combined. What is
// flexible takes its share of the change, in proportion to its present length; what is not, stays.
enum Autoresizing : unsigned {
  flexibleNothing = 0,
  flexibleLeftMargin = 1U << 0U,
  flexibleWidth = 1U << 1U,
  flexibleRightMargin = 1U << 2U,
  flexibleTopMargin = 1U << 3U,
  flexibleHeight = 1U << 4U,
  flexibleBottomMargin = 1U << 5U,
  flexibleAll = (1U << 6U) - 1U,
};

// A rectangle on the screen with views inside: a retained tree that a platform mirrors into its own
// widgets. An ad view is one, and so is all that an ad network draws.
//
// Made with std::make_shared (or the `create` of its class) only. A superview owns its subviews;
// everything else about the tree is a plain pointer that is valid while the views are in it. Main
// thread only. A change is seen with the next frame, however many there are in a turn. Nothing here
// fails: what makes no sense does nothing.
class TAVO_EXPORT View : public std::enable_shared_from_this<View> {
 public:
  // Hears that something in the tree below a view has changed and must be shown again.
  class Listener {
   public:
    virtual ~Listener() = default;
    // May be called many times in a turn, in the middle of a change: take note, look later.
    virtual void treeChanged() = 0;
  };

  explicit View(Rect frame = {});
  virtual ~View();
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  // The place in the superview's coordinates. A new size lays the subviews out by their masks.
  [[nodiscard]] const Rect& frame() const { return frame_; }
  void setFrame(const Rect& frame);
  // The same rectangle in the view's own coordinates: its origin is zero.
  [[nodiscard]] Rect bounds() const { return {0, 0, frame_.width, frame_.height}; }

  // A hidden view is not drawn and takes no input, nor does anything below it.
  [[nodiscard]] bool isHidden() const { return hidden_; }
  void setHidden(bool hidden);
  // From 0, nothing is seen of the view and all below it, to 1.
  [[nodiscard]] float alpha() const { return alpha_; }
  void setAlpha(float alpha);
  // None: nothing is painted behind the content.
  [[nodiscard]] const std::optional<Color>& backgroundColor() const { return backgroundColor_; }
  void setBackgroundColor(std::optional<Color> color);
  // A picture that is repeated over the whole background, above the colour; empty: none.
  [[nodiscard]] const Image& backgroundPattern() const { return backgroundPattern_; }
  void setBackgroundPattern(Image pattern);
  // Whether what reaches beyond the bounds is cut off; for the drawing only.
  [[nodiscard]] bool clipsToBounds() const { return clipsToBounds_; }
  void setClipsToBounds(bool clips);
  // A hint that nothing shines through; a web view without it has a transparent page.
  [[nodiscard]] bool isOpaque() const { return opaque_; }
  void setOpaque(bool opaque) { opaque_ = opaque; }
  // Off: the view and all below it take no input, and what lies behind does.
  [[nodiscard]] bool isUserInteractionEnabled() const { return userInteractionEnabled_; }
  void setUserInteractionEnabled(bool enabled);
  // How the frame follows the superview (bits of Autoresizing), and whether the subviews follow
  // this view at all.
  [[nodiscard]] unsigned autoresizingMask() const { return autoresizingMask_; }
  void setAutoresizingMask(unsigned mask) { autoresizingMask_ = mask; }
  [[nodiscard]] bool autoresizesSubviews() const { return autoresizesSubviews_; }
  void setAutoresizesSubviews(bool resizes) { autoresizesSubviews_ = resizes; }
  // What assistive technology calls the view; empty: nothing.
  [[nodiscard]] const std::string& accessibilityLabel() const { return accessibilityLabel_; }
  void setAccessibilityLabel(std::string label);

  // Back to front.
  [[nodiscard]] const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
  // Null when the view stands alone.
  [[nodiscard]] View* superview() const { return superview_; }
  // The window above, or null; a window is its own.
  [[nodiscard]] Window* window();
  [[nodiscard]] const Window* window() const;
  // True for the view itself and everything below it.
  [[nodiscard]] bool isDescendantOf(const View& ancestor) const;

  // Whether the view is drawn turned to the right by a quarter: its frame's corner is the place's,
  // and its sides are swapped there. Off at first.
  [[nodiscard]] bool isTurned() const { return turned_; }
  void setTurned(bool turned);

  // Puts `view` in front of the other subviews, taking it out of its former superview. A view is
  // never put below itself: such a call does nothing.
  void addSubview(const std::shared_ptr<View>& view);
  // Taken out, a view lives on with whoever shares it; a view that nobody shares is gone.
  void removeFromSuperview();
  void removeAllSubviews();
  // Does nothing for a view that is not a subview.
  void bringSubviewToFront(const View& view);

  // From this view's coordinates to those of `target`; null: to those of the topmost view.
  [[nodiscard]] Rect convertTo(const View* target, const Rect& rect) const;

  // The frontmost view at `point` (own coordinates) that takes input; null when there is none.
  // Hidden and almost transparent views (alpha below 0.01) and those with input switched off take
  // none, nor does anything below them.
  [[nodiscard]] View* hitTest(Point point);

  // A recogniser is told of taps on the view and on all below it.
  void addTapRecognizer(std::shared_ptr<TapRecognizer> recognizer);
  void removeTapRecognizer(const TapRecognizer& recognizer);
  [[nodiscard]] const std::vector<std::shared_ptr<TapRecognizer>>& tapRecognizers() const {
    return tapRecognizers_;
  }

  // The controller whose view this is, or null.
  [[nodiscard]] ViewController* controller() const { return controller_; }
  // The nearest controller on the way up from this view, its own included; null when none.
  [[nodiscard]] ViewController* nearestController() const;

  // Whoever shows the tree calls this when the view's place came onto the user's screen: its window
  // was mapped, or what held it was shown again.
  virtual void didAppearOnScreen() {}
  // The same when it has left the user's screen, though it stays in its window's tree, and when it
  // stands elsewhere in its window.
  virtual void didDisappearFromScreen() {}
  virtual void didMoveOnScreen() {}
  // The same with the part of it, in its own coordinates, that its surroundings show: less where it
  // is scrolled or clipped away, nothing where it is hidden.
  virtual void shownPartDidChange(const Rect& /*part*/) {}
  // Something was put above the view's screen, or taken away.
  virtual void coverDidChange() {}

  // One listener per view; null ends it.
  void setListener(Listener* listener) { listener_ = listener; }

 protected:
  // Called before the view gets a new superview; null: it is being taken out. The tree may be
  // changed from inside, the view's own place too.
  virtual void willMoveToSuperview(View* /*newSuperview*/) {}
  // Called after the frame has a new size and the subviews have followed.
  virtual void layoutSubviews() {}
  [[nodiscard]] virtual bool isWindow() const { return false; }
  // Tells the listeners on the way up.
  void changed();
  // Keeps a value and tells; the same one again is no change.
  template <class Kept, class Value>
  TAVO_HIDDEN void change(Kept& kept, Value&& value) {
    if (value == kept) return;
    kept = std::forward<Value>(value);
    changed();
  }

 private:
  friend class ViewController;

  [[nodiscard]] std::shared_ptr<View> detach(View& view);
  void resizeFor(Size from, Size to);
  [[nodiscard]] Point fromSuperview(Point point) const;
  [[nodiscard]] Rect toSuperview(const Rect& rect) const;

  Rect frame_;
  bool hidden_ = false;
  bool clipsToBounds_ = false;
  bool opaque_ = true;
  bool userInteractionEnabled_ = true;
  bool autoresizesSubviews_ = true;
  bool turned_ = false;
  float alpha_ = 1;
  unsigned autoresizingMask_ = flexibleNothing;
  std::optional<Color> backgroundColor_;
  Image backgroundPattern_;
  std::string accessibilityLabel_;
  std::vector<std::shared_ptr<View>> subviews_;
  std::vector<std::shared_ptr<TapRecognizer>> tapRecognizers_;
  View* superview_ = nullptr;
  ViewController* controller_ = nullptr;
  Listener* listener_ = nullptr;
};

}  // namespace tavo
