"""The example in each language shows the sample server's banner."""
import json
import os
import subprocess
import sys
import unittest
import urllib.request

import host

BUILT = os.environ["LD_LIBRARY_PATH"]
SOURCES = os.environ["TAVO_EXAMPLES"]


class ExamplesTest(unittest.TestCase):
    def test_each_shows_the_banner_and_it_is_counted(self):
        for name, command in {
                "C": [f"{BUILT}/banner-c"], "Vala": [f"{BUILT}/banner-vala"],
                "Python": [sys.executable, f"{SOURCES}/banner.py"],
                "JavaScript": ["gjs", f"{SOURCES}/banner.js"]}.items():
            with self.subTest(name), open(os.devnull, "w") as nowhere:
                server = host.Server()
                program = subprocess.Popen([*command, server.address], stdout=subprocess.PIPE,
                                           stderr=nowhere, text=True)
                self.assertEqual(program.stdout.readline().strip(), "The banner is on the screen.")
                self.assertIn("tracking", self.kinds_until(server, "tracking"))
                program.kill()
                program.wait()
                program.stdout.close()
                server.end()

    def kinds_until(self, server, kind):
        """The kinds of the requests that the server had, once there is one of `kind`."""
        seen = []

        def look():
            with urllib.request.urlopen(f"http://{server.address}/record") as answer:
                seen[:] = [request["kind"] for request in json.load(answer)]
            return kind in seen

        host.run_until(look)
        return seen

    def test_each_is_short(self):
        for name in os.listdir(SOURCES):
            with open(f"{SOURCES}/{name}") as text:
                self.assertLess(len(text.readlines()), 60, name)


if __name__ == "__main__":
    host.main(__name__)
