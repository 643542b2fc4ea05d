"""Stored chats as the program writes them, for tests that start with a
chat store of their own."""
import json


def index_json(chats):
    """The index file as the program writes it (LF here, CRLF on disk)."""
    out = '{\n  "chats": [\n'
    for i, chat in enumerate(chats):
        out += "    {\n"
        for key in ("id", "title", "lastModified", "createdAt"):
            out += f'      "{key}": {json.dumps(chat[key], ensure_ascii=False)},\n'
        out += f'      "isCurrent": {"true" if chat.get("current") else "false"}\n'
        out += "    },\n" if i + 1 < len(chats) else "    }\n"
    return out + "  ]\n}\n"


def chat_json(messages):
    out = '{\n  "messages": [\n'
    for i, (is_user, text) in enumerate(messages):
        out += "    {\n"
        out += f'      "isUser": {"true" if is_user else "false"},\n'
        out += f"      \"text\": {json.dumps(text, ensure_ascii=False)},\n"
        out += '      "timestamp": "2026-11-20 10:00:00"\n'
        out += "    },\n" if i + 1 < len(messages) else "    }\n"
    return out + "  ]\n}\n"


def write_store(folder, chats):
    """Replaces every chat file of folder by these chats and their index
    (CRLF line ends, as on disk). A chat: id, title, lastModified, createdAt,
    current (optional), messages as (is_user, text) pairs."""
    for old in folder.glob("*.json"):
        old.chmod(0o644)
        old.unlink()
    (folder / "index.json").write_bytes(index_json(chats).replace("\n", "\r\n").encode("utf-8"))
    for chat in chats:
        (folder / f"{chat['id']}.json").write_bytes(chat_json(chat["messages"]).replace("\n", "\r\n").encode("utf-8"))
