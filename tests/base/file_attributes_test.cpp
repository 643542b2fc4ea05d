#include "base/file_attributes.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "tests/common/test_folder.h"

namespace {

DWORD Attributes(const std::wstring& path) { return GetFileAttributesW(path.c_str()); }

TEST(ReadOnlyAttribute, SetKeepsTheOtherAttributes) {
  const std::wstring path = TestPath(L"hidden.txt");
  ASSERT_TRUE(WriteFileBytes(path, "x"));
  ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN));
  SetReadOnlyAttribute(path);
  EXPECT_EQ(Attributes(path) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY),
            static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY));
  ClearReadOnlyAttribute(path);
  EXPECT_EQ(Attributes(path) & FILE_ATTRIBUTE_READONLY, 0u);
  EXPECT_NE(Attributes(path) & FILE_ATTRIBUTE_HIDDEN, 0u);
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(ReadOnlyAttribute, ClearLeavesAWritableFile) {
  const std::wstring path = TestPath(L"plain.txt");
  ASSERT_TRUE(WriteFileBytes(path, "x"));
  SetReadOnlyAttribute(path);
  EXPECT_NE(Attributes(path) & FILE_ATTRIBUTE_READONLY, 0u);
  EXPECT_EQ(Attributes(path) & FILE_ATTRIBUTE_NORMAL, 0u);  // NORMAL is only valid alone
  ClearReadOnlyAttribute(path);
  EXPECT_EQ(Attributes(path) & FILE_ATTRIBUTE_READONLY, 0u);
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(file, INVALID_HANDLE_VALUE);
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
}

TEST(ReadOnlyAttribute, MissingPathsAndFoldersAreLeftAlone) {
  const std::wstring missing = TestPath(L"missing.txt");
  SetReadOnlyAttribute(missing);
  ClearReadOnlyAttribute(missing);
  EXPECT_EQ(Attributes(missing), INVALID_FILE_ATTRIBUTES);
  const std::wstring folder = TestPath(L"folder");
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  SetReadOnlyAttribute(folder);
  EXPECT_EQ(Attributes(folder) & FILE_ATTRIBUTE_READONLY, 0u);
}

}  // namespace
