#include "ClickToAction/XPictureManager.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

constexpr const char* pictureUrl = "http://cdn.example/a%20b.png";
constexpr std::size_t no = 0;
constexpr std::size_t yes = 1;

class PictureManagerTest : public TransportTest {
 protected:
  PictureManagerTest() { platform_.http->answerWith(pictureUrl, "image/png", "image 4x4"); }

  void store(const std::string& url) { manager_->storePicture({{"url", url}, {"x", "y"}}); }
  void answer(std::size_t button) {
    alerts_->answers.back()(button);
    platform_.runLoop->advance(Seconds{120});
  }

  std::vector<std::string> lines_;
  const std::shared_ptr<const XPictureManagerDelegate> events_ =
      std::make_shared<XPictureManagerDelegate>(XPictureManagerDelegate{
          .pictureManagerDidFailToStorePictureWithError = [this](XPictureManager&,
                                                                 const Error& error) {
            lines_.push_back(std::to_string(error.code) + " " + error.description);
          }});
  std::shared_ptr<XPictureManager> manager_ =
      XPictureManager::create(Runtime::current().environment(), events_);
};

TEST_F(PictureManagerTest, AsksDownloadsAndSavesInSilence) {
  store("http://cdn.example/a b.png");
  EXPECT_EQ(manager_->imageURL().text(), pictureUrl);
  EXPECT_THAT(alerts_->shown, ElementsAre(Alert{.title = {},
                                                .message = "Save Photos",
                                                .buttons = {"No_Title", "Yes_Title"},
                                                .cancelButton = 0}));
  EXPECT_THAT(platform_.http->requests(), IsEmpty());
  answer(yes);
  EXPECT_THAT(platform_.http->urls(), ElementsAre(pictureUrl));
  EXPECT_THAT(platform_.photoAlbum->saved, ElementsAre("image 4x4"));
  EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(PictureManagerTest, ShowsTheHostsTranslations) {
  platform_.application->translations = {{"No_Title", "Nein"}, {"Yes_Title", "Ja"}};
  store(pictureUrl);
  EXPECT_THAT(alerts_->shown.at(0).buttons, ElementsAre("Nein", "Ja"));
}

TEST_F(PictureManagerTest, AUserWhoDeclinesIsAFailureWithoutADownload) {
  store(pictureUrl);
  answer(no);
  EXPECT_THAT(lines_, ElementsAre("1005 The user canceled the action."));
  store(pictureUrl);
  answer(2);
  EXPECT_EQ(lines_.size(), 1U) << "another button does nothing";
  EXPECT_THAT(platform_.http->requests(), IsEmpty());
}

TEST_F(PictureManagerTest, WhatIsNoUrlIsReportedAtOnceAndNobodyIsAsked) {
  manager_->storePicture({});
  for (const char* url : {"", " \n"}) store(url);
  EXPECT_THAT(lines_, AllOf(SizeIs(3), testing::Each("1004 URI was not valid.")));
  EXPECT_THAT(alerts_->shown, IsEmpty());
}

TEST_F(PictureManagerTest, FailuresOnTheWayReachTheDelegateAsTheyAre) {
  struct Row {
    const char* name;
    headless::ScriptedAnswer answer;
    std::optional<Error> album;
    std::string line;
  };
  const Row rows[] = {
      {"transport",
       {.error = makeError(TransportError::connectionLost, "Lost.")},
       {},
       "-1005 Lost."},
      {"no picture", {.body = "<html>"}, {}, "1 There is no picture."},
      {"nothing", {.status = 404}, {}, "1 There is no picture."},
      {"full disk", {.body = "image 2x2"}, Error{"album", 2, "Full."}, "2 Full."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    lines_.clear();
    platform_.http->forget(pictureUrl);
    platform_.http->answer(pictureUrl, row.answer);
    platform_.photoAlbum->saveError = row.album;
    store(pictureUrl);
    answer(yes);
    EXPECT_THAT(lines_, ElementsAre(row.line));
  }
  EXPECT_THAT(platform_.photoAlbum->saved, IsEmpty());
}

TEST_F(PictureManagerTest, APictureIsBoundedAndAServerThatHangsIsLeft) {
  platform_.http->forget(pictureUrl);
  platform_.http->answerWith(pictureUrl, "image/png",
                             std::string(runtime_.limits().pictureBytes + 1, 'x'));
  platform_.http->answer("http://slow.example/", {.neverAnswers = true});
  for (const char* url : {pictureUrl, "http://slow.example/", "ftp://a.example/x", "picture.png"}) {
    store(url);
    answer(yes);
  }
  EXPECT_THAT(lines_, SizeIs(4));
  EXPECT_THAT(lines_, Contains(HasSubstr("-1103")));
  EXPECT_THAT(lines_, Contains(HasSubstr("-1001")));
}

TEST_F(PictureManagerTest, AManagerThatIsGoneSavesNothing) {
  store(pictureUrl);
  manager_.reset();
  answer(yes);
  EXPECT_THAT(platform_.http->requests(), IsEmpty());
  EXPECT_THAT(lines_, IsEmpty());
}

}  // namespace
}  // namespace tavo::test
