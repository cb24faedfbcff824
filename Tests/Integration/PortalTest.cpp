// URLs that leave an application in a sandbox, through a stand-in for the desktop's portal.

#include <gtkmm.h>

#include "Gtk/Services/GtkApplication.h"
#include "Runtime/NotificationCenter.h"
#include "Support/GtkLoopTest.h"
#include "Support/PrivateBus.h"

namespace tavo::test {
namespace {

// The part of the portal that opens URLs. The loop has to run for it to hear anything.
class FakePortal {
 public:
  explicit FakePortal(const PrivateBus& bus) : connection_{bus.connection()} {
    static constexpr GDBusInterfaceVTable table{
        [](GDBusConnection*, const char*, const char*, const char*, const char*,
           GVariant* parameters, GDBusMethodInvocation* question, gpointer self) {
          const char* url = nullptr;
          g_variant_get(parameters, "(&s&s@a{sv})", nullptr, &url, nullptr);
          static_cast<FakePortal*>(self)->urls.emplace_back(url);
          g_dbus_method_invocation_return_value(question, g_variant_new("(o)", "/request"));
        },
        nullptr,
        nullptr,
        {}};
    auto* const node = g_dbus_node_info_new_for_xml(
        "<node><interface name='org.freedesktop.portal.OpenURI'><method name='OpenURI'>"
        "<arg type='s' direction='in'/><arg type='s' direction='in'/>"
        "<arg type='a{sv}' direction='in'/><arg type='o' direction='out'/></method></interface>"
        "</node>",
        nullptr);
    object_ =
        g_dbus_connection_register_object(connection_, "/org/freedesktop/portal/desktop",
                                          node->interfaces[0], &table, this, nullptr, nullptr);
    g_dbus_node_info_unref(node);
    bus.own("org.freedesktop.portal.Desktop");
  }
  ~FakePortal() { g_dbus_connection_unregister_object(connection_, object_); }
  FakePortal(const FakePortal&) = delete;
  FakePortal& operator=(const FakePortal&) = delete;

  std::vector<std::string> urls;

 private:
  GDBusConnection* connection_;
  guint object_ = 0;
};

using PortalTest = GtkLoopTest;

TEST_F(PortalTest, OpensWhatNoApplicationInTheSandboxCould) {
  Gio::init();
  const PrivateBus bus;
  FakePortal portal{bus};
  setenv("GTK_USE_PORTAL", "1", 1);
  gtk::GtkApplication application{std::make_shared<NotificationCenter>(), 10'000};
  for (const char* url : {"tel:+41123", "https://click.example/?a=b", "sms:1"}) {
    EXPECT_TRUE(application.canOpenUrl(Url::fromText(url))) << url;
    EXPECT_TRUE(application.openUrl(Url::fromText(url))) << url;
  }
  EXPECT_TRUE(runUntil([&] { return portal.urls.size() == 3; }));
  // Each leaves on a thread of its own.
  EXPECT_THAT(portal.urls,
              UnorderedElementsAre("tel:+41123", "https://click.example/?a=b", "sms:1"));
  portal.urls.clear();
  for (const auto& url : {Url::fromText("file:///etc/passwd"), Url{},
                          Url::fromText("x:" + std::string(200'000, 'x'))}) {
    EXPECT_FALSE(application.openUrl(url));
  }
  EXPECT_THAT(portal.urls, IsEmpty());
}

}  // namespace
}  // namespace tavo::test
