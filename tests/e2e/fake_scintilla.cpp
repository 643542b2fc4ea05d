// A Scintilla.dll that loads but registers no window class, so the editor
// control can't be created and the main window's creation fails.
extern "C" __declspec(dllexport) int Scintilla_RegisterClasses(void*) { return 0; }
