"""Writes the seed corpus of each fuzzing target: valid inputs of each kind
and the damaged ones the unit tests use. Usage: make_seeds.py OUTPUT_DIR"""
import struct
import sys
from pathlib import Path

PAYLOAD = 40302


def fnv1a(data):
    value = 0x811C9DC5
    for byte in data:
        value = ((value ^ byte) * 16777619) & 0xFFFFFFFF
    return value


def settings_file(payload, version=21, checksum=None):
    checksum = fnv1a(payload) if checksum is None else checksum
    return b"TAVR" + struct.pack("<III", version, PAYLOAD, checksum) + payload


def settings_seeds():
    zeros = bytes(PAYLOAD)
    named = bytearray(PAYLOAD)
    named[12:12 + 10] = "Arial".encode("utf-16-le")  # fontName
    unterminated = bytearray(PAYLOAD)
    unterminated[36952:36952 + 512] = b"k\x00" * 256  # apiKey without its terminator
    return {
        "defaults.cfg": settings_file(zeros),
        "font.cfg": settings_file(bytes(named)),
        "unterminated-key.cfg": settings_file(bytes(unterminated)),
        "bad-checksum.cfg": settings_file(zeros, checksum=1),
        "version-20.cfg": settings_file(zeros, version=20),
        "short.cfg": settings_file(zeros)[:40317],
        "header-only.cfg": settings_file(zeros)[:16],
        "fifteen.cfg": b"TAVR" + bytes(11),
        "empty.cfg": b"",
    }


def chat_seeds():
    index = ('[\n  {\n    "id": "chat_20240102_030405_1",\n    "title": "Hello \\"there\\"",\n'
             '    "lastModified": "2024-01-02 03:04:05",\n    "createdAt": "02.01.2024  03:04",\n'
             '    "isCurrent": true\n  }\n]\n')
    chat = ('[\n  {\n    "role": "user",\n    "content": "Line one\\nline two \\u00fc \\ud83d\\ude00",\n'
            '    "timestamp": "2024-01-02 03:04:05"\n  },\n  {\n    "role": "assistant",\n'
            '    "content": "Answer\\twith tab",\n    "timestamp": "2024-01-02 03:04:06"\n  }\n]\n')
    return {
        "index.json": index.encode(),
        "chat.json": chat.encode(),
        "cut-index.json": index.encode()[:60],
        "cut-chat.json": chat.encode()[:90],
        "lone-surrogate.json": b'[{"role": "user", "content": "\\ud800 alone", "timestamp": "x"}]',
        "empty.json": b"",
        "garbage.json": b'{"id": [}}}"',
    }


def provider_seeds():
    return {
        "openai.json": b'{"id":"x","choices":[{"index":0,"message":{"role":"assistant","content":"Hi \\"you\\"\\n"}}]}',
        "cloudflare.json": b'{"result":{"response":"Hello"},"success":true}',
        "error.json": b'{"error":{"message":"Invalid API key","type":"invalid_request_error"}}',
        "message.json": b'{"message":"Rate limit"}',
        "cut.json": b'{"choices":[{"message":{"content":"unterminated \\',
        "empty.json": b"",
    }


def text_seeds():
    text = "caf\u00e9 line\r\nsecond\n"
    return {
        "utf8.txt": text.encode(),
        "utf8-bom.txt": b"\xef\xbb\xbf" + text.encode(),
        "utf16le.txt": b"\xff\xfe" + text.encode("utf-16-le"),
        "utf16be.txt": b"\xfe\xff" + text.encode("utf-16-be"),
        "odd-utf16.txt": b"\xff\xfea\x00b",
        "nulls.txt": b"a\x00b\x00c",
        "pdf.txt": b"%PDF-1.7 rest",
        "controls.txt": bytes(range(1, 9)) + b"text",
        "cr-only.txt": b"one\rtwo\r",
        "empty.txt": b"",
    }


def markdown_seeds():
    page = ("# Title\n\nSome **bold**, *italic*, `code` and ***both***.\n\n- item one\n- item two\n"
            "1. first\n2. second\n\n> quoted *text*\n\n---\n\n## Heading  \n```\ncode block\n```\n"
            "snake_case_words and ** unclosed\n\t tabbed \U0001F600\n")
    return {"page.md": page.encode("utf-16-le"), "empty.md": b"", "one.md": "# ".encode("utf-16-le")}


TARGETS = {
    "fuzz_settings": settings_seeds,
    "fuzz_chat_store": chat_seeds,
    "fuzz_provider_answer": provider_seeds,
    "fuzz_text_detect": text_seeds,
    "fuzz_markdown": markdown_seeds,
}


def main():
    out = Path(sys.argv[1])
    for target, seeds in TARGETS.items():
        folder = out / target
        folder.mkdir(parents=True, exist_ok=True)
        for name, data in seeds().items():
            (folder / name).write_bytes(data)


if __name__ == "__main__":
    main()
