"""A copy of the page that reports what it hears, for tests only."""

import http.server
import json
import threading
import urllib.parse

from velmor_window import withScript

SCRIPT = """
(() => {
  let number = 0;
  const tell = (what, detail) => {
    const query = new URLSearchParams({ number: ++number, what, detail: JSON.stringify(detail) });
    new Image().src = `http://127.0.0.1:%d/?${query}`;
  };
  for (const name of ['track-changed', 'track-stopped', 'suggestions-ready', 'analysis-error',
    'compact-mode', 'show-about'])
    window.addEventListener(`velmor:${name}`, ({ detail }) => tell(name, detail));
  %s
})();
"""


class Probe:
    """Listens to the page; `extra` is script that runs in it and may call `tell`."""

    def __init__(self, extra=""):
        self.heard = {}
        probe = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):  # pylint: disable=invalid-name
                query = dict(urllib.parse.parse_qsl(urllib.parse.urlparse(self.path).query))
                if "number" in query:
                    probe.heard[int(query["number"])] = (query["what"],
                                                         json.loads(query["detail"]))
                self.send_response(204)
                self.end_headers()

            def log_message(self, *_):  # pylint: disable=arguments-differ
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.extra = extra
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()

    def addTo(self, root):
        """The path of a copy of the program with this probe in its page."""
        script = SCRIPT % (self.server.server_port, self.extra)
        return withScript(root, script, allowed="img-src http://127.0.0.1:* 'self'")

    def events(self, *names):
        """What was heard, in the page's order; those of these names if any are given."""
        told = [self.heard[number] for number in sorted(self.heard)]
        return [(what, detail) for what, detail in told if not names or what in names]

    def names(self, *wanted):
        return [what for what, _ in self.events(*wanted)]
