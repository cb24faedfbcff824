#include <stdexcept>

#include <tavo/AdNetworkClasses.h>

#include "Support/Testing.h"
#include "Unit/FakeAdNetwork.h"

namespace tavo::test {
namespace {

class AdNetworkClassesTest : public testing::Test {
 protected:
  // A library whose entry answers `exports`.
  void installLibrary(const AdNetworkExports& exports) {
    offered = exports;
    const AdNetworkEntry entry = []() -> const AdNetworkExports* { return &offered; };
    install(entry);
  }
  void install(AdNetworkEntry entry) {
    platform_.adNetwork->exports[adNetworkEntryName] = reinterpret_cast<void*>(entry);
  }

  static inline AdNetworkExports offered{};
  headless::HeadlessPlatform platform_;
  Runtime runtime_{platform_.platform()};
  AdNetworkClasses& classes_ = AdNetworkClasses::sharedInstance();
  FakeAdNetwork hosts_;
};

CVAd* makeLibraryBanner() {
  static FakeAdNetwork libraries;
  return new FakeBanner{libraries};
}
CVAd* throwInstead() { throw std::runtime_error{"no banner"}; }

constexpr AdNetworkClass usable[] = {{"CVBannerAdView", makeLibraryBanner}};

TEST_F(AdNetworkClassesTest, TheHostsClassWinsOverTheLibrarys) {
  EXPECT_FALSE(classes_.make<CVBannerAdView>()) << "nobody offers one";
  classes_.registerClass("CVBannerAdView", [this] { return std::make_shared<FakeBanner>(hosts_); });
  EXPECT_TRUE(classes_.make<CVBannerAdView>());
  EXPECT_EQ(hosts_.made, 1);
  EXPECT_FALSE(classes_.make<CVInterstitialAd>());
  classes_.registerClass("CVInterstitialAd",
                         [this] { return std::make_shared<FakeBanner>(hosts_); });
  EXPECT_FALSE(classes_.make<CVInterstitialAd>()) << "a banner under an interstitial's name";
  classes_.registerClass("CVBannerAdView", {});
  EXPECT_FALSE(classes_.make<CVBannerAdView>());
}

TEST_F(AdNetworkClassesTest, TheLibraryIsAskedOnce) {
  installLibrary({adNetworkVersion, 1, usable});
  EXPECT_TRUE(classes_.make<CVBannerAdView>());
  EXPECT_TRUE(classes_.make<CVBannerAdView>());
  EXPECT_EQ(platform_.adNetwork->lookUps, 1);
  classes_.registerClass("CVBannerAdView", [this] { return std::make_shared<FakeBanner>(hosts_); });
  EXPECT_TRUE(classes_.make<CVBannerAdView>());
  EXPECT_EQ(hosts_.made, 1);
}

TEST_F(AdNetworkClassesTest, ALibraryThatCannotBeUsedOffersNothing) {
  static constexpr AdNetworkClass broken[] = {{nullptr, makeLibraryBanner},
                                              {"CVBannerAdView", nullptr}};
  static constexpr AdNetworkClass nulls[] = {{"CVBannerAdView", [] { return (CVAd*)nullptr; }}};
  static constexpr AdNetworkClass throwing[] = {{"CVBannerAdView", throwInstead}};
  using Case = std::pair<const char*, AdNetworkExports>;
  const Case cases[] = {
      {"older", {adNetworkVersion - 1, 1, usable}},   {"newer", {adNetworkVersion + 1, 1, usable}},
      {"no classes", {adNetworkVersion, 1, nullptr}}, {"absurd", {adNetworkVersion, ~0U, usable}},
      {"broken", {adNetworkVersion, 2, broken}},      {"makes null", {adNetworkVersion, 1, nulls}},
      {"throws", {adNetworkVersion, 1, throwing}},
  };
  for (const auto& [name, exports] : cases) {
    SCOPED_TRACE(name);
    const Runtime own{platform_.another()};
    installLibrary(exports);
    EXPECT_FALSE(AdNetworkClasses::sharedInstance().make<CVBannerAdView>());
  }
}

TEST_F(AdNetworkClassesTest, AnEntryThatAnswersNothingOrThrowsOffersNothing) {
  const AdNetworkEntry entries[] = {
      [] { return (const AdNetworkExports*)nullptr; },
      []() -> const AdNetworkExports* { throw 42; },
  };
  for (const auto entry : entries) {
    const Runtime own{platform_.another()};
    install(entry);
    EXPECT_FALSE(AdNetworkClasses::sharedInstance().make<CVBannerAdView>());
  }
}

}  // namespace
}  // namespace tavo::test
