#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <tavo/Date.h>

#include "AdController/ResponseParser/StandardsVast/VastBreak.h"

namespace tavo {

// What came of the fetch of a document.
struct VastFetched {
  std::optional<std::string> body;  // none: it is not there, or did not come in time
  Url url;                          // at the end of all redirects
};

// One ad to show, and where it stands among the others of its pod (0 and 0: it stands alone).
struct VastTurn {
  VastAd ad;
  VastTrail chain{};  // its wrappers and, last, itself
  std::size_t place = 0;
  std::size_t podSize = 0;
};

// Gives out the ads of an answer one after the other, by the standards: pods in order, the first
// ad that can be shown of several, what wrappers lead to. Documents are fetched when their turn
// comes. Who shows an ad says what has become of it by asking for the next one. Main thread only;
// dropping it forgets a fetch under way.
class VastAdSource : public std::enable_shared_from_this<VastAdSource> {
 public:
  using Fetch =
      std::function<void(const Url&, Seconds timeout, std::function<void(const VastFetched&)>)>;
  struct Settings {
    Limits limits{};
    Fetch fetch{};
    std::function<Seconds()> now{};
  };
  // Who wants to hear of a failure. Each ad and each wrapper is told once at most.
  using Failed = std::function<void(VastErrorCode, const std::vector<std::string>& addresses)>;
  // The next ad; none when there is no other.
  using Completion = std::function<void(const std::optional<VastTurn>&)>;

  VastAdSource(Settings settings, Failed failed)
      : settings_{std::move(settings)}, failed_{std::move(failed)} {}

  // Reads the answer's own document; relative addresses in it belong to `base`.
  void begin(std::string_view text, const Url& base);

  // Finds the first ad, or the one after an ad that was shown or could not be. The completion is
  // called inside the call where nothing has to be fetched.
  void first(Completion completion);
  void nextAfter(bool shown, Completion completion);

  // An ad that was given out cannot be shown, or not to its end: its error addresses and those of
  // its wrappers hear why.
  void tellFailure(VastErrorCode code, const VastTrail& chain) { tell(code, chain, {}); }

 private:
  void go();
  [[nodiscard]] bool step();
  [[nodiscard]] bool follow(const std::shared_ptr<const VastAd>& wrapper);
  void received(const std::shared_ptr<const VastAd>& wrapper, const VastFetched& fetched);
  void enter(const VastDocument& document, VastTrail trail, VastBreak::Rules rules);
  bool giveUp(VastErrorCode code, const VastTrail& trail,
              const std::vector<std::string>& more = {});
  void settle(bool shown);
  void tell(VastErrorCode code, const VastTrail& trail, const std::vector<std::string>& more);
  [[nodiscard]] Seconds timeLeft() const;

  const Settings settings_;
  const Failed failed_;
  std::vector<VastBreak> breaks_;  // the innermost last
  std::shared_ptr<const VastAd> current_;
  Completion completion_;
  std::set<const VastAd*> told_;
  std::vector<std::shared_ptr<const VastAd>> kept_;  // so that no other gets the address of one
  std::size_t tried_ = 0;
  std::size_t fetches_ = 0;
  Seconds start_{0};
  bool running_ = false;
};

}  // namespace tavo
