"""view_refusals.py: requests that kelcam view refuses: wrong, hostile, slow, too large, or without its token."""

import time
import unittest

from view_case import SMALL, WIDTH, ViewCase, kelcam
from viewer import DEADLINE_S, JSON_HEADERS, PAGE, Events

HEADER_LIMIT, BODY_LIMIT = 8 << 10, 64 << 10
MOST_CONNECTIONS = 128


class HostileTest(ViewCase):
    def test_wrong_methods_are_refused(self):
        targets = ["/", "/api/cameras", f"/api/events?page={PAGE}", "/api/cameras/0/picture?after=0&width=9"]
        for target in targets:
            for method in ("POST", "PUT", "DELETE", "HEAD", "OPTIONS", "PATCH", "QUATSCH"):
                with self.subTest(target=target, method=method), self.view.connect() as connection:
                    connection.request(method, target, JSON_HEADERS)
                    status, fields = connection.head()
                    self.assertEqual((status, fields.get("allow")), (405, "GET"))
        answer = self.view.get("/api/cameras/0/set")
        self.assertEqual((answer.status, answer.fields["allow"]), (405, "POST"))

    def test_paths_lead_nowhere_but_to_the_table(self):
        for target in ("/page/../kelcam", "/page/..%2f..%2fetc/passwd", "/page//etc/passwd", "/page/", "/page/index.html/",
                       "//", "/api", "/api/", "/api/cameras/", "/api/cameras/0", "/api/cameras/0/", "/api/cameras/0/nothing",
                       "/api/cameras/x/picture", "/api/cameras/-1/picture", "/api/cameras/0/picture/", "/API/cameras",
                       "/api/cameras/99999999999999999999999/picture", "/%61pi/cameras", "/page/index.html%00.js"):  # fmt: skip
            with self.subTest(target=target):
                self.assert_refused(self.view.get(target), 404)
        self.assert_refused(self.view.picture(camera=1), 404)

    def test_numbers_out_of_range_are_refused(self):
        for rest in ("width=0", "width=-1", "width=1e3", "width=", "width=99999999999999999999", "width=5&x=1",
                     "width=5&x=0&y=0&w=0&h=5", f"width=5&x=0&y=0&w={WIDTH + 1}&h=5", "width=5&x=2147483647&y=0&w=1&h=1",
                     "width=5&x=-1&y=0&w=1&h=1", "width=5&x=4294967295&y=0&w=2&h=1", "", "width=5&after=x"):  # fmt: skip
            with self.subTest(rest=rest):
                after = "" if "after" in rest else "after=0&"
                self.assert_refused(self.view.get(f"/api/cameras/0/picture?page={PAGE}&{after}{rest}"), 400)
        frame = self.view.picture(width=64).frame
        target = f"/api/cameras/0/pixel?page={PAGE}&frame={frame}&x={WIDTH}&y=0"
        self.assert_refused(self.view.get(target), 400)
        self.assert_refused(self.view.get(f"/api/cameras/0/pixel?page={PAGE}&frame={2**64 - 1}&x=0&y=0"), 410)

    def test_names_of_pages_are_words(self):
        for page in ("", "short", "a" * 33, "with-minus", "%41%42%43%44%45%46%47%48", "<script>"):
            with self.subTest(page=page):
                self.assert_refused(self.view.get(f"/api/events?page={page}"), 400)
        self.assert_refused(self.view.picture(page="nobodyshere"), 409)

    def test_bodies_must_be_what_they_should_be(self):
        for action, body in (
            ("set", b""), ("set", b"{"), ("set", b"[]"), ("set", b"null"), ("set", b"\xff\xfe"), ("set", b"[" * 60_000),
            ("set", {}), ("set", {"control": "gain"}), ("set", {"control": 1, "value": "2"}),
            ("set", {"control": "nothing", "value": "2"}), ("set", {"control": "gain", "value": "much"}),
            ("set", {"control": "gain", "value": "3ms"}), ("set", {"control": "exposure", "value": "nan"}),
            ("set", {"control": "wbred", "value": "100"}), ("color", {"color": 1}), ("color", {"color": True}),
            ("area", {"area": None}), ("trigger", {"trigger": "wish"}), ("rate", {"bytes_per_s": -1}),
            ("rate", {"bytes_per_s": 2**31}), ("rate", {"bytes_per_s": 1.5}), ("rate", {"bytes_per_s": 2**64}),
            ("run", {}), ("run", {"run": "yes"}), ("sharpness", {"area": [1, 2, 3]}), ("sharpness", {"area": [0, 0, 1, -1]}),
        ):  # fmt: skip
            with self.subTest(action=action, body=body if len(body) < 99 else "long"):
                self.assert_refused(self.view.post(action, body), 400)

    def test_requests_of_other_pages_are_refused(self):
        for status, headers in (
            (403, {"Host": "evil.example"}), (403, {"Host": f"evil.example:{self.view.port}"}), (403, {"Host": None}),
            (403, {"Host": "127.0.0.1:1"}), (403, {"Origin": "http://evil.example"}), (403, {"Origin": "null"}),
            (403, {"Origin": f"https://127.0.0.1:{self.view.port}"}), (403, {"Sec-Fetch-Site": "cross-site"}),
            (403, {"Sec-Fetch-Site": "same-site"}),
        ):  # fmt: skip
            with self.subTest(headers=headers):
                self.assert_refused(self.view.ask("GET", "/api/cameras", headers), status)
        for status, headers in (
            (403, {"X-Kelcam": None}), (403, {"X-Kelcam": "0"}), (415, {"Content-Type": "text/plain"}),
            (415, {"Content-Type": None}), (403, {"Origin": "http://evil.example"}),
        ):  # fmt: skip
            with self.subTest(headers=headers):
                self.assert_refused(self.view.post("run", {"run": False}, headers=headers), status)
        self.assertEqual(self.view.state()["state"], "running")
        own = f"http://localhost:{self.view.port}"
        answer = self.view.post("run", {"run": True}, headers={"Host": own[7:], "Origin": own, "Sec-Fetch-Site": "same-origin"})
        self.assertEqual(answer.status, 200)

    def test_what_is_no_request_ends_the_connection(self):
        for data in (b"\r\n\r\n", b"GET\r\n\r\n", b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" * 99, b"GET / HTTP/9.9\r\n\r\n",
                     b"GET / HTTP/1.1\r\nContent-Length: -5\r\n\r\n", b"GET / HTTP/1.1\r\nno colon\r\n\r\n"):  # fmt: skip
            with self.subTest(data=data), self.view.connect() as connection:
                connection.send(data)
                self.assertTrue(connection.is_closed_within(DEADLINE_S))

    def test_large_headers_and_bodies_are_refused(self):
        for headers in ({"X-Long": "a" * HEADER_LIMIT}, {f"X-{i}": "b" * 90 for i in range(100)}):
            with self.view.connect() as connection:
                self.assert_refused(connection.ask("GET", "/", headers), 431)
                self.assertTrue(connection.is_closed_within(DEADLINE_S))
        self.assert_refused(self.view.get("/" + "a" * 2 * HEADER_LIMIT), 431)
        with self.view.connect() as connection:
            length = str(BODY_LIMIT + 1)
            connection.send(f"POST /api/cameras/0/set HTTP/1.1\r\nHost: x\r\nContent-Length: {length}\r\n\r\n".encode())
            self.assert_refused(connection.answer(), 413)
        self.assert_refused(self.view.post("set", b" " * BODY_LIMIT), 400)

    def test_a_slow_request_is_given_up(self):
        with self.view.connect() as header, self.view.connect() as body:
            header.send(b"GET / HTTP/1.1\r\nHost: ")
            body.send(b"POST /api/cameras/0/set HTTP/1.1\r\nHost: x\r\nContent-Length: 100\r\n\r\n{")
            start = time.monotonic()
            while time.monotonic() < start + 5:
                header.send(b"a")
                body.send(b" ")
                time.sleep(0.5)
            self.assertTrue(header.is_closed_within(10))
            self.assertTrue(body.is_closed_within(10))

    def test_there_are_no_more_connections_than_there_may_be(self):
        connections = [self.view.connect() for _ in range(MOST_CONNECTIONS + 10)]
        closed = sum(connection.is_closed_within(0.05) for connection in connections)
        for connection in connections:
            connection.close()
        self.assertGreaterEqual(closed, 10)
        self.assertLess(closed, MOST_CONNECTIONS)

    def test_several_requests_follow_each_other_on_a_connection(self):
        with self.view.connect() as connection:
            head = f"GET /api/cameras HTTP/1.1\r\nHost: localhost:{self.view.port}\r\n\r\n".encode()
            connection.send(head * 3)
            for _ in range(3):
                self.assertEqual(connection.answer().status, 200)
            self.assertEqual(connection.ask("GET", "/").status, 200)


