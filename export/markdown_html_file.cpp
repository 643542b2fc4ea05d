// The Markdown page's style from the live theme and document, and the page
// written to a file: the parts of the HTML export that need the program's
// state and the file system.
#include <windows.h>

#include <string>

#include "base/text_convert.h"
#include "document/document.h"
#include "document/save_prompt.h"
#include "export/markdown_html.h"
#include "export/markdown_model.h"
#include "presentation/themes.h"

MarkdownPageStyle CurrentMarkdownPageStyle() {
  MarkdownPageStyle style;
  const ThemeColors& row = CurrentTheme();
  style.background = row.editorBackground;
  style.text = row.editorText;
  style.heading = row.dialogText;
  style.secondary = row.mutedText;
  style.rule = row.separator;
  style.codeBackground = row.listBackground;
  ResolveProseFont(style.fontFamily, style.fontSize);
  style.title = WideToUtf8(DocumentName(g_filePath));
  return style;
}

bool WriteMarkdownHtmlWithStyle(const std::wstring& outputPath, std::wstring_view text,
                                const MarkdownPageStyle& style) {
  if (text.empty()) return false;
  std::string page = BuildMarkdownHtmlPage(text, style);
  FILE* file = _wfopen(outputPath.c_str(), L"wb");
  if (!file) return false;
  std::fwrite(page.data(), 1, page.size(), file);
  bool bad = std::ferror(file) != 0;
  std::fclose(file);  // a failed close alone doesn't count
  return !bad;
}

bool WriteMarkdownHtml(const std::wstring& outputPath, const std::wstring& text) {
  return WriteMarkdownHtmlWithStyle(outputPath, text, CurrentMarkdownPageStyle());
}
