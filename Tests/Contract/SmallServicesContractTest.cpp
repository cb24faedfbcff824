// The contracts of UserDefaults, Bundle, ImageDecoder and Application, held against every platform.

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtkmm.h>

#include <filesystem>
#include <fstream>

#include "Gtk/GPtr.h"
#include "Gtk/Services/GtkApplication.h"
#include "Gtk/Services/GtkBundle.h"
#include "Gtk/Services/GtkImageDecoder.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Gtk/Services/GtkUserDefaults.h"
#include "Headless/HeadlessPlatform.h"
#include "Runtime/NotificationCenter.h"
#include "Support/HostLoop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

constexpr std::size_t mostPixels = 100;

// A platform of which a test sees the small services, and what it needs to play the world.
class HeadlessRig {
 public:
  HeadlessRig() {
    platform_.bundle->files["/bundle/Name.bundle/XMraid.js"] = "script";
    platform_.bundle->files["/bundle/plain.png"] = "picture";
  }
  RunLoop& loop() { return *platform_.runLoop; }
  UserDefaults& defaults() { return *platform_.userDefaults; }
  Bundle& bundle() { return *platform_.bundle; }
  ImageDecoder& images() { return *platform_.images; }
  Application& application() { return *platform_.application; }
  static std::string picture(int width, int height) {
    return "image " + std::to_string(width) + "x" + std::to_string(height);
  }
  void runUntil(const std::function<bool()>& done) {
    for (int step = 0; step < 1000 && !done(); ++step) platform_.runLoop->advance(Seconds{0.1});
  }

 private:
  static Limits limits() {
    Limits limits;
    limits.picturePixels = mostPixels;
    return limits;
  }
  headless::HeadlessPlatform platform_{limits()};
};

class GtkRig {
 public:
  GtkRig() {
    std::filesystem::create_directories(folder_.path("root/Name.bundle"));
    folder_.write("root/Name.bundle/XMraid.js", "script");
    folder_.write("root/plain.png", "picture");
  }
  RunLoop& loop() { return *loop_; }
  UserDefaults& defaults() { return defaults_; }
  Bundle& bundle() { return bundle_; }
  ImageDecoder& images() { return images_; }
  // A toolkit is set up once in a process, and only for the tests that need one.
  Application& application() {
    static const auto toolkit = Gtk::Application::create({}, Gio::Application::Flags::NON_UNIQUE);
    gtk_init();
    if (!application_) {
      application_ =
          std::make_unique<gtk::GtkApplication>(std::make_shared<NotificationCenter>(), 8'192);
    }
    return *application_;
  }
  static std::string picture(int width, int height) {
    const auto pixbuf =
        gtk::GPtr<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, width, height));
    gdk_pixbuf_fill(pixbuf.get(), 0x80808080U);
    char* data = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(pixbuf.get(), &data, &size, "png", nullptr, nullptr);
    const gtk::GText owned{data};
    return {data, size};
  }
  void runUntil(const std::function<bool()>& done) const { test::runUntil(done); }

 private:
  TemporaryFolder folder_;
  std::shared_ptr<gtk::GtkRunLoop> loop_ = std::make_shared<gtk::GtkRunLoop>();
  gtk::GtkUserDefaults defaults_{folder_.path("defaults.ini")};
  gtk::GtkBundle bundle_{{folder_.path("absent"), folder_.path("root")}};
  gtk::GtkImageDecoder images_{loop_, mostPixels};
  std::unique_ptr<gtk::GtkApplication> application_;
};

template <typename Rig>
class SmallServicesContract : public testing::Test {
 protected:
  Rig rig_;
};
using Rigs = testing::Types<HeadlessRig, GtkRig>;
TYPED_TEST_SUITE(SmallServicesContract, Rigs);

TYPED_TEST(SmallServicesContract, DefaultsShowAChangeAtOnceAndForgetWhatIsRemoved) {
  UserDefaults& defaults = this->rig_.defaults();
  EXPECT_EQ(defaults.value("absent"), std::nullopt);
  const std::string bytes{"\0\xff\n[x]=%41", 10};
  defaults.setValue("a", bytes);
  defaults.setValue("b", "");
  EXPECT_THAT(defaults.value("a"), Optional(bytes));
  EXPECT_THAT(defaults.value("b"), Optional(std::string{}));
  defaults.synchronize();
  defaults.setValue("a", std::nullopt);
  EXPECT_EQ(defaults.value("a"), std::nullopt);
  defaults.setValue("", "nameless");
  EXPECT_EQ(defaults.value(""), std::nullopt);
}

TYPED_TEST(SmallServicesContract, BundlesGiveOutTheFilesThatAreThere) {
  Bundle& bundle = this->rig_.bundle();
  const auto script = bundle.pathForResource("Name", "XMraid", "js");
  ASSERT_TRUE(script);
  EXPECT_THAT(bundle.contents(*script), Optional(std::string{"script"}));
  EXPECT_TRUE(bundle.pathForResource("", "plain", "png"));
  EXPECT_TRUE(bundle.pathForResource("", "plain.png", ""));
  EXPECT_FALSE(bundle.pathForResource("Name", "plain", "png"));
  EXPECT_FALSE(bundle.pathForResource("", "", ""));
  EXPECT_EQ(bundle.contents("/no/such/file"), std::nullopt);
}

TYPED_TEST(SmallServicesContract, PicturesAreDecodedOnceLaterAndWithinTheLimit) {
  struct Case {
    std::string bytes;
    int width;
    int height;
  };
  const std::vector<Case> cases{{this->rig_.picture(10, 5), 10, 5},
                                {this->rig_.picture(10, 10), 10, 10},
                                {this->rig_.picture(10, 11), 0, 0},
                                {"no picture", 0, 0},
                                {"", 0, 0}};
  for (const auto& sample : cases) {
    const Image now = this->rig_.images().decodeNow(sample.bytes);
    std::vector<Image> later;
    this->rig_.images().decode(sample.bytes, [&](Image image) {
      EXPECT_TRUE(this->rig_.loop().isMainThread());
      later.push_back(std::move(image));
    });
    EXPECT_TRUE(later.empty());
    this->rig_.runUntil([&] { return !later.empty(); });
    ASSERT_EQ(later.size(), 1U);
    for (const Image& image : {now, later[0]}) {
      EXPECT_EQ(image.width(), sample.width);
      EXPECT_EQ(image.height(), sample.height);
      EXPECT_EQ(image.empty(), sample.width == 0);
    }
  }
}

TYPED_TEST(SmallServicesContract, AnApplicationOpensOnlyWhatSomebodyHandles) {
  Application& application = this->rig_.application();
  for (const char* const url : {"", "/relative", "no-such-scheme-anywhere://x"}) {
    EXPECT_FALSE(application.canOpenUrl(Url::parse(url))) << url;
    EXPECT_FALSE(application.openUrl(Url::parse(url))) << url;
  }
  EXPECT_EQ(application.localizedString("untranslated"), "untranslated");
  EXPECT_EQ(application.localizedString(""), "");
  EXPECT_FALSE(application.isStatusBarHidden());
  application.setStatusBarHidden(true, StatusBarAnimation::fade);
  EXPECT_TRUE(application.isStatusBarHidden());
}

}  // namespace
}  // namespace tavo::test
