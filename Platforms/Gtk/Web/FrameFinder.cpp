#include "Gtk/Web/FrameFinder.h"

#include <utility>

#include "Gtk/Web/ScriptText.h"

namespace tavo::gtk {
namespace {

// "inner" when a frame that the page's world can see is to show the URL and does not yet.
constexpr const char* frameSearch = R"js((function (url) {
  function shows(frame) {
    try { return frame.contentWindow.location.href === url; } catch (error) { return false; }
  }
  function named(frame) {
    try { return new URL(frame.src || frame.data, frame.baseURI).href === url; }
    catch (error) { return false; }
  }
  function inside(frame) {
    try { return frame.contentDocument; } catch (error) { return null; }
  }
  function look(page, depth) {
    for (const frame of page.querySelectorAll('iframe, frame, object, embed')) {
      if (named(frame) && !shows(frame)) return true;
      const inner = depth < 8 ? inside(frame) : null;
      if (inner && look(inner, depth + 1)) return true;
    }
    return false;
  }
  return look(document, 0) ? 'inner' : 'main';
}))js";

}  // namespace

void FrameFinder::find(const std::string& url, std::function<void(Frame)> found) {
  evaluations_.evaluate(std::string{frameSearch} + "(" + quotedForScript(url) + ")",
                        EvaluationQueue::World::isolated,
                        [found = std::move(found)](const std::string& answer) {
                          found(answer == "inner" ? Frame::inner : Frame::main);
                        });
}

}  // namespace tavo::gtk
