"""A chat-completions provider on loopback for the tests: HTTPS on
localhost:443 with a certificate from a test CA, recording every request and
answering as the test says.

    mock = MockProvider()                 # certificates made once per build
    mock.start()
    mock.reply(200, answer_body("Hi"))    # queued answers, first in first out
    ... the program posts to https://localhost/... ...
    mock.requests[0].headers["Authorization"]
    mock.stop()

Wine trusts the server when the CA is in the prefix's LocalMachine "Root"
store: TavroSession.mock_provider() puts it there through the probe's
add-root-cert verb and starts the server. Port 443 is one per machine, so
every test that uses this module holds CTest's "loopback-443" lock.
"""
import fcntl
import json
import os
import select
import socket
import ssl
import subprocess
import tempfile
import threading
import time
from dataclasses import dataclass, field
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path

PORT = 443
GATE_TIMEOUT = 120  # seconds a held answer waits for its test at most
PORT_LOCK = Path(tempfile.gettempdir()) / "tavro-loopback-443.lock"


def answer_body(text):
    """A provider's 200 body carrying one answer."""
    return json.dumps({"id": "chatcmpl-1", "object": "chat.completion",
                       "choices": [{"index": 0, "message": {"role": "assistant", "content": text},
                                    "finish_reason": "stop"}]}, ensure_ascii=False).encode("utf-8")


@dataclass
class Reply:
    status: int = 200
    body: bytes = b""
    delay: float = 0.0          # seconds before the head is sent
    cut_after: int = None       # send only this many body bytes, then close
    content_type: str = "application/json"
    gate: threading.Event = None  # when given, nothing is sent before it is set


@dataclass
class RecordedRequest:
    method: str
    path: str
    headers: dict
    body: bytes
    received: float = field(default_factory=time.monotonic)

    def json(self):
        return json.loads(self.body.decode("utf-8"))


