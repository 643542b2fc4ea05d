#include "tests/common/test_folder.h"

#include <windows.h>

#include <shellapi.h>

#include <gtest/gtest.h>

namespace {

std::wstring g_runFolder;
std::wstring g_testFolder;

std::wstring Widen(const char* text) {
  std::wstring out;
  for (; *text; ++text) out += static_cast<wchar_t>(static_cast<unsigned char>(*text));
  return out;
}

void RemoveTree(const std::wstring& folder) {
  std::wstring from = folder;
  if (!from.empty() && from.back() == L'\\') from.pop_back();
  from.push_back(L'\0');  // SHFileOperation wants a double-terminated list
  SHFILEOPSTRUCTW op = {};
  op.wFunc = FO_DELETE;
  op.pFrom = from.c_str();
  op.fFlags = FOF_NO_UI;
  SHFileOperationW(&op);
}

class FolderPerTest : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& info) override {
    g_testFolder = g_runFolder + Widen(info.test_suite_name()) + L"." + Widen(info.name()) + L"\\";
    for (wchar_t& c : g_testFolder)
      if (c == L'/') c = L'_';
    RemoveTree(g_testFolder);
    CreateDirectoryW(g_testFolder.c_str(), nullptr);
  }
  void OnTestEnd(const testing::TestInfo& info) override {
    if (info.result()->Passed()) RemoveTree(g_testFolder);
  }
  void OnTestProgramEnd(const testing::UnitTest& unit) override {
    if (unit.Passed()) RemoveTree(g_runFolder);
  }
};

}  // namespace

void InstallFolderPerTest(const wchar_t* programName) {
  wchar_t temp[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, temp);
  std::wstring base = std::wstring(temp) + L"tavro-unit\\";
  CreateDirectoryW(base.c_str(), nullptr);
  g_runFolder = base + programName + L"-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                std::to_wstring(GetTickCount64()) + L"\\";
  CreateDirectoryW(g_runFolder.c_str(), nullptr);
  testing::UnitTest::GetInstance()->listeners().Append(new FolderPerTest);
}

const std::wstring& TestFolder() { return g_testFolder; }

std::wstring TestPath(const std::wstring& name) { return g_testFolder + name; }

std::wstring ProgramFolder() {
  wchar_t value[MAX_PATH] = {};
  DWORD length = GetEnvironmentVariableW(L"TAVRO_BIN", value, MAX_PATH);
  std::wstring folder(value, length < MAX_PATH ? length : 0);
  for (wchar_t& c : folder)
    if (c == L'/') c = L'\\';
  if (!folder.empty() && folder.back() != L'\\') folder += L'\\';
  return folder;
}

std::string ReadFileBytes(const std::wstring& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return "<missing>";
  std::string bytes(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  CloseHandle(file);
  bytes.resize(read);
  return bytes;
}

bool WriteFileBytes(const std::wstring& path, const std::string& bytes) {
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  BOOL ok = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
  return ok && written == bytes.size();
}
