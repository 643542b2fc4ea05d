// How long one AddMessage takes with a full history window, where every add
// rewrites the whole chat file and the index twice, against the baseline of
// writing that chat file's bytes once with a plain stream.
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "ai/chat/chat_store.h"
#include "settings/settings.h"

namespace {

double Milliseconds(std::chrono::steady_clock::duration d) {
  return std::chrono::duration<double, std::milli>(d).count();
}

void Clear(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\*.json").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    std::wstring path = folder + L"\\" + found.cFileName;
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path.c_str());
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

}  // namespace

int wmain() {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring folder = std::wstring(temp) + L"tavro_chat_bench";
  CreateDirectoryW(folder.c_str(), nullptr);
  Clear(folder);

  g_settings.historyLimit = 50;  // the largest window the settings offer
  ChatHistoryManager store;
  store.folder = folder;
  LoadAll(store);
  const std::wstring text(400, L'x');  // a longish message
  for (int i = 0; i < 100; ++i) AddMessage(store, i % 2 == 0, text);  // fill the window

  const int rounds = 200;
  auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < rounds; ++i) AddMessage(store, i % 2 == 0, text);
  const double addMs = Milliseconds(std::chrono::steady_clock::now() - start) / rounds;

  const std::string bytes = FormatChatJson(CurrentChat(store)->messages);
  const std::wstring plain = folder + L"\\baseline.bin";
  start = std::chrono::steady_clock::now();
  for (int i = 0; i < rounds; ++i) {
    FILE* file = _wfopen(plain.c_str(), L"wb");
    fwrite(bytes.data(), 1, bytes.size(), file);
    fclose(file);
  }
  const double baselineMs = Milliseconds(std::chrono::steady_clock::now() - start) / rounds;
  DeleteFileW(plain.c_str());

  std::printf("chat store, window of 100 messages, %zu-byte chat file\n", bytes.size());
  std::printf("  AddMessage:               %.3f ms\n", addMs);
  std::printf("  baseline, one plain write: %.3f ms\n", baselineMs);
  std::printf("  ratio: %.1fx\n", baselineMs > 0 ? addMs / baselineMs : 0.0);
  Clear(folder);
  RemoveDirectoryW(folder.c_str());
  return 0;
}
