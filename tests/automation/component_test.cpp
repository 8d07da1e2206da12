// The component as hosts use it, beside the library itself, which this program is linked with: the
// two share nothing, so that each answers for itself.
#include <olectl.h>

#include "automation/component_host.h"
#include "automation/windows_visitor.h"
#include "support/support.h"
#include "tessaro/audio_t.h"
#include "tessaro/palette.h"
#include "tessaro/version.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::ByReference;
using test::Bytes;
using test::BytesOf;
using test::Call;
using test::Create;
using test::Hex;
using test::NumbersOf;
using test::Ref;
using test::ScriptArray;
using test::Text;
using test::Var;

class Component : public testing::Test {
protected:
    void SetUp() override {
        version = Create<IVersion>(L"Tessaro.clsVersion");
        ASSERT_NE(version.Get(), nullptr);
        version->put_AppPath(Text(folder.Path()));
    }

    HRESULT UnloadNow() {
        const auto canUnload = reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleA("tessaro.dll"), "DllCanUnloadNow")));
        return canUnload();
    }

    test::TempFolder folder;
    test::ComponentScope component;
    Ref<IVersion> version;
};

TEST_F(Component, EveryClassIsCreatedUnderBothProgIDsAndDescribesItself) {
    const struct {
        const wchar_t* name;
        IID interfaceId, events;
    } classes[] = {
        {L"clsVersion", __uuidof(IVersion), {}},
        {L"clsGameMaps", __uuidof(IGameMaps), __uuidof(ISaveEvents)},
        {L"clsVGAGraph", __uuidof(IVGAGraph), __uuidof(ISaveEvents)},
        {L"clsVSwap", __uuidof(IVSwap), __uuidof(IVSwapEvents)},
        {L"clsAudioT", __uuidof(IAudioT), __uuidof(ISaveEvents)},
        {L"clsPalette", __uuidof(IPalette), {}},
    };
    for (const auto& row : classes) {
        const std::wstring progId = std::wstring(L"Tessaro.") + row.name;
        SCOPED_TRACE(Text(progId).Ascii());
        EXPECT_NE(Create<IDispatch>(progId + L".1").Get(), nullptr);
        Ref<IDispatch> object = Create<IDispatch>(progId);
        ASSERT_NE(object.Get(), nullptr);

        Ref<IDispatch> dual;
        EXPECT_EQ(object->QueryInterface(row.interfaceId, dual.Out()), S_OK);
        Ref<IProvideClassInfo2> information;
        ASSERT_EQ(object->QueryInterface(__uuidof(IProvideClassInfo2), information.Out()), S_OK);
        Ref<ITypeInfo> coclass;
        ASSERT_EQ(information->GetClassInfo(reinterpret_cast<ITypeInfo**>(coclass.Out())), S_OK);
        Text name;
        coclass->GetDocumentation(MEMBERID_NIL, name.Out(), nullptr, nullptr, nullptr);
        EXPECT_EQ(std::wstring(name), row.name);

        GUID events{};
        const bool raises = row.events != GUID{};
        EXPECT_EQ(information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events),
                  raises ? S_OK : E_INVALIDARG);
        EXPECT_EQ(events, row.events);
        Ref<IConnectionPointContainer> container;
        EXPECT_EQ(object->QueryInterface(__uuidof(IConnectionPointContainer), container.Out()),
                  raises ? S_OK : E_NOINTERFACE);
    }
    EXPECT_EQ(UnloadNow(), S_FALSE);
    version.Reset();
    EXPECT_EQ(UnloadNow(), S_OK);
}

TEST_F(Component, SettingsAreSharedByTheThreadsObjectsAlone) {
    Ref<IVersion> second = Create<IVersion>(L"Tessaro.clsVersion");
    version->put_BackupFolder(Text(std::string("C:\\backup")));
    Text folderName;
    EXPECT_EQ(second->get_BackupFolder(folderName.Out()), S_OK);
    EXPECT_EQ(folderName.Ascii(), "C:\\backup");
    std::thread([] {
        test::ComponentScope apartment;
        Ref<IVersion> other = Create<IVersion>(L"Tessaro.clsVersion");
        Text empty;
        EXPECT_EQ(other->get_BackupFolder(empty.Out()), S_OK);
        EXPECT_EQ(empty.Ascii(), "");
    }).join();
    // What the library was left with, not what the component's settings became.
    EXPECT_EQ(clsVersion().BackupFolder(), "");
}

