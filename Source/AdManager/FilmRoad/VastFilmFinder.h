#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tavo/Error.h>

#include "AdController/ResponseParser/StandardsVast/VastAdSource.h"
#include "AdManager/FilmRoad/FilmSlot.h"
#include "Tracker/VastPings.h"
#include "UserInterface/StandardsVideo/StandardsMedia.h"

namespace tavo {

// A film that is ready to be played.
struct VastFilm {
  std::shared_ptr<const VastAd> ad;
  VastTrail chain;
  std::shared_ptr<VastPings> pings;
  std::vector<VastMediaFile> files;  // the best first
  std::size_t file = 0;              // the one that is there

  [[nodiscard]] const std::string& url() const { return files[file].url; }
};

// Finds the films of one answer as the public standards say: the ads in their order, each with the
// file that suits the player and is there. What cannot be shown is told to its error addresses and
// makes room for the next. Main thread only; dropping it ends a search under way.
class VastFilmFinder : public std::enable_shared_from_this<VastFilmFinder> {
 public:
  // No film: there is none left. Called once for each question, perhaps inside it.
  using Found = std::function<void(std::optional<VastFilm>)>;

  VastFilmFinder(FilmSlot slot, Url documentUrl, Found found);
  ~VastFilmFinder();
  VastFilmFinder(const VastFilmFinder&) = delete;
  VastFilmFinder& operator=(const VastFilmFinder&) = delete;

  // Finds the first film of an answer's document, and the one after a film that was shown or could
  // not be.
  void begin(const std::string& text);
  void next(bool shown);
  [[nodiscard]] bool isSeeking() const { return seeking_; }

  // A film that was found has failed.
  void tellFailure(VastErrorCode code, const VastFilm& film, const Error& error);
  // What the last ad that could not be shown has failed with, if any has; why there is no film.
  [[nodiscard]] bool hasFailed() const { return lastError_.has_value(); }
  [[nodiscard]] Error reason() const;

 private:
  [[nodiscard]] VastAdSource::Fetch fetch() const;
  void beginWith(const std::vector<std::string>& types, const std::string& text);
  void received(const std::optional<VastTurn>& turn);
  [[nodiscard]] std::shared_ptr<VastPings> makePings(const VastTurn& turn) const;
  [[nodiscard]] MediaWish mediaWish() const;
  void lookForMedia();
  void looked(const HttpResult& result);
  void refuse(VastErrorCode code, const Error& error);
  void tellErrors(VastErrorCode code, const std::vector<std::string>& addresses);

  const FilmSlot slot_;
  const Url documentUrl_;  // to which relative addresses of the answer's own document belong
  const Found found_;
  const std::string transaction_;
  std::shared_ptr<VastAdSource> source_;
  std::vector<std::string> playableTypes_;
  std::shared_ptr<VastPings> breakPings_;  // of failures without an ad
  std::shared_ptr<VastPings> errorPings_;  // of the failure that is about to be told
  double contentPlayhead_ = -1;
  std::optional<VastFilm> sought_;  // whose file is looked for
  std::shared_ptr<HttpClient::Exchange> probe_;
  std::optional<Error> lastError_;
  bool seeking_ = false;
};

// Whether it failed because it took too long.
[[nodiscard]] bool isTimeout(const Error& error);

}  // namespace tavo
