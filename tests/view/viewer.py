"""viewer.py: kelcam view as a process, and what speaks to it: HTTP over plain sockets, with nothing that mends requests."""

import contextlib
import json
import os
import pathlib
import signal
import socket
import struct
import subprocess
import tempfile
import threading
import time
import zlib

DEADLINE_S = 60
JSON_HEADERS = {"Content-Type": "application/json", "X-Kelcam": "1"}
PAGE = "testpage1"


class Answer:
    """The status, the header fields (names in lower case) and the body."""

    def __init__(self, status, fields, body):
        self.status, self.fields, self.body = status, fields, body

    def json(self):
        return json.loads(self.body)

    @property
    def frame(self):
        return int(self.fields["x-kelcam-frame"])


class Connection:
    """One connection; several requests may follow each other on it."""

    def __init__(self, port, receive_bytes=None):
        self.port = port
        self.socket = socket.socket()
        if receive_bytes is not None:
            self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, receive_bytes)
        self.socket.settimeout(DEADLINE_S)
        self.socket.connect(("127.0.0.1", port))
        self.buffer = b""

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.socket.close()

    def send(self, data):
        self.socket.sendall(data)

    def request(self, method, target, headers=None, body=b""):
        fields = {"Host": f"127.0.0.1:{self.port}", **(headers or {})}
        if body or method == "POST":
            fields["Content-Length"] = str(len(body))
        head = "".join(f"{name}: {value}\r\n" for name, value in fields.items() if value is not None)
        self.send(f"{method} {target} HTTP/1.1\r\n{head}\r\n".encode() + body)

    def more(self):
        data = self.socket.recv(1 << 16)
        if not data:
            raise ConnectionError("the server has closed the connection")
        self.buffer += data

    def line(self):
        while b"\r\n" not in self.buffer:
            self.more()
        line, self.buffer = self.buffer.split(b"\r\n", 1)
        return line.decode("latin-1")

    def head(self):
        status = int(self.line().split()[1])
        fields = {}
        while line := self.line():
            name, value = line.split(":", 1)
            fields[name.lower()] = value.strip()
        return status, fields

    def answer(self):
        status, fields = self.head()
        length = int(fields.get("content-length", 0))
        while len(self.buffer) < length:
            self.more()
        body, self.buffer = self.buffer[:length], self.buffer[length:]
        return Answer(status, fields, body)

    def ask(self, *arguments, **named):
        self.request(*arguments, **named)
        return self.answer()

    def is_closed_within(self, seconds):
        """Whether the server ends the connection; what it sends before does not count."""
        self.socket.settimeout(seconds)
        try:
            while self.socket.recv(1 << 16):
                pass
        except TimeoutError:
            return False
        except OSError:
            pass
        return True


class Events:
    """An open stream of events, read on a thread of its own."""

    def __init__(self, port, page=PAGE, query=""):
        self.connection = Connection(port)
        self.connection.request("GET", f"/api/events?page={page}{query}")
        self.status, self.fields = self.connection.head()
        self.seen = []
        self.changed = threading.Condition()
        self.is_over = False
        self.thread = threading.Thread(target=self.read, daemon=True)
        self.thread.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        with contextlib.suppress(OSError):
            self.connection.socket.shutdown(socket.SHUT_RDWR)
        self.thread.join(DEADLINE_S)
        self.connection.close()

    def read(self):
        text = self.connection.buffer
        with contextlib.suppress(OSError, ConnectionError):
            while data := self.connection.socket.recv(1 << 16):
                text += data
                *events, text = text.split(b"\n\n")
                with self.changed:
                    self.seen += [self.parsed(event) for event in events]
                    self.changed.notify_all()
        with self.changed:
            self.is_over = True
            self.changed.notify_all()

    @staticmethod
    def parsed(event):
        lines = dict(line.split(": ", 1) for line in event.decode().split("\n"))
        return lines["event"], json.loads(lines["data"])

    def count(self):
        with self.changed:
            return len(self.seen)

    def wait(self, kind, fits=lambda data: True, after=0, deadline_s=DEADLINE_S):
        """The first event of this kind that fits, from the place `after` on."""
        end = time.monotonic() + deadline_s
        with self.changed:
            while True:
                for name, data in self.seen[after:]:
                    if name == kind and fits(data):
                        return data
                if self.is_over or time.monotonic() > end:
                    raise AssertionError(f"no {kind} that fits, but {[name for name, _ in self.seen[after:]]}")
                self.changed.wait(0.2)