TEST_F(Component, ArraysCrossAsBytesOrAsVariants) {
    Ref<IPalette> palette = Create<IPalette>(L"Tessaro.clsPalette");
    ByteArray colors(768);
    std::vector<SHORT> same;
    for (std::size_t i = 0; i < colors.size(); ++i)
        same.push_back(colors[i] = static_cast<std::uint8_t>(i * 7));
    clsPalette direct;
    for (const auto type : {ptJASC3, ptJASC8, ptXWE, ptGAMEPAL, ptWolf4GW, ptWolf4SDL}) {
        ByteArray expected;
        ASSERT_TRUE(direct.CreatePaletteFileData(type, colors, expected));
        const auto comType = static_cast<::enmSupportedPaletteTypes>(type);
        for (const Var& in : {Bytes(colors), ScriptArray(same)}) {
            Var out;
            VARIANT_BOOL done = VARIANT_FALSE;
            ASSERT_EQ(palette->CreatePaletteFileData(comType, in, &out, &done), S_OK);
            EXPECT_EQ(done, VARIANT_TRUE);
            EXPECT_EQ(BytesOf(out), expected);
        }
    }

    version->put_VariantArrays(VARIANT_TRUE);
    Var out;
    VARIANT_BOOL done = VARIANT_FALSE;
    palette->CreatePaletteFileData(::ptXWE, Bytes(colors), &out, &done);
    version->put_VariantArrays(VARIANT_FALSE);
    ASSERT_EQ(out.vt, VT_ARRAY | VT_VARIANT);
    const auto* element = static_cast<const VARIANT*>(out.parray->pvData);
    EXPECT_EQ(element[5].vt, VT_UI1);
    EXPECT_EQ(element[5].bVal, 35);

    // A host's typed array variable is replaced in place.
    Var variable = Bytes(Hex("01"));
    VARIANT reference;
    reference.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    reference.pparray = &variable.parray;
    palette->CreatePaletteFileData(::ptXWE, Bytes(colors), &reference, &done);
    EXPECT_EQ(BytesOf(variable), colors);
}

TEST_F(Component, BadArgumentsAreRefusedAndChangeNothing) {
    Ref<IPalette> palette = Create<IPalette>(L"Tessaro.clsPalette");
    VARIANT_BOOL done = VARIANT_TRUE;
    Var out = Bytes(Hex("01 02"));
    Var text;
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"abc");
    Var square;
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    square.parray = SafeArrayCreate(VT_UI1, 2, bounds);
    square.vt = VT_ARRAY | VT_UI1;
    const struct {
        const VARIANT& bytes;
        VARIANT* out;
        VARIANT_BOOL* done;
        HRESULT expected;
    } rows[] = {
        {text, &out, &done, DISP_E_TYPEMISMATCH},
        {square, &out, &done, DISP_E_TYPEMISMATCH},
        {ScriptArray({1, 300}), &out, &done, DISP_E_OVERFLOW},
        {ScriptArray({1, -1}), &out, &done, DISP_E_OVERFLOW},
        {out, nullptr, &done, E_POINTER},
        {out, &out, nullptr, E_POINTER},
    };
    for (const auto& row : rows)
        EXPECT_EQ(palette->CreatePaletteFileData(::ptXWE, row.bytes, row.out, row.done),
                  row.expected);
    EXPECT_EQ(BytesOf(out), Hex("01 02"));

    // Refused by the operation itself: False, and the argument as it was.
    test::Visitor visitor(L"clsPalette.CreatePaletteFileData Error",
                          [](HWND box) { test::Press(box, IDOK); });
    EXPECT_EQ(palette->CreatePaletteFileData(::ptXWE, Bytes(Hex("00")), &out, &done), S_OK);
    EXPECT_TRUE(visitor.Wait());
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(BytesOf(out), Hex("01 02"));
    VARIANT number;
    LONG storage = 5;
    number.vt = VT_BYREF | VT_R8;
    number.plVal = &storage;
    EXPECT_EQ(palette->CreatePaletteFileData(::ptXWE, out, &number, &done), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Call(palette.Get(), L"NoSuchMember", {}, nullptr), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(Call(palette.Get(), L"Color", {}, nullptr, DISPATCH_PROPERTYGET),
              DISP_E_BADPARAMCOUNT);
}

