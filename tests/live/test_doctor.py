"""What `velmor doctor` says of a private desktop."""

import json
import unittest

from model_provider import ModelProvider
from players import configure
from session import Session


class Doctor(unittest.TestCase):
    def findings(self, desktop, environment=None, *options):
        result = desktop.velmor("doctor", "--json", *options, environment=environment)
        report = json.loads(result.stdout)
        ready = report["trackCanBeFound"] and report["suggestionCanBeAsked"] and all(
            finding["state"] == "ready" for finding in report["trials"])
        self.assertEqual(result.returncode, 0 if ready else 1)
        self.details = {finding["name"]: finding["detail"] for finding in report["trials"]}
        self.said = result.stderr
        return {finding["name"]: finding["state"]
                for finding in report["sources"] + report["surroundings"] + report["trials"]}

    def testSeesWhatTheSessionOffers(self):
        services = ["Display", "Session bus", "Accessibility bus", "Sound server"]
        with Session(accessibility=True, sound=True) as desktop:
            findings = self.findings(desktop, {"TINKER_API_KEY": "tk-live"})
            for name in (*services[:2], "Sound server", "Model provider"):
                self.assertEqual(findings[name], "ready", name)
            self.assertNotEqual(findings["Accessibility bus"], "faulty")
            self.assertNotIn("tk-live", desktop.velmor(
                "doctor", environment={"TINKER_API_KEY": "tk-live"}).stdout)
        with Session(display=False, bus=False) as desktop:
            findings = self.findings(desktop)
            self.assertEqual([findings[name] for name in services], ["absent"] * 4)
            self.assertEqual(findings["Model provider"], "faulty")

    def testTellsKeyModelAndReachabilityApart(self):
        with Session(display=False, bus=False) as desktop:
            provider = desktop.enter(ModelProvider())
            there = provider.environment

            def asked(**environment):
                state = self.findings(desktop, {**there, **environment}, "--ask")["Question"]
                self.assertIn("one small request", self.said)
                return state, self.details["Question"]

            for model, name in (("thinkingmachines/Inkling-Small", "Tinker"), ("gpt-5", "OpenAI")):
                configure(desktop, aiModel=model)
                self.assertEqual(asked(), (
                    "ready", name + " answers, and takes the key and the model."))
            self.assertEqual(asked(OPENAI_API_KEY="sk-wrong"), (
                "faulty", "OpenAI refuses the key (status 401)."))
            self.assertEqual(len(provider.requests), 3)

    def testListensAndNamesDeviceAndLevel(self):
        with Session(display=False, sound=True) as desktop:
            state = self.findings(desktop, None, "--listen")["Recording"]
            self.assertIn("Recording five seconds", self.said)
            self.assertEqual(state, "faulty")
            self.assertIn("silence", self.details["Recording"])


if __name__ == "__main__":
    unittest.main()
