#pragma once

#include <cstddef>

#include <tavo/Date.h>

namespace tavo {

// The bounds within which hostile input is kept. A host may change any of them before the first ad.
struct Limits {
  // Ad request.
  Seconds requestIdleTimeout{10};
  Seconds requestDeadline{30};                             // the whole exchange, redirects included
  std::size_t answerBytes = std::size_t{4} * 1024 * 1024;  // decoded
  int answerDepth = 64;                                    // nesting of the JSON document
  int httpRedirects = 20;                                  // hops of one exchange
  int redirectAnswers = 10;                                // answers in a row that name another ad
  Seconds automaticRequestDistance{1};  // between two requests that nobody asked for

  // Cookies, as in browsers.
  std::size_t cookiesPerAnswer = 50;
  std::size_t cookieBytes = 4'096;  // name and value together
  std::size_t cookiesPerDomain = 180;
  std::size_t cookies = 3'000;
  Seconds cookieLife{400.0 * 24 * 3'600};  // at most, whatever the server asks for

  // VAST.
  std::size_t vastBytes = std::size_t{5} * 1024 * 1024;
  std::size_t vastNodes = 200'000;
  int vastDepth = 256;
  std::size_t vastWrappersInAd = 16;  // beside one another; an ad with more fails as an invalid URL
  Seconds wrapperTimeout{4};          // one document of a wrapper chain
  Seconds wrapperChainBudget{16};     // all of them
  // In the standards mode.
  std::size_t vastWrapperDepth = 8;   // wrappers behind one another
  std::size_t vastAdsInBreak = 20;    // ads of an answer that are played or tried
  std::size_t vastAddresses = 1'000;  // addresses of one ad that are kept to be told, by document
  std::size_t vastAddressBytes = 8'192;  // of one, macros filled in; a longer one is not told
  std::size_t vastIcons = 8;             // drawn on one film
  std::size_t vastMediaTries = 4;        // files of one film that are looked for
  Seconds mediaProbeTimeout{8};
  Seconds firstFrameTimeout{8};
  Seconds stallTimeout{8};

  // Clicks and tracking.
  Seconds clickThroughTimeout{10};  // headers only
  Seconds pingTimeout{10};
  std::size_t queuedPingsPerHost = 256;  // waiting for one server: the next one is dropped
  std::size_t queuedPings = 2'048;       // waiting in all: the longest queue loses one
  int pingConnectionsPerHost = 6;
  int pingConnections = 24;

  // Pictures.
  std::size_t pictureBytes = std::size_t{10} * 1024 * 1024;
  std::size_t picturePixels = 25'000'000;

  // Web pages.
  std::size_t webProcessMegabytes = 512;
  Seconds webProcessPing{3};   // an evaluation unanswered for so long, and nothing else sent
  Seconds webProcessWatch{5};  // between two looks at a page that is asked nothing else
  int webProcessReloadsPerMinute = 3;
  int pagesPerWebProcess = 500;  // then the next page is shown by a new process; 0: never
  Seconds pageTimeout{60};       // a page that never finishes
  int pageRefreshes = 5;         // reloads that a page asks for itself
  // Budgets of a page that no person touches; a touch makes them begin anew. The processor's are
  // those of one web process, which the pages of several slots share: it is paused, and ended
  // `webProcessPing` later. Bytes are counted as servers declare them, and where they do not, as
  // they come over the wire: then a page with such an answer open may be charged with another's.
  std::size_t pageBytes = std::size_t{256} * 1024 * 1024;
  Seconds pageProcessorTime{50};  // of processor time, in any
  Seconds pageProcessorWindow{60};
  Seconds pageProcessorTotal{0};  // of processor time in all; 0: as much as it likes
  double commandsPerSecond = 50;
  int commandBurst = 1'500;
  double leavingActionsPerSecond = 1;  // actions that leave the application, without a tap
  bool leavingActionsNeedTap = false;  // such actions need a person's tap on the page
  Seconds tapLifetime{1};              // how long a tap stands for the one action that follows it

  // Geometry handed to the toolkit, points a side.
  double widgetSide = 8'192;

  // Sets the budgets of a page to those at which browsers unload heavy ads. The host hears which of
  // them an ad has passed as the code of its failure, `webPageNetworkError` and those after it.
  void unloadHeavyAds() {
    pageBytes = std::size_t{4} * 1024 * 1024;
    pageProcessorTime = Seconds{15};
    pageProcessorWindow = Seconds{30};
    pageProcessorTotal = Seconds{60};
  }

  friend bool operator==(const Limits&, const Limits&) = default;
};

}  // namespace tavo
