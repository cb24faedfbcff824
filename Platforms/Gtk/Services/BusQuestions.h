#pragma once

#include <gio/gio.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "Gtk/GPtr.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

using GVariantPtr = GOwned<GVariant, &g_variant_unref>;

// Asks one service of a message bus a few questions and waits for the answers, all of them together
// no longer than `patience`: a bus, too, may be there and say nothing. The service is not started
// for it. For threads that may wait.
class BusQuestions {
 public:
  BusQuestions(GBusType type, const char* service, Seconds patience);
  ~BusQuestions();
  BusQuestions(const BusQuestions&) = delete;
  BusQuestions& operator=(const BusQuestions&) = delete;

  // The answer; null when there is none in time, when it is an error, and when it is not of the
  // type `answerType`. A floating `parameters` is taken over; null: none.
  [[nodiscard]] GVariantPtr ask(const char* path, const char* interface, const char* method,
                                GVariant* parameters, const char* answerType) const;

  // False once it is known that the bus, or the service on it, does not run.
  [[nodiscard]] bool isThere() const { return there_; }

 private:
  void connect(GBusType type);

  const char* service_;
  GPtr<GCancellable> cancellable_;
  GPtr<GDBusConnection> connection_;
  mutable bool there_ = true;
  std::mutex mutex_;
  std::condition_variable doneChanged_;
  bool done_ = false;
  std::thread deadline_;
};

}  // namespace tavo::gtk
