// The shipped folder: Tavro.exe with its icon, version and manifest, and the
// two editor DLLs beside it, self-contained.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

#include "tavro_version.h"
#include "tests/common/test_folder.h"

namespace {

#pragma pack(push, 2)
struct IconGroupEntry {
  BYTE width, height, colours, reserved;
  WORD planes, bitCount;
  DWORD bytes;
  WORD id;
};
struct IconGroupHeader {
  WORD reserved, type, count;
  IconGroupEntry entries[1];
};
#pragma pack(pop)

std::wstring ExePath() { return ProgramFolder() + L"Tavro.exe"; }

class ExeResources : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(ProgramFolder().empty()) << "TAVRO_BIN is not set";
    module_ = LoadLibraryExW(ExePath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
    ASSERT_NE(module_, nullptr) << "cannot load " << testing::PrintToString(ExePath());
  }
  void TearDown() override {
    if (module_) FreeLibrary(module_);
  }
  std::string Resource(LPCWSTR name, LPCWSTR type) {
    HRSRC found = FindResourceW(module_, name, type);
    if (!found) return {};
    HGLOBAL data = LoadResource(module_, found);
    return std::string(static_cast<const char*>(LockResource(data)), SizeofResource(module_, found));
  }
  HMODULE module_ = nullptr;
};

TEST_F(ExeResources, IconGroup101HasTheSizesWindowsAsksFor) {
  std::string group = Resource(MAKEINTRESOURCEW(101), RT_GROUP_ICON);
  ASSERT_GE(group.size(), sizeof(IconGroupHeader));
  auto* header = reinterpret_cast<const IconGroupHeader*>(group.data());
  EXPECT_EQ(header->type, 1);
  std::set<int> sizes;
  for (int i = 0; i < header->count; ++i) {
    const IconGroupEntry& entry = header->entries[i];
    EXPECT_EQ(entry.bitCount, 32);
    sizes.insert(entry.width == 0 ? 256 : entry.width);
  }
  for (int size : {16, 24, 32, 48, 256}) EXPECT_TRUE(sizes.count(size)) << "no " << size << " px icon";
}

// The version is set once, in CMake; the resource script and the code both
// read it from the generated header.
TEST(Version, IsFourNumbersMatchingTheText) {
  std::wstring text;
  for (int i = 0; i < 4; ++i) text += (i ? L"." : L"") + std::to_wstring(kTavroVersionParts[i]);
  EXPECT_EQ(text, kTavroVersion);
}

TEST_F(ExeResources, VersionIsTheProgramsVersion) {
  DWORD ignored = 0;
  DWORD size = GetFileVersionInfoSizeW(ExePath().c_str(), &ignored);
  ASSERT_GT(size, 0u);
  std::string block(size, '\0');
  ASSERT_TRUE(GetFileVersionInfoW(ExePath().c_str(), 0, size, block.data()));
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
  EXPECT_EQ(fixed->dwFileVersionMS, MAKELONG(kTavroVersionParts[1], kTavroVersionParts[0]));
  EXPECT_EQ(fixed->dwFileVersionLS, MAKELONG(kTavroVersionParts[3], kTavroVersionParts[2]));
  EXPECT_EQ(fixed->dwProductVersionMS, fixed->dwFileVersionMS);
  EXPECT_EQ(fixed->dwProductVersionLS, fixed->dwFileVersionLS);
  wchar_t* text = nullptr;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\StringFileInfo\\040904B0\\FileVersion", reinterpret_cast<void**>(&text),
                             &length));
  EXPECT_STREQ(text, kTavroVersion);
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\StringFileInfo\\040904B0\\ProductVersion",
                             reinterpret_cast<void**>(&text), &length));
  EXPECT_STREQ(text, kTavroVersion);
}

TEST_F(ExeResources, ManifestCarriesTheProgramsVersion) {
  std::string manifest = Resource(MAKEINTRESOURCEW(1), RT_MANIFEST);
  std::wstring version(kTavroVersion);
  std::string expected = "name=\"Tavro.Editor\" version=\"" + std::string(version.begin(), version.end()) + "\"";
  EXPECT_NE(manifest.find(expected), std::string::npos) << manifest;
}

TEST_F(ExeResources, ManifestAsksForCommonControls6) {
  std::string manifest = Resource(MAKEINTRESOURCEW(1), RT_MANIFEST);
  EXPECT_NE(manifest.find("name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\""), std::string::npos)
      << manifest;
}

TEST(ShippedFolder, ExeNeedsNoMinGwRuntimeDlls) {
  FILE* file = _wfopen(ExePath().c_str(), L"rb");
  ASSERT_NE(file, nullptr);
  std::string bytes;
  char chunk[65536];
  for (size_t got; (got = fread(chunk, 1, sizeof(chunk), file)) > 0;) bytes.append(chunk, got);
  fclose(file);
  ASSERT_GT(bytes.size(), 4096u);
  EXPECT_EQ(bytes.compare(0, 2, "MZ"), 0);
  for (const char* dll : {"libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"})
    EXPECT_EQ(bytes.find(dll), std::string::npos) << dll;
}

TEST(ShippedFolder, LexillaBesideTheExeCreatesLexers) {
  HMODULE lexilla = LoadLibraryW((ProgramFolder() + L"lexilla.dll").c_str());
  ASSERT_NE(lexilla, nullptr);
  using CreateLexerFn = void*(__stdcall*)(const char*);
  auto createLexer = reinterpret_cast<CreateLexerFn>(reinterpret_cast<void*>(GetProcAddress(lexilla, "CreateLexer")));
  ASSERT_NE(createLexer, nullptr);
  for (const char* name : {"python", "cpp", "hypertext", "xml", "sql", "batch", "lua", "css", "markdown", "json"})
    EXPECT_NE(createLexer(name), nullptr) << name;
  FreeLibrary(lexilla);
}

TEST(ShippedFolder, ScintillaBesideTheExeRegistersItsClass) {
  HMODULE scintilla = LoadLibraryW((ProgramFolder() + L"Scintilla.dll").c_str());
  ASSERT_NE(scintilla, nullptr);
  WNDCLASSW wc = {};
  EXPECT_TRUE(GetClassInfoW(scintilla, L"Scintilla", &wc));
  FreeLibrary(scintilla);
}

}  // namespace