TEST_F(Component, ScriptsReadAndWriteThroughVariables) {
    Ref<IPalette> palette = Create<IPalette>(L"Tessaro.clsPalette");
    Var blue(0xA80000), color;
    EXPECT_EQ(Call(palette.Get(), L"Color", {Var(3), blue}, nullptr, DISPATCH_PROPERTYPUT), S_OK);
    EXPECT_EQ(Call(palette.Get(), L"color", {Var(3)}, &color, DISPATCH_PROPERTYGET), S_OK);
    EXPECT_EQ(color.lVal, 0xA80000);

    // A palette file comes back with its type in a variable that held something else before.
    Var jasc, done, read, type;
    EXPECT_EQ(Call(palette.Get(), L"JASCPalette", {}, &jasc, DISPATCH_PROPERTYGET), S_OK);
    const std::string path = folder.Write(
        "PALETTE.PAL", Ascii(std::string(jasc.bstrVal, jasc.bstrVal + SysStringLen(jasc.bstrVal))));
    Text pathText(path);
    VARIANT pathArgument;
    pathArgument.vt = VT_BSTR;
    pathArgument.bstrVal = pathText;
    type.vt = VT_BSTR;
    type.bstrVal = SysAllocString(L"before");
    ASSERT_EQ(Call(palette.Get(), L"LoadPaletteDataFromFile",
                   {pathArgument, ByReference(read), ByReference(type)}, &done),
              S_OK);
    EXPECT_EQ(done.boolVal, VARIANT_TRUE);
    EXPECT_EQ(BytesOf(read).at(3 * 3 + 2), 0xA8);
    EXPECT_EQ(type.vt, VT_I4);
    EXPECT_EQ(type.lVal, ptJASC3);
    Var without;
    EXPECT_EQ(Call(palette.Get(), L"LoadPaletteDataFromFile", {pathArgument, ByReference(without)},
                   &done),
              S_OK);
    EXPECT_EQ(BytesOf(without), BytesOf(read));
    EXPECT_EQ(Call(palette.Get(), L"LoadPalette", {}, nullptr), S_OK);
}

/// Seven chunks: effects, placeholders, three songs.
constexpr const char* kAudioHeader =
    "00000000 08000000 10000000 10000000 10000000 14000000 1C000000 22000000";
constexpr const char* kAudioData = "EFFECT-0EFFECT-1!ID!SONG-ONESONG2!";

class ComponentAudio : public Component {
protected:
    void SetUp() override {
        Component::SetUp();
        const std::string header = folder.Write("AUDIOHED.TST", Hex(kAudioHeader));
        const std::string data = folder.Write("AUDIOT.TST", Ascii(kAudioData));
        folder.MakeFolder("direct");
        clsVersion direct;
        direct.AudioHeaderFile(header);
        direct.AudioDataFile(data);
        direct.CompileExtension("TST");
        direct.OutputFolder(folder.File("direct"));
        direct.BackupFolder(folder.File("backup"));
        folder.MakeFolder("component");
        version->put_AudioHeaderFile(Text(header));
        version->put_AudioDataFile(Text(data));
        version->put_CompileExtension(Text(std::string("TST")));
        version->put_OutputFolder(Text(folder.File("component")));
        version->put_BackupFolder(Text(folder.File("backup")));
        audio = Create<IAudioT>(L"Tessaro.clsAudioT");
        ASSERT_EQ(audio->InitializeMusic(&done), S_OK);
        ASSERT_EQ(done, VARIANT_TRUE);
    }

    Ref<IAudioT> audio;
    VARIANT_BOOL done = VARIANT_FALSE;
};

