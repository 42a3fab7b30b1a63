"""What the built program is protected by, as its own file tells."""

import os
import platform
import re
import subprocess
import unittest

PROGRAM = os.environ["VELMOR"]
TOLD = {
    "--file-header": [r"Type: +DYN \(Position-Independent Executable"],
    # The table of addresses is filled in and closed at the start.
    "--dynamic": [r"FLAGS_1\).*\bNOW\b.*\bPIE\b"],
    "--program-headers": ["GNU_RELRO", r"GNU_STACK .* RW  0x"],
    "--dyn-syms": ["__stack_chk_fail", r"__mem(cpy|move|set)_chk|__snprintf_chk|__read_chk"],
}
FORBIDDEN = {"--dynamic": "TEXTREL|RPATH|RUNPATH", "--program-headers": "LOAD .* .WE 0x"}


def readelf(option):
    return subprocess.run(("readelf", "--wide", option, PROGRAM), check=True, text=True,
                          capture_output=True, env={**os.environ, "LC_ALL": "C"}).stdout


class HardeningTest(unittest.TestCase):
    def testIsBuiltWithEveryProtection(self):
        for option, patterns in TOLD.items():
            for pattern in patterns:
                self.assertRegex(readelf(option), pattern)
        for option, pattern in FORBIDDEN.items():
            self.assertNotRegex(readelf(option), pattern)

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
