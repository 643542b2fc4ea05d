#include <gtest/gtest.h>

#include "ai/client/ai_state.h"
#include "ai/client/transport.h"

TEST(AiSession, OpensOnceWithTheProgramsAgent) {
  OpenAiSession();
  EXPECT_TRUE(g_aiSessionReady);
  ASSERT_NE(g_aiSession, nullptr);
  // The lock is initialised and usable from here on.
  EnterCriticalSection(&g_aiSessionLock);
  LeaveCriticalSection(&g_aiSessionLock);
  EXPECT_STREQ(kAiUserAgent, L"Tavro Editor/1.0");
}
