#include "Gtk/Sheets/GtkAlerts.h"

#include <gtkmm.h>

#include <algorithm>
#include <utility>

#include "Gtk/Guarded.h"
#include "Gtk/Sheets/Sheet.h"

namespace tavo::gtk {

namespace {
constexpr std::size_t longestTitle = 200;
constexpr std::size_t longestMessage = 2'000;
}  // namespace

struct GtkAlerts::Shown {
  Shown(Gtk::Window& parent, const Alert& alert)
      : dialog{parent,
               presentable(alert.title.empty() ? alert.message : alert.title, Lines::one,
                           longestTitle),
               false,
               Gtk::MessageType::QUESTION,
               Gtk::ButtonsType::NONE,
               true} {
    if (!alert.title.empty()) {
      dialog.set_secondary_text(presentable(alert.message, Lines::many, longestMessage));
    }
    int number = 0;
    for (const auto& button : alert.buttons) {
      addButton(presentable(button, Lines::one, longestTitle), number++);
    }
    dialog.set_default_response(static_cast<int>(alert.cancelButton));
  }

  // The surface may outlive the dialog until its next frame, and the toolkit leaves it one handler
  // that asks the dialog for its size.
  ~Shown() {
    auto* const surface = gtk_native_get_surface(GTK_NATIVE(dialog.gobj()));
    if (surface == nullptr) return;
    g_signal_handlers_disconnect_matched(
        surface, static_cast<GSignalMatchType>(G_SIGNAL_MATCH_ID | G_SIGNAL_MATCH_DATA),
        g_signal_lookup("compute-size", G_OBJECT_TYPE(surface)), 0, nullptr, nullptr,
        dialog.gobj());
  }
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;

  // The dialog's own buttons take an underscore for the mark of a shortcut and leave it away.
  void addButton(const Glib::ustring& title, int number) {
    dialog.add_action_widget(*Gtk::make_managed<Gtk::Button>(title), number);
  }

  Gtk::MessageDialog dialog;
  std::function<void(std::size_t)> answered;
};

GtkAlerts::GtkAlerts(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<GtkApplication> application)
    : runLoop_{std::move(runLoop)}, application_{std::move(application)} {}

GtkAlerts::~GtkAlerts() = default;

void GtkAlerts::show(const Alert& alert, std::function<void(std::size_t)> answered) {
  Gtk::Window* const parent = application_->keyNativeWindow();
  if (parent == nullptr) {
    runLoop_->post(
        [answered = std::move(answered), cancel = alert.cancelButton] { answered(cancel); });
    return;
  }
  const auto shown = std::make_shared<Shown>(*parent, alert);
  shown->answered = std::move(answered);
  shown_.push_back(shown);
  const auto chosen = [this, weak = std::weak_ptr{shown}](std::size_t button) {
    if (const auto held = weak.lock()) answer(held, button);
  };
  // A negative response is the dialog being closed from inside the program.
  shown->dialog.signal_response().connect(
      guardedSlot([chosen, cancel = alert.cancelButton](int response) {
        chosen(response < 0 ? cancel : static_cast<std::size_t>(response));
      }));
  // By Escape, or by its window. Left to the toolkit the dialog would be destroyed inside the
  // answer.
  shown->dialog.signal_close_request().connect(guardedSlot([chosen, cancel = alert.cancelButton] {
                                                 chosen(cancel);
                                                 return true;
                                               }),
                                               false);
  shown->dialog.present();
}

// The dialog goes in a turn of its own: it is in the middle of a signal.
void GtkAlerts::answer(const std::shared_ptr<Shown>& shown, std::size_t button) {
  auto answered = std::exchange(shown->answered, {});
  if (!answered) return;
  std::erase(shown_, shown);
  shown->dialog.set_visible(false);
  runLoop_->post([shown, answered = std::move(answered), button] { answered(button); });
}

}  // namespace tavo::gtk
