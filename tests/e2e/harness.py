"""End-to-end harness: runs the real Tavro.exe under Wine on a private Xvfb
display, in a Wine prefix (and so an application-data folder) of its own, and
reaches its windows through tavro_probe.exe, our helper inside Wine.

A test case derives from TavroTestCase and gets self.tavro, a TavroSession
that is stopped, with its log and a last screenshot kept, when the test ends.
"""
import fcntl
import getpass
import os
import re
import shutil
import subprocess
import time
import unittest
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("TAVRO_BUILD_DIR", REPO / "build"))
BIN = BUILD / "bin"
PROBE = BUILD / "tests" / "bin" / "tavro_probe.exe"
TEST_PRINTER = BUILD / "tests" / "bin" / "test_printer.exe"
TEST_PRINTER_PORT = "TAVROTEST:"
WINE_DIR = BUILD / "wine"
TEMPLATE = WINE_DIR / "template"
ARTIFACTS = BUILD / "e2e-artifacts"
WORK = BUILD / "e2e-work"

WM_CLOSE = 0x0010
WM_COMMAND = 0x0111
WM_GETTEXTLENGTH = 0x000E
VK_SCROLL = 0x91
FILE_NAME_FIELDS = (0x47C, 0x480)  # the file-name field of the common file dialogs, old style and new

QUIET_WINE = ("wine32 is missing", "multiarch needs", "dpkg --add-architecture", "apt-get install wine32")


def program_version():
    """The version CMake wrote into the build folder's generated header."""
    header = (BUILD / "generated" / "tavro_version.h").read_text()
    return re.search(r'#define TAVRO_VERSION_TEXT "([^"]+)"', header).group(1)


def windows_path(path):
    """The Wine path of a Linux path: Z: is the Linux root."""
    return "Z:" + str(Path(path).resolve()).replace("/", "\\")


def _wine_env(prefix, display=None):
    env = dict(os.environ)
    env["WINEPREFIX"] = str(prefix)
    env["WINEDEBUG"] = "-all"
    env["WINEDLLOVERRIDES"] = "mscoree,mshtml="
    if display is not None:
        env["DISPLAY"] = display
    return env


def wine_version():
    """What `wine --version` prints, such as "wine-8.0 (Debian 8.0~repack-4)"."""
    return subprocess.run(["wine", "--version"], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          check=True).stdout.strip()