class Kelcam:
    """kelcam view with these simulated cameras, until the end of its scope."""

    def __init__(self, options, cameras, *arguments, first="--camera 1", port=0):
        self.folder = tempfile.TemporaryDirectory()
        path = pathlib.Path(self.folder.name)
        (path / "cameras.json").write_text(json.dumps(cameras), encoding="utf-8")
        self.log = path / "errors.txt"
        with self.log.open("wb") as errors:
            self.process = subprocess.Popen(
                [*options.emulator, options.kelcam.resolve(), "view", *first.split(), "--port", str(port),
                 *arguments],
                cwd=path, env={**os.environ, "VIMBA_SIM_CONFIG": "cameras.json"}, stdout=subprocess.PIPE, stderr=errors,
            )  # fmt: skip
        self.url = self.process.stdout.readline().decode().strip()
        if not self.url.startswith("http://"):
            raise AssertionError(f"kelcam has ended: {self.url} {self.errors()}")
        address, _, query = self.url.removeprefix("http://").partition("/")
        self.port = int(address.rsplit(":", 1)[1])
        self.query = query.removeprefix("?")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end(signal.SIGKILL if os.name == "nt" else signal.SIGTERM)

    def errors(self):
        return self.log.read_text(encoding="utf-8", errors="replace")

    def end(self, number):
        """The exit code, and how long the end took."""
        start = time.monotonic()
        if self.process.poll() is None:
            self.process.send_signal(number)
        try:
            code = self.process.wait(DEADLINE_S)
        finally:
            self.process.kill()
            self.process.stdout.close()
        took_s = time.monotonic() - start
        self.folder.cleanup()
        return code, took_s

    def connect(self):
        return Connection(self.port)

    def events(self, page=PAGE):
        return Events(self.port, page)

    def ask(self, method, target, headers=None, body=b""):
        with self.connect() as connection:
            return connection.ask(method, target, headers, body)

    def get(self, target):
        return self.ask("GET", target)

    def post(self, action, value, camera=0, headers=None):
        body = value if isinstance(value, bytes) else json.dumps(value).encode()
        return self.ask("POST", f"/api/cameras/{camera}/{action}", {**JSON_HEADERS, **(headers or {})}, body)

    def picture(self, after=0, width=100000, rest="", camera=0, page=PAGE):
        return self.get(f"/api/cameras/{camera}/picture?page={page}&after={after}&width={width}{rest}")

    def state(self, camera=0):
        return self.get("/api/cameras").json()[camera]

    def wait_for_state(self, fits, camera=0, deadline_s=DEADLINE_S):
        end = time.monotonic() + deadline_s
        while not fits(state := self.state(camera)):
            if time.monotonic() > end:
                raise AssertionError(f"the camera's state is {state}; {self.errors()}")
            time.sleep(0.05)
        return state


class Png:
    """The pixels of a file that kelcam writes (eight bits, the average filter alone), and its texts."""

    def __init__(self, data):
        if data[:8] != b"\x89PNG\r\n\x1a\n":
            raise AssertionError("this is no PNG")
        self.texts, packed, at = {}, b"", 8
        while at < len(data):
            length, kind = struct.unpack(">I4s", data[at : at + 8])
            content = data[at + 8 : at + 8 + length]
            if kind == b"IHDR":
                self.width, self.height, _, colour = struct.unpack(">IIBB", content[:10])
                self.channels = {0: 1, 2: 3}[colour]
            elif kind == b"IDAT":
                packed += content
            elif kind == b"tEXt":
                keyword, text = content.split(b"\0", 1)
                self.texts[keyword.decode()] = text.decode()
            at += 12 + length
        self.rows = self.unfiltered(zlib.decompress(packed))

    def unfiltered(self, data):
        length, rows, above = self.width * self.channels, [], bytes(self.width * self.channels)
        for start in range(0, len(data), length + 1):
            row, filtered = bytearray(length), data[start + 1 : start + 1 + length]
            for i in range(length):
                left = row[i - self.channels] if i >= self.channels else 0
                row[i] = (filtered[i] + (left + above[i]) // 2) & 0xFF
            rows.append(bytes(row))
            above = rows[-1]
        return rows

    def pixel(self, x, y):
        return list(self.rows[y][x * self.channels : (x + 1) * self.channels])

    def mean(self):
        return sum(map(sum, self.rows)) / (self.width * self.channels * self.height)


def jpeg_size(data):
    """Width and height, from the frame's header."""
    if data[:2] != b"\xff\xd8":
        raise AssertionError("this is no JPEG")
    at = 2
    while True:
        marker, length = struct.unpack(">HH", data[at : at + 4])
        if marker in (0xFFC0, 0xFFC2):
            height, width = struct.unpack(">HH", data[at + 5 : at + 9])
            return width, height
        at += 2 + length
