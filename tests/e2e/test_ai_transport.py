"""The chat transport against the mock provider on loopback: what goes out
(path, headers, body), what each answer of the provider becomes, Stop, the
busy guard and the AI Settings dialog's connection test. The transport runs
in ai_transport_driver.exe, which prints every message the worker posts."""
import json
import threading

from harness import BUILD, TavroTestCase, main, windows_path
from mock_provider import answer_body

DRIVER = BUILD / "tests" / "bin" / "ai_transport_driver.exe"
KEY = "sk-Tavro test_KEY.123"
MISTRAL = ["--provider", "2", "--key", KEY, "--model", "mistral-small", "--endpoint",
           "https://localhost/v1/chat/completions"]
CANCELLED = "Request cancelled by user."


class TransportCase(TavroTestCase):
    def drive(self, *args, debug="-all"):
        code, out, err = self.tavro.run_tool(DRIVER, *args, debug=debug)
        self.assertEqual(code, 0, err)
        self.last_stderr = err
        return [json.loads(line) for line in out.splitlines() if line.strip()]

    def assertEvents(self, events, expected):
        self.assertEqual([e["event"] if "text" not in e else (e["event"], e["text"]) for e in events], expected)


class RequestTests(TransportCase):
    def test_request_goes_to_the_custom_endpoint_with_the_designed_headers_and_body(self):
        mock = self.tavro.mock_provider()
        mock.reply(200, answer_body("Hi there \u00e9"))
        events = self.drive(*MISTRAL, "--temperature", "25", "--max-tokens", "300", "--prompt", "Be brief.",
                            "request", "Hello \"you\"", "u:first", "a:second")
        self.assertEvents(events, [("answer", "Hi there \u00e9"), "ended", "done"])
        self.assertEqual(events[-1]["busy"], 0)
        [request] = mock.wait_idle()
        self.assertEqual(request.method, "POST")
        self.assertEqual(request.path, "/v1/chat/completions")
        self.assertEqual(request.headers["Host"], "localhost")
        self.assertEqual(request.headers["Authorization"], "Bearer " + KEY)
        self.assertEqual(request.headers["Content-Type"], "application/json")
        self.assertEqual(request.headers["User-Agent"], "Tavro Editor/1.0")
        self.assertEqual(int(request.headers["Content-Length"]), len(request.body))
        self.assertTrue(request.body.startswith(
            b'{"model":"mistral-small","stream":false,"temperature":0.25,"max_tokens":300,"messages":['
            b'{"role":"system","content":"[System Context]\\n# QORL System Information\\n# Generated: '),
                        request.body[:200])
        self.assertTrue(request.body.endswith(
            b'Be brief.\\n\\nAI_Provider: Mistral AI\\nAI_Model: mistral-small"},'
            b'{"role":"user","content":"first"},{"role":"assistant","content":"second"},'
            b'{"role":"user","content":"Hello \\"you\\""}]}'), request.body[-300:])

    def test_the_http_scheme_still_goes_over_tls_on_port_443(self):
        mock = self.tavro.mock_provider()
        events = self.drive("--provider", "2", "--key", "k", "--endpoint", "http://localhost/custom/chat", "request",
                            "x")
        self.assertEvents(events, [("answer", "OK"), "ended", "done"])
        self.assertEqual([r.path for r in mock.wait_idle()], ["/custom/chat"])

    def test_endpoints_that_must_not_reach_the_custom_host(self):
        mock = self.tavro.mock_provider()
        # A bare host leaves api.mistral.ai in force, which this machine can't
        # reach; Groq and Cloudflare ignore the value altogether.
        for args in (["--provider", "2", "--key", "k", "--endpoint", "localhost"],
                     ["--provider", "2", "--key", "k", "--endpoint", "https://localhost"],
                     ["--provider", "0", "--key", "k", "--endpoint", "https://localhost/v1/chat/completions"],
                     ["--provider", "1", "--key", "k", "--account", "a", "--endpoint", "https://localhost/v1/x"]):
            with self.subTest(args=args):
                events = self.drive(*args, "request", "x")
                self.assertEvents(events, [("failed", "HTTP request failed"), "ended", "done"])
        self.assertEqual(mock.wait_idle(), [])

    def test_each_status_and_its_text(self):
        mock = self.tavro.mock_provider()
        cases = [
            (401, b'{"error":{"message":"Invalid API Key"}}', "HTTP 401: Invalid API Key"),
            (404, b'{"error":"not found"}', "HTTP 404: not found"),
            (500, b"", "HTTP 500"),
            (413, b'{"error":{"message":"too many tokens"}}',
             "Request too large: reduce chat history length in AI Settings or start a new chat (New Chat button)."),
            (429, b'{"error":{"message":"slow down"}}',
             "Rate limit reached. Wait a moment, then try again. Consider switching to Cloudflare or Mistral AI "
             "provider."),
            (200, b"", "Empty response from Mistral AI. Check model name."),
        ]
        for status, body, text in cases:
            with self.subTest(status=status, body=body):
                mock.reply(status, body)
                self.assertEvents(self.drive(*MISTRAL, "request", "x"), [("failed", text), "ended", "done"])
        # An error object under status 200 has no "choices": its message is
        # taken for the answer.
        mock.reply(200, b'{"error":{"message":"model not found"}}')
        self.assertEvents(self.drive(*MISTRAL, "request", "x"), [("answer", "model not found"), "ended", "done"])

    def test_a_body_cut_short_after_a_whole_answer_counts_as_complete(self):
        mock = self.tavro.mock_provider()
        body = answer_body("whole")
        mock.reply(200, body + b" " * 300, cut_after=len(body) + 10)
        self.assertEvents(self.drive(*MISTRAL, "request", "x"), [("answer", "whole"), "ended", "done"])
        mock.reply(200, body, cut_after=20)
        self.assertEvents(self.drive(*MISTRAL, "request", "x"),
                          [("failed", "Empty response from Mistral AI. Check model name."), "ended", "done"])

    def test_an_untrusted_certificate_fails_the_request(self):
        mock = self.tavro.mock_provider(trusted=False)
        self.assertEvents(self.drive(*MISTRAL, "request", "x"), [("failed", "HTTP request failed"), "ended", "done"])
        self.assertEqual(mock.wait_idle(), [])

    def test_refusals_before_any_request(self):
        mock = self.tavro.mock_provider()
        cases = [
            (["--provider", "0", "--key", ""], "Groq API key is not set. Get a free key at console.groq.com"),
            (["--provider", "1", "--key", "", "--account", "a"], "Cloudflare API key is not set."),
            (["--provider", "1", "--key", "k", "--account", ""], "Cloudflare Account ID is missing."),
            (["--provider", "2", "--key", ""], "Mistral AI API key is not set. Get a free key at console.mistral.ai"),
            (["--provider", "3", "--key", "k"], "Unknown AI provider selected in settings."),
        ]
        for args, text in cases:
            with self.subTest(text=text):
                self.assertEvents(self.drive(*args, "--endpoint", "https://localhost/v1", "request", "x"),
                                  [("failed", text), "ended", "done"])
        # Without a session the failure comes alone: no end message.
        self.assertEvents(self.drive("--no-session", *MISTRAL, "request", "x"),
                          [("failed", "WinHTTP session not initialized"), "done"])
        self.assertEqual(mock.wait_idle(), [])


