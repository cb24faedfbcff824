"""Every signal of every class with a handler that disposes of its object, and with one that raises:
the library goes on, says nothing critical (which would end this program), and lets the object go."""
import gc
import os
import shutil
import sys
import tempfile
import unittest

import host
from host import GObject, Gtk, TavoAds, run_until, settle, window_with

PAGE = """<script src="mraid.js"></script><script>
function act() {{ {0} }}
window.onload = function () {{
  if (mraid.getState() === 'loading') mraid.addEventListener('ready', act); else act();
}};</script>An ad"""
ACTS = {
    "calls.html": "location.href = 'tel:+35121000000'",
    "collapses.html": "mraid.addEventListener('stateChange', function (state) {"
                      " if (state === 'expanded') mraid.close(); }); mraid.expand()",
    "expands.html": "mraid.expand()",
    "opens.html": "mraid.open('http://127.0.0.1:1/')",
    "tells.html": "location.href = 'app://here'",
}
SAMPLES = ["html-banner", "image-banner", "no-ad", "vast-preroll", "interstitial-video"]

# Which page causes a signal of any slot by itself.
CAUSES = {"failed": "no-ad", "review-page": "html-banner", "clicked": "calls.html",
          "custom-url": "tells.html", "browser-opened": "opens.html",
          "expanded": "expands.html", "notify::expanded": "expands.html",
          "collapsed": "collapses.html"}
# What a person or the system has to do is emitted while the ad is on the screen.
ARGUMENTS = {"clicked": (TavoAds.Action.PAGE, None), "custom-url": ("app://here",),
             "quartile": (TavoAds.Quartile.FIRST,)}


def signals_of(cls):
    cls()  # a class has its signals once there was an object of it
    names = [*GObject.signal_list_names(TavoAds.Slot), *GObject.signal_list_names(cls)]
    return names + ["notify::loading", "notify::loaded", "notify::kind"]


class Slots:
    """Makes slots of a class, brings their signals about, and takes them away again."""
    causes, silent = CAUSES, "image-banner"

    def __init__(self, test):
        self.test = test

    def make(self, page):
        return self.cls(domain=server.domain, page=page, position="B")

    def comes_by_itself(self, signal):
        return (signal in self.causes or signal in ("loaded", "dismissed", "finished")
                or signal.startswith("notify"))

    def loaded(self, slot, signals):
        for signal in signals:
            if not self.comes_by_itself(signal):
                slot.emit(signal, *ARGUMENTS.get(signal, ()))

    def remove(self, slot):
        pass


class Banners(Slots):
    cls = TavoAds.Banner

    def make(self, page):
        banner = super().make(page)
        banner.props.settings.props.open_pages_inside = True
        self.test.column.append(banner)
        return banner

    def remove(self, slot):
        if slot.get_parent():
            self.test.column.remove(slot)


class Interstitials(Slots):
    cls = TavoAds.Interstitial
    causes = {**CAUSES, "quartile": "interstitial-video"}

    def make(self, page):
        ad = super().make(page)
        ad.props.settings.props.open_pages_inside = True
        return ad

    def loaded(self, slot, signals):
        if signals != ["loaded"]:
            slot.present(self.test.window)
        super().loaded(slot, signals)
        if signals == ["dismissed"]:
            slot.close()

    def remove(self, slot):
        slot.close()


class Prerolls(Slots):
    cls, silent = TavoAds.Preroll, "vast-preroll"
    causes = {"failed": "no-ad", "quartile": "vast-preroll"}
    steps = {"video-paused": lambda player: player.pause(),
             "video-resumed": lambda player: player.pause(),  # and "video-paused" lets it go on
             "full-screen-entered": lambda player: player.set_property("fullscreen", True),
             "full-screen-left": lambda player: (player.set_property("fullscreen", True),
                                                 player.set_property("fullscreen", False))}

    def make(self, page):
        self.player = TavoAds.Player()
        self.test.column.append(self.player)
        return TavoAds.Preroll(player=self.player, domain=server.domain, page=page, position="B")

    def comes_by_itself(self, signal):
        return signal in self.steps or super().comes_by_itself(signal)

    def loaded(self, slot, signals):
        for signal in signals:
            self.steps.get(signal, lambda player: None)(self.player)
        if signals == ["video-resumed"]:
            slot.connect("video-paused", lambda slot: self.player.play())
        super().loaded(slot, signals)

    def remove(self, slot):
        self.test.column.remove(self.player)
        del self.player


