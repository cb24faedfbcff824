#include <cmath>
#include <cstdlib>

#include <tavo/XDeviceInformation.h>
#include <tavo/XURLBuilder.h>

#include "RequestEnrichment/ScreenAndVisibility.h"
#include "RequestEnrichment/XDeviceSupportProperties.h"
#include "Scene/Window.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

class Device : public test::TransportTest {
 protected:
  Device() {
    telephony_->carrier = Carrier{};
    platform_.application->allWindows.push_back(window_);
  }

  std::shared_ptr<headless::HeadlessTelephony> telephony_ = platform_.telephony;
  std::shared_ptr<headless::HeadlessCalendarAccess> calendar_ = platform_.calendarAccess;
  std::shared_ptr<Window> window_ = std::make_shared<Window>(Rect{0, 0, 320, 480});
};

TEST_F(Device, GeometryFollowsTheOrientation) {
  struct Row {
    InterfaceOrientation orientation;
    bool statusBarHidden;
    Rect screen;
    Rect application;
    const char* piece;
  };
  using enum InterfaceOrientation;
  const Row rows[] = {
      {portrait, false, {0, 0, 320, 480}, {0, 20, 320, 460}, "&o=p"},
      {portraitUpsideDown, false, {0, 0, 320, 480}, {0, 20, 320, 460}, "&o=p"},
      {landscapeRight, true, {0, 0, 480, 320}, {0, 0, 480, 320}, "&o=l"},
      {landscapeLeft, false, {0, 0, 480, 320}, {0, 20, 480, 300}, "&o=l"},
      {unknown, true, {0, 0, 320, 480}, {0, 0, 320, 480}, "&o=l"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(static_cast<int>(row.orientation));
    platform_.application->orientation = row.orientation;
    platform_.application->statusBarHidden = row.statusBarHidden;
    // The strip as the device tells it: along the edge that is up.
    platform_.application->statusBar =
        isLandscape(row.orientation) ? Rect{0, 0, 20, 480} : Rect{0, 0, 320, 20};
    EXPECT_EQ(XDeviceInterfaceOrientation(runtime_.platform()), row.orientation);
    EXPECT_EQ(XDeviceScreenBounds(runtime_.platform()), row.screen);
    EXPECT_EQ(XApplicationFrame(runtime_.platform()), row.application);
    EXPECT_EQ(XDeviceStatusBarHeight(runtime_.platform()), row.statusBarHidden ? 0 : 20);
    EXPECT_EQ(XURLBuilder::orientationFromDeviceInfo(), row.piece);
  }
  EXPECT_EQ(XDeviceScaleFactor(runtime_.platform()), 2);
  platform_.screen->factor = std::nullopt;
  EXPECT_EQ(XDeviceScaleFactor(runtime_.platform()), 1);
}

TEST_F(Device, VisibleIsWhatTheKeyWindowShows) {
  const auto container = std::make_shared<View>(Rect{10, 400, 300, 200});
  const auto view = std::make_shared<View>(Rect{0, 0, 300, 50});
  container->addSubview(view);
  EXPECT_FALSE(XViewIsVisible(runtime_.platform(), *view));  // in no window
  EXPECT_FALSE(XViewIsDescendantOfKeyWindow(runtime_.platform(), *view));

  window_->addSubview(container);
  EXPECT_TRUE(XViewIsVisible(runtime_.platform(), *view));
  view->setFrame({0, 79, 300, 50});  // one point is left
  EXPECT_TRUE(XViewIsVisible(runtime_.platform(), *view));
  view->setFrame({0, 80, 300, 50});
  EXPECT_FALSE(XViewIntersectsKeyWindow(runtime_.platform(), *view));
  EXPECT_FALSE(XViewIsVisible(runtime_.platform(), *view));
  view->setFrame({0, 0, 300, 50});

  container->setHidden(true);
  EXPECT_TRUE(XViewHasHiddenAncestor(*view));
  EXPECT_FALSE(XViewIsVisible(runtime_.platform(), *view));
  container->setHidden(false);
  view->setHidden(true);
  EXPECT_FALSE(XViewHasHiddenAncestor(*view));
  EXPECT_FALSE(XViewIsVisible(runtime_.platform(), *view));
}

TEST_F(Device, NothingIsVisibleInAnotherWindowOrWithoutOne) {
  const auto other = std::make_shared<Window>(Rect{0, 0, 320, 480});
  const auto view = std::make_shared<View>(Rect{0, 0, 10, 10});
  other->addSubview(view);
  EXPECT_EQ(XKeyWindow(runtime_.platform()), window_);
  EXPECT_FALSE(XViewIsVisible(runtime_.platform(), *view));
  EXPECT_FALSE(XViewIsDescendantOfKeyWindow(runtime_.platform(), *window_));
  platform_.application->allWindows.clear();
  EXPECT_EQ(XKeyWindow(runtime_.platform()), nullptr);
  EXPECT_FALSE(XViewIsVisible(runtime_.platform(), *view));
  EXPECT_FALSE(XViewIntersectsKeyWindow(runtime_.platform(), *view));
}

TEST_F(Device, FormatsTheTimeZone) {
  const char* former = std::getenv("TZ");
  const std::string kept = former == nullptr ? "" : former;
  const auto piece = [](const char* zone) {
    setenv("TZ", zone, 1);
    return XURLBuilder::timeZoneFromDeviceInfo();
  };
  EXPECT_EQ(piece("IST-5:30"), "&z=+0530");
  EXPECT_EQ(piece("PST8"), "&z=-0800");
  EXPECT_EQ(piece("UTC0"), "&z=+0000");
  if (former == nullptr) {
    unsetenv("TZ");
  } else {
    setenv("TZ", kept.c_str(), 1);
  }
}

TEST_F(Device, FormatsALocation) {
  const auto piece = &XDeviceInformation::deviceCurrentLocation;
  EXPECT_EQ(piece(std::nullopt), "");
  EXPECT_EQ(piece(Location{47.3769, -8.5417, 65}), "&ll=47.3769,-8.5417&lla=65");
  EXPECT_EQ(piece(Location{0, 0.00001, 0}), "&ll=0,0.00001");
  EXPECT_EQ(piece(Location{1, 2, 0.5}), "&ll=1,2&lla=0.5");
  EXPECT_EQ(piece(Location{1, 2, -1}), "");
  EXPECT_EQ(piece(Location{std::nan(""), 2, 1}), "");
}

TEST_F(Device, KeepsTheCarrierAcrossLaunches) {
  telephony_->carrier = Carrier{"Cell\nNet", "ch", "228", "01"};
  EXPECT_EQ(XURLBuilder::carrierNameFromDeviceInfo(), std::nullopt);
  platform_.runLoop->runPending();
  EXPECT_EQ(XURLBuilder::carrierNameFromDeviceInfo(), "Cell Net");
  EXPECT_EQ(XURLBuilder::networkTypeFromDeviceInfo(), "01");
  EXPECT_EQ(XURLBuilder::ISOCountryCodeFromDeviceInfo(), "ch");
  EXPECT_EQ(platform_.userDefaults->synchronized, 1);

  const auto nextLaunch = XDeviceInformation::create();
  const XDeviceInformation::CarrierInfo stored{{"carrierName", "Cell Net"},
                                               {"isoCountryCode", "ch"},
                                               {"mobileCountryCode", "228"},
                                               {"mobileNetworkCode", "01"}};
  EXPECT_EQ(nextLaunch->carrierInfo(), stored);
}

TEST_F(Device, RemovesWhatTheNetworkNoLongerTells) {
  telephony_->carrier = Carrier{"Net", "ch", std::nullopt, std::nullopt};
  const auto first = XDeviceInformation::create();
  platform_.runLoop->runPending();
  EXPECT_EQ(first->carrierInfo().size(), 2U);

  telephony_->carrier = std::nullopt;  // nobody answers
  const auto second = XDeviceInformation::create();
  platform_.runLoop->runPending();
  EXPECT_EQ(second->carrierInfo().size(), 2U);

  telephony_->carrier = Carrier{};  // the SIM is out
  const auto third = XDeviceInformation::create();
  EXPECT_EQ(third->carrierInfo().size(), 2U);  // until the network answers
  platform_.runLoop->runPending();
  EXPECT_TRUE(third->carrierInfo().empty());
}

TEST_F(Device, SurvivesADamagedCarrierRecordAndAnEarlyEnd) {
  platform_.userDefaults->setValue(XDeviceInformation::carrierInfoKey, "a\nb\tc\td\n\n\t\ncarrier");
  const auto information = XDeviceInformation::create();
  EXPECT_EQ(information->carrierInfo(), (XDeviceInformation::CarrierInfo{{"", ""}, {"b", "c\td"}}));
  XDeviceInformation::create().reset();
  platform_.runLoop->runPending();
  EXPECT_EQ(platform_.userDefaults->synchronized, 1);  // by the one that lives
}

TEST_F(Device, SupportsWhatItsApplicationsSupport) {
  using enum CalendarAuthorization;
  EXPECT_EQ(XDeviceSupportProperties::defaultProperty(runtime_.platform()).description(),
            "supports: {sms: false, tel: false, calendar: true, storePicture: true, "
            "inlineVideo: true}");
  platform_.application->openableSchemes = {"sms", "tel"};
  calendar_->status = denied;
  EXPECT_EQ(XDeviceSupportProperties::defaultProperty(runtime_.platform()).description(),
            "supports: {sms: true, tel: true, calendar: false, storePicture: true, "
            "inlineVideo: true}");
  const auto calendarWhen = [&](std::optional<CalendarAuthorization> status) {
    calendar_->status = status;
    return XDeviceSupportProperties::deviceSupportFeatures(runtime_.platform()).at("calendar");
  };
  EXPECT_TRUE(calendarWhen(std::nullopt));
  EXPECT_TRUE(calendarWhen(notDetermined));
  EXPECT_TRUE(calendarWhen(authorized));
  EXPECT_FALSE(calendarWhen(restricted));
  EXPECT_EQ(XDeviceSupportProperties::propertyWithSupportedFeaturesDictionary({{"sms", true}})
                .description(),
            "supports: {sms: true, tel: false, calendar: false, storePicture: false, "
            "inlineVideo: false}");
}

}  // namespace
}  // namespace tavo::test
