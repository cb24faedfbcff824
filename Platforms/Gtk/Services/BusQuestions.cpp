#include "Gtk/Services/BusQuestions.h"

namespace tavo::gtk {

BusQuestions::BusQuestions(GBusType type, const char* service, Seconds patience)
    : service_{service},
      cancellable_{GPtr<GCancellable>::adopt(g_cancellable_new())},
      deadline_{[this, patience] {
        std::unique_lock lock{mutex_};
        if (!doneChanged_.wait_for(lock, patience, [this] { return done_; })) {
          g_cancellable_cancel(cancellable_.get());
        }
      }} {
  connect(type);
}

BusQuestions::~BusQuestions() {
  {
    const std::scoped_lock lock{mutex_};
    done_ = true;
  }
  doneChanged_.notify_one();
  deadline_.join();
  // Without waiting for the other end.
  if (connection_) g_dbus_connection_close(connection_.get(), nullptr, nullptr, nullptr);
}

// A connection of its own: the shared one would end the process with its bus.
void BusQuestions::connect(GBusType type) {
  GFailure failure;
  const GText address{g_dbus_address_get_for_bus_sync(type, cancellable_.get(), failure.out())};
  if (address) {
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    connection_ = GPtr<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
        address.get(), flags, nullptr, cancellable_.get(), failure.out()));
  }
  there_ = connection_ || failure.is(G_IO_ERROR, G_IO_ERROR_CANCELLED);
}

GVariantPtr BusQuestions::ask(const char* path, const char* interface, const char* method,
                              GVariant* parameters, const char* answerType) const {
  const GVariantPtr owned{parameters == nullptr ? nullptr : g_variant_ref_sink(parameters)};
  if (!connection_) return nullptr;
  GFailure failure;
  GVariantPtr answer{g_dbus_connection_call_sync(
      connection_.get(), service_, path, interface, method, owned.get(), G_VARIANT_TYPE(answerType),
      G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable_.get(), failure.out())};
  if (failure.is(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
      failure.is(G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER)) {
    there_ = false;
  }
  return answer;
}

}  // namespace tavo::gtk
