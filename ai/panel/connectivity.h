// The connectivity watch: whether the machine is online, from the system's
// network events (no polling, no thread), shown in the panel's labels.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// The mask of NLM_CONNECTIVITY_IPV4_INTERNET and NLM_CONNECTIVITY_IPV6_INTERNET.
constexpr uint32_t kInternetConnectivityMask = 0x440;

// Online when either internet flag is set: a local network alone is offline,
// internet over IPv6 alone is online.
bool IsOnlineConnectivity(uint32_t flags);

// The two texts of a refresh: the status line and the connection label.
struct ConnectionTexts {
  std::wstring status;
  std::wstring label;
};
// After a connectivity event (WM_APP + 214).
ConnectionTexts ConnectionLabelTexts(bool hasKey, bool online);
// After the panel comes up or the AI Settings dialog saves (WM_APP + 205):
// worded differently on purpose.
ConnectionTexts StatusRefreshTexts(bool hasKey, bool online);

// Once, right after the main window exists: the starting state and the
// event sink, which posts WM_AI_CONNECTIVITY_CHANGED to window. Every
// failure is silent and leaves the machine counted offline.
void StartConnectivityWatch(HWND window);
// After the message loop: the sink unregistered and everything released.
void StopConnectivityWatch();

// The sink's handler, as the platform calls it: for tests and for the
// platform's own event.
void ReportConnectivity(HWND window, uint32_t flags);
