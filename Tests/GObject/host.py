"""What the tests of the interface for other languages have in common: the sample server, a loop,
and what the library writes to the log."""
import os
import subprocess
import sys
import tempfile

import gi

gi.require_version("Gtk", "4.0")
gi.require_version("TavoAds", "1")
from gi.repository import Gio, GLib, GObject, Gtk, TavoAds  # noqa: E402

PATIENCE = 60  # seconds, far longer than anything here takes


class Server:
    """The sample ad server, as a process of its own."""

    def __init__(self, *arguments):
        self.process = subprocess.Popen(
            [os.environ["TAVO_AD_SERVER"], *arguments], stdout=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().strip().removeprefix("http://")
        self.domain = self.address + "/ads"

    def end(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()


def initialize(limits=None):
    folder = tempfile.mkdtemp(prefix="tavo-gobject-")
    options = TavoAds.Options(application_id="tavo-test", data_folder=folder,
                              assume_reachable=True, limits=limits)
    TavoAds.init_with_options(options)
    return options


def run_until(done):
    """Turns the loop until `done`; returns whether it came to that."""
    late = []
    timer = GLib.timeout_add_seconds(PATIENCE, lambda: late.append(True))
    context = GLib.MainContext.default()
    while not done() and not late:
        context.iteration(True)
    if not late:
        GLib.source_remove(timer)
    return done()


def settle():
    """Lets everything happen that is due now."""
    context = GLib.MainContext.default()
    while context.iteration(False):
        pass


class Criticals:
    """The critical messages of this library while it is entered."""

    def __enter__(self):
        self.texts = []
        self.handler = GLib.log_set_handler(
            "TavoAds", GLib.LogLevelFlags.LEVEL_CRITICAL,
            lambda domain, level, text, data: self.texts.append(text), None)
        return self.texts

    def __exit__(self, *_):
        GLib.log_remove_handler("TavoAds", self.handler)


def window_with(*widgets):
    window = Gtk.Window(default_width=360, default_height=640)
    column = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
    for widget in widgets:
        column.append(widget)
    window.set_child(column)
    window.present()
    run_until(window.get_mapped)
    return window


def main(module):
    import unittest
    # Whatever goes wrong inside a handler is printed by the binding, and would be passed over.
    unittest.main(module=module, argv=sys.argv, verbosity=1)
