"""Syntax colouring in the real program: each file type gets its Lexilla lexer,
the lexer's styles at known places carry the theme's colours, a theme switch
changes the colours and keeps the lexer, and a lexer library that knows no
lexer leaves every file plain."""
import harness
from harness import TavroTestCase, windows_path

WM_THEME_CHANGED = 0x8001
CMD_NEW = 1001
SCI_GETSTYLEAT = 2010
SCI_GETTEXTLENGTH = 2183
SCI_STYLEGETFORE = 2481
SCI_STYLEGETBACK = 2482
SCI_STYLEGETBOLD = 2483
SCI_STYLEGETITALIC = 2484
SCI_STYLEGETSIZE = 2485
SCI_STYLEGETFONT = 2486
SCI_GETLEXER = 4002
SCI_COLOURISE = 4003
SCI_GETLEXERLANGUAGE = 4012


def colorref(rgb):
    """#RRGGBB as the 0x00BBGGRR the editor answers."""
    return ((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16)


# The colours of the two themes used here, by the names the style tables use.
THEMES = {
    0: {"paper": 0x1C1C1E, "text": 0xD4D4D4, "muted": 0x6E6E6E, "keyword": 0x569CD6, "comment": 0x6A9955,
        "string": 0xCE9178, "number": 0xB5CEA8, "type": 0x9CDCFE, "operator": 0xB4B4B4, "code": 0x2E2E30},
    1: {"paper": 0xFFFFFF, "text": 0x000000, "muted": 0xA0A0A0, "keyword": 0x0000FF, "comment": 0x008000,
        "string": 0xA31515, "number": 0x098658, "type": 0x6464B4, "operator": 0x000000, "code": 0xF1F1F1},
    2: {"paper": 0xEBF4FF, "text": 0x0A1432, "muted": 0x8C9BB9, "keyword": 0x003CC8, "comment": 0x006E28,
        "string": 0xAA2828, "number": 0x0064B4, "type": 0x5A5AAA, "operator": 0x282850, "code": 0xDDE6F1},
    3: {"paper": 0xEBFFEB, "text": 0x002800, "muted": 0x82AF82, "keyword": 0x006400, "comment": 0x50A050,
        "string": 0xA03C00, "number": 0x00783C, "type": 0x3C643C, "operator": 0x143C14, "code": 0xDDF1DD},
    4: {"paper": 0x20201E, "text": 0xDCDAC8, "muted": 0x6E6C5F, "keyword": 0x82B9FF, "comment": 0x82AA78,
        "string": 0xEBAF8C, "number": 0xC3DAAF, "type": 0xAFD7FA, "operator": 0xC3C0AF, "code": 0x323230},
    5: {"paper": 0xFFF8EB, "text": 0x3C230C, "muted": 0xB49B82, "keyword": 0x6E3C14, "comment": 0x9B764B,
        "string": 0xB94B2D, "number": 0x64501E, "type": 0x7D5F41, "operator": 0x503719, "code": 0xF1EADD},
}
THEME_NAMES = {0: "dark", 1: "light", 2: "azure", 3: "green", 4: "night", 5: "sepia"}

# Per file: its text, Lexilla's lexer name and number, and places in it as
# (piece of text, style the lexer gives it, colour, forced bold, forced
# italic, background). The user's font is neither bold nor italic.
LANGUAGES = [
    ("sample.py", "# a comment\nimport os\n\n\n@staticmethod\nclass Greeter:\n    def hello(self, name):\n"
                  "        return \"hi \" + name + 'x' * len(name) * 42\n", "python", 2, [
        ("# a comment", 1, "comment", False, True, "paper"),
        ("import", 5, "keyword", True, False, "paper"),
        ("os", 11, "text", False, False, "paper"),
        ("@staticmethod", 15, "type", False, False, "paper"),
        ("Greeter", 8, "keyword", True, False, "paper"),
        ("hello", 9, "type", False, False, "paper"),
        ("self", 5, "keyword", True, False, "paper"),  # from the keyword list, not the lexer
        ("len", 5, "keyword", True, False, "paper"),
        ('"hi "', 3, "string", False, False, "paper"),
        ("'x'", 4, "string", False, False, "paper"),
        ("42", 2, "number", False, False, "paper"),
        ("+", 10, "operator", False, False, "paper"),
    ]),
    ("sample.cpp", "// line comment\n/* block */\n#include <vector>\nint main() {\n    DWORD count = 42;\n"
                   "    const char* text = \"hello\";\n    char c = 'x';\n    return count;\n}\n", "cpp", 3, [
        ("// line comment", 2, "comment", False, True, "paper"),
        ("/* block */", 1, "comment", False, True, "paper"),
        ("#include", 9, "type", False, False, "paper"),
        ("int", 5, "keyword", True, False, "paper"),
        ("main", 11, "text", False, False, "paper"),
        ("DWORD", 16, "keyword", False, True, "paper"),
        ("42", 4, "number", False, False, "paper"),
        ('"hello"', 6, "string", False, False, "paper"),
        ("'x'", 7, "string", False, False, "paper"),
        ("=", 10, "operator", False, False, "paper"),
    ]),
    ("sample.bat", "@echo off\nrem a remark\n:start\nset NAME=world\nif exist file.txt goto start\n"
                   "robocopy a b\nfoo.exe /x\n", "batch", 12, [
        ("@", 4, "comment", False, False, "paper"),
        ("echo", 2, "keyword", True, False, "paper"),
        ("rem a remark", 1, "comment", False, True, "paper"),
        (":start", 3, "type", False, False, "paper"),
        ("=", 7, "operator", False, False, "paper"),
        ("robocopy", 2, "keyword", True, False, "paper"),
        ("foo.exe", 5, "keyword", True, False, "paper"),
        (" NAME", 0, "text", False, False, "paper"),
    ]),
    # JSON is lexed but has no style table: every style is plain text.
    ("sample.json", "{\"name\": \"value\", \"n\": 42, \"ok\": true}\n", "json", 120, [
        ('"name"', 4, "text", False, False, "paper"),
        ('"value"', 2, "text", False, False, "paper"),
        ("42", 1, "text", False, False, "paper"),
        ("true", 13, "text", False, False, "paper"),
        ("{", 8, "text", False, False, "paper"),
    ]),
    ("sample.html", "<!-- note -->\n<p class=\"intro\">Hello &amp; bye</p>\n<br/>\n", "hypertext", 4, [
        ("<!-- note -->", 9, "comment", False, True, "paper"),
        ("<p", 1, "keyword", True, False, "paper"),
        ("class", 3, "type", False, False, "paper"),
        ('"intro"', 6, "string", False, False, "paper"),
        ("&amp;", 10, "number", False, False, "paper"),
        ("Hello", 0, "text", False, False, "paper"),
        ("/>", 11, "keyword", True, False, "paper"),
    ]),
    ("sample.md", "# Title\n\n## Second\n\nSome **bold** and *em* and `code` text.\n\n- item one\n\n> quoted\n\n"
                  "```\nfenced code\n```\n", "markdown", 98, [
        # Without the lexer's "eolfill" property only the hashes of a heading take its style.
        ("#", 6, "keyword", True, False, "paper"),
        ("##", 7, "type", True, False, "paper"),
        ("**bold**", 2, "text", True, False, "paper"),
        ("*em*", 4, "text", False, True, "paper"),
        ("`code`", 19, "string", False, False, "code"),
        ("-", 13, "operator", False, False, "paper"),
        (">", 15, "muted", False, True, "paper"),
        ("```\nfenced", 20, "string", False, False, "code"),
        ("Some", 0, "text", False, False, "paper"),
    ]),
    ("sample.xml", "<?xml version=\"1.0\"?>\n<!-- c -->\n<root a='1' b=\"x\"><![CDATA[raw]]>&lt;</root>\n", "xml", 5, [
        ("<?", 12, "operator", True, False, "paper"),
        ("?>", 13, "operator", True, False, "paper"),
        ("<root", 1, "keyword", True, False, "paper"),
        ("version", 3, "type", False, False, "paper"),
        ("'1'", 7, "string", False, False, "paper"),
        ('"x"', 6, "string", False, False, "paper"),
        ("<!-- c -->", 9, "comment", False, True, "paper"),
        ("<![CDATA[raw]]>", 17, "string", False, False, "paper"),
        ("&lt;", 10, "number", False, False, "paper"),
    ]),
    ("sample.css", "/* c */\n@media screen {\n  #main .box:hover::before { color: red !important; }\n}\n"
                   "h1 { margin: 0 }\n", "css", 38, [
        ("/* c */", 9, "comment", False, True, "paper"),
        ("media screen", 22, "keyword", True, False, "paper"),
        ("main", 10, "type", True, False, "paper"),
        ("box", 2, "type", False, False, "paper"),
        ("hover", 4, "comment", False, False, "paper"),  # unknown: the lexer is given no lists
        ("color", 7, "text", False, False, "paper"),
        ("red", 8, "string", False, False, "paper"),
        ("important", 11, "keyword", True, False, "paper"),
        ("{", 5, "operator", False, False, "paper"),
        ("h1", 1, "keyword", True, False, "paper"),
    ]),
    # SQL and Lua, like JSON, are lexed and stay uncoloured.
    ("sample.sql", "SELECT name FROM t WHERE id = 42; -- c\n", "sql", 7, [
        ("SELECT", 11, "text", False, False, "paper"),
        ("42", 4, "text", False, False, "paper"),
        ("-- c", 2, "text", False, False, "paper"),
    ]),
    ("sample.lua", "local x = 'a' -- c\nfunction f() return 1 end\n", "lua", 15, [
        ("'a'", 7, "text", False, False, "paper"),
        ("-- c", 2, "text", False, False, "paper"),
        ("=", 10, "text", False, False, "paper"),
    ]),
]
LANGUAGE = {entry[0]: entry for entry in LANGUAGES}


class LanguagesTest(TavroTestCase):
    def open(self, name, text, exe=None):
        """Starts the program (again) on a file; its main window and editor."""
        path = self.write_file(name, text)
        self.tavro.process = None
        self.tavro.start(windows_path(path), exe=exe)
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - " + name)
        editor = self.tavro.child(main, "Scintilla")
        self.assertEqual(self.tavro.send(editor["hwnd"], SCI_GETTEXTLENGTH), len(text.encode()))
        return main, editor

    def close(self, main):
        self.tavro.post(main, harness.WM_CLOSE)
        self.tavro.wait_exit()

    def stored_theme(self):
        return int.from_bytes(self.tavro.settings_path().read_bytes()[16:20], "little")

    def style(self, editor, position):
        return self.tavro.send(editor, SCI_GETSTYLEAT, position)

    def look(self, editor, style):
        """(fore, back, bold, italic) of a style as the editor holds it."""
        return (self.tavro.send(editor, SCI_STYLEGETFORE, style), self.tavro.send(editor, SCI_STYLEGETBACK, style),
                self.tavro.send(editor, SCI_STYLEGETBOLD, style) != 0,
                self.tavro.send(editor, SCI_STYLEGETITALIC, style) != 0)

    def check_places(self, editor, text, places, theme, font_bold=False, font_italic=False):
        """The lexer's style at both ends of each piece, and that style's
        colours, bold and italic in the theme with the user's font."""
        self.tavro.send(editor, SCI_COLOURISE, 0, -1)
        colours = THEMES[theme]
        for piece, style, colour, bold, italic, back in places:
            start = text.encode().index(piece.encode())
            for position in (start, start + len(piece.encode()) - 1):
                self.assertEqual(self.style(editor, position), style, f"{piece!r} at {position}")
            self.assertEqual(self.look(editor, style),
                             (colorref(colours[colour]), colorref(colours[back]), bold or font_bold,
                              italic or font_italic),
                             f"style {style} of {piece!r} in the {THEME_NAMES[theme]} theme")
            # Every style has the user's font, spread from style 32.
            self.assertEqual(self.tavro.send_text(editor, SCI_STYLEGETFONT, style), "Consolas")
            self.assertEqual(self.tavro.send(editor, SCI_STYLEGETSIZE, style), 11)

    def shot(self, name, main, editor, theme):
        """A screenshot once the editor's paper shows the theme's colour."""
        self.tavro.settle(main)
        paper = THEMES[theme]["paper"]
        wanted = ((paper >> 16) & 0xFF, (paper >> 8) & 0xFF, paper & 0xFF)
        return self.tavro.screenshot_until(
            name, lambda png: self.tavro.pixel(png, editor["right"] - 60, editor["bottom"] - 60) == wanted,
            what=f"the editor painted in the {THEME_NAMES[theme]} theme")

    def test_each_file_type_gets_its_lexer_and_the_theme_colours_and_keeps_the_lexer_on_a_theme_switch(self):
        for name, text, lexer, number, places in LANGUAGES:
            with self.subTest(name):
                main, editor = self.open(name, text)
                hwnd = editor["hwnd"]
                # Loaded in the theme the last run left: dark first, then light.
                theme = self.stored_theme()
                self.assertIn(theme, THEMES)
                self.assertEqual(self.tavro.wait_for(lambda: self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), lexer),
                                 lexer)
                self.assertEqual(self.tavro.send(hwnd, SCI_GETLEXER), number)
                self.check_places(hwnd, text, places, theme)
                self.shot(f"{name}-{THEME_NAMES[theme]}", main, editor, theme)

                other = 1 - theme
                self.tavro.send(main, WM_THEME_CHANGED, other)
                self.assertEqual(self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), lexer)
                self.assertEqual(self.tavro.send(hwnd, SCI_GETLEXER), number)
                self.check_places(hwnd, text, places, other)
                self.shot(f"{name}-{THEME_NAMES[other]}", main, editor, other)
                self.close(main)

    def test_every_theme_colours_the_styles_and_the_lexer_stays(self):
        # Markdown and C++ between them use every colour of the tables.
        for name in ("sample.md", "sample.cpp"):
            _, text, lexer, number, places = LANGUAGE[name]
            main, editor = self.open(name, text)
            hwnd = editor["hwnd"]
            self.tavro.wait_for(lambda: self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), lexer)
            for theme in (2, 3, 4, 5, 0, 1):
                with self.subTest(f"{name} in {THEME_NAMES[theme]}"):
                    self.tavro.send(main, WM_THEME_CHANGED, theme)
                    self.assertEqual(self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), lexer)
                    self.assertEqual(self.tavro.send(hwnd, SCI_GETLEXER), number)
                    self.check_places(hwnd, text, places, theme)
            self.close(main)

    def test_the_users_bold_and_italic_hold_where_the_table_forces_nothing(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.close(main)
        self.tavro.patch_settings({140: b"\x01\x01"})  # fontBold, fontItalic
        name, text, lexer, _, places = LANGUAGES[0]
        main, editor = self.open(name, text)
        hwnd = editor["hwnd"]
        self.tavro.wait_for(lambda: self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), lexer)
        self.check_places(hwnd, text, places, 0, font_bold=True, font_italic=True)
        self.tavro.send(main, WM_THEME_CHANGED, 1)
        self.check_places(hwnd, text, places, 1, font_bold=True, font_italic=True)

    def test_new_document_is_plain_text_again(self):
        name, text, lexer, _, _ = LANGUAGES[0]
        main, editor = self.open(name, text)
        hwnd = editor["hwnd"]
        self.tavro.wait_for(lambda: self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), lexer)
        self.tavro.send(main, harness.WM_COMMAND, CMD_NEW)
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled")
        self.assertEqual(self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), "")
        self.assertEqual(self.tavro.send(hwnd, SCI_GETLEXER), 0)
        # Every style is the default one in the theme's text colour.
        for style in (0, 1, 5, 11):
            self.assertEqual(self.look(hwnd, style), (colorref(THEMES[0]["text"]), colorref(THEMES[0]["paper"]),
                                                      False, False), style)

    def test_a_lexer_library_without_lexers_leaves_every_file_plain_and_the_theme_still_runs_the_table(self):
        exe = self.tavro.program_copy("no-lexers",
                                      lexilla=harness.BUILD / "tests" / "bin" / "no-lexers-lexilla" / "lexilla.dll")
        for name, text, _, _, places in LANGUAGES:
            with self.subTest(name):
                main, editor = self.open(name, text, exe=exe)
                hwnd = editor["hwnd"]
                theme = self.stored_theme()
                self.tavro.settle(main)
                self.assertEqual(self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), "")
                self.assertEqual(self.tavro.send(hwnd, SCI_GETLEXER), 0)
                self.tavro.send(hwnd, SCI_COLOURISE, 0, -1)
                plain = (colorref(THEMES[theme]["text"]), colorref(THEMES[theme]["paper"]), False, False)
                for piece, style, _, _, _, _ in places:
                    position = text.encode().index(piece.encode())
                    self.assertEqual(self.style(hwnd, position), 0, piece)
                    self.assertEqual(self.look(hwnd, style), plain, f"style {style} of {piece!r}")
                self.shot(f"{name}-no-lexers", main, editor, theme)

                # The language is still known: a theme switch runs its table,
                # while the text, all in style 0, stays plain.
                other = 1 - theme
                self.tavro.send(main, WM_THEME_CHANGED, other)
                colours = THEMES[other]
                for piece, style, colour, bold, italic, back in places:
                    position = text.encode().index(piece.encode())
                    self.assertEqual(self.style(hwnd, position), 0, piece)
                    self.assertEqual(self.look(hwnd, style),
                                     (colorref(colours[colour]), colorref(colours[back]), bold, italic),
                                     f"style {style} of {piece!r} after the switch")
                self.assertEqual(self.tavro.send_text(hwnd, SCI_GETLEXERLANGUAGE), "")
                self.close(main)


if __name__ == "__main__":
    harness.main()
