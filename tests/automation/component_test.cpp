// The component as hosts use it, beside the library itself, which this program is linked with: the
// two share nothing, so that each answers for itself.
#include <olectl.h>

#include <future>
#include <thread>

#include "automation/component_fixture.h"
#include "automation/windows_visitor.h"
#include "tessaro/palette.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::ByReference;
using test::Bytes;
using test::BytesOf;
using test::Call;
using test::Component;
using test::Create;
using test::Hex;
using test::Ref;
using test::ScriptArray;
using test::Text;
using test::Var;

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
    EXPECT_EQ(clsVersion().BackupFolder(), "") << "the library beside it has its own";
}

TEST_F(Component, AThreadMayEndAfterEveryHostLetGo) {
    std::promise<void> used, gone;
    std::thread worker([&] {
        {
            test::ComponentScope apartment;
            Create<IVersion>(L"Tessaro.clsVersion")->put_BackupFolder(Text(folder.Path()));
        }
        used.set_value();
        gone.get_future().wait();  // its settings are let go as it ends
    });
    used.get_future().wait();
    version.Reset();
    CoFreeUnusedLibrariesEx(0, 0);
    gone.set_value();
    worker.join();
    EXPECT_NE(GetModuleHandleA("tessaro.dll"), nullptr);
    EXPECT_NE(Create<IVersion>(L"Tessaro.clsVersion").Get(), nullptr);
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

    // A host's typed array variable is replaced in place, whatever the setting.
    Var variable = Bytes(Hex("01"));
    VARIANT reference;
    reference.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    reference.pparray = &variable.parray;
    for (const VARIANT_BOOL variants : {VARIANT_FALSE, VARIANT_TRUE}) {
        version->put_VariantArrays(variants);
        EXPECT_EQ(palette->CreatePaletteFileData(::ptXWE, Bytes(colors), &reference, &done), S_OK);
        EXPECT_EQ(BytesOf(variable), colors);
        ++colors[0];
    }
    version->put_VariantArrays(VARIANT_FALSE);
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
    test::Visitor visitor(L"clsPalette.CreatePaletteFileData Error", test::Accept);
    EXPECT_EQ(palette->CreatePaletteFileData(::ptXWE, Bytes(Hex("00")), &out, &done), S_OK);
    EXPECT_TRUE(visitor.Wait());
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(BytesOf(out), Hex("01 02"));
    // What cannot receive the bytes is refused before the operation would show its box.
    LONG storage = 5;
    Var numbers;
    numbers.parray = SafeArrayCreateVector(VT_I2, 0, 3);
    numbers.vt = VT_ARRAY | VT_I2;
    SAFEARRAY array{1, FADF_AUTO | FADF_FIXEDSIZE, 1, 0, nullptr, {{0, 0}}};
    SAFEARRAY* arrays[] = {numbers.parray, &array};
    VARIANT receivers[4];
    receivers[0].vt = VT_BYREF | VT_R8;
    receivers[0].plVal = receivers[1].plVal = &storage;
    receivers[1].vt = VT_BYREF | VT_I4;
    receivers[2].vt = VT_BYREF | VT_ARRAY | VT_I2;
    receivers[2].pparray = &arrays[0];
    receivers[3].vt = VT_BYREF | VT_ARRAY | VT_UI1;
    receivers[3].pparray = &arrays[1];
    for (VARIANT& receiver : receivers)
        EXPECT_EQ(palette->CreatePaletteFileData(::ptXWE, Bytes(Hex("00")), &receiver, &done),
                  DISP_E_TYPEMISMATCH);
    SafeArrayLock(out.parray);  // as while a script goes through it
    EXPECT_EQ(palette->CreatePaletteFileData(::ptXWE, Bytes(Hex("00")), &out, &done),
              DISP_E_ARRAYISLOCKED);
    SafeArrayUnlock(out.parray);
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

}  // namespace
}  // namespace tessaro
