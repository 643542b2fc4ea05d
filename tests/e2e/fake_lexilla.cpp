// A lexilla.dll of the wrong kind: it loads, but has no CreateLexer.
extern "C" __declspec(dllexport) int GetLexerCount() { return 0; }