TEST_F(ComponentAudio, SavesWhatTheLibrarySavesAndRaisesItsEvents) {
    clsAudioT direct;
    ASSERT_TRUE(direct.InitializeMusic());
    std::vector<std::string> expected;
    direct.SaveStatus = [&](std::int32_t chunk, std::int32_t total) {
        expected.push_back("SaveStatus " + std::to_string(chunk) + " " + std::to_string(total));
    };
    direct.SaveComplete = [&](bool success) {
        expected.push_back(success ? "SaveComplete True" : "SaveComplete False");
    };

    for (LONG chunk = 0; chunk < direct.NumberOfChunks(); ++chunk) {
        ByteArray bytes;
        std::int32_t size = 0;
        direct.LoadChunk(chunk, bytes, size);
        Var out;
        LONG outSize = -1;
        ASSERT_EQ(audio->LoadChunk(chunk, &out, &outSize, &done), S_OK);
        EXPECT_EQ(BytesOf(out), bytes);
        EXPECT_EQ(outSize, size);
    }

    direct.SetChunkData(5, Ascii("A LONGER SONG"));
    ASSERT_EQ(audio->SetChunkData(5, Bytes(Ascii("A LONGER SONG"))), S_OK);
    ASSERT_TRUE(direct.SaveAudioT());
    test::RecordingSink sink(__uuidof(ISaveEvents));
    {
        const test::Connection connection(audio.Get(), sink, __uuidof(ISaveEvents));
        ASSERT_EQ(audio->SaveAudioT(&done), S_OK);
    }
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(sink.seen, expected);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(expected.back(), "SaveComplete True");
    for (const char* file : {"AUDIOHED.TST", "AUDIOT.TST"})
        EXPECT_EQ(folder.Read(std::string("component\\") + file),
                  folder.Read(std::string("direct\\") + file));

    ASSERT_EQ(audio->SaveAudioT(&done), S_OK);
    EXPECT_EQ(sink.seen, expected) << "disconnected";
}

TEST_F(ComponentAudio, EventsAreEnumeratedAndConnectedByTheirInterface) {
    Ref<IConnectionPointContainer> container;
    ASSERT_EQ(audio->QueryInterface(__uuidof(IConnectionPointContainer), container.Out()), S_OK);
    Ref<IEnumConnectionPoints> points;
    container->EnumConnectionPoints(reinterpret_cast<IEnumConnectionPoints**>(points.Out()));
    Ref<IConnectionPoint> point;
    ULONG fetched = 0;
    ASSERT_EQ(points->Next(1, reinterpret_cast<IConnectionPoint**>(point.Out()), &fetched), S_OK);
    IID events{};
    point->GetConnectionInterface(&events);
    EXPECT_EQ(events, __uuidof(ISaveEvents));
    Ref<IConnectionPoint> none;
    EXPECT_EQ(points->Next(1, reinterpret_cast<IConnectionPoint**>(none.Out()), nullptr), S_FALSE);

    test::RecordingSink sink(__uuidof(ISaveEvents));
    const test::Connection connection(audio.Get(), sink, __uuidof(ISaveEvents));
    Ref<IEnumConnections> connections;
    point->EnumConnections(reinterpret_cast<IEnumConnections**>(connections.Out()));
    CONNECTDATA found{};
    ASSERT_EQ(connections->Next(1, &found, nullptr), S_OK);
    EXPECT_EQ(found.pUnk, &sink);
    EXPECT_EQ(point->Unadvise(found.dwCookie + 1), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(container->FindConnectionPoint(__uuidof(IVSwapEvents),
                                             reinterpret_cast<IConnectionPoint**>(none.Out())),
              CONNECT_E_NOCONNECTION);
    EXPECT_EQ(container->EnumConnectionPoints(nullptr), E_POINTER);
}

TEST_F(ComponentAudio, AFailureIsReportedAndNothingThrownLeavesTheDll) {
    Var out = Bytes(Hex("07"));
    LONG size = 9;
    test::Visitor visitor(L"clsAudioT.LoadChunk Error", [](HWND box) { test::Press(box, IDOK); });
    EXPECT_EQ(audio->LoadChunk(99, &out, &size, &done), S_OK);
    EXPECT_TRUE(visitor.Wait());
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(size, 9);
    EXPECT_EQ(BytesOf(out), Hex("07"));

    // A log that cannot be written has nowhere to be reported to.
    version->put_AppPath(Text(folder.File("no such folder")));
    test::Visitor second(L"clsAudioT.LoadChunk Error", [](HWND box) { test::Press(box, IDOK); });
    EXPECT_EQ(audio->LoadChunk(99, &out, &size, &done),
              static_cast<HRESULT>(0x800A0000 | kPathNotFound));
    EXPECT_TRUE(second.Wait());
    Ref<IErrorInfo> information;
    ASSERT_EQ(GetErrorInfo(0, reinterpret_cast<IErrorInfo**>(information.Out())), S_OK);
    Text description;
    information->GetDescription(description.Out());
    EXPECT_EQ(description.Ascii(), "Path not found");
}

}  // namespace
}  // namespace tessaro
