// The typing animator with its world replaced: writes, countdowns, sleeps and
// the clock are recorded or driven by the test, so each result holds however
// fast or slow the machine is. The clock stands still unless a test moves it,
// so only the 24-unit rule makes a batch, and each test waits for the
// thread's end report before it looks.
#include "ai/panel/typing_animator.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace {

struct Record {
  std::mutex lock;
  std::condition_variable changed;
  std::vector<std::wstring> writes;
  std::vector<int> countdowns;
  std::vector<DWORD> sleeps;
  int readies = 0;
  bool ended = false;
  bool endedStopped = false;
};

Record* g_record = nullptr;

void OnFinished(bool stopped) {
  std::lock_guard<std::mutex> lock(g_record->lock);
  g_record->ended = true;
  g_record->endedStopped = stopped;
  g_record->changed.notify_all();
}

class Animator : public ::testing::Test {
 protected:
  void SetUp() override {
    g_record = &record_;
    animator_.wake = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    animator_.onFinished = OnFinished;
    animator_.delayMs = 0;
    animator_.hooks.write = [this](const std::wstring& text) {
      std::lock_guard<std::mutex> lock(record_.lock);
      record_.writes.push_back(text);
      record_.changed.notify_all();
    };
    animator_.hooks.countdown = [this](int remaining) {
      std::lock_guard<std::mutex> lock(record_.lock);
      record_.countdowns.push_back(remaining);
    };
    animator_.hooks.ready = [this] {
      std::lock_guard<std::mutex> lock(record_.lock);
      ++record_.readies;
    };
    animator_.hooks.sleep = [this](DWORD ms) {
      std::lock_guard<std::mutex> lock(record_.lock);
      record_.sleeps.push_back(ms);
    };
    animator_.hooks.nowMicroseconds = [this] { return clock_.load(); };
  }

  void TearDown() override {
    AnimatorStop(animator_);
    CloseHandle(animator_.wake);
    g_record = nullptr;
  }

  // Waits (with a limit that fails the test) for a condition on the record.
  template <typename Condition>
  bool WaitFor(Condition condition) {
    std::unique_lock<std::mutex> lock(record_.lock);
    return record_.changed.wait_for(lock, std::chrono::seconds(20), [&] { return condition(record_); });
  }

  bool WaitForEnd() {
    return WaitFor([](const Record& r) { return r.ended; });
  }

  std::wstring Written() {
    std::lock_guard<std::mutex> lock(record_.lock);
    std::wstring all;
    for (const auto& text : record_.writes) all += text;
    return all;
  }

  TypingAnimator animator_;
  Record record_;
  std::atomic<int64_t> clock_{0};
};

TEST_F(Animator, BatchesOf24AndTheLastOneWholeOnFinish) {
  const std::wstring reply(50, L'a');
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, reply);
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_FALSE(record_.endedStopped);
  ASSERT_EQ(record_.writes.size(), 4u);
  EXPECT_EQ(record_.writes[0], std::wstring(24, L'a'));
  EXPECT_EQ(record_.writes[1], std::wstring(24, L'a'));
  EXPECT_EQ(record_.writes[2], std::wstring(2, L'a'));  // below 24, out whole at the end
  EXPECT_EQ(record_.writes[3], L"\n\n");                 // a natural end adds a blank line
  EXPECT_EQ(record_.readies, 1);
  EXPECT_EQ(animator_.typedChars.load(), 50);
  EXPECT_EQ(animator_.totalChars.load(), 50);
}

TEST_F(Animator, AShortReplyIsOneBatch) {
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, L"Hi there.");
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  ASSERT_EQ(record_.writes.size(), 2u);
  EXPECT_EQ(record_.writes[0], L"Hi there.");
  EXPECT_EQ(record_.writes[1], L"\n\n");
}

TEST_F(Animator, PiecesArrivingLaterKeepTheirOrder) {
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, L"first piece, ");
  AnimatorEnqueue(animator_, L"second piece, ");
  AnimatorEnqueue(animator_, L"and the third.");
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Written(), L"first piece, second piece, and the third.\n\n");
}

TEST_F(Animator, ADelayOfZeroSleepsNever) {
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(100, L'z'));
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_TRUE(record_.sleeps.empty());
}

TEST_F(Animator, TheDelayFallsAfterEachBatchNotEachCharacter) {
  AnimatorSetDelay(animator_, 7);
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(72, L'z'));
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(record_.sleeps, (std::vector<DWORD>{7, 7, 7}));
}

TEST_F(Animator, APauseLongerThanTheBatchTimeStillLets24UnitsOutAtOnce) {
  // The pause moves the clock on as a real one would.
  animator_.hooks.sleep = [this](DWORD ms) {
    clock_.fetch_add(int64_t{ms} * 1000);
    std::lock_guard<std::mutex> lock(record_.lock);
    record_.sleeps.push_back(ms);
  };
  AnimatorSetDelay(animator_, 25);
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(72, L'z'));
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  ASSERT_EQ(record_.writes.size(), 4u);
  for (size_t i = 0; i < 3; ++i) EXPECT_EQ(record_.writes[i], std::wstring(24, L'z'));
  EXPECT_EQ(record_.writes[3], L"\n\n");
  EXPECT_EQ(record_.sleeps, (std::vector<DWORD>{25, 25, 25}));
}

TEST_F(Animator, DelayIsClampedTo0Through100) {
  AnimatorSetDelay(animator_, -5);
  EXPECT_EQ(animator_.delayMs.load(), 0);
  AnimatorSetDelay(animator_, 250);
  EXPECT_EQ(animator_.delayMs.load(), 100);
  AnimatorSetDelay(animator_, 25);
  EXPECT_EQ(animator_.delayMs.load(), 25);
}

