// Shared entry of the unit-test executables.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

void InstallFolderPerTest(const wchar_t* programName);

int wmain(int argc, wchar_t** argv) {
  testing::InitGoogleTest(&argc, argv);
  std::wstring program = argc > 0 ? argv[0] : L"tests";
  size_t slash = program.find_last_of(L"\\/");
  if (slash != std::wstring::npos) program = program.substr(slash + 1);
  if (program.size() > 4 && program.compare(program.size() - 4, 4, L".exe") == 0) program.resize(program.size() - 4);
  InstallFolderPerTest(program.c_str());
  return RUN_ALL_TESTS();
}
