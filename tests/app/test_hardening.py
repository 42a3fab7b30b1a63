"""What the built program is protected by, as its own file tells."""

import os
import platform
import re
import subprocess
import unittest

PROGRAM = os.environ["VELMOR"]


def readelf(*options):
    return subprocess.run(("readelf", "--wide", *options, PROGRAM), check=True, text=True,
                          capture_output=True, env={**os.environ, "LC_ALL": "C"}).stdout


class HardeningTest(unittest.TestCase):
    def testIsLoadedAtARandomPlace(self):
        self.assertRegex(readelf("--file-header"), r"Type: +DYN \(Position-Independent Executable")

    def testItsTableOfAddressesIsFilledInAndClosedAtTheStart(self):
        dynamic = readelf("--dynamic")
        self.assertRegex(dynamic, r"FLAGS_1\).*\bNOW\b.*\bPIE\b")
        self.assertNotRegex(dynamic, "TEXTREL|RPATH|RUNPATH")
        self.assertIn("GNU_RELRO", readelf("--program-headers"))

    def testNothingCanBothBeWrittenAndRun(self):
        segments = re.findall(r"^ +(LOAD|GNU_STACK) .* ([R ][W ][E ]) 0x",
                              readelf("--program-headers"), re.MULTILINE)
        self.assertIn("GNU_STACK", dict(segments))
        self.assertEqual([segment for segment in segments if "WE" in segment[1]], [])

    def testStacksAndCopiesAreGuarded(self):
        symbols = readelf("--dyn-syms")
        self.assertIn("__stack_chk_fail", symbols)
        self.assertRegex(symbols, r"__mem(cpy|move|set)_chk|__snprintf_chk|__read_chk")

    @unittest.skipUnless(platform.machine() == "x86_64", "other processors have other ways")
    def testJumpsLandWhereTheyMay(self):
        place = re.search(r"\.text +PROGBITS +\w+ (\w+) (\w+)", readelf("--section-headers"))
        offset, size = (int(number, 16) for number in place.groups())
        with open(PROGRAM, "rb") as file:
            file.seek(offset)
            marks = file.read(size).count(b"\xf3\x0f\x1e\xfa")
        # The C library's own parts of any program have a few.
        self.assertGreater(marks, 100)


if __name__ == "__main__":
    unittest.main()
