"""What programs do with it: files of GtkBuilder and templates, awaited loads, the ledger as a list,
and a network of the program's own."""
import threading
import unittest

import host
from host import Gio, GLib, GObject, Gtk, TavoAds, run_until, window_with

PAGE = """<interface><template class="TavoTestPage" parent="GtkBox"><child>
<object class="TavoAdsBanner" id="banner"><property name="page">image-banner</property>
<property name="position">B</property><property name="ad-height">60</property>
<property name="settings"><object class="TavoAdsSlotSettings"><property name="skip-unit">percent</property>
</object></property><signal name="loaded" handler="on_loaded"/></object></child></template></interface>"""


@Gtk.Template(string=PAGE)
class Page(Gtk.Box):
    __gtype_name__ = "TavoTestPage"
    banner = Gtk.Template.Child()
    heard = False

    @Gtk.Template.Callback()
    def on_loaded(self, banner):
        self.heard = True


class Network(TavoAds.NetworkAd):
    """Answers as its placement says, from a thread of its own."""
    made = []

    def do_load(self):
        self.made.append(self)
        if self.props.placement_id != "no-fill":
            self.props.widget = Gtk.Label(label="Ours")
        threading.Thread(target=self.received if self.props.widget else
                         lambda: self.failed(7, "Nothing there.")).start()


def awaited(slot, cancellable=None):
    """What `await slot.load_async()` is made of."""
    results = []
    slot.load_async(cancellable, lambda slot, result: results.append(result))
    yield lambda: results
    return slot.load_finish(results[0])


def run(coroutine):
    """Runs a coroutine on the main loop and returns its result."""
    try:
        while True:
            run_until(coroutine.send(None))
    except StopIteration as end:
        return end.value


class UseTest(unittest.TestCase):
    def banner(self, page, **more):
        banner = TavoAds.Banner(domain=server.domain, page=page, position="B", **more)
        self.window = window_with(banner)
        self.addCleanup(self.window.destroy)
        return banner

    def test_a_template_has_a_banner_with_settings_and_handlers(self):
        page = Page()
        window = window_with(page)
        self.assertEqual(page.banner.props.settings.props.skip_unit, TavoAds.SkipUnit.PERCENT)
        page.banner.props.domain = server.domain
        page.banner.load()
        self.assertTrue(run_until(lambda: page.heard))
        self.assertTrue(run_until(lambda: page.banner.get_height() >= 60))
        self.assertEqual(page.banner.props.kind, TavoAds.Kind.IMAGE)
        window.destroy()

    def test_a_load_is_awaited(self):
        self.assertTrue(run(awaited(self.banner("html-banner"))))
        with self.assertRaises(GLib.Error) as raised:
            run(awaited(self.banner("no-ad")))
        self.assertTrue(raised.exception.matches(TavoAds.ad_error_quark(), TavoAds.AdError.NO_AD))

    def test_a_page_is_refused_by_its_handler(self):
        banner = self.banner("html-banner")
        banner.connect("review-page", lambda banner: True)
        with self.assertRaises(GLib.Error) as raised:
            run(awaited(banner))
        self.assertEqual(raised.exception.code, TavoAds.AdError.RENDERING_REFUSED)

    def test_a_pre_roll_refuses_what_is_no_film(self):
        for page, code in {"image-banner": TavoAds.AdError.NO_AD,
                           "html-banner": TavoAds.AdError.RENDERING_REFUSED}.items():
            player = TavoAds.Player(uri="http://127.0.0.1:1/film")
            window = window_with(player)
            ad = TavoAds.Preroll(player=player, domain=server.domain, page=page, position="B")
            with self.assertRaises(GLib.Error) as raised:
                run(awaited(ad))
            self.assertEqual(raised.exception.code, code, page)
            self.assertEqual(player.props.uri, "http://127.0.0.1:1/film")
            window.destroy()

    def test_the_ledger_is_a_list_that_follows_its_pings(self):
        ledger = TavoAds.Ledger.get_default()
        before, changes, states = ledger.get_n_items(), [], []
        ledger.connect("items-changed", lambda model, at, gone, new: (
            changes.append((at, gone, new)),
            model.get_item(at).connect("notify::state", lambda ping, _: states.append(
                ping.props.state))) and None)
        run(awaited(self.banner("image-banner")))
        self.assertTrue(run_until(lambda: TavoAds.PingState.ANSWERED in states))
        self.assertEqual(changes, [(before, 0, 1)])
        ping = ledger.get_item(before)
        self.assertTrue(ping.props.url.endswith("/track/image-banner/impression"))
        self.assertEqual((ping.props.status, ping.props.error), (200, None))
        self.assertTrue(run_until(lambda: ledger.props.due == ledger.props.answered))
        self.assertEqual(Gtk.SingleSelection(model=ledger).get_n_items(), before + 1)

    def test_a_network_of_the_programs_own_fills_a_slot(self):
        TavoAds.register_network(Network, GObject.TYPE_NONE)
        banner = self.banner("mediated-banner")
        self.assertTrue(run(awaited(banner)))
        ad = Network.made[-1]
        self.assertTrue(banner.props.mediated)
        self.assertEqual((ad.props.placement_id, ad.props.width), ("sample-banner", 320))
        self.assertTrue(run_until(lambda: ad.props.widget.get_root() is self.window))
        clicks = []
        banner.connect("clicked", lambda banner, action, details: clicks.append(action) or False)
        ad.clicked()
        self.assertEqual(clicks, [TavoAds.Action.PAGE])
        with self.assertRaises(GLib.Error) as raised:
            run(awaited(self.banner("mediated-no-fill")))
        self.assertEqual((raised.exception.domain, raised.exception.code, raised.exception.message),
                         ("tavo-ads-network-error-quark", 7, "Nothing there."))
        for wrong in [Gtk.Label, TavoAds.NetworkAd]:
            with self.assertRaises(GLib.Error):
                TavoAds.register_network(wrong, GObject.TYPE_NONE)
        TavoAds.register_network(GObject.TYPE_NONE, GObject.TYPE_NONE)


if __name__ == "__main__":
    server = host.Server()
    host.initialize()
    try:
        host.main(__name__)
    finally:
        server.end()