class StopTests(TransportCase):
    def drive_with_stop(self, gate):
        """A request that is stopped while the provider holds its answer; the
        answer goes out once the stop is made. Returns the printed events."""
        flag = self.tavro.work / "stop.flag"
        outcome = {}

        def run():
            outcome["result"] = self.tavro.run_tool(DRIVER, *MISTRAL, "request-stop-on-file", windows_path(flag), "x")

        driver = threading.Thread(target=run)
        driver.start()
        try:
            self.assertEqual(len(self.tavro._mock.wait_requests(1, timeout=120)), 1)
            flag.write_text("")
            self.tavro.wait_until(lambda: flag.with_name("stop.flag.done").exists(), timeout=60,
                                  what="the driver's stop")
        finally:
            flag.write_text("")
            gate.set()
            driver.join(timeout=240)
        code, out, err = outcome["result"]
        self.assertEqual(code, 0, err)
        return [json.loads(line) for line in out.splitlines() if line.strip()]

    def test_stop_during_the_wait_drops_the_answer_and_the_end(self):
        mock = self.tavro.mock_provider()
        gate = mock.reply(200, answer_body("too late"), held=True)
        events = self.drive_with_stop(gate)
        # Stop doesn't interrupt the wait: the worker runs on to the answer,
        # then drops it; the failure text still goes out.
        self.assertEqual(events[0], {"event": "stopped", "busy": 1})
        self.assertEvents(events[1:], [("failed", CANCELLED), "done"])
        self.assertEqual(events[-1]["busy"], 0)
        self.assertEqual(len(mock.wait_idle()), 1)

    def test_a_failure_after_stop_is_still_posted(self):
        mock = self.tavro.mock_provider()
        gate = mock.reply(500, b"", held=True)
        events = self.drive_with_stop(gate)
        self.assertEqual(events[0], {"event": "stopped", "busy": 1})
        self.assertEvents(events[1:], [("failed", "HTTP 500"), "done"])

    def test_a_second_send_while_a_worker_runs_is_dropped(self):
        mock = self.tavro.mock_provider()
        mock.reply(200, answer_body("first"), delay=2)
        events = self.drive(*MISTRAL, "request-twice", "x")
        self.assertEqual(events[0], {"event": "second", "same_worker": True})
        self.assertEvents(events[1:], [("answer", "first"), "ended", "done"])
        self.assertEqual(len(mock.wait_idle()), 1)
        self.assertEqual(mock.requests[0].json()["messages"][-1]["content"], "x")

    def test_cancel_set_before_the_request_sends_nothing(self):
        mock = self.tavro.mock_provider()
        self.assertEqual(self.drive(*MISTRAL, "post-cancelled")[0], {"event": "test", "ok": False, "error": CANCELLED})
        # A Stop before the connection test still fails it.
        self.assertEqual(self.drive(*MISTRAL, "test-connection-after-stop")[0],
                         {"event": "test", "ok": False, "error": CANCELLED})
        self.assertEqual(mock.wait_idle(), [])

    def test_the_key_appears_in_no_debug_line_and_no_file(self):
        mock = self.tavro.mock_provider()
        mock.reply(401, b'{"error":{"message":"Invalid API Key"}}')
        events = self.drive(*MISTRAL, "request", "x", debug="-all,warn+seh")
        self.assertEvents(events, [("failed", "HTTP 401: Invalid API Key"), "ended", "done"])
        self.assertEqual(mock.requests[0].headers["Authorization"], "Bearer " + KEY)
        self.assertNotIn(KEY, self.last_stderr)
        self.assertNotIn(KEY, json.dumps(events))
        for path in self.tavro.appdata.rglob("*"):
            if path.is_file():
                data = path.read_bytes()
                self.assertNotIn(KEY.encode("utf-8"), data, path)
                self.assertNotIn(KEY.encode("utf-16-le"), data, path)


