// Threads that can hold the regex engine. libstdc++'s matcher recurses once
// per character it consumes, at about 400 bytes a character: measured on
// this toolchain under Wine, ".*" over one 1 MB line needs more than 256 MB
// of stack, and 1 GB holds a 2 MB line but not a 3 MB one. The stack is
// reserved, not committed: it costs address space until a search goes deep,
// and the memory a deep search took goes with its thread. A search that goes
// deeper still is stopped at the stack's end and reported as overflowed
// instead of ending the process.
#pragma once

#include <windows.h>

#include <functional>

constexpr SIZE_T kRegexStackReserve = SIZE_T(1) << 30;  // 1 GB

// Starts a thread with the large stack running body; null on failure.
// If body runs out of stack the thread runs onOverflow (when given) near
// the top of its stack and ends with exit code kRegexStackOverflowed; what
// body had allocated stays allocated, and body must hold no lock while it
// runs the engine.
constexpr DWORD kRegexStackOverflowed = 0xE57AC0FF;
HANDLE StartRegexThread(std::function<void()> body, std::function<void()> onOverflow = nullptr);

// Runs body on such a thread and waits for it. False if the thread
// couldn't start or ran out of stack.
bool RunOnRegexStack(const std::function<void()>& body);
