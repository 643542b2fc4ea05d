#include "ai/panel/connectivity.h"

#include <objbase.h>

#include <netlistmgr.h>
#include <ocidl.h>

#include <atomic>

#include "ai/client/ai_state.h"
#include "base/messages.h"

namespace {

// The one COM event sink of the program.
class NetListManagerSink final : public INetworkListManagerEvents {
 public:
  explicit NetListManagerSink(HWND window) : window_(window) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (!object) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_INetworkListManagerEvents)) {
      AddRef();
      *object = static_cast<INetworkListManagerEvents*>(this);
      return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++refCount_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG count = --refCount_;
    if (count == 0) delete this;
    return count;
  }
  HRESULT STDMETHODCALLTYPE ConnectivityChanged(NLM_CONNECTIVITY flags) override {
    ReportConnectivity(window_, static_cast<uint32_t>(flags));
    return S_OK;
  }

 private:
  HWND window_;
  std::atomic<ULONG> refCount_{1};
};

// The watch's process-wide handles.
INetworkListManager* g_netListManager = nullptr;
IConnectionPointContainer* g_netConnectionPointContainer = nullptr;
IConnectionPoint* g_netConnectionPoint = nullptr;
NetListManagerSink* g_netSink = nullptr;
DWORD g_netAdviseCookie = 0;

template <typename T>
void ReleaseAndClear(T*& object) {
  if (object) object->Release();
  object = nullptr;
}

}  // namespace

bool IsOnlineConnectivity(uint32_t flags) { return (flags & kInternetConnectivityMask) != 0; }

ConnectionTexts ConnectionLabelTexts(bool hasKey, bool online) {
  if (!hasKey) return {L"Not connected - enter API key in AI Settings", L"Not connected"};
  if (online) return {L"Connected", L"Connected"};
  return {L"Offline - no internet connection", L"Offline"};
}

ConnectionTexts StatusRefreshTexts(bool hasKey, bool online) {
  if (!hasKey) return {L"Not connected - open AI Settings", L"Not connected"};
  return online ? ConnectionTexts{L"Connected", L"Connected"} : ConnectionTexts{L"Offline", L"Offline"};
}

void ReportConnectivity(HWND window, uint32_t flags) {
  const bool online = IsOnlineConnectivity(flags);
  g_isOnline.exchange(online);
  if (window) PostMessageW(window, WM_AI_CONNECTIVITY_CHANGED, online ? 1 : 0, 0);
}

void StartConnectivityWatch(HWND window) {
  if (FAILED(CoCreateInstance(CLSID_NetworkListManager, nullptr, CLSCTX_ALL, IID_INetworkListManager,
                              reinterpret_cast<void**>(&g_netListManager)))) {
    g_netListManager = nullptr;
    return;
  }
  NLM_CONNECTIVITY connectivity = NLM_CONNECTIVITY_DISCONNECTED;
  if (SUCCEEDED(g_netListManager->GetConnectivity(&connectivity)))
    g_isOnline.exchange(IsOnlineConnectivity(static_cast<uint32_t>(connectivity)));
  if (FAILED(g_netListManager->QueryInterface(IID_IConnectionPointContainer,
                                              reinterpret_cast<void**>(&g_netConnectionPointContainer)))) {
    g_netConnectionPointContainer = nullptr;
    return;
  }
  if (FAILED(g_netConnectionPointContainer->FindConnectionPoint(IID_INetworkListManagerEvents,
                                                                &g_netConnectionPoint))) {
    g_netConnectionPoint = nullptr;
    return;
  }
  g_netSink = new NetListManagerSink(window);
  if (FAILED(g_netConnectionPoint->Advise(g_netSink, &g_netAdviseCookie))) {
    g_netAdviseCookie = 0;
    ReleaseAndClear(g_netSink);
  }
}

void StopConnectivityWatch() {
  if (g_netConnectionPoint && g_netAdviseCookie) g_netConnectionPoint->Unadvise(g_netAdviseCookie);
  g_netAdviseCookie = 0;
  ReleaseAndClear(g_netConnectionPoint);
  ReleaseAndClear(g_netConnectionPointContainer);
  ReleaseAndClear(g_netListManager);
  ReleaseAndClear(g_netSink);
}