TEST_F(Animator, CountdownOnMultiplesOf20WhileTextRemains) {
  // With the clock standing still, batches are the 24-unit ones, and a
  // countdown comes when the typed count is a multiple of 20: every fifth
  // batch (120, 240, 360, 480), while text remains.
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(20 * 24 + 5, L'c'));
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(record_.countdowns, (std::vector<int>{365, 245, 125, 5}));
}

TEST_F(Animator, NoCountdownWhenNothingRemains) {
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(120, L'c'));  // 120 is the last batch
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_TRUE(record_.countdowns.empty());
}

TEST_F(Animator, CountdownAfter100Milliseconds) {
  // Each pause moves the clock on by 100 ms. The first batch goes out at 0 ms
  // with 24 typed: no countdown; the second at 100 ms: the countdown of the 12
  // left; the last 12 go out whole at the end.
  animator_.hooks.sleep = [this](DWORD) { clock_ += 100000; };
  AnimatorSetDelay(animator_, 1);
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(60, L'c'));
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  ASSERT_EQ(record_.writes.size(), 4u);
  EXPECT_EQ(record_.writes[0].size(), 24u);
  EXPECT_EQ(record_.writes[1].size(), 24u);
  EXPECT_EQ(record_.writes[2].size(), 12u);
  EXPECT_EQ(record_.countdowns, (std::vector<int>{12}));
}

TEST_F(Animator, CountdownOnEachMultipleOf20Typed) {
  // The clock stands still: only the count can call for a countdown, at 120
  // typed (the flushes come at 24, 48, 72, 96, 120 and 144).
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(144, L'c'));
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(record_.countdowns, (std::vector<int>{24}));
}

TEST_F(Animator, AShortBatchGoesOutOnce16MillisecondsHavePassed) {
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, L"short");
  // All five units are in the batch, and with the clock still nothing is due.
  for (int i = 0; i < 20000 && animator_.typedChars.load() < 5; ++i) Sleep(1);
  ASSERT_EQ(animator_.typedChars.load(), 5);
  clock_ += 16000;
  animator_.queueSignal.notify_all();
  ASSERT_TRUE(WaitFor([](const Record& r) { return !r.writes.empty(); }));
  EXPECT_EQ(record_.writes[0], L"short");
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Written(), L"short\n\n");
}

TEST_F(Animator, StopKeepsTheTypedPartAddsNoLineFeedsAndReportsStopped) {
  // The first pause holds the thread until the stop comes.
  AnimatorSetDelay(animator_, 1);
  animator_.hooks.sleep = [this](DWORD) {
    while (!animator_.stop.load()) Sleep(1);
  };
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(24, L'x') + std::wstring(30, L'y'));
  ASSERT_TRUE(WaitFor([](const Record& r) { return !r.writes.empty(); }));
  AnimatorStop(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_TRUE(record_.endedStopped);
  EXPECT_EQ(Written(), std::wstring(24, L'x'));
  EXPECT_EQ(record_.readies, 0);
  EXPECT_EQ(animator_.thread, nullptr);
  EXPECT_TRUE(animator_.queue.empty());
  // Text after the stop is dropped.
  AnimatorEnqueue(animator_, L"late");
  EXPECT_TRUE(animator_.queue.empty());
}

TEST_F(Animator, TurnedOffMidReplyTheRestComesAtOnce) {
  // The first pause turns typingAnimation off, as the settings would.
  AnimatorSetDelay(animator_, 1);
  animator_.hooks.sleep = [this](DWORD) { AnimatorSetEnabled(animator_, false); };
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(24, L'x') + std::wstring(300, L'y'));
  ASSERT_TRUE(WaitFor([](const Record& r) { return r.writes.size() >= 2; }));
  {
    std::lock_guard<std::mutex> lock(record_.lock);
    EXPECT_EQ(record_.writes[0], std::wstring(24, L'x'));
    EXPECT_EQ(record_.writes[1], std::wstring(300, L'y'));  // one piece
    EXPECT_FALSE(record_.ended);  // the thread waits for finish
  }
  AnimatorEnqueue(animator_, L" more");  // also at once while off
  ASSERT_TRUE(WaitFor([](const Record& r) { return r.writes.size() >= 3; }));
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Written(), std::wstring(24, L'x') + std::wstring(300, L'y') + L" more\n\n");
  EXPECT_FALSE(record_.endedStopped);
}

TEST_F(Animator, StartStopsTheLastReplyAndEmptiesTheQueue) {
  AnimatorSetDelay(animator_, 1);
  animator_.hooks.sleep = [this](DWORD) {
    while (!animator_.stop.load()) Sleep(1);
  };
  AnimatorStart(animator_);
  AnimatorEnqueue(animator_, std::wstring(60, L'o'));
  ASSERT_TRUE(WaitFor([](const Record& r) { return !r.writes.empty(); }));
  animator_.hooks.sleep = nullptr;
  AnimatorSetDelay(animator_, 0);
  AnimatorStart(animator_);  // the old reply ends as stopped
  ASSERT_TRUE(WaitForEnd());
  EXPECT_TRUE(record_.endedStopped);
  {
    std::lock_guard<std::mutex> lock(record_.lock);
    record_.ended = false;
    record_.writes.clear();
  }
  EXPECT_EQ(animator_.typedChars.load(), 0);
  EXPECT_EQ(animator_.totalChars.load(), 0);
  AnimatorEnqueue(animator_, L"new");
  AnimatorFinish(animator_);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Written(), L"new\n\n");
}

}  // namespace
