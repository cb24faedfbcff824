#include "Gtk/Services/GtkTimer.h"

#include <algorithm>

#include "Gtk/Guarded.h"
#include "Gtk/Services/ReadyTimeSource.h"

namespace tavo::gtk {

namespace {

// What one timer's source carries. The source owns it, and GLib holds the source while it calls:
// a task that drops its own timer does not pull the ground from under itself.
struct Beat {
  GSource* source;
  bool repeats;
  gint64 interval;  // microseconds
  gint64 due;
  std::function<void()> task;
};

gint64 microseconds(Seconds interval) {
  // A century is for ever, and keeps the sum with the clock inside 64 bits. The comparison's form
  // sends what is not a number to zero.
  constexpr Seconds longest{100.0 * 365 * 24 * 3600};
  if (!(interval > Seconds{0})) return 0;
  return static_cast<gint64>(std::min(interval, longest).count() * G_USEC_PER_SEC);
}

// Ticks that passed while the loop was busy are skipped; the others keep to the first one's beat.
void scheduleNext(Beat& beat) {
  const gint64 now = g_get_monotonic_time();
  beat.due += beat.interval;
  if (beat.due <= now) beat.due = now + beat.interval;
  g_source_set_ready_time(beat.source, beat.due);
}

gboolean fire(gpointer data) {
  auto& beat = *static_cast<Beat*>(data);
  if (beat.repeats) {
    scheduleNext(beat);
    guarded(beat.task);
    return G_SOURCE_CONTINUE;
  }
  // A one-shot timer has ended by the time its task looks at it.
  g_source_destroy(beat.source);
  guarded(beat.task);
  return G_SOURCE_REMOVE;
}

}  // namespace

GtkTimer::GtkTimer(Kind kind, Seconds interval, std::function<void()> task)
    : source_{newReadyTimeSource()} {
  const gint64 length = microseconds(interval);
  auto beat = std::make_unique<Beat>(Beat{source_.get(), kind == Kind::repeating, length,
                                          g_get_monotonic_time() + length, std::move(task)});
  g_source_set_ready_time(source_.get(), beat->due);
  g_source_set_callback(source_.get(), &fire, beat.release(),
                        [](gpointer data) { delete static_cast<Beat*>(data); });
  g_source_attach(source_.get(), nullptr);
}

GtkTimer::~GtkTimer() { g_source_destroy(source_.get()); }

bool GtkTimer::isRunning() const { return g_source_is_destroyed(source_.get()) == FALSE; }

}  // namespace tavo::gtk
