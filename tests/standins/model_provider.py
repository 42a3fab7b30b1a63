"""Both model providers and the version server on this machine, for tests and the demonstration.

    provider = desktop.enter(ModelProvider())
    desktop.velmor("suggest", environment=provider.environment)
    provider.requests[-1]["body"]

Every request must be to the letter what the real services are to get from Velmor. Any other is
refused in their way, and its first fault is named in the answer and on standard error.
"""

import http.server
import json
import os
import re
import sys
import threading

MESSAGES = "/services/tinker-prod/anthropic/api/v1/messages"
RESPONSES = "/v1/responses"
RELEASE = "/v1/macos"
METHODS = {MESSAGES: "POST", RESPONSES: "POST", RELEASE: "GET"}

JSON_TYPE = {"content-type": "application/json"}
HEADERS = {MESSAGES: {**JSON_TYPE, "anthropic-version": "2023-06-01", "x-api-key": "%s"},
           RESPONSES: {**JSON_TYPE, "authorization": "Bearer %s"},
           RELEASE: {"accept": "application/json"}}
"""What each path must get; %s is the key."""
TRANSPORT = {"host", "user-agent", "accept", "accept-encoding", "connection", "content-length"}

PROMPT = """\
The currently playing track was verified through the macOS system media session.

Current track:
- Song: {song}
- Artist: {artist}
- Album: {album}
- BPM: {bpm}
- Key: {key}
- Genre: {genre}
- Energy: {energy}/100
- Audio/source notes: {other}
- Source application: {application}

Recommend exactly {count} real songs for the next DJ mix. Never recommend the current track. \
Prioritize similar BPM (normally within +/- {tolerance} BPM unless half/double time is \
appropriate), compatible Camelot key, related genre and mood, suitable energy progression, \
phrasing, and overall set flow. Do not invent facts about the current track when a field is empty \
or zero.

Submit playbackDetected=true, playbackEvidence="macOS system media session reports Playing", the \
supplied current track, and exactly {count} ranked recommendations through the required tool."""
WHOLE = r"0|-?[1-9]\d*"
FORMS = {"song": ".+", "artist": ".+", "bpm": r"(?:0|[1-9]\d*)\.\d\d", "energy": WHOLE,
         "count": "3|5|7|10", "tolerance": r"[1-9]|[12]\d|30"}
"""How the prompt's values are written; all others are any text."""

SYSTEM = ("You are an expert DJ and music-metadata analyst. Always finish by calling the required "
          "result tool.")
TOOL = "submit_dj_analysis"
TOKENS = 3000

with open(os.path.join(os.path.dirname(__file__), "songs.json"), encoding="utf-8") as songFile:
    SONGS = json.load(songFile)


class Refused(Exception):
    """A request that departs from what it must be; told with its status, place and fault."""


# What a request must be


def resultSchema(count, strict):
    def record(properties, required):
        return {"type": "object", "properties": properties, "required": required,
                **({"additionalProperties": False} if strict else {})}

    def fields(texts, integers):
        kinds = {"bpm": "number", **dict.fromkeys(texts, "string"),
                 **dict.fromkeys(integers, "integer")}
        return record({name: {"type": kind} for name, kind in kinds.items()}, sorted(kinds))

    shared = ("song", "artist", "album", "key", "genre")
    items = fields((*shared, "explanation"), ("energy", "compatibilityScore"))
    properties = {
        "playbackDetected": {"type": "boolean"},
        "playbackEvidence": {"type": "string"},
        "currentTrack": fields((*shared, "other"), ("energy", "confidence")),
        "recommendations": {"type": "array", "minItems": 0, "maxItems": count, "items": items}}
    return record(properties, list(properties))


def wantedBody(path, model, prompt, count):
    tool = {"name": TOOL, "description":
            "Report whether active playback is confirmed. Return no recommendations when false; "
            f"otherwise submit current-track metadata and exactly {count} ranked recommendations."}

    def question(kind):
        return [{"role": "user", "content": [{"type": kind, "text": prompt}]}]

    if path == RESPONSES:
        return {"model": model, "instructions": SYSTEM, "input": question("input_text"),
                "tools": [{**tool, "type": "function", "parameters": resultSchema(count, True),
                           "strict": True}],
                "tool_choice": {"type": "function", "name": TOOL}, "max_output_tokens": TOKENS}
    return {"model": model, "messages": question("text"), "max_tokens": TOKENS,
            "temperature": 0.1, "system": SYSTEM, "thinking": {"type": "disabled"},
            "tools": [{**tool, "input_schema": resultSchema(count, False)}],
            "tool_choice": {"type": "tool", "name": TOOL}}


