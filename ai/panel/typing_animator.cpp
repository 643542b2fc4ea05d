#include "ai/panel/typing_animator.h"

#include <cstdio>

#include "Scintilla.h"
#include "ai/panel/ai_panel.h"
#include "base/app_state.h"
#include "base/heap_text.h"
#include "base/messages.h"
#include "base/text_convert.h"

namespace {

int64_t PerformanceMicroseconds() {
  static const int64_t frequency = [] {
    LARGE_INTEGER value;
    QueryPerformanceFrequency(&value);
    return value.QuadPart;
  }();
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return now.QuadPart / frequency * 1000000 + now.QuadPart % frequency * 1000000 / frequency;
}

LRESULT SendTarget(HWND target, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendMessageW(target, message, wParam, lParam);
}

// The transcript's flush, under targetLock.
void WriteTranscript(TypingAnimator& animator, const std::wstring& text) {
  HWND target = animator.target;
  if (!target || !IsWindow(target)) return;
  const bool follow = animator.followEnd.load() && TranscriptViewAtEnd(target);
  const LRESULT firstLine = SendTarget(target, SCI_GETFIRSTVISIBLELINE);
  const LRESULT xOffset = SendTarget(target, SCI_GETXOFFSET);
  const std::string utf8 = WideToUtf8(text);
  if (utf8.empty()) return;
  SendTarget(target, SCI_SETREADONLY, 0);
  SendTarget(target, SCI_APPENDTEXT, utf8.size(), reinterpret_cast<LPARAM>(utf8.data()));
  SendTarget(target, SCI_SETREADONLY, 1);
  if (follow) {
    SendTarget(target, SCI_GOTOPOS, SendTarget(target, SCI_GETLENGTH));
    SendTarget(target, SCI_SCROLLCARET);
  } else {
    SendTarget(target, SCI_SETFIRSTVISIBLELINE, firstLine);
    SendTarget(target, SCI_SETXOFFSET, xOffset);
  }
  animator.lastFirstLine = static_cast<int32_t>(SendTarget(target, SCI_GETFIRSTVISIBLELINE));
}

void Flush(TypingAnimator& animator, const std::wstring& text) {
  if (text.empty()) return;
  std::lock_guard<std::mutex> lock(animator.targetLock);
  if (animator.hooks.write) {
    animator.hooks.write(text);
    return;
  }
  WriteTranscript(animator, text);
}

void Countdown(TypingAnimator& animator, int remaining) {
  if (animator.hooks.countdown) {
    animator.hooks.countdown(remaining);
    return;
  }
  wchar_t text[64];
  swprintf(text, 64, L"AI is typing... (%d chars left)", remaining);
  if (g_hwndMain) PostHeapText(g_hwndMain, WM_AI_STATUS_TEXT, text);
}

void Ready(TypingAnimator& animator) {
  if (animator.hooks.ready) animator.hooks.ready();
  else SetPanelStatus(L"Ready");
}

void Pause(TypingAnimator& animator, DWORD ms) {
  if (animator.hooks.sleep) animator.hooks.sleep(ms);
  else Sleep(ms);
}

int64_t Now(TypingAnimator& animator) {
  return animator.hooks.nowMicroseconds ? animator.hooks.nowMicroseconds() : PerformanceMicroseconds();
}

void Wake(TypingAnimator& animator) {
  if (animator.wake) SetEvent(animator.wake);
  animator.queueSignal.notify_all();
}

// Step 3 of the thread: paced typing while enabled. False when a stop ended it.
void TypePaced(TypingAnimator& animator, std::wstring& batch, int64_t& flushTime, int64_t& statusTime) {
  while (animator.enabled.load() && !animator.stop.load()) {
    {
      std::unique_lock<std::mutex> lock(animator.queueLock);
      animator.queueSignal.wait_for(lock, std::chrono::milliseconds(kAnimatorWaitMs), [&animator] {
        return !animator.queue.empty() || animator.finish.load() || animator.stop.load();
      });
      if (animator.stop.load()) return;
      if (!animator.queue.empty()) {
        batch.push_back(animator.queue.front());
        animator.queue.pop_front();
        animator.typedChars.fetch_add(1);
      }
    }
    const int64_t now = Now(animator);
    const bool due = static_cast<int>(batch.size()) >= kAnimatorBatchUnits ||
                     now - flushTime >= int64_t{kAnimatorBatchMs} * 1000;
    if (due && !batch.empty()) {
      Flush(animator, batch);
      batch.clear();
      flushTime = Now(animator);
      const int typed = animator.typedChars.load();
      const int remaining = animator.totalChars.load() - typed;
      if (remaining > 0 &&
          (flushTime - statusTime >= int64_t{kAnimatorStatusMs} * 1000 || typed % kAnimatorStatusEvery == 0)) {
        statusTime = flushTime;
        if (!animator.stop.load()) Countdown(animator, remaining);
      }
      const int delay = animator.delayMs.load();
      if (delay > 0) {
        Pause(animator, static_cast<DWORD>(delay));
        // The 16 ms of a batch count from the end of the pause: otherwise any
        // pause of 16 ms or more would let each unit out alone, one a pause,
        // where a batch of 24 a pause is the speed (960 a second at 25 ms).
        flushTime = Now(animator);
      }
    }
    if (animator.finish.load()) {
      std::lock_guard<std::mutex> lock(animator.queueLock);
      if (animator.queue.empty()) return;
    }
  }
}

DWORD WINAPI AnimatorThread(LPVOID parameter) {
  TypingAnimator& animator = *static_cast<TypingAnimator*>(parameter);
  animator.running.exchange(1);
  std::wstring batch;
  batch.reserve(kAnimatorBatchCapacity);
  int64_t flushTime = Now(animator);
  int64_t statusTime = flushTime;
  while (!animator.stop.load()) {
    TypePaced(animator, batch, flushTime, statusTime);
    if (animator.stop.load()) break;
    if (animator.enabled.load()) break;  // the paced loop ended on finish with an empty queue
    // Unpaced: what was typed into the batch goes first, then the rest at once.
    Flush(animator, batch);
    batch.clear();
    std::wstring rest;
    {
      std::lock_guard<std::mutex> lock(animator.queueLock);
      rest.assign(animator.queue.begin(), animator.queue.end());
      animator.typedChars.fetch_add(static_cast<int32_t>(animator.queue.size()));
      animator.queue.clear();
    }
    Flush(animator, rest);
    if (animator.finish.load()) {
      std::lock_guard<std::mutex> lock(animator.queueLock);
      if (animator.queue.empty()) break;
      continue;
    }
    if (animator.wake) WaitForSingleObject(animator.wake, 100);
  }
  Flush(animator, batch);
  animator.running.exchange(0);
  const bool stopped = animator.stopped.load() != 0;
  if (!stopped) {
    Ready(animator);
    Flush(animator, L"\n\n");
  }
  if (animator.onFinished) animator.onFinished(stopped);
  return 0;
}

// Waits for the thread while answering what it sends to this thread's
// windows: a flush writes to the transcript with SendMessageW, so a plain
// wait on the main thread would hold the window still for the whole limit,
// and the typed part would land after whatever the stop writes next.
void WaitAnsweringSentMessages(HANDLE thread, DWORD limitMs) {
  const ULONGLONG deadline = GetTickCount64() + limitMs;
  for (;;) {
    const ULONGLONG now = GetTickCount64();
    const DWORD left = now >= deadline ? 0 : static_cast<DWORD>(deadline - now);
    const DWORD result = MsgWaitForMultipleObjects(1, &thread, FALSE, left, QS_SENDMESSAGE);
    if (result != WAIT_OBJECT_0 + 1) return;  // ended, timed out or failed
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);  // answers the sent ones
  }
}

}  // namespace

