"""What `velmor doctor` says of a private desktop."""

import json
import unittest

from session import Session


class Doctor(unittest.TestCase):
    def findings(self, desktop, environment=None):
        result = desktop.velmor("doctor", "--json", environment=environment)
        report = json.loads(result.stdout)
        ready = report["trackCanBeFound"] and report["suggestionCanBeAsked"]
        self.assertEqual(result.returncode, 0 if ready else 1)
        return {finding["name"]: finding["state"]
                for finding in report["sources"] + report["surroundings"]}

    def testSeesWhatTheSessionOffers(self):
        services = ["Display", "Session bus", "Accessibility bus", "Sound server"]
        with Session(accessibility=True, sound=True) as desktop:
            findings = self.findings(desktop, {"TINKER_API_KEY": "tk-live"})
            self.assertEqual([findings[name] for name in services[:2]], ["ready", "ready"])
            self.assertNotEqual(findings["Accessibility bus"], "faulty")
            self.assertEqual(findings["Sound server"], "ready")
            self.assertEqual(findings["Model provider"], "ready")
            self.assertNotIn("tk-live", desktop.velmor(
                "doctor", environment={"TINKER_API_KEY": "tk-live"}).stdout)
        with Session(display=False, bus=False) as desktop:
            findings = self.findings(desktop)
            self.assertEqual([findings[name] for name in services], ["absent"] * 4)
            self.assertEqual(findings["Model provider"], "faulty")


if __name__ == "__main__":
    unittest.main()
