// A lexilla.dll of the wrong kind: it loads, but has no CreateLexer. Built
// with TAVRO_FAKE_LEXILLA_NO_LEXERS it has one that knows no lexer at all and
// answers every name with null, so the program runs with every file plain.
extern "C" __declspec(dllexport) int GetLexerCount() { return 0; }

#ifdef TAVRO_FAKE_LEXILLA_NO_LEXERS
extern "C" __declspec(dllexport) void* __stdcall CreateLexer(const char* name) {
  (void)name;
  return nullptr;
}
#endif
