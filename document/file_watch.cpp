// The watch on the file behind the document: it looks at existence only.
#include <windows.h>

#include "document/document.h"
#include "document/save_prompt.h"

int CheckFileStatus() {
  return FileStatusOf(g_filePath,
                      [](const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; });
}
