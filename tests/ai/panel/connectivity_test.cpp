// The connectivity decision from the system's flags, the texts of the two
// refreshes, and the sink's report: the flag and the posted message.
#include "ai/panel/connectivity.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "ai/client/ai_state.h"
#include "base/messages.h"

namespace {

// NLM_CONNECTIVITY values.
constexpr uint32_t kDisconnected = 0;
constexpr uint32_t kIpv4NoTraffic = 0x1;
constexpr uint32_t kIpv6NoTraffic = 0x2;
constexpr uint32_t kIpv4Subnet = 0x10;
constexpr uint32_t kIpv4LocalNetwork = 0x20;
constexpr uint32_t kIpv4Internet = 0x40;
constexpr uint32_t kIpv6Subnet = 0x100;
constexpr uint32_t kIpv6LocalNetwork = 0x200;
constexpr uint32_t kIpv6Internet = 0x400;

TEST(Connectivity, InternetOverEitherProtocolIsOnline) {
  EXPECT_TRUE(IsOnlineConnectivity(kIpv4Internet));
  EXPECT_TRUE(IsOnlineConnectivity(kIpv6Internet));  // IPv6 alone
  EXPECT_TRUE(IsOnlineConnectivity(kIpv4Internet | kIpv6Internet));
  EXPECT_TRUE(IsOnlineConnectivity(kIpv4Internet | kIpv6NoTraffic));
  EXPECT_TRUE(IsOnlineConnectivity(kIpv6Internet | kIpv4LocalNetwork | kIpv4Subnet));
}

TEST(Connectivity, LocalNetworkOrNothingIsOffline) {
  EXPECT_FALSE(IsOnlineConnectivity(kDisconnected));
  EXPECT_FALSE(IsOnlineConnectivity(kIpv4LocalNetwork));
  EXPECT_FALSE(IsOnlineConnectivity(kIpv6LocalNetwork));
  EXPECT_FALSE(IsOnlineConnectivity(kIpv4LocalNetwork | kIpv6LocalNetwork));
  EXPECT_FALSE(IsOnlineConnectivity(kIpv4Subnet | kIpv6Subnet));
  EXPECT_FALSE(IsOnlineConnectivity(kIpv4NoTraffic | kIpv6NoTraffic));
}

TEST(ConnectionTexts, AfterAConnectivityEvent) {
  ConnectionTexts texts = ConnectionLabelTexts(true, true);
  EXPECT_EQ(texts.status, L"Connected");
  EXPECT_EQ(texts.label, L"Connected");
  texts = ConnectionLabelTexts(true, false);
  EXPECT_EQ(texts.status, L"Offline - no internet connection");
  EXPECT_EQ(texts.label, L"Offline");
  for (bool online : {true, false}) {
    texts = ConnectionLabelTexts(false, online);
    EXPECT_EQ(texts.status, L"Not connected - enter API key in AI Settings");
    EXPECT_EQ(texts.label, L"Not connected");
  }
}

TEST(ConnectionTexts, AfterTheStatusRefreshInItsOwnWords) {
  ConnectionTexts texts = StatusRefreshTexts(true, true);
  EXPECT_EQ(texts.status, L"Connected");
  EXPECT_EQ(texts.label, L"Connected");
  texts = StatusRefreshTexts(true, false);
  EXPECT_EQ(texts.status, L"Offline");
  EXPECT_EQ(texts.label, L"Offline");
  for (bool online : {true, false}) {
    texts = StatusRefreshTexts(false, online);
    EXPECT_EQ(texts.status, L"Not connected - open AI Settings");
    EXPECT_EQ(texts.label, L"Not connected");
  }
}

TEST(ConnectivitySink, ReportSetsTheFlagAndPostsTheState) {
  HWND window = CreateWindowExW(0, L"Message", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  const bool saved = g_isOnline.load();
  for (uint32_t flags : {kIpv6Internet, kIpv4LocalNetwork, kIpv4Internet | kIpv4LocalNetwork}) {
    ReportConnectivity(window, flags);
    EXPECT_EQ(g_isOnline.load(), IsOnlineConnectivity(flags));
    MSG msg = {};
    ASSERT_TRUE(PeekMessageW(&msg, window, WM_AI_CONNECTIVITY_CHANGED, WM_AI_CONNECTIVITY_CHANGED, PM_REMOVE));
    EXPECT_EQ(msg.wParam, IsOnlineConnectivity(flags) ? 1u : 0u);
  }
  g_isOnline.exchange(saved);
  DestroyWindow(window);
}

}  // namespace
