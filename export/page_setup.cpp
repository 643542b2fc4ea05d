#include "export/page_setup.h"

#include <commdlg.h>

#include <string>

#include "settings/settings.h"

bool ShowPageSetup(HWND owner) {
  PAGESETUPDLGW dialog = {};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = owner;
  dialog.Flags = PSD_MARGINS | PSD_INHUNDREDTHSOFMILLIMETERS;
  dialog.rtMargin = {g_settings.marginLeft, g_settings.marginTop, g_settings.marginRight, g_settings.marginBottom};
  dialog.ptPaperSize = {g_settings.paperWidth, g_settings.paperHeight};
  const bool confirmed = PageSetupDlgW(&dialog) != FALSE;
  if (dialog.hDevMode) GlobalFree(dialog.hDevMode);
  if (dialog.hDevNames) GlobalFree(dialog.hDevNames);
  if (!confirmed) {
    // A dialog that couldn't open (no printer at all) ends here too.
    const DWORD error = CommDlgExtendedError();
    OutputDebugStringW(error ? (L"[ShowPageSetup] Dialog failed, error " + std::to_wstring(error) + L"\n").c_str()
                             : L"[ShowPageSetup] Cancelled\n");
    return false;
  }
  g_settings.marginLeft = dialog.rtMargin.left;
  g_settings.marginTop = dialog.rtMargin.top;
  g_settings.marginRight = dialog.rtMargin.right;
  g_settings.marginBottom = dialog.rtMargin.bottom;
  g_settings.paperWidth = dialog.ptPaperSize.x;
  g_settings.paperHeight = dialog.ptPaperSize.y;
  SaveSettings(g_settings);
  OutputDebugStringW(L"[ShowPageSetup] Margins and paper size saved\n");
  return true;
}
