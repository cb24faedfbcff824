// The library's own texts in the language of the person: a program that was started for German.

#include <tavo/gtk/AdWindow.h>

#include "Services/Composers.h"
#include "Support/GtkHost.h"
#include "Support/Places.h"
#include "Support/StandInHandlers.h"
#include "Support/Testing.h"
#include "Support/WidgetTree.h"
#include "UserInterface/WebView/InAppBrowser/AddressLine.h"
#include "UserInterface/WebView/InAppBrowser/BrowserButtons.h"
#include "UserInterface/WebView/InAppBrowser/ErrorPage.h"

namespace tavo::test {
namespace {

StandInHandlers handlers;  // before GLib reads where the user's folders are

// As if a person's session had said so. Not of the locale "C", which knows no other language.
const bool german =
    g_setenv("LANGUAGE", "de", TRUE) != FALSE && g_setenv("LC_ALL", "C.UTF-8", TRUE) != FALSE;

std::vector<std::string> shownTexts(Gtk::Widget& top) {
  std::vector<std::string> texts;
  for (const auto* label : widgetsBelow<Gtk::Label>(top)) texts.push_back(label->get_text());
  return texts;
}

TEST(Translation, SheetsSpeakThePersonsLanguage) {
  ASSERT_TRUE(german);
  GtkHost host{sampleCampaigns()};
  const auto root = gtk::rootViewControllerOf(host.window());
  auto& sheets = *Runtime::current().platform().composers;
  const Date start{std::chrono::seconds{1'795'255'200}};
  const auto event =
      sheets.eventEditor({"Opening night", "", "", start, start, CalendarAlarm{Seconds{-600}}},
                         [](auto, const auto&) {});
  root->presentViewController(event, Animated::no);
  ASSERT_TRUE(host.runUntil([&] { return !widgetsBelow<Gtk::Entry>(host.window()).empty(); }));
  host.waitForFrames();
  host.keepPicture("event-in-german");
  EXPECT_THAT(shownTexts(host.window()),
              testing::IsSupersetOf({"Neuer Termin", "Titel", "Ort", "Beginn", "Ende", "Notizen",
                                     "Erinnerung: 10 Minuten vorher", "Abbrechen", "Speichern"}));
  EXPECT_TRUE(pressButton(host.window(), "Abbrechen"));
  EXPECT_EQ(root->presentedViewController(), nullptr);
}

TEST(Translation, TheBrowserSpeaksThePersonsLanguage) {
  EXPECT_EQ(buttonLabel(BrowserButton::reload), "Neu laden");
  EXPECT_EQ(pageSign(Url::parse("http://shop.example/"), "Shop").text,
            "Nicht sicher: shop.example \u2013 Shop");
  const std::string page = errorPage(Url::parse("http://shop.example/"),
                                     makeError(TransportError::timedOut, "For a developer."));
  EXPECT_THAT(page, HasSubstr("<h1>Diese Seite kann nicht angezeigt werden</h1>"));
  EXPECT_THAT(page, HasSubstr("Die Seite wurde nicht rechtzeitig geladen."));
}

}  // namespace
}  // namespace tavo::test