def probeBody(path, model):
    """The small request that only tries whether key and model are taken."""
    def question(kind):
        return [{"role": "user", "content": [{"type": kind, "text": "Answer with the word OK."}]}]

    if path == RESPONSES:
        return {"model": model, "input": question("input_text"), "max_output_tokens": 16}
    return {"model": model, "messages": question("text"), "max_tokens": 16,
            "thinking": {"type": "disabled"}}


# Whether it is


def compare(wanted, received, place=""):
    """Refuses at the first place where the received JSON is not the wanted one."""
    if type(wanted) is not type(received):
        raise Refused(400, place, "must be " + json.dumps(wanted))
    if isinstance(wanted, list):
        wanted, received = dict(enumerate(wanted)), dict(enumerate(received))
    if not isinstance(wanted, dict):
        if wanted != received:
            raise Refused(400, place, "must be " + json.dumps(wanted))
        return
    for name in [*wanted, *received]:
        if (name in wanted) != (name in received):
            raise Refused(400, f"{place}/{name}", "is missing" if name in wanted else "is too much")
    for name, value in wanted.items():
        compare(value, received[name], f"{place}/{name}")


def checkHeaders(path, headers, key):
    """`headers` are pairs, so that one which is sent twice is seen."""
    names = [name.lower() for name, _ in headers]
    values = dict(zip(names, (value for _, value in headers)))
    for name in names:
        if names.count(name) > 1 or name not in TRANSPORT | HEADERS[path].keys():
            raise Refused(400, "header " + name, "is too much")
    for name, wanted in HEADERS[path].items():
        if values.get(name) != wanted.replace("%s", key):
            shown = wanted.replace("%s", "<the key>")
            raise Refused(400 if wanted == shown else 401, "header " + name, "must be " + shown)


def readPrompt(prompt, place):
    """The values that the prompt gives, as texts."""
    wanted, given = PROMPT.split("\n"), prompt.split("\n")
    if len(wanted) != len(given):
        raise Refused(400, place, f"has {len(given)} lines, must have {len(wanted)}")
    values = {}

    def form(name):
        # The same value wherever it is told again.
        return re.escape(values[name]) if name in values else FORMS.get(name, ".*")

    for number, (template, line) in enumerate(zip(wanted, given), 1):
        pattern = re.sub(r"\\{(\w+)\\}", lambda found: f"(?P<{found[1]}>{form(found[1])})",
                         re.escape(template))
        if not (read := re.fullmatch(pattern, line)):
            raise Refused(400, place, f"line {number} must be: {template}")
        values.update(read.groupdict())
    return values


def textAt(value, *place):
    """The text at a place of a JSON value, "" where there is none."""
    try:
        for name in place:
            value = value[name]
    except (KeyError, IndexError, TypeError):
        return ""
    return value if isinstance(value, str) else ""


def checkModel(path, model):
    if not model.strip() or model.strip().lower().startswith("gpt-") != (path == RESPONSES):
        raise Refused(400, "/model", "names no model of this provider")


def checkBody(path, text):
    """The body and the values of its prompt; none for the small request."""
    try:
        body = json.loads(text)
    except ValueError as error:
        raise Refused(400, "body", f"is not JSON: {error}") from error
    question = "input" if path == RESPONSES else "messages"
    model = textAt(body, "model")
    prompt = textAt(body, question, 0, "content", 0, "text")
    if body == probeBody(path, model):
        checkModel(path, model)
        return body, None
    # Without a prompt the comparison ends at its place, before it comes to the count.
    values = readPrompt(prompt, f"/{question}/0/content/0/text") if prompt else {"count": "0"}
    compare(wantedBody(path, model, prompt, int(values["count"])), body)
    checkModel(path, model)
    return body, values


def check(method, path, headers, text, key):
    """The body of a right request and the values of its prompt; None for the version server."""
    if path not in METHODS:
        raise Refused(404, path, "is served by nobody")
    if method != METHODS[path]:
        raise Refused(405, "method", "must be " + METHODS[path])
    checkHeaders(path, headers, key)
    if path != RELEASE:
        return checkBody(path, text)
    if text:
        raise Refused(400, "body", "must be empty")
    return None


# What is answered


