"""The include graph of the program's folders points down only.

Each folder has a layer; a file may include files of its own layer and of
layers below it, never above. A lower layer that needs something from a
higher one gets it through base/, a posted message or a callback that the
higher one installs.
"""
import re
import sys
import tempfile
import unittest
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]

# Bottom to top. resources/ holds the resource ids and the version header's
# template, which every layer may read.
LAYERS = [
    ["base", "resources"],
    ["settings"],
    ["presentation"],
    ["search"],
    ["document"],
    ["export"],
    ["ai/client"],
    ["ai/chat"],
    ["ai/panel"],
    ["shell"],
]
RANK = {folder: rank for rank, folders in enumerate(LAYERS) for folder in folders}
SOURCE_SUFFIXES = {".h", ".cpp", ".rc", ".in"}
# Not part of the program: tests and benchmarks may include anything.
OUTSIDE = {"tests", "bench", "build", "cmake", "scripts"}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def folder_of(relative):
    """The layer folder of a repository-relative path, or None for a file
    that is not in a folder (a dependency's header, a generated one)."""
    parts = Path(relative).parts
    if len(parts) < 2:
        return None
    if parts[0] == "ai":
        return "ai/" + parts[1] if len(parts) >= 3 else "ai"
    return parts[0]


def source_files(root):
    for top in sorted(root.iterdir()):
        if not top.is_dir() or top.name in OUTSIDE or top.name.startswith("."):
            continue
        for path in sorted(top.rglob("*")):
            if path.is_file() and path.suffix in SOURCE_SUFFIXES:
                yield path.relative_to(root)


def check(root):
    """Returns (upward edges, files in folders that have no layer)."""
    upward, unplaced = [], []
    for relative in source_files(root):
        source = folder_of(relative)
        if source is None:
            continue
        if source not in RANK:
            unplaced.append(str(relative))
            continue
        text = (root / relative).read_text(encoding="utf-8", errors="replace")
        for included in INCLUDE.findall(text):
            target = folder_of(included)
            if target is None:
                continue  # "Scintilla.h", "tavro_version.h": below every layer
            if target not in RANK:
                unplaced.append(f"{relative} includes {included}")
            elif RANK[target] > RANK[source]:
                upward.append(f"{relative} includes {included} ({source} -> {target})")
    return upward, unplaced


class LayersTest(unittest.TestCase):
    def test_the_program_includes_point_down_only(self):
        upward, unplaced = check(REPO)
        self.assertEqual(upward, [], "includes that go up:\n" + "\n".join(upward))
        self.assertEqual(unplaced, [], "folders without a layer:\n" + "\n".join(unplaced))

    def test_the_program_has_files_in_every_lower_layer(self):
        # The table names real folders, so a renamed folder can't drop out of the check.
        folders = {folder_of(relative) for relative in source_files(REPO)}
        for name in ["base", "settings", "presentation", "search", "document", "ai/client", "ai/chat", "shell"]:
            self.assertIn(name, folders)

    def _tree(self, files):
        root = Path(tempfile.mkdtemp(prefix="layers-"))
        for name, text in files.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text)
        return root

    def test_an_upward_include_is_found(self):
        root = self._tree({
            "document/file_load.cpp": '#include "shell/shell.h"\n#include "base/app_state.h"\n',
            "shell/shell.h": "",
            "base/app_state.h": "",
        })
        upward, unplaced = check(root)
        self.assertEqual(upward, ["document/file_load.cpp includes shell/shell.h (document -> shell)"])
        self.assertEqual(unplaced, [])

    def test_the_ai_folders_are_layers_of_their_own(self):
        root = self._tree({
            "ai/client/transport.cpp": '#include "ai/chat/ai_state.h"\n',
            "ai/chat/chat_store.cpp": '#include "ai/client/chat_request.h"\n',
        })
        upward, _ = check(root)
        self.assertEqual(upward, ["ai/client/transport.cpp includes ai/chat/ai_state.h (ai/client -> ai/chat)"])

    def test_a_new_folder_must_get_a_layer(self):
        root = self._tree({"gadgets/gadget.cpp": '#include "base/app_state.h"\n'})
        _, unplaced = check(root)
        self.assertEqual(unplaced, ["gadgets/gadget.cpp"])

    def test_dependency_and_generated_headers_are_below_everything(self):
        root = self._tree({"base/app_state.cpp": '#include "Scintilla.h"\n#include "tavro_version.h"\n'})
        self.assertEqual(check(root), ([], []))

    def test_tests_may_include_anything(self):
        root = self._tree({"tests/base/x_test.cpp": '#include "shell/shell.h"\n'})
        self.assertEqual(check(root), ([], []))


if __name__ == "__main__":
    unittest.main(verbosity=2)