def make_certificates(folder):
    """CA and localhost certificate, made once per folder; returns the paths."""
    folder = Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    ca_der = folder / "ca.der"
    server_pem, server_key = folder / "localhost.pem", folder / "localhost.key"
    with open(folder / ".lock", "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if ca_der.exists() and server_pem.exists() and server_key.exists():
            return ca_der, server_pem, server_key

        def run(*args):
            subprocess.run(["openssl", *args], cwd=folder, check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

        (folder / "ca.ext").write_text("basicConstraints=critical,CA:TRUE\nkeyUsage=critical,keyCertSign,cRLSign\n"
                                       "subjectKeyIdentifier=hash\n")
        (folder / "server.ext").write_text("basicConstraints=CA:FALSE\nkeyUsage=critical,digitalSignature,"
                                           "keyEncipherment\nextendedKeyUsage=serverAuth\n"
                                           "subjectAltName=DNS:localhost\nauthorityKeyIdentifier=keyid\n")
        run("req", "-new", "-newkey", "rsa:2048", "-nodes", "-keyout", "ca.key", "-out", "ca.csr",
            "-subj", "/CN=Tavro Test Provider CA")
        run("x509", "-req", "-in", "ca.csr", "-signkey", "ca.key", "-days", "3650", "-sha256",
            "-extfile", "ca.ext", "-out", "ca.pem")
        run("req", "-new", "-newkey", "rsa:2048", "-nodes", "-keyout", "localhost.key", "-out", "localhost.csr",
            "-subj", "/CN=localhost")
        run("x509", "-req", "-in", "localhost.csr", "-CA", "ca.pem", "-CAkey", "ca.key", "-CAcreateserial",
            "-days", "825", "-sha256", "-extfile", "server.ext", "-out", "localhost.pem")
        run("x509", "-in", "ca.pem", "-outform", "DER", "-out", "ca.der")
        return ca_der, server_pem, server_key


class _Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *args):
        pass

    def setup(self):
        # The TLS handshake runs here, in the connection's own thread, so a
        # client that stalls in it holds up nobody else; a client that gives
        # up on the certificate just ends its connection.
        self.request.settimeout(30)
        self.request.do_handshake()
        super().setup()

    def do_POST(self):
        length = int(self.headers.get("Content-Length", "0"))
        body = self.rfile.read(length) if length else b""
        mock = self.server.mock
        mock._record(RecordedRequest("POST", self.path, dict(self.headers.items()), body))
        reply = mock._next_reply()
        if reply.delay:
            time.sleep(reply.delay)
        if reply.gate is not None and not reply.gate.wait(GATE_TIMEOUT):
            # A test that never opened its gate: the client sees a cut connection.
            self.close_connection = True
            return
        self.send_response(reply.status)
        self.send_header("Content-Type", reply.content_type)
        self.send_header("Content-Length", str(len(reply.body)))
        self.send_header("Connection", "close")
        self.end_headers()
        payload = reply.body if reply.cut_after is None else reply.body[:reply.cut_after]
        self.wfile.write(payload)
        self.wfile.flush()
        self.close_connection = True
        if reply.cut_after is not None:
            # Shut the socket down under the client's feet, mid-body.
            self.connection.shutdown(socket.SHUT_RDWR)


class _Server(ThreadingHTTPServer):
    """Counts every connection from before its accept to after its close,
    for wait_idle."""
    daemon_threads = True
    allow_reuse_address = True

    def get_request(self):
        self.mock._connection(+1)
        try:
            return super().get_request()
        except BaseException:
            self.mock._connection(-1)
            raise

    def handle_error(self, request, client_address):
        """Refused handshakes and dropped connections are part of the tests."""

    def shutdown_request(self, request):
        try:
            super().shutdown_request(request)
        finally:
            self.mock._connection(-1)


class MockProvider:
    def __init__(self, cert_folder):
        self.ca_der, self._cert, self._key = make_certificates(cert_folder)
        self.requests = []
        self._open_connections = 0
        self._replies = []
        self._gates = []
        self._lock = threading.Condition()
        self._server = None
        self._thread = None
        self._port_lock = None

    def start(self):
        # CTest's lock keeps one run's files apart; this one keeps two
        # checkouts' runs on one machine from taking the port at once.
        self._port_lock = open(PORT_LOCK, "w")
        fcntl.flock(self._port_lock, fcntl.LOCK_EX)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(str(self._cert), str(self._key))
        self._server = _Server(("127.0.0.1", PORT), _Handler)
        self._server.socket = context.wrap_socket(self._server.socket, server_side=True,
                                                  do_handshake_on_connect=False)
        self._server.mock = self
        self._thread = threading.Thread(target=self._server.serve_forever, daemon=True)
        self._thread.start()
        return self

    def stop(self):
        for gate in self._gates:  # a held answer doesn't outlive its test
            gate.set()
        if self._server:
            self._server.shutdown()
            self._server.server_close()
            self._server = None
        if self._port_lock:
            self._port_lock.close()
            self._port_lock = None

    # -- what the test tells it --------------------------------------------
    def reply(self, status=200, body=b"", delay=0.0, cut_after=None, held=False):
        """Queues one answer; without any, a request gets 200 with "OK".
        With held, returns an event: the answer waits until the test sets it,
        so "while the provider is still answering" is a state, not a race."""
        if isinstance(body, str):
            body = body.encode("utf-8")
        gate = threading.Event() if held else None
        if gate is not None:
            self._gates.append(gate)
        with self._lock:
            self._replies.append(Reply(status, body, delay, cut_after, gate=gate))
        return gate

    def _next_reply(self):
        with self._lock:
            return self._replies.pop(0) if self._replies else Reply(200, answer_body("OK"))

    def _record(self, request):
        with self._lock:
            self.requests.append(request)
            self._lock.notify_all()

    def _connection(self, change):
        with self._lock:
            self._open_connections += change
            self._lock.notify_all()

    def _pending_connection(self):
        """True while a connection waits in the listening socket's backlog."""
        return bool(select.select([self._server.socket], [], [], 0)[0])

    def wait_idle(self, timeout=30):
        """Waits until every connection made so far has been answered and
        closed, so that requests holds all there will be from a client that
        has ended; returns requests. Raises when the time is up."""
        deadline = time.monotonic() + timeout
        with self._lock:
            while self._open_connections or self._pending_connection():
                left = deadline - time.monotonic()
                if left <= 0:
                    raise AssertionError(f"the mock provider still had {self._open_connections} connection(s) "
                                         f"after {timeout} s")
                self._lock.wait(min(left, 0.05))
            return list(self.requests)

    def wait_requests(self, count, timeout=30):
        """Waits until count requests have arrived; returns them."""
        deadline = time.monotonic() + timeout
        with self._lock:
            while len(self.requests) < count:
                left = deadline - time.monotonic()
                if left <= 0:
                    break
                self._lock.wait(left)
            return list(self.requests)
