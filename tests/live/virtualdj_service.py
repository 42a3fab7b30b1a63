"""VirtualDJ's network control: virtualdj_service.py STATE-FILE

The state file holds the access token ("" for none) and the song on the master deck, by field; no
song when it is not audible. The port is the system's choice, for the reader to find.
"""

import http.server
import json
import re
import sys
import urllib.parse

FIELDS = ("title", "artist", "album", "genre", "bpm", "key")
QUESTION = ("deck master play ? deck master is_audible ? get_text '"
            + "|||".join(f'`deck master get_loaded_song "{field}"`' for field in FIELDS)
            + "' : get_text '' : get_text ''")


class Control(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        with open(sys.argv[1], encoding="utf-8") as file:
            state = json.load(file)
        status, text = self.answer(state)
        body = text.encode()
        self.send_response(status)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def answer(self, state):
        token = state["token"]
        if token and self.headers["Authorization"] != "Bearer " + token:
            return 401, "unauthorized"
        address = urllib.parse.urlsplit(self.path)
        # Blanks come as %20: a plus sign would be one.
        if address.path != "/query" or not re.fullmatch(r"script=[^&+ ]+", address.query):
            return 404, "not found"
        if urllib.parse.unquote(address.query[len("script="):]) != QUESTION:
            return 200, "error:-2147467259"
        song = state["song"]
        return 200, "|||".join(song[field] for field in FIELDS) + "\n" if song else ""

    def log_message(self, *_):
        pass


http.server.ThreadingHTTPServer(("127.0.0.1", 0), Control).serve_forever()
