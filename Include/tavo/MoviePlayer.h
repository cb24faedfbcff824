#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <tavo/Error.h>
#include <tavo/Export.h>
#include <tavo/Url.h>
#include <tavo/View.h>

namespace tavo {

class MoviePlayer;

enum class MoviePlaybackState {
  stopped = 0,
  playing = 1,
  paused = 2,
  interrupted = 3,
  seekingForward = 4,
  seekingBackward = 5,
};

enum class MovieFinishReason { playbackEnded = 0, playbackError = 1, userExited = 2 };

// What the player itself offers to touch: nothing, or a bar with pause, position and full screen.
enum class MovieControlStyle { none = 0, embedded = 1 };

// Codes of the errors that end a video, in the domain movieErrorDomain.
inline constexpr std::string_view movieErrorDomain = "MovieErrorDomain";
enum class MovieError : int {
  unavailable = 1,  // no player can run here
  notPlayable = 2,  // no video, a missing codec, a server that has none
  timedOut = 3,     // no first picture, or none any more, for too long
  incomplete = 4,   // the data ended before the video did
};
[[nodiscard]] TAVO_EXPORT Error makeError(MovieError code, std::string_view description);

// Hears what a player does. Calls arrive on the main thread, never inside a call to the player, and
// in the order in which things happened. A content that was replaced is not heard of any more. A
// client may call the player, replace its content or drop it from inside.
//
// A content that plays to its end is told of so: the duration, then playing; pauses and seeks as a
// person makes them; then paused at its end, and the finish. One that fails: the finish alone, or
// stopped and the finish.
class TAVO_EXPORT MoviePlayerClient {
 public:
  virtual ~MoviePlayerClient() = default;

  // The first picture is there and the length is known; once for each content.
  virtual void movieDurationAvailable(MoviePlayer& player) = 0;
  // `playbackState` is another one. A person who moves the position takes the player through one of
  // the states of seeking and back to the one before.
  virtual void moviePlaybackStateDidChange(MoviePlayer& player) = 0;
  // The content is over; `error` says why when the reason is an error. playbackEnded means that a
  // video of known length was played to its end: data that merely ran out is an error.
  virtual void moviePlaybackDidFinish(MoviePlayer& player, MovieFinishReason reason,
                                      const std::optional<Error>& error) = 0;
  // The view has its place in full screen, or is back at the one it had; the size of the window may
  // still follow, as layout.
  virtual void movieDidEnterFullscreen(MoviePlayer& player) = 0;
  virtual void movieDidExitFullscreen(MoviePlayer& player) = 0;
  // The sound was switched off or on; `isMuted` says which.
  virtual void movieDidSwitchSound(MoviePlayer& /*player*/) {}
};

// A view that plays one video after the other. A host may own one, show its own content in it and
// lend it for an ad: XAdView::setMoviePlayerInstance. Made by the platform's MoviePlayerFactory;
// main thread only.
//
// While it is lent, the content, the position, the controls and `shouldAutoplay` are the ad's; the
// host gets its own back before it is told that the pre-roll is over, stopped where it was, and
// starts it again itself. A host that plays something of its own accord at that moment is not
// interrupted: there is no pre-roll then.
//
// Only http and https are played. A content whose first picture does not come within
// Limits::firstFrameTimeout, or that stands still for Limits::stallTimeout while it should play,
// finishes with an error. Dropping the player ends everything.
class TAVO_EXPORT MoviePlayer : public View {
 public:
  using View::View;

  // Clients are held weakly and told in the order in which they came. Adding one twice tells it
  // twice; removing one that is not there does nothing.
  void addClient(std::weak_ptr<MoviePlayerClient> client);
  void removeClient(const MoviePlayerClient& client);

  // Replaces the content and stops; an empty URL shows nothing. Nothing is fetched yet.
  virtual void setContentUrl(const Url& url) = 0;
  [[nodiscard]] virtual const Url& contentUrl() const = 0;

  // Fetches the content up to its first picture; then plays, when `shouldAutoplay` is set. Returns
  // at once, and does nothing for a content that is being prepared, or is, or is empty.
  virtual void prepareToPlay() = 0;
  [[nodiscard]] virtual bool isPreparedToPlay() const = 0;
  // Read when the preparation begins.
  bool shouldAutoplay = true;

  // Plays on; prepares first when that was not done. After the end, plays again from the start.
  virtual void play() = 0;
  // The picture stays. A content that is not prepared does not start by itself any more.
  virtual void pause() = 0;
  // Goes back to the start; the content has to be prepared again.
  virtual void stop() = 0;
  [[nodiscard]] virtual MoviePlaybackState playbackState() const = 0;

  // Seconds. Setting the time of a content that is not prepared makes it start there. A server that
  // cannot send from the middle sends from the start.
  [[nodiscard]] virtual double currentPlaybackTime() const = 0;
  virtual void setCurrentPlaybackTime(double seconds) = 0;
  [[nodiscard]] virtual double duration() const = 0;  // 0 until it is known

  // What the player offers to touch; `embedded` unless it is changed.
  [[nodiscard]] MovieControlStyle controlStyle() const { return controlStyle_; }
  void setControlStyle(MovieControlStyle style);

  // Off, every content plays in silence, whichever comes. Clients are told of a change in a later
  // turn.
  [[nodiscard]] bool isMuted() const { return muted_; }
  void setMuted(bool muted);

  // In full screen the view, with what stands on it, is above everything in its window, which fills
  // the screen; afterwards it is back at its place. Does nothing outside a window. Clients are told
  // in a later turn.
  [[nodiscard]] bool isFullscreen() const { return place_.has_value(); }
  void setFullscreen(bool fullscreen);

 protected:
  // What a platform carries out.
  virtual void controlStyleChanged() {}
  virtual void fullscreenChanged() {}
  virtual void soundSwitched() {}
  // Calls the later tells at the clients that are alive.
  void tellDurationAvailable();
  void tellPlaybackState();
  void tellFinish(MovieFinishReason reason, const std::optional<Error>& error);
  // Runs the tell of a change of full screen or sound in a later turn.
  virtual void later(std::function<void()> task) = 0;

 private:
  // Where the view stood before it went to full screen.
  struct Place {
    std::weak_ptr<View> superview;
    Rect frame;
    unsigned autoresizingMask = flexibleNothing;
  };

  template <typename Tell>
  void tellClients(const Tell& tell);
  void enterFullscreen(View& window);
  void exitFullscreen();

  std::vector<std::weak_ptr<MoviePlayerClient>> clients_;
  bool muted_ = false;
  MovieControlStyle controlStyle_ = MovieControlStyle::embedded;
  std::optional<Place> place_;
};

// Whether a content that has come to the end of its data was played to its end. Ends are not taken
// at their word: a file that was cut, and a picture sent as a video, end as well.
struct PlayedContent {
  bool hadVideo = false;
  double duration = 0;      // seconds; 0: not known
  double lastPosition = 0;  // seconds
};
[[nodiscard]] TAVO_EXPORT bool playedThrough(const PlayedContent& content);

}  // namespace tavo
