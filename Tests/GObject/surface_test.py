"""Walks the whole typelib: reads each property, writes it back, connects each signal, and looks for
each function in the library."""
import unittest

import host
from host import GLib, TavoAds
from gi._gi import FunctionInfo, InterfaceInfo, ObjectInfo, Repository
from gi.repository import GObject


def infos(kind):
    return [info for info in Repository.get_default().get_infos("TavoAds")
            if isinstance(info, kind)]


class Network(TavoAds.NetworkAd):
    pass


def instances():
    """One of each class."""
    for info in infos(ObjectInfo):
        cls = getattr(TavoAds, info.get_name())
        yield info.get_name(), Network() if cls is TavoAds.NetworkAd else cls()


class SurfaceTest(unittest.TestCase):
    def test_each_property_is_read_and_written_back(self):
        read = 0
        for name, thing in instances():
            for spec in thing.list_properties():
                if not spec.owner_type.name.startswith("TavoAds"):
                    continue
                with self.subTest(cls=name, property=spec.name):
                    value = thing.get_property(spec.name)
                    read += 1
                    if spec.flags & GObject.ParamFlags.WRITABLE:
                        thing.set_property(spec.name, value)
                        self.assertEqual(str(thing.get_property(spec.name)), str(value))
        self.assertGreater(read, 140)

    def test_each_signal_is_connected(self):
        connected = 0
        for name, thing in instances():
            for owner in [type(thing).__gtype__, TavoAds.Slot.__gtype__]:
                if not GObject.type_is_a(type(thing).__gtype__, owner):
                    continue
                for signal in GObject.signal_list_ids(owner):
                    query = GObject.signal_query(signal)
                    self.assertGreater(thing.connect(query.signal_name, lambda *_: None), 0)
                    connected += 1
        self.assertEqual(connected, 3 * 16 + 3 + 1 + 1 + 1)

    def test_each_function_is_there_and_defaults_are_within_their_ranges(self):
        functions = [getattr(TavoAds, info.get_name()) for info in infos(FunctionInfo)]
        for info in infos((ObjectInfo, InterfaceInfo)):
            cls = getattr(TavoAds, info.get_name())
            functions += [getattr(cls, method.get_name()) for method in info.get_methods()]
        self.assertTrue(all(callable(function) for function in functions))
        self.assertGreater(len(functions), 40)
        limits = TavoAds.Limits()
        for spec in limits.list_properties():
            self.assertEqual(limits.get_property(spec.name), spec.default_value, spec.name)

    def test_properties_notify_and_bind(self):
        settings, banner, other = TavoAds.SlotSettings(), TavoAds.Banner(), TavoAds.Banner()
        heard = []
        settings.connect("notify", lambda thing, spec: heard.append(spec.name))
        settings.props.refresh_interval = 30
        settings.props.refresh_interval = 30
        settings.props.skip_unit = TavoAds.SkipUnit.PERCENT
        self.assertEqual(heard, ["refresh-interval", "skip-unit"])
        banner.bind_property("page", other, "page", GObject.BindingFlags.SYNC_CREATE)
        banner.bind_property("settings", other, "settings", GObject.BindingFlags.SYNC_CREATE)
        banner.props.page, banner.props.settings = "news", settings
        self.assertEqual(other.props.page, "news")
        self.assertIs(other.props.settings, settings)
        with self.assertRaises(TypeError):
            TavoAds.SlotSettings(can_mediate=GLib.Variant("s", "x"))

    def test_values_keep_what_they_were_given(self):
        settings = TavoAds.Settings.get_default()
        cases = {"can-mediate": 1, "location": GLib.Variant("(ddd)", (52.5, 13.4, 10.0)),
                 "store-hosts": ["apps.example.com"], "browser-bar-at-top": True,
                 "browser-bar-image": "bar", "store-page-prefix": "https://example.com/",
                 "standards-mode": True, "gdpr-consent": "CP", "limit-ad-tracking": "1"}
        for name, value in cases.items():
            before = settings.get_property(name)
            settings.set_property(name, value)
            self.assertEqual(settings.get_property(name), value, name)
            settings.set_property(name, before)
        self.assertEqual(TavoAds.SlotSettings().props.standards_mode, -1)
        slot = TavoAds.SlotSettings(standards_mode=0, preferred_video_bitrate=800,
                                    mediation_keywords=GLib.Variant("a{ss}", {"a": "b"}))
        self.assertEqual((slot.props.standards_mode, slot.props.preferred_video_bitrate), (0, 800))
        self.assertEqual(slot.props.mediation_keywords.unpack(), {"a": "b"})


if __name__ == "__main__":
    host.initialize()
    host.main(__name__)