class ListenTest(unittest.TestCase):
    def test_without_the_token_nobody_is_served(self):
        with kelcam(SMALL, "--listen", "127.0.0.1") as view:
            self.assertRegex(view.query, "^token=[0-9a-f]{32}$")
            wrong = "token=" + "0" * 32
            for target in ("/", "/page/main.js", "/api/cameras", "/api/events?page=testpage1"):
                for token in ("", wrong, view.query[:-1], view.query + "0", view.query.upper()):
                    separator = "&" if "?" in target else "?"
                    self.assertEqual(view.get(target + separator + token).status, 403, (target, token))
            self.assertEqual(view.ask("POST", "/api/cameras/0/run", JSON_HEADERS, b'{"run": false}').status, 403)
            self.assertEqual(view.get("/api/cameras?" + view.query).status, 200)
            index = view.get("/?" + view.query).body.decode()
            for part in index.split('"/page/')[1:]:
                self.assertIn("?" + view.query, part.split('"')[0])
            with Events(view.port, PAGE, "&" + view.query) as events:
                events.wait("cameras")

    def test_tokens_differ(self):
        with kelcam(SMALL, "--listen", "127.0.0.1") as one, kelcam(SMALL, "--listen", "127.0.0.1") as other:
            self.assertNotEqual(one.query, other.query)