class ConnectionTestTests(TransportCase):
    def test_mistral_success_needs_ok_in_the_answer(self):
        mock = self.tavro.mock_provider()
        args = ["--provider", "2", "--key", KEY, "--model", "", "--endpoint", "https://localhost/v1/chat/completions",
                "--prompt", "ignored"]
        mock.reply(200, answer_body("Sure, OK."))
        self.assertEqual(self.drive(*args, "test-connection")[0], {"event": "test", "ok": True, "error": ""})
        self.assertEqual(mock.requests[0].body,
                         b'{"model":"","stream":false,"temperature":0.1,"max_tokens":10,'
                         b'"messages":[{"role":"user","content":"Reply with exactly: OK"}]}')
        self.assertEqual(mock.requests[0].headers["Authorization"], "Bearer " + KEY)
        mock.reply(200, answer_body("ok"))
        self.assertEqual(self.drive(*args, "test-connection")[0],
                         {"event": "test", "ok": False, "error": "Unexpected response from Mistral AI API"})
        mock.reply(200, b"")
        self.assertEqual(self.drive(*args, "test-connection")[0],
                         {"event": "test", "ok": False, "error": "Unexpected response from Mistral AI API"})
        mock.reply(401, b'{"error":{"message":"Invalid API Key"}}')
        self.assertEqual(self.drive(*args, "test-connection")[0],
                         {"event": "test", "ok": False, "error": "HTTP 401: Invalid API Key"})
        self.assertEqual(len(mock.wait_idle()), 4)

    def test_refusals_of_the_connection_test(self):
        mock = self.tavro.mock_provider()
        cases = [
            (["--no-session", "--provider", "2", "--key", "k"], "WinHTTP not initialized"),
            (["--provider", "0", "--key", ""], "Groq API key is not set. Get a free key at console.groq.com"),
            (["--provider", "1", "--key", "", "--account", "a"],
             "Cloudflare API key is not set. Get it from your Cloudflare dashboard."),
            (["--provider", "1", "--key", "k", "--account", ""],
             "Cloudflare Account ID is missing.\n\nFind it in your Cloudflare dashboard."),
            (["--provider", "2", "--key", ""], "Mistral AI API key is not set"),
            (["--provider", "7", "--key", "k"], "Unknown AI provider selected in settings"),
            # Groq's public host can't be reached from here: the POST's own text.
            (["--provider", "0", "--key", "k"], "HTTP request failed"),
        ]
        for args, text in cases:
            with self.subTest(text=text):
                self.assertEqual(self.drive(*args, "--endpoint", "https://localhost/v1", "test-connection")[0],
                                 {"event": "test", "ok": False, "error": text})
        self.assertEqual(mock.wait_idle(), [])


if __name__ == "__main__":
    main()
