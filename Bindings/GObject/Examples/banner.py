#!/usr/bin/env python3
"""A window with a banner: banner.py [SERVER]."""
import sys

import gi

gi.require_version("Gtk", "4.0")
gi.require_version("TavoAds", "1")
from gi.repository import Gtk, TavoAds

server = sys.argv[1] if len(sys.argv) > 1 else "127.0.0.1:8080"


def activate(app):
    TavoAds.init("com.example.banner.python")
    banner = TavoAds.Banner(domain=server + "/ads", page="image-banner", position="Bottom1")
    banner.connect("loaded", lambda banner: print("The banner is on the screen.", flush=True))
    banner.connect("failed", lambda banner, error: print("No banner:", error.message, flush=True))
    window = Gtk.ApplicationWindow(application=app, default_width=360, default_height=640)
    window.set_child(banner)
    window.present()
    banner.load()


app = Gtk.Application(application_id="com.example.banner.python")
app.connect("activate", activate)
sys.exit(app.run())
