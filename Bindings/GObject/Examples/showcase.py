#!/usr/bin/env python3
"""A banner, a film with an ad before it, and an interstitial: showcase.py [SERVER]."""
import sys

import gi

gi.require_version("Gtk", "4.0")
gi.require_version("TavoAds", "1")
from gi.repository import Gtk, TavoAds

server = sys.argv[1] if len(sys.argv) > 1 else "127.0.0.1:8080"
domain = server + "/ads"


def activate(app):
    TavoAds.init("com.example.showcase")
    window = Gtk.ApplicationWindow(application=app, title="Evening news", default_width=380,
                                   default_height=440)
    column = Gtk.Box(orientation=Gtk.Orientation.VERTICAL, spacing=12, margin_top=18,
                     margin_bottom=12)
    column.append(Gtk.Label(label="<big><b>Today in ninety seconds</b></big>", use_markup=True))

    player = TavoAds.Player(uri=f"http://{server}/assets/vast-preroll/clip.mp4")
    preroll = TavoAds.Preroll(player=player, domain=domain, page="vast-preroll", position="Pre")
    preroll.connect("finished", lambda ad: player.play())
    preroll.connect("failed", lambda ad, error: print("No film ad:", error.message))
    column.append(player)

    watch = Gtk.Button(label="Watch", halign=Gtk.Align.CENTER)
    watch.connect("clicked", lambda button: preroll.load())
    column.append(watch)

    interstitial = TavoAds.Interstitial(domain=domain, page="interstitial-html", position="Full")
    interstitial.connect("loaded", lambda ad: ad.present(window))
    interstitial.connect("dismissed", lambda ad: more.set_label("Page 2"))
    interstitial.connect("failed", lambda ad, error: more.set_label("Page 2"))
    more = Gtk.Button(label="Read on", halign=Gtk.Align.CENTER, vexpand=True,
                      valign=Gtk.Align.START)
    more.connect("clicked", lambda button: interstitial.load())
    column.append(more)

    banner = TavoAds.Banner(domain=domain, page="html-banner", position="Bottom1")
    banner.connect("failed", lambda ad, error: ad.set_visible(False))
    column.append(banner)
    banner.load()

    window.set_child(column)
    window.present()


app = Gtk.Application(application_id="com.example.showcase")
app.connect("activate", activate)
sys.exit(app.run())