def dispose(thing):
    if isinstance(thing, Gtk.Widget):
        thing.unparent()
    thing.run_dispose()


def fail(thing):
    raise ArithmeticError


class DisposeTest(unittest.TestCase):
    def setUp(self):
        self.window = window_with()
        self.column = self.window.get_child()
        self.raised, hook = [], sys.excepthook
        sys.excepthook = lambda kind, *_: self.raised.append(kind)
        self.addCleanup(setattr, sys, "excepthook", hook)
        self.addCleanup(self.window.destroy)

    def hears(self, slots, signals, act):
        """Signals of one slot: `act` is what the handler of each does when it hears it first."""
        slot, heard, gone = slots.make(slots.causes.get(signals[0], slots.silent)), set(), []
        slot.weak_ref(gone.append, True)

        def handler(slot, *arguments):
            signal = arguments[-1]
            first = signal not in heard
            heard.add(signal)
            if first:
                act(slot)

        for signal in signals:
            slot.connect(signal, handler, signal)
        slot.connect("loaded", slots.loaded, signals)
        if signals != ["failed"]:  # a busy machine may run into a bound
            slot.connect("failed", lambda slot, error: slot.load())
        slot.load()
        self.assertTrue(run_until(lambda: heard == set(signals)))
        settle()
        slots.remove(slot)
        sys.last_value = sys.last_traceback = None  # what was raised holds whoever was called
        del slot
        self.assertTrue(run_until(lambda: gc.collect() is not None and gone))

    def walk(self, slots, *more):
        signals = [*signals_of(slots.cls), *more]
        emitted = [signal for signal in signals if not slots.comes_by_itself(signal)]
        others = [[signal] for signal in signals if slots.comes_by_itself(signal)]
        for act, groups in [(dispose, [[signal] for signal in signals]), (fail, [emitted, *others])]:
            for group in groups:
                with self.subTest(signals=group, act=act.__name__):
                    self.hears(slots, group, act)
        self.assertEqual(set(self.raised), {ArithmeticError})

    def test_banner(self):
        self.walk(Banners(self), "notify::expanded")

    def test_interstitial(self):
        self.walk(Interstitials(self), "notify::presented")

    def test_preroll(self):
        self.walk(Prerolls(self))

    def test_player(self):
        for act in [dispose, fail]:
            for signal in ["finished", "notify::state", "notify::duration"]:
                uri = server.domain if signal == "finished" else FILM
                with self.subTest(signal=signal, act=act.__name__):
                    player, heard, gone = TavoAds.Player(uri=uri), [], []
                    player.weak_ref(gone.append, True)
                    self.column.append(player)
                    player.connect(signal, lambda player, _: (heard.append(1), act(player)) and None)
                    player.play()
                    self.assertTrue(run_until(lambda: heard))
                    settle()
                    if player.get_parent():
                        self.column.remove(player)
                    sys.last_value = sys.last_traceback = None
                    del player
                    self.assertTrue(run_until(lambda: gc.collect() is not None and gone))


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as folder:
        for name in SAMPLES:
            shutil.copytree(f"{os.environ['TAVO_CAMPAIGNS']}/{name}", f"{folder}/{name}")
        for name, act in ACTS.items():
            with open(f"{folder}/{name}", "w") as page:
                page.write(PAGE.format(act))
        server = host.Server("--campaigns", folder)
        FILM = f"http://{server.address}/assets/vast-preroll/clip.mp4"
        host.initialize(TavoAds.Limits(leaving_actions_need_tap=False))
        try:
            host.main(__name__)
        finally:
            server.end()