def ensure_template():
    """A booted prefix that every test copies; made once per build folder and
    Wine version: another Wine (an upgrade) makes a fresh one."""
    WINE_DIR.mkdir(parents=True, exist_ok=True)
    version = wine_version()
    ready = TEMPLATE / ".tavro-ready"
    with open(WINE_DIR / "template.lock", "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if ready.exists() and ready.read_text().strip() == version:
            return
        shutil.rmtree(TEMPLATE, ignore_errors=True)
        env = _wine_env(TEMPLATE)
        env.pop("DISPLAY", None)
        subprocess.run(["wineboot", "-i"], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        # Unmanaged windows: Wine draws the frames itself, so screenshots show
        # title bars even though Xvfb runs no window manager.
        subprocess.run(["wine", "reg", "add", r"HKCU\Software\Wine\X11 Driver", "/v", "Managed", "/d", "N", "/f"],
                       env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        subprocess.run(["wineserver", "-w"], env=env, check=True)
        ready.write_text(version + "\n")


def copy_prefix(destination):
    """A private prefix in a fraction of a second: the Windows folder is
    hard-linked (Wine only reads it), the registry and user folders copied."""
    destination.mkdir(parents=True)
    os.makedirs(destination / "drive_c")
    for entry in (TEMPLATE / "drive_c").iterdir():
        if entry.name == "users" or entry.is_symlink() or not entry.is_dir():
            shutil.copytree(entry, destination / "drive_c" / entry.name, symlinks=True) if entry.is_dir() \
                else shutil.copy2(entry, destination / "drive_c" / entry.name, follow_symlinks=False)
        else:
            subprocess.run(["cp", "-al", str(entry), str(destination / "drive_c" / entry.name)], check=True)
    for name in ("system.reg", "user.reg", "userdef.reg", ".update-timestamp"):
        shutil.copy2(TEMPLATE / name, destination / name)
    shutil.copytree(TEMPLATE / "dosdevices", destination / "dosdevices", symlinks=True)


SETTINGS_SIZE = 40318
SETTINGS_PAYLOAD = 40302


def settings_checksum(payload):
    """32-bit FNV-1a, as the program checks its settings file."""
    value = 0x811C9DC5
    for byte in payload:
        value = ((value ^ byte) * 16777619) & 0xFFFFFFFF
    return value


def utf16_field(text, units):
    """A fixed string field: the text, a terminator, zeros to the end."""
    data = text.encode("utf-16-le") + b"\0\0"
    return data + b"\0" * (units * 2 - len(data))


def printed_pdf(postscript):
    """The PDF that ghostscript makes of what the test printer wrote."""
    postscript = Path(postscript)
    pdf = postscript.with_name(postscript.name + ".pdf")
    subprocess.run(["ps2pdf", str(postscript), str(pdf)], stdin=subprocess.DEVNULL, capture_output=True,
                   check=True, timeout=300)
    return pdf


def printed_pages(postscript):
    """The text of each page of a printed file, in order, as pdftotext reads
    it with the layout kept."""
    text = subprocess.run(["pdftotext", "-layout", str(printed_pdf(postscript)), "-"], stdin=subprocess.DEVNULL,
                          capture_output=True, check=True, timeout=300).stdout.decode("utf-8")
    pages = text.split("\f")
    return pages[:-1] if pages and pages[-1] == "" else pages


def printed_page_png(postscript, page, destination, dpi=60):
    """One page (counted from 1) of a printed file as a PNG at `destination`."""
    destination = Path(destination)
    subprocess.run(["pdftoppm", "-png", "-r", str(dpi), "-f", str(page), "-l", str(page), "-singlefile",
                    str(printed_pdf(postscript)), str(destination.with_suffix(""))], stdin=subprocess.DEVNULL,
                   capture_output=True, check=True, timeout=300)
    return destination.with_suffix(".png")


class ProbeError(RuntimeError):
    pass


class WaitTimeout(AssertionError):
    """A wait that ran out of time: the test fails."""


_ODS = re.compile(r'warn:seh:OutputDebugStringA "(.*)"$')


def _unescape_wine(text):
    """Wine prints the ANSI text of OutputDebugStringW in C escapes."""
    out, i = bytearray(), 0
    simple = {"n": 10, "r": 13, "t": 9, "\\": 92, '"': 34, "'": 39, "0": 0}
    while i < len(text):
        c = text[i]
        if c == "\\" and i + 1 < len(text):
            nxt = text[i + 1]
            if nxt == "x" and re.match(r"[0-9a-fA-F]{2}", text[i + 2:i + 4]):
                out.append(int(text[i + 2:i + 4], 16))
                i += 4
                continue
            if nxt in simple:
                out.append(simple[nxt])
                i += 2
                continue
        out += c.encode("latin-1", "replace")
        i += 1
    return out.decode("cp1252", "replace")


def network_namespace_works():
    """Whether this machine lets the tests give a session a network of its
    own (unshare and nsenter, as root)."""
    try:
        return subprocess.run(["unshare", "-n", "true"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=30).returncode == 0
    except (OSError, subprocess.SubprocessError):
        return False


def machine_has_default_route():
    """Whether this machine has an IPv4 or IPv6 default route: a network that
    Windows' network list counts as the internet."""
    try:
        ipv4 = any(line.split()[1] == "00000000" for line in Path("/proc/net/route").read_text().splitlines()[1:])
        ipv6 = any(line.split()[0] == "0" * 32 and line.split()[1] == "00"
                   for line in Path("/proc/net/ipv6_route").read_text().splitlines() if line.split()[-1] != "lo")
    except OSError:
        return False
    return ipv4 or ipv6


class TavroSession:
    def __init__(self, name, network=True):
        """network False: the whole Wine process tree of the session (server,
        services, probe, programs) runs in a network namespace of its own
        with loopback only, as on a machine with no network at all."""
        self.name = re.sub(r"[^A-Za-z0-9_.-]", "_", name)
        self.work = WORK / self.name
        shutil.rmtree(self.work, ignore_errors=True)
        self.work.mkdir(parents=True)
        ARTIFACTS.mkdir(parents=True, exist_ok=True)
        self.prefix = self.work / "prefix"
        self.appdata = self.prefix / "drive_c" / "users" / getpass.getuser() / "AppData" / "Roaming"
        self.log_path = self.work / "tavro.log"
        self.process = None
        self.processes = []
        self._log_file = None
        self._probe = None
        self._mock = None
        self._xvfb = None
        self.display = None
        self._netns = None
        self._wrap = []
        ensure_template()
        copy_prefix(self.prefix)
        self._start_xvfb()
        self.env = _wine_env(self.prefix, self.display)
        if not network:
            self._enter_loopback_only_network()
        subprocess.run(self._wrap + ["wineserver", "-p"], env=self.env, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, check=True)

    # -- processes -------------------------------------------------------
    def _start_xvfb(self):
        read_end, write_end = os.pipe()
        self._xvfb = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x900x24", "-nolisten", "tcp"],
            pass_fds=(write_end,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        number = b""
        while not number.endswith(b"\n"):
            chunk = os.read(read_end, 16)
            if not chunk:
                raise RuntimeError("Xvfb did not start")
            number += chunk
        os.close(read_end)
        self.display = ":" + number.decode().strip()

    def _enter_loopback_only_network(self):
        # A process holds the namespace; every Wine process enters it.
        self._netns = subprocess.Popen(["unshare", "-n", "sh", "-c", "echo ready; exec sleep infinity"],
                                       stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        if self._netns.stdout.readline().strip() != b"ready":
            raise RuntimeError("no network namespace")
        self._wrap = ["nsenter", "-t", str(self._netns.pid), "-n"]

    def start(self, *args, exe=None, debug="-all,warn+seh", env=None):
        """Starts Tavro.exe (or another copy of it) with the given arguments
        and extra environment. The first process started is self.process;
        later ones are only returned."""
        env = dict(self.env, WINEDEBUG=debug, **(env or {}))
        if self._log_file is None:
            self._log_file = open(self.log_path, "ab")
        process = subprocess.Popen(self._wrap + ["wine", str(exe or BIN / "Tavro.exe"), *args], env=env,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=self._log_file,
                                   cwd=self.work)
        self.processes.append(process)
        if self.process is None:
            self.process = process
        return process

    def program_copy(self, folder_name, scintilla=None, lexilla=None):
        """A folder of this session with Tavro.exe and its two DLLs: the built
        ones, or the given files in their place. Returns the exe's path."""
        folder = self.work / folder_name
        folder.mkdir()
        shutil.copy2(BIN / "Tavro.exe", folder / "Tavro.exe")
        shutil.copy2(scintilla or BIN / "Scintilla.dll", folder / "Scintilla.dll")
        shutil.copy2(lexilla or BIN / "lexilla.dll", folder / "lexilla.dll")
        return folder / "Tavro.exe"

    def wait_exit(self, timeout=30, process=None):
        return (process or self.process).wait(timeout=timeout)

    def stop(self):
        try:
            if any(p.poll() is None for p in self.processes):
                for row in self.request("list-windows", "TavroMainWindow"):
                    self.post(row["hwnd"], WM_CLOSE)
                for process in self.processes:
                    try:
                        process.wait(timeout=10)
                    except subprocess.TimeoutExpired:
                        process.kill()
        finally:
            if self._mock:
                self._mock.stop()
            if self._probe:
                try:
                    self._probe.stdin.write(b"quit\n")
                    self._probe.stdin.flush()
                    self._probe.wait(timeout=5)
                except Exception:
                    self._probe.kill()
                self._probe.stdin.close()
                self._probe.stdout.close()
            subprocess.run(self._wrap + ["wineserver", "-k"], env=self.env, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            if self._netns:
                self._netns.kill()
                self._netns.wait()
                self._netns.stdout.close()
            if self._log_file:
                self._log_file.close()
            if self.log_path.exists():
                shutil.copy2(self.log_path, ARTIFACTS / (self.name + ".log"))
            if self._xvfb:
                self._xvfb.terminate()
                self._xvfb.wait(timeout=5)

    def mock_provider(self, trusted=True):
        """Starts the mock chat provider on localhost:443, trusted by this
        session's prefix only (or by nobody); it stops with the session."""
        from mock_provider import MockProvider
        mock = MockProvider(BUILD / "e2e-certs")
        if trusted:
            self.request("add-root-cert", windows_path(mock.ca_der))
        mock.start()
        self._mock = mock
        return mock

    def run_tool(self, exe, *args, debug="-all", timeout=180):
        """Runs a console program of ours in this prefix to its end; returns
        (exit code, stdout text, stderr text)."""
        # The session's first Wine process starts services that would inherit
        # and hold our pipes; the probe is that first process instead. A
        # service the tool starts on demand still inherits what it is given,
        # so its output goes to files, read once the tool itself has ended.
        self.request("ping")
        env = dict(self.env, WINEDEBUG=debug)
        out_path, err_path = self.work / "tool.out", self.work / "tool.err"
        with open(out_path, "wb") as out, open(err_path, "wb") as err:
            process = subprocess.Popen(self._wrap + ["wine", str(exe), *args], env=env, stdin=subprocess.DEVNULL,
                                       stdout=out,
                                       stderr=err, cwd=self.work)
        try:
            code = process.wait(timeout=timeout)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            raise
        return code, out_path.read_bytes().decode("utf-8", "replace"), err_path.read_bytes().decode("latin-1")

    # -- the probe -------------------------------------------------------
    def _probe_process(self):
        if self._probe is None or self._probe.poll() is not None:
            self._probe = subprocess.Popen(self._wrap + ["wine", str(PROBE)], env=self.env,
                                           stdin=subprocess.PIPE,
                                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return self._probe

    def request(self, *fields):
        """One probe request; returns the answer's value, or the list of rows."""
        probe = self._probe_process()
        line = "\t".join(str(f).replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n").replace("\r", "\\r")
                         for f in fields)
        probe.stdin.write(line.encode("utf-8") + b"\n")
        probe.stdin.flush()
        answer = probe.stdout.readline().decode("utf-8").rstrip("\r\n")
        status, _, value = answer.partition("\t")
        if status != "ok":
            raise ProbeError(f"{fields[0]}: {value or answer or 'no answer'}")
        if fields[0] in ("children", "list-windows"):
            return [self._row(probe.stdout.readline()) for _ in range(int(value))]
        if fields[0] == "list-items":
            lines = [_unescape_probe(probe.stdout.readline().decode("utf-8").rstrip("\r\n")) for _ in range(int(value))]
            return int(lines[0]), lines[1:]
        return _unescape_probe(value)

    @staticmethod
    def _row(raw):
        parts = [_unescape_probe(p) for p in raw.decode("utf-8").rstrip("\r\n").split("\t")]
        keys = ("hwnd", "cls", "id", "visible", "left", "top", "right", "bottom", "text")
        row = dict(zip(keys, parts))
        for key in ("hwnd", "id", "left", "top", "right", "bottom"):
            row[key] = int(row[key])
        row["visible"] = row["visible"] == "1"
        return row

    # -- windows ---------------------------------------------------------
    def find_window(self, class_name="", title="", timeout=30, prefix=False):
        verb = "find-window-prefix" if prefix else "find-window"
        return int(self.request(verb, class_name, title, int(timeout * 1000)))

    def main_window(self, timeout=30):
        return self.find_window("TavroMainWindow", timeout=timeout)

    def find_dialog(self, title, timeout=30):
        """A dialog or message box by its exact title."""
        return self.find_window("", title, timeout)

    def title(self, hwnd):
        return self.request("title", hwnd)

    def text(self, hwnd):
        return self.request("text", hwnd)

    def children(self, hwnd):
        return self.request("children", hwnd)

    def child(self, hwnd, class_name):
        for row in self.children(hwnd):
            if row["cls"] == class_name:
                return row
        raise ProbeError(f"no {class_name} child")

    def dialog_texts(self, hwnd):
        return [row["text"] for row in self.children(hwnd) if row["text"]]

    def press(self, dialog, button_text):
        return int(self.request("press", dialog, button_text))

    def post(self, hwnd, message, wparam=0, lparam=0):
        self.request("post", hwnd, message, wparam, lparam)

    def send(self, hwnd, message, wparam=0, lparam=0):
        return int(self.request("send", hwnd, message, wparam, lparam))

    def command(self, hwnd, command_id):
        self.post(hwnd, WM_COMMAND, command_id, 0)

    def send_text(self, hwnd, message, wparam=0):
        """The text a message writes to the buffer in its lParam (UTF-8, as
        Scintilla's getters of strings write it)."""
        return self.request("send-text", hwnd, message, wparam)

    def chars(self, hwnd, text):
        self.request("chars", hwnd, text)

    def list_items(self, hwnd):
        """(index of the selected row or -1, [row texts]) of a list box."""
        return self.request("list-items", hwnd)

    def enabled(self, hwnd):
        return self.request("enabled", hwnd) == "1"

    def windows(self, class_name):
        return self.request("list-windows", class_name)

    def count_windows(self, class_name):
        return int(self.request("count-windows", class_name))

    def iconic(self, hwnd):
        return self.request("iconic", hwnd) == "1"

    def clipboard(self):
        return self.request("clipboard")

    def try_delete(self, path):
        """0 when Windows let the file be deleted, else its error code."""
        return int(self.request("try-delete", windows_path(path)))

    def try_move(self, path, target):
        """0 when Windows let the file be renamed to target, else its error code."""
        return int(self.request("try-move", windows_path(path), windows_path(target)))

    def client(self, hwnd):
        """(width, height, screen x, screen y) of a window's client area."""
        return tuple(int(v) for v in self.request("client", hwnd).split("\t"))

    def move(self, hwnd, x, y, width, height):
        self.request("move", hwnd, x, y, width, height)

    def child_boxes(self, hwnd):
        """Children by class, each as (x, y, width, height) within the client area."""
        _, _, ox, oy = self.client(hwnd)
        return {row["cls"]: (row["left"] - ox, row["top"] - oy, row["right"] - row["left"], row["bottom"] - row["top"])
                for row in self.children(hwnd) if row["visible"]}

    def alive(self, hwnd):
        return self.request("alive", hwnd) == "1"

    def shown(self, hwnd):
        """Whether the window exists and is visible (a closing dialog hides first)."""
        return self.alive(hwnd) and self.request("describe", hwnd).split("\t")[3] == "1"

    def wait_gone(self, hwnd, timeout=30):
        self.request("wait-gone", hwnd, int(timeout * 1000))

    def wait_for(self, read, expected, timeout=30, what=None):
        """Polls read() until it returns expected and returns it; fails the
        test when the time is up."""
        return self.wait_until(read, lambda value: value == expected, timeout,
                               what or f"the value {expected!r}")

    def wait_until(self, read, check=bool, timeout=30, what="the condition"):
        """Polls read() until check(value) holds and returns that value;
        fails the test when the time is up."""
        deadline = time.monotonic() + timeout
        value = read()
        while not check(value):
            if time.monotonic() > deadline:
                raise WaitTimeout(f"waited {timeout} s for {what}; last value: {value!r}")
            time.sleep(0.1)
            value = read()
        return value

    def settle(self, hwnd, timeout=30):
        """Returns once the thread of hwnd has handled every message posted to
        it and all input (keys, clicks) sent to it so far; see the probe."""
        self.request("settle", hwnd, int(timeout * 1000))

    def focus(self, hwnd, within=None):
        """(foreground window, focus of hwnd's thread, whether that focus is
        within, or hwnd, or inside it)."""
        fields = self.request("focus", hwnd, *([within] if within else [])).split("\t")
        return int(fields[0]), int(fields[1]), fields[2] == "1"

    def wait_focus(self, hwnd, within=None, timeout=30):
        """Waits until hwnd is the foreground window and its thread's keyboard
        focus is within (or hwnd, or inside it): keys then go there."""
        self.wait_until(lambda: self.focus(hwnd, within), lambda f: f[0] == hwnd and f[2], timeout,
                        f"the keyboard focus in window {within or hwnd} of {hwnd}")

    # -- common file dialogs ------------------------------------------------
    def file_dialog(self, title, timeout=30):
        """An Open or Save As dialog once it is ready for a file name: the
        dialog and its file-name field. The dialog fills itself in after it
        shows; it is ready when that field exists and has the keyboard."""
        dialog = self.find_dialog(title, timeout)
        name = self.wait_until(lambda: next((row["hwnd"] for row in self.children(dialog)
                                             if row["id"] in FILE_NAME_FIELDS and row["cls"] == "Edit"
                                             and row["visible"]), None),
                               timeout=timeout, what=f"the file-name field of {title!r}")
        self.wait_focus(dialog, name, timeout)
        return dialog, name

    def enter_file_name(self, dialog, name, path):
        """Types the path into the field and presses Enter once the field
        shows all of it."""
        self.type(windows_path(path), window=dialog, focus=name)
        self.wait_for(lambda: self.text(name), windows_path(path), what="the typed path in the file-name field")
        self.keys("Return", window=dialog, focus=name)

    # -- keyboard through X ------------------------------------------------
    def top_window(self, title_regex, timeout=30):
        """The visible top-level window whose title matches; the foreground
        one when several do."""
        def matches():
            return [row["hwnd"] for row in self.windows("") if re.search(title_regex, row["text"])]
        rows = self.wait_until(matches, timeout=timeout, what=f"a window titled {title_regex}")
        foreground = int(self.request("foreground"))
        return foreground if foreground in rows else rows[0]

    def _x_window(self, hwnd, title_regex):
        x_window = self.request("x-window", hwnd)
        if x_window != "0":
            return x_window
        title = title_regex or "^" + re.escape(self.title(hwnd)) + "$"
        out = subprocess.run(["xdotool", "search", "--name", title], env=self.env, capture_output=True,
                             text=True, timeout=60).stdout.split()
        if not out:
            raise ProbeError(f"no X window named {title}")
        return out[0]

    def click_at(self, x, y):
        """A left click at a point of the screen through X, as a user's click
        on whatever window shows there; returns without waiting for what it
        brings (an activation, a box)."""
        subprocess.run(["xdotool", "mousemove", "--sync", str(x), str(y), "click", "1"], env=self.env, check=True,
                       timeout=60)

    def x_input(self, hwnd, *commands, focus=None, settle=True):
        """Focuses the window in X and waits until Windows gives it the
        keyboard (focus: in that control), runs the xdotool commands, then
        waits until the window's thread has handled all the input they made.
        A window the input closed or hid counts as done.

        X hands input to Wine in its own time, so a Scroll Lock press (a key
        every window here ignores) follows the commands: Wine reads X events
        in order, and the key shows as down once it has read all before it."""
        subprocess.run(["xdotool", "windowfocus", "--sync", self._x_window(hwnd, "")], env=self.env, check=True,
                       timeout=60)
        self.wait_focus(hwnd, focus)
        for args in commands:
            subprocess.run(["xdotool", *map(str, args)], env=self.env, check=True, timeout=300)
        for step, down in (("keydown", "1"), ("keyup", "0")):
            subprocess.run(["xdotool", step, "Scroll_Lock"], env=self.env, check=True, timeout=60)
            state = self.wait_until(lambda: "gone" if not self.shown(hwnd) else self.request("key-down", VK_SCROLL),
                                    lambda value: value in (down, "gone"), what=f"Wine to take the input ({step})")
            if state == "gone":
                return
        if settle:
            try:
                self.settle(hwnd)
            except ProbeError:
                if self.shown(hwnd):
                    raise

    def _input(self, args, title_regex, window, focus, settle):
        self.x_input(window or self.top_window(title_regex), args, focus=focus, settle=settle)

    def keys(self, *keys, title_regex="^Tavro", window=None, focus=None, settle=True):
        self._input(["key", "--delay", "40", *keys], title_regex, window, focus, settle)

    def type(self, text, title_regex="^Tavro", window=None, focus=None, settle=True):
        self._input(["type", "--delay", "30", text], title_regex, window, focus, settle)

    def remove_html_handler(self):
        """A machine with no browser: nothing in this prefix opens .html
        files, so asking the shell to open one fails."""
        subprocess.run(self._wrap + ["wine", "reg", "delete", r"HKLM\Software\Classes\htmlfile\shell", "/f"],
                       env=self.env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, check=True, timeout=120)

    def install_test_printer(self, spool_path=None):
        """Adds a printer named "Microsoft Print to PDF" to this prefix and
        makes it the default: Wine's PostScript driver, 300 dpi, A4. A job
        that names an output file (StartDocW's lpszOutput) writes PostScript
        to that file; a job that names none (printing through the print
        dialog) writes it to `spool_path`, by default `printed.ps` in the
        test's work folder. Returns that path. Read the output back with
        `printed_pages` and `printed_page_png`."""
        spool_path = Path(spool_path or self.work / "printed.ps")
        code, out, err = self.run_tool(TEST_PRINTER, "add", TEST_PRINTER_PORT)
        if code != 0:
            raise AssertionError(f"test printer not added: {out}{err}")
        subprocess.run(self._wrap + ["wine", "reg", "add", r"HKCU\Software\Wine\Printing\Spooler", "/v",
                                     TEST_PRINTER_PORT, "/d", str(spool_path), "/f"],
                       env=self.env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, check=True, timeout=120)
        return spool_path

    # -- settings file -----------------------------------------------------
    def settings_path(self, profile=None):
        folder = self.appdata / "Tavro"
        return folder / "tavro.cfg" if not profile else folder / "profiles" / f"tavro_{profile}.cfg"

    def start_with_settings(self, changes, *args):
        """Tavro started on a settings file the test wrote: a first run makes
        the file and ends, the changes go in while no instance runs, then
        the program starts again with args."""
        self.start()
        self.post(self.main_window(), WM_CLOSE)
        if self.wait_exit() != 0:
            raise AssertionError("the first run did not end cleanly")
        self.process = None
        self.patch_settings(changes)
        return self.start(*args)

    def patch_settings(self, changes, profile=None):
        """Writes payload bytes at payload offsets and a fresh checksum, as
        the program would, keeping the file read-only afterwards."""
        path = self.settings_path(profile)
        data = bytearray(path.read_bytes())
        for offset, value in changes.items():
            data[16 + offset:16 + offset + len(value)] = value
        data[12:16] = settings_checksum(bytes(data[16:16 + SETTINGS_PAYLOAD])).to_bytes(4, "little")
        os.chmod(path, 0o644)
        path.write_bytes(bytes(data))
        os.chmod(path, 0o444)

    # -- log and screen ----------------------------------------------------
    def log_lines(self):
        """The OutputDebugStringW lines so far, each with its own line end."""
        if self._log_file:
            self._log_file.flush()
        lines = []
        for raw in self.log_path.read_text("latin-1").splitlines():
            match = _ODS.search(raw)
            if match:
                lines.append(_unescape_wine(match.group(1)))
        return lines

    def wait_log(self, line, timeout=30):
        """Waits until the program has written that debug line; fails the
        test when the time is up."""
        self.wait_until(lambda: line in self.log_lines(), timeout=timeout, what=f"the log line {line!r}")
        return True

    def screenshot(self, name):
        path = ARTIFACTS / f"{self.name}.{name}.png"
        subprocess.run(["import", "-display", self.display, "-window", "root", f"png24:{path}"], check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return path

    def screenshot_until(self, name, check, timeout=30, what="the expected picture"):
        """Takes screenshots until check(png) holds and returns that one; fails
        the test when the time is up."""
        return self.wait_until(lambda: self.screenshot(name), check, timeout, what)

    def pixel(self, png, x, y):
        """(r, g, b) of one pixel of a screenshot."""
        out = subprocess.run(["convert", str(png), "-crop", f"1x1+{x}+{y}", "-depth", "8", "txt:-"],
                             capture_output=True, text=True, check=True).stdout
        match = re.search(r"\((\d+),(\d+),(\d+)", out.splitlines()[-1])
        return tuple(int(v) for v in match.groups())


def _unescape_probe(text):
    out, i = [], 0
    while i < len(text):
        c = text[i]
        if c == "\\" and i + 1 < len(text):
            i += 1
            out.append({"n": "\n", "r": "\r", "t": "\t"}.get(text[i], text[i]))
        else:
            out.append(c)
        i += 1
    return "".join(out)


class TavroTestCase(unittest.TestCase):
    def setUp(self):
        self.tavro = TavroSession(self.id().split(".", 1)[-1])
        self.addCleanup(self.tavro.stop)
        self.addCleanup(self._screen_at_failure)

    def _screen_at_failure(self):
        """The screen as a failing test left it, kept beside its log."""
        result = getattr(getattr(self, "_outcome", None), "result", None)
        failed = result is not None and any(getattr(test, "test_case", test) is self
                                             for test, _ in result.failures + result.errors)
        if not failed or self.tavro._xvfb is None or self.tavro._xvfb.poll() is not None:
            return
        try:
            self.tavro.screenshot("at-failure")
        except (OSError, subprocess.SubprocessError):
            pass

    def write_file(self, name, data):
        path = self.tavro.work / name
        path.write_bytes(data if isinstance(data, bytes) else data.encode("utf-8"))
        return path


def main():
    unittest.main(verbosity=2)
