// The typing animator: an answer arrives in one piece and is typed into the
// transcript by a thread of its own, in batches, with a countdown in the
// status line, following the end of the text unless the reader scrolled away.
// One process-wide animator, one thread per reply.
#pragma once

#include <windows.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>

constexpr int kAnimatorBatchUnits = 24;        // a batch is flushed at this many units
constexpr int kAnimatorBatchMs = 16;           // or once this long has passed since the last flush
constexpr int kAnimatorWaitMs = 4;             // one wait for text
constexpr int kAnimatorStatusMs = 100;         // the countdown at most this often
constexpr int kAnimatorStatusEvery = 20;       // or on each multiple of this many typed units
constexpr DWORD kAnimatorStopWaitMs = 2000;    // a stop waits this long for the thread
constexpr int kAnimatorDefaultDelayMs = 12;    // until the panel loads typingDelayMs
constexpr size_t kAnimatorBatchCapacity = 256;

// What the thread does to the world, replaceable in tests. The defaults
// write to the transcript, post the countdown and the end to the main
// window, sleep and read the performance counter.
struct AnimatorHooks {
  std::function<void(const std::wstring& text)> write;   // a flush of text into the transcript
  std::function<void(int remaining)> countdown;          // "AI is typing... (%d chars left)"
  std::function<void()> ready;                           // the status line reads "Ready"
  std::function<void(DWORD ms)> sleep;
  std::function<int64_t()> nowMicroseconds;
};

struct TypingAnimator {
  HWND target = nullptr;  // the transcript control; set when the panel is built
  HANDLE thread = nullptr;
  std::atomic<uint8_t> stop{0};
  std::atomic<uint8_t> running{0};
  std::atomic<uint8_t> finish{0};
  std::atomic<uint8_t> stopped{0};
  std::atomic<uint8_t> enabled{1};  // mirror of typingAnimation
  std::atomic<uint8_t> followEnd{1};
  HANDLE wake = nullptr;  // auto-reset event
  std::deque<wchar_t> queue;
  std::mutex queueLock;
  std::condition_variable queueSignal;
  std::mutex targetLock;  // writes to target, and the scroll check beside them
  std::atomic<int32_t> delayMs{kAnimatorDefaultDelayMs};
  int32_t lastFirstLine = 0;
  std::atomic<int32_t> totalChars{0};
  std::atomic<int32_t> typedChars{0};
  void (*onFinished)(bool stopped) = nullptr;  // reports the end; the panel sets it
  AnimatorHooks hooks;
};

// The process's animator, made on first use.
TypingAnimator& GetTypingAnimator();

// Stops what runs, empties the queue, clears the flags and counters, and
// starts a thread for the next reply.
void AnimatorStart(TypingAnimator& animator);
// Adds every unit of text to the queue; dropped while a stop is under way.
void AnimatorEnqueue(TypingAnimator& animator, const std::wstring& text);
// No more text comes: the thread ends once the queue is empty.
void AnimatorFinish(TypingAnimator& animator);
// Ends the thread at once (waiting at most 2000 ms) and drops the queue.
void AnimatorStop(TypingAnimator& animator);
// typingAnimation changed: off flushes what waits in one piece.
void AnimatorSetEnabled(TypingAnimator& animator, bool enabled);
// typingDelayMs, clamped to 0..100.
void AnimatorSetDelay(TypingAnimator& animator, int delayMs);

// Whether a transcript shows its last line: first visible line plus lines on
// screen reach the visible line of the last document line.
bool TranscriptViewAtEnd(HWND transcript);

// The transcript's side of following: after the reader moved the view, tried
// without waiting so the main thread never stalls behind a flush.
void AnimatorNoteViewMoved(TypingAnimator& animator);
