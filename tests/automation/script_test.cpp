// The registered component under a scripting host.
#include <windows.h>

#include <utility>

#include "automation/component_host.h"
#include "support/game.h"
#include "tessaro/tessaro.h"

namespace tessaro {
namespace {

/// Registers the component, for the machine where that is allowed, for as long as this lives.
class Registration {
public:
    Registration() { EXPECT_EQ(Call("DllRegisterServer"), S_OK); }
    ~Registration() { EXPECT_EQ(Call("DllUnregisterServer"), S_OK); }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    template <class... Arguments>
    static HRESULT Call(const char* name, Arguments... arguments) {
        const HMODULE module = LoadLibraryA(TESSARO_COMPONENT_FOLDER "/tessaro.dll");
        const auto function = reinterpret_cast<HRESULT(WINAPI*)(Arguments...)>(
            reinterpret_cast<void*>(GetProcAddress(module, name)));
        const HRESULT outcome = function ? function(arguments...) : E_FAIL;
        FreeLibrary(module);
        return outcome;
    }
};

/// Runs a program; its exit code, and its output in `output`.
DWORD RunProgram(std::string commandLine, const std::string& outputPath) {
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    const HANDLE output = CreateFileA(outputPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                      &inherited, CREATE_ALWAYS, 0, nullptr);
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = output;
    PROCESS_INFORMATION process{};
    DWORD code = ~DWORD{0};
    if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &startup, &process)) {
        WaitForSingleObject(process.hProcess, 60'000);
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    CloseHandle(output);
    return code;
}

/// Whether a part of the registry has the key.
bool HasKey(HKEY root, const std::string& key) {
    HKEY opened = nullptr;
    if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS)
        return false;
    RegCloseKey(opened);
    return true;
}

/// These tests end with the component unregistered, which nobody who uses it wants.
#define TESSARO_NEEDS_NO_INSTALLED_COMPONENT()           \
    if (HasKey(HKEY_CLASSES_ROOT, "Tessaro.clsVersion")) \
    GTEST_SKIP() << "the component is installed here"

TEST(Registration, LeavesNothingBehind) {
    TESSARO_NEEDS_NO_INSTALLED_COMPONENT();
    const std::string keys[] = {"Tessaro.clsVersion",
                                "Tessaro.clsVersion.1",
                                "Tessaro.clsPalette",
                                "CLSID\\{9364B5F3-E721-4E1C-84F4-84D115C3B442}",
                                "TypeLib\\{9364B5F3-E721-4E1C-84F4-84D115C3B400}\\1.0",
                                "Interface\\{9364B5F3-E721-4E1C-84F4-84D115C3B434}"};
    {
        const Registration registration;
        for (const std::string& key : keys)
            EXPECT_TRUE(HasKey(HKEY_CLASSES_ROOT, key)) << key;
    }
    for (const std::string& key : keys)
        EXPECT_FALSE(HasKey(HKEY_CLASSES_ROOT, key)) << key;
}

TEST(Registration, IsForOneUserWhereThatIsWanted) {
    TESSARO_NEEDS_NO_INSTALLED_COMPONENT();
    const std::string name = "Software\\Classes\\Tessaro.clsVSwap";
    for (const BOOL install : {TRUE, FALSE}) {
        const LPCWSTR scope = L"user";
        ASSERT_EQ(Registration::Call("DllInstall", install, scope), S_OK);
        EXPECT_EQ(HasKey(HKEY_CURRENT_USER, name), install);
        EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, name));
    }
}

TEST(Registration, LeavesTheNamesToTheOtherArchitecture) {
    TESSARO_NEEDS_NO_INSTALLED_COMPONENT();
    const char* const other = "Software\\Classes\\CLSID\\{9364B5F3-E721-4E1C-84F4-84D115C3B444}";
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, other, 0, nullptr, 0, KEY_WRITE | KEY_WOW64_32KEY,
                              nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
    { const Registration registration; }
    EXPECT_TRUE(HasKey(HKEY_CLASSES_ROOT, "Tessaro.clsVSwap"));
    EXPECT_FALSE(HasKey(HKEY_CLASSES_ROOT, "Tessaro.clsVersion"));
    RegDeleteKeyExA(HKEY_LOCAL_MACHINE, other, KEY_WOW64_32KEY, 0);
    { const Registration registration; }
    EXPECT_FALSE(HasKey(HKEY_CLASSES_ROOT, "Tessaro.clsVSwap"));
}

TEST(Script, EditsTheSampleGame) {
    TESSARO_NEEDS_NO_INSTALLED_COMPONENT();
    const Registration registration;
    const test::TempFolder folder;
    test::FreshStore(folder.Path());
    test::WriteFiles(folder, sample::MakeSampleGame());

    clsVersion game;
    ASSERT_TRUE(game.LoadDataPath(folder.Path()));
    typMapPlane before;
    ByteArray wallBefore, spriteBefore;
    std::int32_t width = 0, height = 0;
    std::string expected;
    {
        clsGameMaps maps;
        clsVSwap pages;
        ASSERT_TRUE(maps.Initialize() && maps.LoadMap(0, before, width, height));
        ASSERT_TRUE(pages.Initialize() && pages.LoadWall(0, wallBefore) &&
                    pages.LoadSprite(0, spriteBefore));
        for (std::int32_t map = 0; map < maps.NumberOfMaps(); ++map)
            expected += "Map " + std::to_string(map) + ": " + maps.MapName(map).c_str() + "\r\n";
    }
    expected += "Map 0 is " + std::to_string(width) + " x " + std::to_string(height) +
                ", its cell (2, 2) is 5\r\nWall 0 begins with the colours 15 and 15\r\n";
    std::int32_t& cell = before.Plane[0].Grid[static_cast<std::size_t>(2 * width + 2)];
    ASSERT_NE(std::exchange(cell, 5), 5);
    for (std::size_t i = 0; i < 64; ++i) {
        std::uint8_t* pixels = wallBefore.data() + wallBefore.size() - 4096;
        pixels[i] = pixels[63 * 64 + i] = pixels[i * 64] = pixels[i * 64 + 63] = 15;
    }

    char script[MAX_PATH] = "";  // with a drive: what begins with a slash is an option
    GetFullPathNameA(TESSARO_EXAMPLES_FOLDER "/vbscript/edit_game.vbs", MAX_PATH, script, nullptr);
    EXPECT_EQ(
        RunProgram("cscript //nologo \"" + std::string(script) + "\" \"" + folder.Path() + "\"",
                   folder.File("output.txt")),
        0U);
    const ByteArray output = folder.Read("output.txt");
    EXPECT_EQ(std::string(output.begin(), output.end()), expected);

    typMapPlane after;
    ByteArray wall, sprite;
    clsGameMaps maps;
    clsVSwap pages;
    ASSERT_TRUE(maps.Initialize() && maps.LoadMap(0, after, width, height));
    ASSERT_TRUE(pages.Initialize() && pages.LoadWall(0, wall) && pages.LoadSprite(0, sprite));
    for (std::size_t plane = 0; plane < before.Plane.size(); ++plane)
        EXPECT_EQ(after.Plane[plane].Grid, before.Plane[plane].Grid);
    EXPECT_EQ(wall, wallBefore);
    EXPECT_EQ(sprite, spriteBefore);
    EXPECT_TRUE(
        folder.Has("backup"
                   "\\MAPHEAD.LKP.001"));
}

}  // namespace
}  // namespace tessaro
