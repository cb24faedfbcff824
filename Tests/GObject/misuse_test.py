"""What a program can do wrong, or does at the worst moment: a critical message or an error, never a
crash."""
import gc
import os
import subprocess
import sys
import threading
import unittest
import weakref

import host
from host import Gio, GLib, GObject, Gtk, TavoAds, Criticals, run_until, settle, window_with

ADDRESS = dict(page="image-banner", position="Bottom1")


def program(text, **variables):
    """Runs a program of its own; returns its exit status and what it printed."""
    result = subprocess.run(
        [sys.executable, "-c", "import sys\nimport host\nfrom host import *\n" + text, server.domain],
        capture_output=True, text=True, timeout=host.PATIENCE * 2,
        env={**os.environ, **variables})
    return result.returncode, result.stdout, result.stderr


class BeforeInitTest(unittest.TestCase):
    def test_calls_before_the_start_are_refused_and_the_start_comes_later(self):
        status, out, err = program("""
banner, player = TavoAds.Banner(domain=sys.argv[1], page="image-banner", position="B"), TavoAds.Player()
ad, preroll = TavoAds.Interstitial(), TavoAds.Preroll(player=player)
window = Gtk.Window()
with Criticals() as texts:
    banner.load(); ad.load(); preroll.load(); player.play(); banner.refresh(); banner.perform(1, None)
    player.props.position = 2; banner.collapse()
    assert TavoAds.Ledger.get_default() is None and TavoAds.Settings.get_default() is None
print(len(texts), all("tavo_ads_init" in text for text in texts))
banner.release(); ad.close()
for call in [lambda: ad.present(window), lambda: TavoAds.register_network(ad, ad),
             lambda: TavoAds.init(""), lambda: TavoAds.Preroll(player=1)]:
    try: call(); print("no error")
    except GLib.Error as error: print(error.domain, error.code)
    except TypeError: print("type")
outcome = []
banner.load_async(None, lambda slot, result: outcome.append(result))
run_until(lambda: outcome)
try: banner.load_finish(outcome[0])
except GLib.Error as error: print(error.matches(TavoAds.error_quark(), TavoAds.Error.NOT_INITIALIZED))
window.set_child(banner); window.present()
initialize()
heard = []
banner.connect("loaded", heard.append); banner.load()
print("shown", bool(run_until(lambda: heard)))
""")
        self.assertEqual((status, out.split("\n")), (0, [
            "10 True", "tavo-ads-error-quark 1", "tavo-ads-error-quark 1", "tavo-ads-error-quark 5",
            "type", "True", "shown True", ""]), err)

    def test_no_display_is_an_error(self):
        status, out, err = program("""
try: TavoAds.init("com.example.nowhere")
except GLib.Error as error: print(error.domain, error.code)
""", DISPLAY=":99999")
        self.assertEqual((status, out), (0, "tavo-ads-error-quark 3\n"), err)

    def test_a_process_may_end_at_any_moment(self):
        moments = ["pass", "initialize()",
                   "initialize(); b.load()", "initialize(); b.load(); run_until(lambda: heard)",
                   "initialize(); p.load(); run_until(lambda: p.props.loaded)",
                   "initialize(); b.connect('loaded', lambda b: os._exit(0)); b.load(); "
                   "run_until(lambda: False)",
                   "initialize(); b.connect('loaded', lambda b: sys.exit(0)); b.load(); "
                   "run_until(lambda: heard)"]
        for moment in moments:
            with self.subTest(moment):
                status, _, err = program(f"""
import os
heard = []
b = TavoAds.Banner(domain=sys.argv[1], page="html-banner", position="B")
film = TavoAds.Player()
p = TavoAds.Preroll(player=film, domain=sys.argv[1], page="vast-preroll", position="B")
b.connect("loaded", heard.append)
box = Gtk.Box(); box.append(b); box.append(film)
w = Gtk.Window(child=box); w.present()
{moment}
""")
                self.assertEqual(status, 0, err[-2000:])


