#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtkmm.h>
#include <sys/resource.h>

#include <tavo/Limits.h>

#include "Gtk/GPtr.h"
#include "Gtk/Scene/Textures.h"
#include "Gtk/Services/GtkImageDecoder.h"
#include "Support/GtkLoopTest.h"

namespace tavo::test {
namespace {

class GtkImages : public GtkLoopTest {
 protected:
  // A picture whose every pixel has this colour.
  static std::string picture(const char* format, int width, int height, std::uint32_t rgba,
                             bool hasAlpha = true) {
    const auto pixbuf = gtk::GPtr<GdkPixbuf>::adopt(
        gdk_pixbuf_new(GDK_COLORSPACE_RGB, hasAlpha ? TRUE : FALSE, 8, width, height));
    gdk_pixbuf_fill(pixbuf.get(), rgba);
    char* data = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(pixbuf.get(), &data, &size, format, nullptr, nullptr);
    const gtk::GText owned{data};
    return {data, size};
  }

  static std::vector<int> firstPixel(const Image& image) {
    const auto* const pixel = image.pixels().get();
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
  }

  static void writeBigEndian(std::string& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t byte = 0; byte < 4; ++byte) {
      bytes[at + byte] = static_cast<char>((value >> (24 - 8 * byte)) & 0xffU);
    }
  }

  // A sound PNG head that announces this size.
  static std::string announcing(std::uint32_t width, std::uint32_t height) {
    std::string png = picture("png", 1, 1, 0);
    writeBigEndian(png, 16, width);
    writeBigEndian(png, 20, height);
    std::uint32_t sum = 0xffffffffU;  // CRC-32 of the chunk, or the size is not even looked at
    for (const char c : png.substr(12, 17)) {
      sum ^= static_cast<unsigned char>(c);
      for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xedb88320U : 0U);
    }
    writeBigEndian(png, 29, ~sum);
    return png;
  }

  static constexpr std::size_t mostPixels = 100;
  gtk::GtkImageDecoder decoder_{runLoop_, mostPixels};
};

TEST_F(GtkImages, GivesEveryFormatAnAlphaChannel) {
  for (const char* const format : {"png", "jpeg", "bmp"}) {
    const Image image = decoder_.decodeNow(picture(format, 3, 7, 0xffffffff, false));
    ASSERT_EQ(image.height(), 7) << format;
    EXPECT_THAT(firstPixel(image), ElementsAre(255, 255, 255, 255)) << format;
  }
}

TEST_F(GtkImages, ReadsTheFirstPictureOfAGif) {
  using namespace std::string_literals;
  const auto gif = "GIF89a\1\0\1\0\x80\0\0\xff\0\0\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;"s;
  const Image image = decoder_.decodeNow(gif);
  ASSERT_EQ(image.width(), 1);
  EXPECT_THAT(firstPixel(image), ElementsAre(255, 0, 0, 255));
}

TEST_F(GtkImages, RefusesAHugePictureBeforeItHasMemory) {
  const gtk::GtkImageDecoder decoder{runLoop_, Limits{}.picturePixels};
  rusage before{};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_TRUE(decoder.decodeNow(announcing(20'000, 20'000)).empty());
  EXPECT_TRUE(decoder.decodeNow(announcing(0x7fffffff, 0x7fffffff)).empty());
  rusage after{};
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 256 * 1024);  // it would be 1.6 GB
}

TEST_F(GtkImages, TakesNothingElseForAPicture) {
  using namespace std::string_literals;
  const std::string png = picture("png", 10, 10, 0x80808080);
  const std::vector<std::string> broken{
      "",
      "GIF8",
      "\x89PNG\r\n\x1a\n"s,
      "BM"s + std::string(100, '\xff'),
      "\xff\xd8\xff\xe0"s,
      "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>",
      "/* XPM */ static char *x[] = {\"1 1 1 1\", \"a c red\", \"a\"};",
      "{}",
      png.substr(1),
      announcing(0, 0),
      announcing(5, 5)};
  for (const auto& bytes : broken) {
    EXPECT_TRUE(decoder_.decodeNow(bytes).empty()) << testing::PrintToString(bytes);
  }
}

TEST_F(GtkImages, RefusesAPictureThatBreaksOffAnywhere) {
  for (const char* const format : {"png", "jpeg", "bmp"}) {
    const std::string whole = picture(format, 10, 10, 0x80808080, false);
    // What stands behind the last pixel is two check sums and an empty chunk at most.
    for (std::size_t length = 0; length + 20 < whole.size(); ++length) {
      EXPECT_TRUE(decoder_.decodeNow(whole.substr(0, length)).empty()) << format << " " << length;
    }
  }
}

TEST_F(GtkImages, SurvivesEveryFlippedByte) {
  for (const char* const format : {"png", "jpeg", "bmp"}) {
    const std::string good = picture(format, 9, 9, 0x80808080, false);
    for (std::size_t at = 0; at < good.size(); ++at) {
      std::string bad = good;
      bad[at] = static_cast<char>(~bad[at]);
      const Image image = decoder_.decodeNow(bad);
      EXPECT_LE(static_cast<std::size_t>(image.width() * image.height()), mostPixels);
    }
  }
}

TEST_F(GtkImages, APictureIsKeptByWhoDrawsItAndByNobodyElse) {
  gtk_init();
  Gtk::Application::create();  // wraps the toolkit's objects
  Image image = decoder_.decodeNow(picture("png", 10, 5, 0x11223344));
  const std::weak_ptr<const std::uint8_t> pixels = image.pixels();
  auto drawn = gtk::textureOf(image);
  EXPECT_EQ(gtk::textureOf(image), drawn);
  EXPECT_NE(gtk::textureOf(image.cropped({0, 0, 5, 5})), drawn);
  image = {};
  EXPECT_FALSE(pixels.expired()) << "the texture has lost its pixels";
  drawn.reset();
  EXPECT_TRUE(pixels.expired());
}

}  // namespace
}  // namespace tavo::test
