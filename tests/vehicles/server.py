"""Serves a folder as /itorvv2/, and under /FAULT/ answers as a bad server does. Prints its port.

Ends with its standard input, so that it never outlives the test."""

import http.server
import os
import sys
import threading
import time

FOLDER = sys.argv[1]
PROFILE = b'{"vehicle": "Impostor", "version": "9.9"}'


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        fault, _, rest = self.path[1:].partition("/")
        try:
            getattr(self, "answer_" + fault, self.answer_404)(rest)
        except (BrokenPipeError, ConnectionResetError):
            pass

    def reply(self, status, body, length=None, location=None):
        self.send_response(status)
        self.send_header("Content-Length", str(len(body) if length is None else length))
        self.send_header("Connection", "close")
        if location:
            self.send_header("Location", location)
        self.end_headers()
        self.wfile.write(body)

    def answer_itorvv2(self, name):
        with open(os.path.join(FOLDER, os.path.basename(name)), "rb") as file:
            self.reply(200, file.read())

    def answer_404(self, _):
        self.reply(404, PROFILE)

    def answer_500(self, _):
        self.reply(500, PROFILE)

    def answer_round(self, _):
        self.reply(302, b"", location="/round")

    def answer_cut(self, _):
        self.reply(200, PROFILE, length=len(PROFILE) + 100)

    def answer_latin(self, _):
        self.reply(200, b'[{"vehicle": "Caf\xe9", "version": "9.9"}]')

    def answer_passwd(self, _):
        self.reply(302, b"", location="file:///etc/passwd")

    def stream(self, block, pause):
        self.send_response(200)
        self.send_header("Connection", "close")
        self.end_headers()
        while True:  # until the client has had enough
            self.wfile.write(block)
            time.sleep(pause)

    def answer_endless(self, _):
        self.stream(b" " * 65536, 0)

    def answer_slow(self, _):
        self.stream(b" ", 0.05)

    def log_message(self, *_):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
threading.Thread(target=server.serve_forever, daemon=True).start()
print(server.server_port, flush=True)
sys.stdin.read()
os._exit(0)
