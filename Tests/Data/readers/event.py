"""Prints an iCalendar file as one "component.NAME=value" a line, read by nothing but the format's
own rules (RFC 5545): line ends, line lengths, folding, nesting and escapes."""
import re
import sys

data = open(sys.argv[1], "rb").read()
assert data.endswith(b"\r\n"), "the last line has no end"
lines = data.split(b"\r\n")[:-1]
assert not any(b"\n" in line or b"\r" in line for line in lines), "a bare line end"
assert all(len(line) <= 75 for line in lines), "a line of more than 75 bytes"
open_components = []
for line in b"\r\n".join(lines).replace(b"\r\n ", b"").decode("utf-8").split("\r\n"):
    name, value = line.split(":", 1)
    name = name.split(";")[0]
    if name == "BEGIN":
        open_components.append(value)
    elif name == "END":
        assert open_components.pop() == value, "components overlap"
    else:
        text = re.sub(r"\\([\\;,nN])", lambda m: "\n" if m[1] in "nN" else m[1], value)
        print("%s.%s=%s" % (open_components[-1], name, text.replace("\n", "|")))
assert not open_components, "a component without an end"