class MisuseTest(unittest.TestCase):
    def setUp(self):
        self.banner = TavoAds.Banner(domain=server.domain, **ADDRESS)
        self.window = window_with(self.banner)

    def tearDown(self):
        self.window.destroy()
        del self.banner
        settle()

    def outcome(self, slot, cancellable=None):
        """Loads and waits; the error, or none."""
        results = []
        slot.load_async(cancellable, lambda slot, result: results.append(result))
        return results

    def error_of(self, slot, results):
        self.assertTrue(run_until(lambda: results))
        try:
            slot.load_finish(results[0])
        except GLib.Error as error:
            return error.domain, error.code
        return None

    def test_the_start_is_made_once(self):
        TavoAds.init_with_options(options)
        with self.assertRaises(GLib.Error) as raised:
            TavoAds.init("another")
        self.assertTrue(raised.exception.matches(TavoAds.error_quark(),
                                                 TavoAds.Error.ALREADY_INITIALIZED))

    def test_a_load_without_an_address_is_refused(self):
        banner = TavoAds.Banner(domain=server.domain)
        with Criticals() as texts:
            banner.load()
        self.assertIn("position", texts[0])
        self.assertEqual(self.error_of(banner, self.outcome(banner)),
                         ("tavo-ads-error-quark", TavoAds.Error.INVALID_ARGUMENT))
        preroll = TavoAds.Preroll(domain=server.domain, **ADDRESS)
        self.assertEqual(self.error_of(preroll, self.outcome(preroll)),
                         ("tavo-ads-error-quark", TavoAds.Error.NO_PLAYER))

    def test_another_thread_is_refused(self):
        def other():
            self.banner.load()
            self.banner.refresh()
            self.banner.release()
            TavoAds.Ledger.get_default()
            try:
                ad = TavoAds.Interstitial(domain=server.domain, **ADDRESS)
                ad.present(self.window)
            except GLib.Error as error:
                errors.append(error.code)
            # The last reference of what the main thread has made goes here.
            loaded.clear()

        errors, loaded = [], [TavoAds.Interstitial(domain=server.domain, page="interstitial-html",
                                                   position="Full")]
        loaded[0].load()
        with Criticals() as texts:
            thread = threading.Thread(target=other)
            thread.start()
            thread.join()
        self.assertEqual(len(texts), 4)
        self.assertEqual(errors, [TavoAds.Error.WRONG_THREAD])
        settle()

    def test_a_load_that_is_given_up_says_why(self):
        domain = "tavo-ads-error-quark"
        first, second = self.outcome(self.banner), self.outcome(self.banner)
        self.assertEqual(self.error_of(self.banner, first), (domain, TavoAds.Error.REPLACED))
        self.banner.release()
        self.assertEqual(self.error_of(self.banner, second), (domain, TavoAds.Error.RELEASED))
        cancellable = Gio.Cancellable()
        third = self.outcome(self.banner, cancellable)
        cancellable.cancel()
        self.assertEqual(self.error_of(self.banner, third),
                         ("g-io-error-quark", Gio.IOErrorEnum.CANCELLED))
        self.assertEqual(self.error_of(self.banner, self.outcome(self.banner, cancellable)),
                         ("g-io-error-quark", Gio.IOErrorEnum.CANCELLED))
        fourth = self.outcome(self.banner)
        self.window.get_child().remove(self.banner)
        self.banner.run_dispose()
        self.assertEqual(self.error_of(self.banner, fourth), (domain, TavoAds.Error.RELEASED))
        self.assertEqual(self.error_of(self.banner, self.outcome(self.banner)),
                         (domain, TavoAds.Error.RELEASED))
        self.assertIsNone(self.error_of(*(lambda b: (b, self.outcome(b)))(
            TavoAds.Banner(domain=server.domain, **ADDRESS))))

    def test_a_hidden_banner_loads_as_often_as_it_is_asked(self):
        for _ in range(3):
            self.assertIsNone(self.error_of(self.banner, self.outcome(self.banner)))
            self.banner.set_visible(False)

    def test_a_failure_has_its_domain_and_code(self):
        for page, expected in {
                "no-ad": ("tavo-ads-ad-error-quark", TavoAds.AdError.NO_AD),
                "mediated-no-fill": ("tavo-ads-ad-error-quark",
                                     TavoAds.AdError.MEDIATION_IMPOSSIBLE)}.items():
            self.banner.props.page = page
            self.assertEqual(self.error_of(self.banner, self.outcome(self.banner)), expected)
        self.banner.props.domain = "127.0.0.1:1/ads"
        self.assertEqual(self.error_of(self.banner, self.outcome(self.banner)), (
            "tavo-ads-transport-error-quark", TavoAds.TransportError.CANNOT_CONNECT))

    def test_double_present_and_early_present_are_errors(self):
        ad = TavoAds.Interstitial(domain=server.domain, page="interstitial-html", position="Full")

        def code(window):
            with self.assertRaises(GLib.Error) as raised:
                ad.present(window)
            return raised.exception.code

        self.assertEqual(code(self.window), TavoAds.Error.NOT_LOADED)
        ad.load()
        self.assertTrue(run_until(lambda: ad.props.loaded))
        self.assertEqual(code(Gtk.Window()), TavoAds.Error.NO_WINDOW)
        self.assertTrue(ad.present(self.window))
        self.assertEqual(code(self.window), TavoAds.Error.ALREADY_PRESENTED)
        self.assertEqual(self.error_of(ad, self.outcome(ad)),
                         ("tavo-ads-error-quark", TavoAds.Error.ALREADY_PRESENTED))
        heard = []
        ad.connect("dismissed", lambda ad: heard.append(ad.props.presented))
        ad.close()
        ad.close()
        self.assertTrue(run_until(lambda: heard))
        settle()
        self.assertEqual(heard, [False])
        self.assertFalse(ad.props.loaded)

    def test_a_presented_ad_that_nobody_holds_stays_until_its_window_goes(self):
        heard = []
        ad = TavoAds.Interstitial(domain=server.domain, page="interstitial-html", position="Full")
        gone = weakref.ref(ad)
        ad.connect("loaded", lambda ad: heard.append(ad.present(self.window)))
        ad.connect("dismissed", lambda ad: heard.append("dismissed"))
        ad.load()
        self.assertTrue(run_until(lambda: heard))
        held = GObject.Object.weak_ref(ad, lambda: heard.append("gone"))
        del ad
        gc.collect()
        settle()
        self.assertEqual(heard, [True])
        self.window.destroy()
        self.assertTrue(run_until(lambda: "gone" in heard))
        self.assertEqual(heard, [True, "dismissed", "gone"])


if __name__ == "__main__":
    server = host.Server()
    options = host.initialize()
    try:
        host.main(__name__)
    finally:
        server.end()
