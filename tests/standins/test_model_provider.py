"""The stand-in for the model providers lets right requests pass and no other."""

import copy
import json
import unittest

from model_provider import (HEADERS, MESSAGES, PROMPT, RELEASE, RESPONSES, Refused, check,
                            wantedBody)

KEY = "a key"
VALUES = {"song": "Night \"Drive\" {0}", "artist": "Nobody & Co", "album": "", "bpm": "128.00",
          "key": "8A", "genre": "House", "energy": "70", "other": "Verified (by a test)",
          "application": "mpv", "count": "5", "tolerance": "10"}
MODELS = {RESPONSES: "gpt-5-mini", MESSAGES: "thinkingmachines/Inkling-Small"}


def rightHeaders(path):
    wanted = {name: value.replace("%s", KEY) for name, value in HEADERS[path].items()}
    return [*{"Host": "127.0.0.1", "Content-Length": "9", **wanted}.items()]


def rightBody(path, prompt=PROMPT.format(**VALUES)):
    return wantedBody(path, MODELS[path], prompt, 5)


def verdict(path, body=None, headers=None, method=None):
    """ "" when the request passes, else "STATUS PLACE FAULT"."""
    text = body if isinstance(body, str) else json.dumps(body) if body else ""
    try:
        check(method or ("GET" if path == RELEASE else "POST"), path,
              rightHeaders(path) if headers is None else headers, text, KEY)
    except Refused as fault:
        return "{} {} {}".format(*fault.args)
    return ""


def changes(value, place=""):
    """Each single change of a JSON value: where, and the value with it."""
    if isinstance(value, (dict, list)):
        members = list(value.items() if isinstance(value, dict) else enumerate(value))
        for name, member in members:
            rest = copy.copy(value)
            del rest[name]
            # Without an element a list differs where the next one has moved up, or at its end.
            yield place if isinstance(value, list) else f"{place}/{name}", rest
            for where, changed in changes(member, f"{place}/{name}"):
                copied = copy.copy(value)
                copied[name] = changed
                yield where, copied
        yield place, [*value, "x"] if isinstance(value, list) else {**value, "x": "x"}
    elif isinstance(value, str):
        # Any other name is a right name for a model.
        yield place, value + "x" if place != "/model" else ""
    else:
        yield place, not value if isinstance(value, bool) else value + 1
        yield place, float(value) if isinstance(value, int) else int(value)
    yield place, None


class ModelProviderTest(unittest.TestCase):
    def assertRefused(self, beginning, *request, **parts):
        with self.subTest(expected=beginning):
            self.assertEqual(verdict(*request, **parts)[:len(beginning)], beginning)

    def testRefusesEveryChangeOfABody(self):
        for path in MODELS:
            right = rightBody(path)
            self.assertEqual(verdict(path, right), "")
            changed = list(changes(right))
            self.assertGreater(len(changed), 200)
            for place, body in changed:
                self.assertRefused("400 " + place if isinstance(body, dict) else "400", path,
                                   json.dumps(body))

    def testRefusesEveryChangeOfThePrompt(self):
        right = PROMPT.format(**VALUES)
        lines = right.split("\n")
        wrong = [(number, "\n".join([*lines[:number - 1], "x" + line, *lines[number:]]))
                 for number, line in enumerate(lines, 1)]
        wrong += [(line, right.replace(old, new)) for line, old, new in (
            (7, "128.00", "128"), (14, "+/- 10", "+/- 31"), (16, "exactly 5 ra", "exactly 3 ra"))]
        for line, prompt in wrong:
            self.assertRefused(f"400 /input/0/content/0/text line {line} must be", RESPONSES,
                               rightBody(RESPONSES, prompt))
        self.assertRefused("400 /tools/0/description", RESPONSES,
                           rightBody(RESPONSES, PROMPT.format(**{**VALUES, "count": "7"})))

    def testRefusesOtherHeadersPathsAndTexts(self):
        for path in HEADERS:
            right, body = rightHeaders(path), None if path == RELEASE else rightBody(path)
            for pair in (*right, ("Cookie", "x")):
                self.assertRefused("400 header", path, body, [*right, pair, pair])
            for name, value in HEADERS[path].items():
                rest = [pair for pair in right if pair[0] != name]
                for headers in (rest, [*rest, (name, "Bearer x")]):
                    self.assertRefused(f"{401 if '%s' in value else 400} header {name}", path, body,
                                       headers)
        text = json.dumps(rightBody(RESPONSES))
        for beginning, path, body, method in (
                ("404", "/v1/responses?x=1", text, "POST"), ("405", RESPONSES, text, "PUT"),
                ("400 body", RELEASE, "x", "GET"), ("400", RESPONSES, "[]", "POST"),
                ("400 /model", RESPONSES, text.replace(MODELS[RESPONSES], "o3"), "POST"),
                ("400 /model", MESSAGES, {**rightBody(MESSAGES), "model": "gpt-4"}, "POST")):
            headers = rightHeaders(path) if path in HEADERS else []
            self.assertRefused(beginning, path, body, headers, method)


if __name__ == "__main__":
    unittest.main()
