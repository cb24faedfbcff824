#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Extensions/Base64.h"
#include "Extensions/CompressedData.h"
#include "External/TBXML/XTBXML.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

// A folder of the test's own, gone with it.
class XmlFileTest : public ::testing::Test {
 protected:
  XmlFileTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tavo-xml-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  ~XmlFileTest() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path write(const std::string& name, const std::string& bytes) {
    std::ofstream{folder_ / name, std::ios::binary} << bytes;
    return folder_ / name;
  }

  std::filesystem::path folder_;
};

constexpr std::string_view plainDocument = "<a><b>x</b></a>";

std::string textOfB(const XTBXML& document) {
  return std::string{
      XTBXML::textForElement(XTBXML::childElementNamed("b", document.rootXMLElement()))};
}

TEST_F(XmlFileTest, readsPlainAndCompressedFiles) {
  const std::string plain{plainDocument};
  EXPECT_EQ(textOfB(XTBXML::XTBXMLWithXMLFile(write("plain.xml", plain))), "x");
  write("packed.xml", gzipDeflate(plain));
  EXPECT_EQ(textOfB(XTBXML::XTBXMLWithXMLFile(folder_ / "packed", "xml")), "x");
}

TEST_F(XmlFileTest, aFileThatCannotBeReadHasNoRoot) {
  const std::string damaged = gzipDeflate(plainDocument).substr(0, 20);
  for (const auto& file : {folder_, folder_ / "missing.xml", write("damaged", damaged),
                           write("empty", ""), std::filesystem::path{}}) {
    EXPECT_EQ(XTBXML::XTBXMLWithXMLFile(file).rootXMLElement(), nullptr) << file;
  }
}

TEST_F(XmlFileTest, aFileThatGrowsBeyondTheLimitIsRefused) {
  const std::string packed = gzipDeflate(std::string(10'000'000, ' '));
  ASSERT_LT(packed.size(), 20'000U);
  EXPECT_EQ(gzipInflate(packed, 9'999'999), std::nullopt);
  EXPECT_EQ(gzipInflate(packed, 10'000'000)->size(), 10'000'000U);
  EXPECT_EQ(dataWithUncompressedContentsOfFile(write("bomb", packed), 1'000'000), std::nullopt);
  EXPECT_EQ(dataWithUncompressedContentsOfFile(write("large", std::string(101, 'x')), 100),
            std::nullopt);
}

TEST(XmlSourceTest, readsTextDataAndUrl) {
  EXPECT_EQ(textOfB(XTBXML::XTBXMLWithXMLString(plainDocument)), "x");
  EXPECT_EQ(textOfB(XTBXML::XTBXMLWithXMLData(plainDocument)), "x");
  std::string asked;
  const auto fetch = [&asked](const std::string& url) {
    asked = url;
    return std::string{plainDocument};
  };
  EXPECT_EQ(textOfB(XTBXML::XTBXMLWithURL("http://example.com/a.xml", fetch)), "x");
  EXPECT_EQ(asked, "http://example.com/a.xml");
  EXPECT_EQ(XTBXML::XTBXMLWithURL("", [](const auto&) { return std::string{}; }).rootXMLElement(),
            nullptr);
}

TEST(CompressedDataTest, inflatesWhatWasDeflated) {
  for (const std::string& data :
       {std::string{}, std::string{"x"}, std::string(200'000, 'y'), std::string("\0\xFF\0", 3)}) {
    EXPECT_EQ(gzipInflate(gzipDeflate(data)), data);
  }
  EXPECT_EQ(gzipInflate("not gzip at all"), std::nullopt);
  EXPECT_EQ(gzipInflate(""), std::nullopt);
}

TEST(Base64Test, encodesAndDecodes) {
  struct Pair {
    std::string data, text;
  };
  for (const Pair& pair : {Pair{"", ""}, Pair{"f", "Zg=="}, Pair{"fo", "Zm8="}, Pair{"foo", "Zm9v"},
                           Pair{"foob", "Zm9vYg=="}, Pair{std::string("\0\xFF\xFE", 3), "AP/+"}}) {
    EXPECT_EQ(base64Encoding(pair.data), pair.text);
    EXPECT_EQ(dataWithBase64EncodedString(pair.text), pair.data);
  }
  EXPECT_EQ(base64EncodingWithLineLength("foobarbaz", 5), "Zm9vY\nmFyYm\nF6");
  EXPECT_EQ(base64EncodingWithLineLength("foo", 4), "Zm9v");
  EXPECT_EQ(base64EncodingWithLineLength("foobar", 0), "Zm9vYmFy");
  EXPECT_EQ(dataWithBase64EncodedString(" Zm\n9v-Yg==trailing"), "foob");
  EXPECT_EQ(dataWithBase64EncodedString("Zg"), "f");
  EXPECT_EQ(dataWithBase64EncodedString("Zm9vY"), std::nullopt);
}

}  // namespace
}  // namespace tavo::test
