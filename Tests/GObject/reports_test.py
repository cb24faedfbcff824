"""Every sample campaign by the C++ road and by this one: the same reports in the same order."""
import json
import os
import subprocess
import tempfile
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


def placements():
    """The sample campaigns by name, with where each belongs."""
    folder, found = os.environ["TAVO_CAMPAIGNS"], {}
    for name in sorted(os.listdir(folder)):
        with open(f"{folder}/{name}/campaign.json") as text:
            found[name] = json.load(text).get("placement", "banner")
    return found


class ReportsTest(unittest.TestCase):
    maxDiff = None

    def play_interstitial(self, campaign):
        ad = TavoAds.Interstitial(domain=server.domain, page=campaign, position="Full")
        told = lines_of(ad)
        ad.connect("loaded", lambda ad: ad.present(self.window))
        ad.load()
        self.assertTrue(run_until(lambda: was_told(told, "loaded", "failed")))
        if not was_told(told, "loaded"):
            return told
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

    def by_both_roads(self, campaigns):
        """What the campaigns tell, by name: on the C++ road and on this one, at the same time."""
        expected, told = {name: [] for name in campaigns}, {}
        with tempfile.TemporaryDirectory() as folder, subprocess.Popen(
                [os.environ["TAVO_CPP_REPORTS"], server.domain,
                 *(f"{placement}:{name}" for name, placement in campaigns.items())],
                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                env={**os.environ, "TAVO_DATA_FOLDER": folder}) as cpp:
            self.addCleanup(cpp.kill)
            for name, placement in campaigns.items():
                told[name] = getattr(self, f"play_{placement}")(name)
            for line in cpp.communicate(timeout=host.PATIENCE * 3)[0].splitlines():
                name, report = line.split(": ", 1)
                expected[name].append(report)
            self.assertEqual(cpp.returncode, 0)
        return expected, told

    def test_both_roads_tell_the_same(self):
        self.window = host.window_with()
        self.column = self.window.get_child()
        campaigns = placements()
        expected, told = self.by_both_roads(campaigns)
        # On a busy machine one road may run into a bound that the other one just keeps.
        again = {name: campaigns[name] for name in campaigns if told[name] != expected[name]}
        for results, more in zip((expected, told), self.by_both_roads(again)):
            results.update(more)
        self.assertEqual([name for name in campaigns if not expected[name]], [])
        self.assertEqual(told, expected)


if __name__ == "__main__":
    server = host.Server()
    # Short where a campaign lasts until its bound, long where a busy machine is not to matter.
    host.initialize(TavoAds.Limits(request_idle_timeout=8, request_deadline=12,
                                   wrapper_chain_budget=6, first_frame_timeout=30,
                                   media_probe_timeout=30, stall_timeout=30))
    try:
        host.main(__name__)
    finally:
        server.end()