def analysis(values, songs):
    track = {name: values[name] for name in ("song", "artist", "album", "key", "genre", "other")}
    track.update(bpm=float(values["bpm"]), energy=int(values["energy"]), confidence=100)
    return {"playbackDetected": True,
            "playbackEvidence": "macOS system media session reports Playing",
            "currentTrack": track, "recommendations": songs[:int(values["count"])]}


def messagesAnswer(body, result):
    return {"id": "msg_01Velmor", "type": "message", "role": "assistant", "model": body["model"],
            "content": [{"type": "text", "text": "Here is what I would play next."},
                        {"type": "tool_use", "id": "toolu_01Velmor", "name": TOOL,
                         "input": result}],
            "stop_reason": "tool_use", "stop_sequence": None,
            "usage": {"input_tokens": 900, "output_tokens": 700}}


def responsesAnswer(body, result):
    call = {"id": "fc_1", "type": "function_call", "status": "completed", "call_id": "call_1",
            "name": TOOL, "arguments": json.dumps(result)}
    return {**{name: body[name] for name in body if name != "input"},
            "id": "resp_1", "object": "response", "created_at": 1767225600, "status": "completed",
            "error": None, "incomplete_details": None, "parallel_tool_calls": True,
            "output": [{"id": "rs_1", "type": "reasoning", "summary": []}, call],
            "usage": {"input_tokens": 900, "output_tokens": 700, "total_tokens": 1600}}


def releaseAnswer(version):
    # The reserved name reaches nobody, should a page ever open these addresses.
    site = "https://velmor.invalid/"
    return {"ok": True, "platform": "macos", "version": version,
            "download_url": site + "download", "release_notes_url": site + "notes"}


def refusal(path, status, message):
    kind = "authentication_error" if status == 401 else "invalid_request_error"
    if path == RELEASE:
        return {"ok": False, "error": kind, "message": message}
    error = {"error": {"type": kind, "message": message}}
    return {"type": "error", **error} if path == MESSAGES else error


class ModelProvider(http.server.ThreadingHTTPServer):
    """Listens while its context is open and notes in `requests` all that comes. Right requests
    are answered with these songs, unless the test says what goes wrong: `status` or `text` stand in
    for the answer's own, `delay` is in seconds, and `cut` breaks off half-way."""

    def __init__(self, songs=None, key="local-key", version="1.0.0", status=200, text=None,
                 delay=0, cut=False):
        super().__init__(("127.0.0.1", 0), Exchange)
        self.songs = SONGS if songs is None else songs
        self.key, self.version = key, version
        self.status, self.text, self.delay, self.cut = status, text, delay, cut
        self.requests = []
        self.stopping = threading.Event()
        address = f"http://127.0.0.1:{self.server_port}"
        self.environment = {
            "TINKER_API_KEY": key, "VELMOR_TINKER_URL": address + MESSAGES,
            "OPENAI_API_KEY": key, "VELMOR_OPENAI_URL": address + RESPONSES,
            "VELMORDJ_VERSION_URL": address}

    def __enter__(self):
        threading.Thread(target=self.serve_forever, args=(0.05,), daemon=True).start()
        return self

    def __exit__(self, *_):
        self.stopping.set()
        self.shutdown()
        self.server_close()

    def answer(self, method, path, headers, text):
        """Status and body, as a text."""
        try:
            right = check(method, path, headers, text, self.key)
        except Refused as fault:
            status, place, what = fault.args
            print(f"refused with {status}: {method} {path}: {place} {what}", file=sys.stderr)
            return status, json.dumps(refusal(path, status, f"{place} {what}"))
        if self.text is not None:
            return self.status, self.text
        if path == RELEASE:
            answer = releaseAnswer(self.version)
        else:
            body, values = right
            form = responsesAnswer if path == RESPONSES else messagesAnswer
            answer = form(body, analysis(values, self.songs) if values else {})
        return self.status, json.dumps(answer)


class Exchange(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        provider = self.server
        text = self.rfile.read(int(self.headers.get("Content-Length", 0))).decode(errors="replace")
        try:
            body = json.loads(text)
        except ValueError:
            body = text
        provider.requests.append({"path": self.path, "body": body})
        if provider.stopping.wait(provider.delay):
            return
        status, answer = provider.answer(self.command, self.path, self.headers.items(), text)
        data = answer.encode()
        self.send_response(status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(data)))
        self.send_header("Connection", "close")
        self.end_headers()
        self.wfile.write(data[:len(data) // 2] if provider.cut else data)

    do_POST = do_PUT = do_GET

    def log_message(self, *_):
        pass
