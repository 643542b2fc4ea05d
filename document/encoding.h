// Encodings and line endings of the document, as the program numbers them.
#pragma once

enum TextEncoding { kUtf8Bom = 0, kUtf8 = 1, kUtf16Le = 2, kUtf16Be = 3, kAnsi = 4 };

// The editor's own end-of-line modes.
enum LineEnding { kEolCrLf = 0, kEolCr = 1, kEolLf = 2 };
