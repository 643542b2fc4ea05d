#include "export/export_formats.h"

#include <gtest/gtest.h>

TEST(ExportFormats, TableInOrder) {
  ASSERT_EQ(kExportFormatCount, 4);
  EXPECT_STREQ(kExportFormats[0].label, L"PDF Document (*.pdf)");
  EXPECT_STREQ(kExportFormats[1].description, L"HyperText Markup Language - view in web browser");
  EXPECT_STREQ(kExportFormats[2].description, L"Rich Text Format - opens in Word, LibreOffice");
  EXPECT_STREQ(kExportFormats[3].label, L"Plain Text (*.txt)");
  EXPECT_STREQ(kExportFormats[3].extension, L".txt");
  EXPECT_EQ(FindExportFormat(4), nullptr);
  EXPECT_EQ(FindExportFormat(-1), nullptr);
  EXPECT_EQ(FindExportFormat(2)->id, 2);
}

TEST(ExportFormats, MarkdownByTheLastThreeCharacters) {
  EXPECT_TRUE(HasMarkdownExtension(L"C:\\notes.MD"));
  EXPECT_TRUE(HasMarkdownExtension(L".md"));
  EXPECT_FALSE(HasMarkdownExtension(L"md"));
  EXPECT_FALSE(HasMarkdownExtension(L""));
  EXPECT_FALSE(HasMarkdownExtension(L"C:\\notes.markdown"));
}

TEST(ExportFormats, ProposedNames) {
  EXPECT_EQ(ProposedExportName(L"", L".html"), L"");
  EXPECT_EQ(ProposedExportName(L"C:\\work\\a.b.txt", L".rtf"), L"a.b.rtf");
  EXPECT_EQ(ProposedExportName(L"C:\\work\\Makefile", L".txt"), L"Makefile.txt");
  EXPECT_EQ(ProposedExportName(L"C:\\work.d\\notes", L".html"), L"notes.html");
}

TEST(ExportFormats, FilterIsOneJoinedEntry) {
  EXPECT_EQ(ExportFilter(kExportFormats[1]), std::wstring(L"HTML FilesAll Files\0\0", 21));
}

TEST(ExportFormats, PdfLimits) {
  EXPECT_EQ(DecideExport(0, false, 10000).route, ExportRoute::kPdf);
  ExportDecision code = DecideExport(0, false, 10001);
  EXPECT_EQ(code.route, ExportRoute::kOfferViewer);
  EXPECT_EQ(code.question,
            L"This file has ~10001 lines.\n\nPDF export would be very slow for this size.\n"
            L"Open as plain text in Tavro Viewer instead?");
  EXPECT_EQ(DecideExport(0, true, 10001).route, ExportRoute::kPdf);
  EXPECT_EQ(DecideExport(0, true, 30000).route, ExportRoute::kPdf);
  EXPECT_EQ(DecideExport(0, true, 30001).question,
            L"This Markdown file has ~30001 lines.\n\nRendered MD PDF would be too slow for this size.\n"
            L"Open as plain text in Tavro Viewer instead?");
}

TEST(ExportFormats, HtmlLimits) {
  EXPECT_EQ(DecideExport(1, false, 20000).route, ExportRoute::kStyledHtml);
  EXPECT_EQ(DecideExport(1, false, 20001).question,
            L"This file has ~20001 lines.\n\nHTML export would be slow for this size.\n"
            L"Open as plain text in Tavro Viewer instead?");
  EXPECT_EQ(DecideExport(1, true, 30000).route, ExportRoute::kMarkdownHtml);
  ExportDecision markdown = DecideExport(1, true, 30001);
  EXPECT_EQ(markdown.route, ExportRoute::kOfferViewer);
  EXPECT_EQ(markdown.question,
            L"This Markdown file has ~30001 lines.\n\nRendered MD HTML would be very slow for this size.\n"
            L"Open as plain text in Tavro Viewer instead?");
}

TEST(ExportFormats, RtfAndTextAndUnknown) {
  EXPECT_EQ(DecideExport(2, true, 90000).route, ExportRoute::kRtf);
  EXPECT_EQ(DecideExport(3, false, 90000000).route, ExportRoute::kPlainText);
  EXPECT_EQ(DecideExport(7, false, 1).route, ExportRoute::kNone);
  EXPECT_EQ(RtfViewerQuestion(50000), L"");
  EXPECT_EQ(RtfViewerQuestion(50001),
            L"This file has ~50001 lines.\n\nRTF export would be very slow for this size.\n"
            L"Open as plain text in Tavro Viewer instead?");
}

TEST(ExportFormats, StyledHtmlSizeQuestions) {
  EXPECT_EQ(StyledHtmlSizeQuestion(1000000, 5), L"");
  EXPECT_EQ(StyledHtmlSizeQuestion(1000001, 5), L"This file has ~5 lines. Export may take a while.\n\nContinue?");
  EXPECT_EQ(StyledHtmlSizeQuestion(10000000, 5), L"This file has ~5 lines. Export may take a while.\n\nContinue?");
  EXPECT_EQ(StyledHtmlSizeQuestion(12345678, 7),
            L"This file is very large (~12 MB, ~7 lines).\nHTML export may take several minutes.\n\nContinue?");
}
