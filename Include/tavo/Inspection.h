#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Date.h>
#include <tavo/Export.h>
#include <tavo/Observer.h>

namespace tavo {

// What an event of the inspection is about.
enum class InspectionKind {
  request,      // one hop of an exchange of the library's leaves; its headers and body
  answer,       // the hop's answer, or why there is none; status, headers, body, "seconds"
  classified,   // what an ad server's answer was taken for: "route", "why", "dropped"
  wrapper,      // a document of a VAST chain was fetched, or why the chain ended: "url", "why"
  media,        // the media file that was chosen of a VAST ad, and those that were not
  command,      // an MRAID command of a creative; "outcome" tells a refusal
  statement,    // a statement that the library makes in the page of a creative
  state,        // the MRAID state that a creative is told
  console,      // a line that a page wrote to its console: "level", "url", "line", "column"
  scriptError,  // an error that no script of the page caught, or a resource that did not load
  resource,     // something that a page fetched by itself: "url", "status", "type", "bytes"
  navigation,   // what became of a navigation that a page asked for: "decision", "url"
  process,      // the process behind a page has ended: "why"
  pause,        // the watch over web processes paused or ended one: "why"
  probe,        // what the observer's own script told from inside the page
};

// The name of a kind, as it stands above: "scriptError".
[[nodiscard]] TAVO_EXPORT std::string_view nameOf(InspectionKind kind);

struct InspectionField {
  std::string name;
  std::string value;
  friend bool operator==(const InspectionField&, const InspectionField&) = default;
};

// One thing that happened inside the library.
struct TAVO_EXPORT InspectionEvent {
  Seconds time{};  // on the clock of the runtime's loop
  InspectionKind kind = InspectionKind::request;
  // The address of the ad view, as a `View`, that it happened for; null where the library does not
  // know. For comparing: the view may be gone.
  const void* slot = nullptr;
  std::string text;  // one line for a person
  // In a fixed order for each kind; a name may come more than once (headers are "> Name" in a
  // request and "< Name" in an answer). Values are cut at `Inspection::longestValue` bytes.
  std::vector<InspectionField> fields{};

  // The value of the first field `name`; empty when there is none.
  [[nodiscard]] std::string_view field(std::string_view name) const;
};

// Held weakly, like every observer.
struct InspectionObserver {
  // Called on the main thread from the midst of what is told of: look and remember, and change ads
  // in a later turn.
  std::function<void(const InspectionEvent&)> inspectionDidSee{};
};

// A page whose tools for developers can be opened. The library's side; not for hosts.
class InspectedPage {
 public:
  InspectedPage() = default;
  virtual ~InspectedPage() = default;
  InspectedPage(const InspectedPage&) = delete;
  InspectedPage& operator=(const InspectedPage&) = delete;
  virtual void openTools() = 0;
};

// Shows tools what the library sees and does: exchanges with their bodies, why an answer became the
// ad that it became, the talk between library and creative, what the page itself writes, fetches
// and gets wrong. Tracking pings have a book of their own, `TrackingLedger`.
//
// It is off, and costs nothing, until an observer is set. A page is watched from its beginning or
// not at all: set the observer before the load. Watching changes no request and no decision; inside
// the page, `console` is then a wrapper, which a script could notice. Main thread only.
class TAVO_EXPORT Inspection {
 public:
  // That of the current runtime; it lives as long as the runtime's environment.
  [[nodiscard]] static Inspection& sharedInstance();

  // Made by a platform; `clock` is its loop's `now`.
  explicit Inspection(std::function<Seconds()> clock);

  // Values of fields are cut there, with a word about how long they were.
  static constexpr std::size_t longestValue = std::size_t{256} * 1024;

  Observer<InspectionObserver> observer;

  // JavaScript that watched pages run in each frame before their own first script; empty: none. It
  // is the body of a function of `tell(text, fields)`, where `fields` is an object of texts; what
  // it tells arrives as the kind `probe`. A page made before it was set runs without it.
  std::string pageProbe{};

  // The address that watched pages get which have none; empty: none. An engine keeps the texts and
  // lines of errors back from pages without an address ("Script error."); with one they are told,
  // and the page may behave otherwise: it has storage, and its relative addresses lead somewhere.
  std::string pageAddress{};

  // Watched pages may be opened in the engine's tools for developers. Set before the load.
  bool allowsPageTools = false;
  // Opens the tools of the newest page that allows it; false when there is none.
  bool openPageTools();

  // The library's side.
  [[nodiscard]] bool isOn() const { return observer.isSet(); }
  void tell(InspectionKind kind, const void* slot, std::string text,
            std::vector<InspectionField> fields = {});
  void enter(const std::weak_ptr<InspectedPage>& page);

 private:
  std::function<Seconds()> clock_;
  std::vector<std::weak_ptr<InspectedPage>> pages_;
};

}  // namespace tavo
