"""No object is left after it was dropped, neither the first time nor the second, and behind the
objects nothing of the library's own."""
import collections
import os
import re
import subprocess
import tempfile
import unittest

import host


def is_ours(stack):
    """Whether the library has asked for it. The toolkit does, too, on our behalf: its C++ record of a
    window that was made in C is never given back."""
    for frame in stack.splitlines():
        if not re.search(r"operator new|__interceptor|/usr/include/c\+\+|libglib-|libgobject-", frame):
            return re.search(r"tavo::|tavo_ads_|/Platforms/|/Bindings/|libtavoads|libcorvane-tavo",
                             frame) is not None
    return False


def leaks_of(report):
    """How many objects each stack of a report of the leak sanitizer has lost. What is made once, by
    the toolkit and the drivers below it, is not ours, and does not grow with the rounds."""
    leaks = collections.Counter()
    for count, stack in re.findall(r"leak of \d+ byte\(s\) in (\d+) object\(s\) allocated from:\n"
                                   r"((?: +#.*\n)+)", report):
        leaks[re.sub(r"#\d+ 0x\w+ ", "", stack)] += int(count)
    return leaks


class LifetimeTest(unittest.TestCase):
    def test_slots_leave_nothing_behind(self):
        server = host.Server()
        self.addCleanup(server.end)
        with tempfile.TemporaryDirectory() as folder:
            result = subprocess.run(
                [os.environ["TAVO_LIFETIME"], server.domain, folder],
                capture_output=True, text=True, timeout=host.PATIENCE * 4,
                # Whole stacks: the library is built without frame pointers.
                env={**os.environ, "LSAN_OPTIONS": "fast_unwind_on_malloc=0:malloc_context_size=40"})
        self.assertEqual((result.returncode, result.stdout),
                         (0, "round 1: 0 objects are left\nround 2: 0 objects are left\n"),
                         result.stderr[-3000:])
        first, second = (leaks_of(report) for report in
                         re.split("== round . ==\n", result.stderr)[1:])
        grown = {stack: f"{first[stack]} objects, then {count}" for stack, count in second.items()
                 if count > first[stack] and is_ours(stack)}
        self.assertEqual(grown, {})


if __name__ == "__main__":
    host.main(__name__)
