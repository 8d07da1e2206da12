// What the component costs a host: its file, its loading, its objects, and its calls beside the
// same calls of the library itself. Loading and creating stand beside a component of the system's.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/file.h"
#include "sample/sample.h"
#include "tessaro/tessaro.h"
#include "tessaro_com.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr const wchar_t* kOurs = L"Tessaro.clsVersion";
constexpr const wchar_t* kSystems = L"Scripting.Dictionary";

double Microseconds(const std::function<void()>& job) {
    const auto start = Clock::now();
    job();
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double Median(int times, const std::function<double()>& measure) {
    std::vector<double> runs;
    for (int i = 0; i < times; ++i)
        runs.push_back(measure());
    std::nth_element(runs.begin(), runs.begin() + times / 2, runs.end());
    return runs[static_cast<std::size_t>(times / 2)];
}

/// The time of one job among many of the same.
double Usual(const std::function<void()>& job) {
    constexpr int kTogether = 200;
    return Median(31, [&] {
        return Microseconds([&] {
                   for (int i = 0; i < kTogether; ++i)
                       job();
               }) /
               kTogether;
    });
}

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

template <class Interface>
Interface* Create(const wchar_t* progId) {
    CLSID id{};
    void* object = nullptr;
    if (FAILED(CLSIDFromProgID(progId, &id)) ||
        FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), &object)))
        Fail("Creating an object");
    return static_cast<Interface*>(object);
}

void Compare(const char* what, double ours, const char* besides, double theirs) {
    std::printf("%-34s %9.2f us   %-22s %9.2f us   ratio %.2f\n", what, ours, besides, theirs,
                ours / theirs);
}

/// The time of the first creation in a process of its own, which leaves it as its exit code.
double FirstCreation(const wchar_t* progId) {
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring commandLine = L"\"" + std::wstring(program) + L"\" " + progId;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process))
        Fail("Starting a process");
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD microseconds = 0;
    GetExitCodeProcess(process.hProcess, &microseconds);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return microseconds;
}

void MeasureCreation() {
    const auto first = [](const wchar_t* progId) {
        return Median(15, [&] { return FirstCreation(progId); });
    };
    Compare("First object of a process", first(kOurs), "the system's dictionary", first(kSystems));
    IDispatch* const kept[] = {Create<IDispatch>(kOurs), Create<IDispatch>(kSystems)};
    Compare("Another object", Usual([] { Create<IDispatch>(kOurs)->Release(); }),
            "the system's dictionary", Usual([] { Create<IDispatch>(kSystems)->Release(); }));
    for (IDispatch* object : kept)
        object->Release();
}

void MeasureCalls(const std::string& folder) {
    tessaro::clsVersion game;
    tessaro::clsVSwap pages;
    auto* comGame = Create<IVersion>(L"Tessaro.clsVersion");
    auto* comPages = Create<IVSwap>(L"Tessaro.clsVSwap");
    const BSTR path = SysAllocString(std::filesystem::path(folder).wstring().c_str());
    VARIANT_BOOL done = VARIANT_FALSE;
    comGame->LoadDataPath(path, &done);
    SysFreeString(path);
    comPages->Initialize(&done);
    if (!game.LoadDataPath(folder) || !pages.Initialize() || done != VARIANT_TRUE)
        Fail("Opening the sample game");

    tessaro::ByteArray image;
    VARIANT variant;
    VariantInit(&variant);
    const double direct = Usual([&] { pages.LoadWall(0, image); });
    Compare("LoadWall, through the table", Usual([&] { comPages->LoadWall(0, &variant, &done); }),
            "the library itself", direct);
    wchar_t nameText[] = L"LoadWall";
    LPOLESTR name = nameText;
    DISPID member = 0;
    comPages->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &member);
    VARIANT arguments[2];
    arguments[0].vt = VT_BYREF | VT_VARIANT;
    arguments[0].pvarVal = &variant;
    arguments[1].vt = VT_I4;
    arguments[1].lVal = 0;
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    const auto byName = [&] {
        comPages->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                         nullptr, nullptr, nullptr);
    };
    Compare("LoadWall, as a script calls it", Usual(byName), "the library itself", direct);
    VariantClear(&variant);
    comPages->Release();
    comGame->Release();
}

}  // namespace

int main(int argc, char**) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ACTCTXA context{};
    context.cbSize = sizeof(context);
    context.lpSource = TESSARO_COMPONENT_FOLDER "/Tessaro.Component.manifest";
    ULONG_PTR cookie = 0;
    if (!ActivateActCtx(CreateActCtxA(&context), &cookie))
        Fail("Reading the manifest");
    if (argc > 1) {
        const std::wstring commandLine = GetCommandLineW();
        const bool ours = commandLine.ends_with(kOurs);
        return static_cast<int>(Microseconds([&] { Create<IDispatch>(ours ? kOurs : kSystems); }));
    }

    std::printf("tessaro.dll: %llu bytes\n",
                static_cast<unsigned long long>(
                    std::filesystem::file_size(TESSARO_COMPONENT_FOLDER "/tessaro.dll")));
    const std::string folder =
        (std::filesystem::temp_directory_path() / "tessaro-component-cost").string();
    std::filesystem::create_directories(folder);
    for (const auto& file : tessaro::sample::MakeSampleGame())
        tessaro::WriteWholeFile((std::filesystem::path(folder) / file.name).string(), file.content);
    MeasureCreation();
    MeasureCalls(folder);
    std::filesystem::remove_all(folder);
}