bool TranscriptViewAtEnd(HWND transcript) {
  const LRESULT first = SendTarget(transcript, SCI_GETFIRSTVISIBLELINE);
  const LRESULT onScreen = SendTarget(transcript, SCI_LINESONSCREEN);
  const LRESULT last = SendTarget(transcript, SCI_VISIBLEFROMDOCLINE, SendTarget(transcript, SCI_GETLINECOUNT) - 1);
  return first + onScreen >= last;
}

TypingAnimator& GetTypingAnimator() {
  static TypingAnimator* animator = [] {
    auto* made = new TypingAnimator();  // lives to the end of the process, as its thread may
    made->wake = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    return made;
  }();
  return *animator;
}

void AnimatorStart(TypingAnimator& animator) {
  AnimatorStop(animator);
  {
    std::lock_guard<std::mutex> lock(animator.queueLock);
    animator.queue.clear();
  }
  animator.stop.exchange(0);
  animator.finish.exchange(0);
  animator.stopped.exchange(0);
  animator.running.exchange(0);
  animator.totalChars.exchange(0);
  animator.typedChars.exchange(0);
  animator.followEnd.exchange(1);
  animator.lastFirstLine = 0;
  if (!animator.thread) animator.thread = CreateThread(nullptr, 0, AnimatorThread, &animator, 0, nullptr);
}

void AnimatorEnqueue(TypingAnimator& animator, const std::wstring& text) {
  if (text.empty()) return;
  {
    std::lock_guard<std::mutex> lock(animator.queueLock);
    if (animator.stop.load()) return;
    animator.queue.insert(animator.queue.end(), text.begin(), text.end());
    animator.totalChars.fetch_add(static_cast<int32_t>(text.size()));
  }
  Wake(animator);
}

void AnimatorFinish(TypingAnimator& animator) {
  animator.finish.exchange(1);
  Wake(animator);
}

void AnimatorStop(TypingAnimator& animator) {
  animator.stop.exchange(1);
  animator.stopped.exchange(1);
  Wake(animator);
  if (animator.thread) {
    // Past the limit the handle is given up; the thread may live on.
    WaitAnsweringSentMessages(animator.thread, kAnimatorStopWaitMs);
    CloseHandle(animator.thread);
    animator.thread = nullptr;
  }
  {
    std::lock_guard<std::mutex> lock(animator.queueLock);
    animator.queue.clear();
  }
  animator.running.exchange(0);
}

void AnimatorSetEnabled(TypingAnimator& animator, bool enabled) {
  animator.enabled.exchange(enabled ? 1 : 0);
  Wake(animator);
}

void AnimatorSetDelay(TypingAnimator& animator, int delayMs) {
  animator.delayMs.exchange(delayMs < 0 ? 0 : delayMs > 100 ? 100 : delayMs);
}

void AnimatorNoteViewMoved(TypingAnimator& animator) {
  std::unique_lock<std::mutex> lock(animator.targetLock, std::try_to_lock);
  if (!lock.owns_lock()) return;
  HWND target = animator.target;
  if (!target || !IsWindow(target)) return;
  const int32_t firstLine = static_cast<int32_t>(SendTarget(target, SCI_GETFIRSTVISIBLELINE));
  if (firstLine >= animator.lastFirstLine) animator.followEnd.exchange(TranscriptViewAtEnd(target) ? 1 : 0);
  else animator.followEnd.exchange(0);
  animator.lastFirstLine = firstLine;
}
