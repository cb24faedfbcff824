"""Every sample campaign by the C++ road and by this one: the same reports in the same order."""
import os
import subprocess
import unittest

import host
from host import GObject, TavoAds, run_until


def lines_of(slot):
    """What the slot tells from now on, one line a report."""
    told = []

    def note(slot, *arguments, name):
        words = [name]
        for argument in arguments:
            if hasattr(argument, "message"):
                words += [str(argument.code), argument.message]
            elif isinstance(argument, int):
                words.append(str(int(argument)))
        told.append(" ".join(words))
        return False

    for owner in [TavoAds.Slot, type(slot)]:
        for name in GObject.signal_list_names(owner):
            slot.connect(name, lambda *arguments, name=name: note(*arguments, name=name))
    return told


def was_told(told, *ends):
    return any(line.startswith(end) for line in told for end in ends)


class ReportsTest(unittest.TestCase):
    maxDiff = None

    def play_interstitial(self, campaign):
        ad = TavoAds.Interstitial(domain=server.domain, page=campaign, position="Full")
        told = lines_of(ad)
        ad.connect("loaded", lambda ad: ad.present(self.window))
        ad.load()
        self.assertTrue(run_until(lambda: was_told(told, "loaded", "failed")))
        if campaign.endswith("video"):
            self.assertTrue(run_until(lambda: was_told(told, "quartile 2", "failed")))
        ad.close()
        self.assertTrue(run_until(lambda: was_told(told, "dismissed", "failed")))
        return told

    def play_preroll(self, campaign):
        player = TavoAds.Player()
        self.column.append(player)
        ad = TavoAds.Preroll(player=player, domain=server.domain, page=campaign,
                             position="Bottom1")
        told = lines_of(ad)
        ad.load()
        self.assertTrue(run_until(lambda: was_told(told, "finished", "failed")))
        self.column.remove(player)
        return told

    def play_banner(self, campaign):
        banner = TavoAds.Banner(domain=server.domain, page=campaign, position="Bottom1")
        self.column.append(banner)
        told = lines_of(banner)
        banner.load()
        self.assertTrue(run_until(lambda: was_told(told, "loaded", "failed")))
        self.column.remove(banner)
        return told

    def test_both_roads_tell_the_same(self):
        self.window = host.window_with()
        self.column = self.window.get_child()
        campaigns = sorted(os.listdir(os.environ["TAVO_CAMPAIGNS"]))
        network = os.environ["TAVO_AD_NETWORK"]
        cpp = subprocess.Popen(
            [os.environ["TAVO_CPP_REPORTS"], server.domain, network, *campaigns],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        told = []
        for campaign in campaigns:
            kind = campaign.split("-")[0]
            play = {"interstitial": self.play_interstitial,
                    "vast": self.play_preroll}.get(kind, self.play_banner)
            told += [f"{campaign}: {line}" for line in play(campaign)]
        expected = cpp.communicate(timeout=host.PATIENCE * 2)[0].splitlines()
        self.assertEqual({line.split(":")[0] for line in expected}, set(campaigns))
        self.assertEqual(told, expected)


if __name__ == "__main__":
    server = host.Server()
    host.initialize(TavoAds.Limits(request_idle_timeout=8, request_deadline=12,
                                   wrapper_chain_budget=6))
    try:
        host.main(__name__)
    finally:
        server.end()
