#include "search/regex_stack.h"

#include <cstdint>

namespace {

struct RegexThreadStart {
  std::function<void()> body;
  std::function<void()> onOverflow;
  uintptr_t resume = 0;  // the stack pointer to go on from after an overflow
};

// Per thread: its RegexThreadStart, null on every other thread.
DWORD g_startSlot = TLS_OUT_OF_INDEXES;
INIT_ONCE g_once = INIT_ONCE_STATIC_INIT;

// Room left above the resume point for the overflow's own work.
constexpr uintptr_t kResumeDepth = 256 * 1024;

[[noreturn]] void AbandonOverflowedThread() {
  auto* start = static_cast<RegexThreadStart*>(TlsGetValue(g_startSlot));
  TlsSetValue(g_startSlot, nullptr);
  // start is left behind: its body is, in a sense, still running.
  if (start && start->onOverflow) start->onOverflow();
  ExitThread(kRegexStackOverflowed);
}

LONG CALLBACK OnStackOverflow(EXCEPTION_POINTERS* info) {
  if (info->ExceptionRecord->ExceptionCode != EXCEPTION_STACK_OVERFLOW) return EXCEPTION_CONTINUE_SEARCH;
  auto* start = static_cast<RegexThreadStart*>(TlsGetValue(g_startSlot));
  if (!start || start->resume == 0) return EXCEPTION_CONTINUE_SEARCH;
  // Back near the top of this thread's stack, where the frames of the
  // search are of no more use, and out of the thread from there.
  info->ContextRecord->Rsp = start->resume;
  info->ContextRecord->Rip = reinterpret_cast<DWORD64>(&AbandonOverflowedThread);
  return EXCEPTION_CONTINUE_EXECUTION;
}

BOOL CALLBACK InstallHandler(PINIT_ONCE, PVOID, PVOID*) {
  g_startSlot = TlsAlloc();
  AddVectoredExceptionHandler(1, OnStackOverflow);
  return TRUE;
}

DWORD WINAPI RegexThreadMain(void* parameter) {
  auto* start = static_cast<RegexThreadStart*>(parameter);
  volatile char anchor[64] = {};
  anchor[0] = 1;
  // Aligned as at a function's entry, after the call pushed its return address.
  start->resume = ((reinterpret_cast<uintptr_t>(&anchor[0]) - kResumeDepth) & ~uintptr_t(15)) - 8;
  TlsSetValue(g_startSlot, start);
  start->body();
  TlsSetValue(g_startSlot, nullptr);
  delete start;
  return 0;
}

}  // namespace

HANDLE StartRegexThread(std::function<void()> body, std::function<void()> onOverflow) {
  InitOnceExecuteOnce(&g_once, InstallHandler, nullptr, nullptr);
  auto* start = new RegexThreadStart{std::move(body), std::move(onOverflow), 0};
  HANDLE thread =
      CreateThread(nullptr, kRegexStackReserve, RegexThreadMain, start, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
  if (!thread) delete start;
  return thread;
}

bool RunOnRegexStack(const std::function<void()>& body) {
  HANDLE thread = StartRegexThread(body);
  if (!thread) return false;
  WaitForSingleObject(thread, INFINITE);
  DWORD code = 0;
  GetExitCodeThread(thread, &code);
  CloseHandle(thread);
  return code == 0;
}
