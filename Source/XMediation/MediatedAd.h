#pragma once

#include <functional>
#include <memory>

#include <tavo/CVAd.h>

#include "Services/RunLoop.h"
#include "XMediation/XMediationInterface.h"

namespace tavo {

// One ad that an external network was asked for, for one view: from the request until nobody is
// interested any more. Networks answer twice, late, from other threads and with exceptions; this
// lets one outcome through, and nothing for a view that the ad was not asked for.
class MediatedAd : public std::enable_shared_from_this<MediatedAd> {
 public:
  using Table = XMediationInterfaceDelegate;

  // `adapter` is told what happens, in the name of `adView`; it outlives the ad.
  MediatedAd(XMediationInterface& adapter, std::shared_ptr<RunLoop> runLoop,
             const std::shared_ptr<MediatedView>& adView, std::shared_ptr<CVAd> network);
  virtual ~MediatedAd() = default;
  MediatedAd(const MediatedAd&) = delete;
  MediatedAd& operator=(const MediatedAd&) = delete;

  // Whom the network tells; held by this ad, and expired when interest has ended.
  [[nodiscard]] std::weak_ptr<CVAdDelegate> delegate();

  // Makes calls of the network; an exception out of them is its failure.
  void attempt(const std::function<void()>& calls);

  [[nodiscard]] bool isFor(const MediatedView& adView) const { return key_ == &adView; }
  [[nodiscard]] bool isLoading() const { return state_ == State::loading; }
  [[nodiscard]] bool isOver() const { return state_ == State::over || adView_.expired(); }

  // Ends the interest without a word to anybody.
  void abandon();

  // What the network reports, on the main thread.
  void received();
  void failed(const Error& error);
  void report(Table::Event Table::*event);

 protected:
  // Shows what has arrived; may throw what the network throws, and may report a failure.
  virtual void present() {}
  // Undoes what shows the ad.
  virtual void takeAway() {}
  // Whether the user still has the ad before them.
  [[nodiscard]] virtual bool isInPlace() const { return true; }

 private:
  enum class State { loading, presenting, received, over };

  void end();

  XMediationInterface& adapter_;
  const std::shared_ptr<RunLoop> runLoop_;
  std::weak_ptr<MediatedView> adView_;
  const MediatedView* key_;  // an identity, also while the view is being destroyed
  std::shared_ptr<CVAd> network_;
  std::shared_ptr<CVAdDelegate> delegate_;
  State state_ = State::loading;
};

}  // namespace tavo
