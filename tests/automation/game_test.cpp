// The containers over a whole game: the component beside the library itself.
#include "support/game.h"
#include "automation/component_host.h"
#include "automation/windows_visitor.h"
#include "support/saving.h"
#include "tessaro/tessaro.h"

namespace tessaro {
namespace {

using test::Bytes;
using test::BytesOf;
using test::Create;
using test::NumbersOf;
using test::Ref;
using test::Text;
using test::Var;

/// The library's game and a copy of its own for the component, with the same settings.
class ComponentGame : public test::GameInFolder {
protected:
    void Open(const std::vector<sample::SampleFile>& files) {
        GameInFolder::Open(files);
        test::WriteFiles(own, files);
        version = Create<IVersion>(L"Tessaro.clsVersion");
        ASSERT_EQ(version->LoadDataPath(Text(own.Path()), &done), S_OK);
        ASSERT_EQ(done, VARIANT_TRUE);
        version->put_AppPath(Text(own.Path()));
        version->put_OutputFolder(Text(own.Path()));
        version->put_BackupFolder(Text(own.File("backup")));
        version->put_CompileExtension(Text(version_.Extension()));
    }
    void ExpectSameFile(const std::string& name) {
        EXPECT_EQ(own.Read(name), folder_.Read(name)) << name;
    }

    test::TempFolder own;
    test::ComponentScope component;
    Ref<IVersion> version;
    VARIANT_BOOL done = VARIANT_FALSE;
};

/// The sample game's maps, opened by both.
class ComponentMaps : public ComponentGame {
protected:
    void SetUp() override {
        Open(sample::MakeSampleGame());
        ASSERT_TRUE(expected.Initialize());
        maps = Create<IGameMaps>(L"Tessaro.clsGameMaps");
        ASSERT_EQ(maps->Initialize(&done), S_OK);
    }
    /// The component's planes are the library's.
    static void ExpectSamePlanes(const Var& out, const typMapPlane& planes) {
        ASSERT_EQ(out.vt, VT_ARRAY | VT_VARIANT);
        ASSERT_EQ(out.parray->rgsabound[0].cElements, planes.Plane.size());
        for (std::size_t plane = 0; plane < planes.Plane.size(); ++plane)
            EXPECT_EQ(NumbersOf(static_cast<const VARIANT*>(out.parray->pvData)[plane]),
                      planes.Plane[plane].Grid);
    }

    clsGameMaps expected;
    Ref<IGameMaps> maps;
    typMapPlane planes;
    std::int32_t width = 0, height = 0;
    Var outPlanes;
    LONG outWidth = 0, outHeight = 0;
    Text outName;
};

TEST_F(ComponentMaps, AreReadAlike) {
    LONG count = 0;
    maps->get_NumberOfMaps(&count);
    ASSERT_EQ(count, expected.NumberOfMaps());
    for (LONG map = 0; map < count; ++map) {
        ASSERT_TRUE(expected.LoadMap(map, planes, width, height));
        Text name;
        ASSERT_EQ(maps->LoadMap(map, &outPlanes, &outWidth, &outHeight, &done), S_OK);
        ASSERT_EQ(maps->get_MapName(map, name.Out()), S_OK);
        EXPECT_EQ(name.Ascii(), expected.MapName(map));
        EXPECT_EQ(outWidth, width);
        EXPECT_EQ(outHeight, height);
        ExpectSamePlanes(outPlanes, planes);
    }
}

TEST_F(ComponentMaps, AreExportedAndImportedAlike) {
    Var list;
    list.parray = SafeArrayCreateVector(VT_I4, 0, 2);
    list.vt = VT_ARRAY | VT_I4;
    static_cast<LONG*>(list.parray->pvData)[1] = 2;
    EXPECT_TRUE(expected.ExportMultiMap({0, 2}, folder_.File("TWO.MAP"), true));
    maps->ExportMultiMap(list, Text(own.File("TWO.MAP")), VARIANT_TRUE, &done);
    EXPECT_EQ(done, VARIANT_TRUE);
    ExpectSameFile("TWO.MAP");
    auto type = mftKZRMapFile;
    auto comType = ::mftFloEditMapFile;  // an existing file keeps its own type
    EXPECT_TRUE(expected.ExportMap(1, folder_.File("TWO.MAP"), true, type));
    maps->ExportMap(1, Text(own.File("TWO.MAP")), VARIANT_TRUE, &comType, &done);
    EXPECT_EQ(static_cast<int>(comType), static_cast<int>(type));
    ExpectSameFile("TWO.MAP");

    LONG clipboard = 0;
    maps->ImportMapsForClipboard(Text(own.File("TWO.MAP")), &clipboard);
    EXPECT_EQ(clipboard, 1);
    maps->GetClipboardMap(0, &outPlanes, &outWidth, &outHeight, outName.Out());
    EXPECT_EQ(expected.ImportMapsForClipboard(folder_.File("TWO.MAP")), 1);
    std::string name;
    expected.GetClipboardMap(0, planes, width, height, name);
    EXPECT_EQ(outName.Ascii(), name);
    EXPECT_EQ(outWidth, width);
    EXPECT_EQ(outHeight, height);
    ExpectSamePlanes(outPlanes, planes);
}

TEST_F(ComponentMaps, AreEditedAndSavedAlike) {
    EXPECT_TRUE(expected.SetMapCode(1, 1, 3, 4, 77));
    maps->SetMapCode(1, 1, 3, 4, 77, &done);
    expected.MapName(2, "Renamed");
    maps->put_MapName(2, Text(std::string("Renamed")));
    ASSERT_TRUE(expected.SaveMapFile());
    test::RecordingSink sink(__uuidof(ISaveEvents));
    const test::Connection connection(maps.Get(), sink, __uuidof(ISaveEvents));
    ASSERT_EQ(maps->SaveMapFile(&done), S_OK);
    EXPECT_EQ(sink.seen, test::EventsOfASave(3));
    ExpectSameFile("MAPHEAD.LKP");
    ExpectSameFile("GAMEMAPS.LKP");
}

TEST_F(ComponentGame, PagesAreReadReplacedAndSavedAlike) {
    Open(sample::MakeSampleGame());
    clsVSwap expected;
    ASSERT_TRUE(expected.Initialize());
    Ref<IVSwap> pages = Create<IVSwap>(L"Tessaro.clsVSwap");
    ASSERT_EQ(pages->Initialize(&done), S_OK);
    ByteArray bytes;
    std::int32_t length = 0;
    Var out;
    LONG outLength = 0;
    ASSERT_TRUE(expected.LoadSound(0, bytes, length));
    pages->LoadSound(0, &out, &outLength, &done);
    EXPECT_EQ(BytesOf(out), bytes);
    EXPECT_EQ(outLength, length);
    ASSERT_TRUE(expected.LoadSprite(0, bytes));
    pages->LoadSprite(0, &out, &done);
    EXPECT_EQ(BytesOf(out), bytes);
    LONG size = 0;
    pages->GetSpriteCompressedSize(out, ::vcGood, &size);
    EXPECT_EQ(size, expected.GetSpriteCompressedSize(bytes, vcGood));
    expected.LoadChunk(1, bytes);
    pages->LoadChunk(1, &out);
    EXPECT_EQ(BytesOf(out), bytes);

    ASSERT_TRUE(expected.LoadWall(1, bytes));
    expected.SetChunkData(0, bytes);
    pages->SetChunkData(0, Bytes(bytes));
    ASSERT_TRUE(expected.SaveVSwap(vcOriginal));
    test::RecordingSink sink(__uuidof(IVSwapEvents));
    const test::Connection connection(pages.Get(), sink, __uuidof(IVSwapEvents));
    ASSERT_EQ(pages->SaveVSwap(::vcOriginal, &done), S_OK);
    ASSERT_FALSE(sink.seen.empty());
    EXPECT_EQ(sink.seen.back(), "SaveComplete True");
    ExpectSameFile("VSWAP.LKP");
}

TEST_F(ComponentGame, ASaveThatFailsNamesItsItem) {
    Open(sample::MakeSampleGame());
    Ref<IVSwap> pages = Create<IVSwap>(L"Tessaro.clsVSwap");
    ASSERT_EQ(pages->Initialize(&done), S_OK);
    const ByteArray before = own.Read("VSWAP.LKP");
    pages->SetChunkData(1, Bytes(ByteArray(60)));  // no image of 256 colours
    test::RecordingSink sink(__uuidof(IVSwapEvents));
    const test::Connection connection(pages.Get(), sink, __uuidof(IVSwapEvents));
    test::Visitor visitor(L"clsVSWAP.SaveVSwap Error", test::Accept);
    EXPECT_EQ(pages->SaveVSwap(::vcGood, &done), S_OK);
    EXPECT_TRUE(visitor.Wait());
    EXPECT_EQ(done, VARIANT_FALSE);
    ASSERT_EQ(sink.seen.size(), 3U);
    EXPECT_EQ(sink.seen[1], "SaveError 1 " + std::to_string(ctWall));
    EXPECT_EQ(sink.seen[2], "SaveComplete False");
    EXPECT_EQ(own.Read("VSWAP.LKP"), before);
}

TEST_F(ComponentGame, GraphicsAndTheirRecordsAreReadAlike) {
    Open(sample::MakeSampleGame());
    clsVGAGraph expected;
    ASSERT_TRUE(expected.InitializeGraphics());
    Ref<IVGAGraph> graphics = Create<IVGAGraph>(L"Tessaro.clsVGAGraph");
    ASSERT_EQ(graphics->InitializeGraphics(&done), S_OK);
    const std::int32_t picture = expected.DataTypeChunk(vgPicture, 0);
    ByteArray bytes;
    std::int32_t height = 0, width = 0;
    ASSERT_TRUE(expected.LoadWolfPicture(picture, bytes, height, width));
    Var out;
    LONG outHeight = 0, outWidth = 0;
    graphics->LoadWolfPicture(picture, &out, &outHeight, &outWidth, VARIANT_FALSE, &done);
    EXPECT_EQ(BytesOf(out), bytes);
    EXPECT_EQ(outHeight, height);
    EXPECT_EQ(outWidth, width);

    ByteArray fontBytes;
    typFont font;
    ASSERT_TRUE(expected.LoadWolfFont(expected.StartFonts(), fontBytes) &&
                expected.ParseFontData(fontBytes, font));
    const auto fieldsOf = [](const VARIANT& variant) {
        EXPECT_EQ(variant.vt, VT_ARRAY | VT_VARIANT);
        return static_cast<const VARIANT*>(variant.parray->pvData);
    };
    Var fields;
    ASSERT_EQ(graphics->ParseFontData(Bytes(fontBytes), &fields, &done), S_OK);
    EXPECT_EQ(fieldsOf(fields)[0].iVal, font.Height);
    EXPECT_EQ(static_cast<const SHORT*>(fieldsOf(fields)[1].parray->pvData)['A'],
              font.Offsets['A']);
    EXPECT_EQ(BytesOf(fieldsOf(fields)[2]), ByteArray(font.Widths.begin(), font.Widths.end()));
    EXPECT_EQ(BytesOf(fieldsOf(fieldsOf(fields)[3])['A']), font.Chars['A'].Points);

    version->put_VariantArrays(VARIANT_TRUE);
    Var parts;
    ASSERT_EQ(graphics->ParseFontData(Bytes(fontBytes), &parts, &done), S_OK);
    version->put_VariantArrays(VARIANT_FALSE);
    EXPECT_EQ(fieldsOf(fieldsOf(parts)[2])['A'].bVal, font.Widths['A']);

    Var text;
    LONG textWidth = 0, textHeight = 0;
    std::int32_t expectedWidth = 0, expectedHeight = 0;
    ASSERT_TRUE(
        expected.ConvertTextToFont(1, "LANTERN", bytes, expectedWidth, expectedHeight, 0, 15));
    test::Var widthVariable(0), heightVariable(0);
    Text word(std::string("LANTERN"));
    VARIANT wordArgument;
    wordArgument.vt = VT_BSTR;
    wordArgument.bstrVal = word;
    // Called by name, the colours left out.
    EXPECT_EQ(test::Call(graphics.Get(), L"ConvertTextToFont",
                         {Var(1), wordArgument, test::ByReference(text),
                          test::ByReference(widthVariable), test::ByReference(heightVariable)},
                         nullptr),
              S_OK);
    EXPECT_EQ(BytesOf(text), bytes);
    EXPECT_EQ(widthVariable.lVal, expectedWidth);
    graphics->ConvertTextToFont(1, word, &text, &textWidth, &textHeight, 0, 15, &done);
    EXPECT_EQ(textHeight, expectedHeight);

    ASSERT_TRUE(expected.SaveVGAGraph());
    ASSERT_EQ(graphics->SaveVGAGraph(&done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    ExpectSameFile("VGAGRAPH.LKP");
}

TEST_F(ComponentGame, ASpriteOfThe16ColourGameComesWithItsRecord) {
    Open(sample::MakeEgaSampleGame());
    clsVGAGraph expected;
    ASSERT_TRUE(expected.InitializeGraphics());
    Ref<IVGAGraph> graphics = Create<IVGAGraph>(L"Tessaro.clsVGAGraph");
    ASSERT_EQ(graphics->InitializeGraphics(&done), S_OK);
    const std::int32_t sprite = expected.DataTypeChunk(vgSprite, 0);
    ByteArray data, mask;
    std::int32_t height = 0, width = 0;
    typSpriteHead head;
    ASSERT_TRUE(expected.LoadEGASprite(sprite, data, mask, height, width, head));
    Var outData, outMask, outHead;
    LONG outHeight = 0, outWidth = 0;
    ASSERT_EQ(
        graphics->LoadEGASprite(sprite, &outData, &outMask, &outHeight, &outWidth, &outHead, &done),
        S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(BytesOf(outData), data);
    EXPECT_EQ(BytesOf(outMask), mask);
    ASSERT_EQ(outHead.vt, VT_RECORD);
    const auto* fields = static_cast<const ::typSpriteHead*>(outHead.pvRecord);
    EXPECT_EQ(fields->Width, head.Width);
    EXPECT_EQ(fields->OrgY, head.OrgY);
    EXPECT_EQ(fields->Rx2, head.Rx2);
    EXPECT_EQ(fields->Shifts, head.Shifts);

    // A compiled host's own variable of the record, filled in place.
    ::typSpriteHead mine{};
    VARIANT reference;
    reference.vt = VT_BYREF | VT_RECORD;
    reference.pvRecord = &mine;
    reference.pRecInfo = outHead.pRecInfo;
    EXPECT_EQ(graphics->LoadEGASprite(sprite, &outData, &outMask, &outHeight, &outWidth, &reference,
                                      &done),
              S_OK);
    EXPECT_EQ(mine.Height, head.Height);
    EXPECT_EQ(mine.Shifts, head.Shifts);
}

TEST_F(ComponentMaps, TheirFormAndItsBoxesBelongToTheHostsWindow) {
    const HWND host = CreateWindowW(L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                    100, nullptr, nullptr, nullptr, nullptr);
    const HWND child = CreateWindowW(L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 50, host,
                                     nullptr, nullptr, nullptr);
    Var handle(static_cast<LONG>(reinterpret_cast<LONG_PTR>(child))), back;
    ASSERT_EQ(version->put_OwnerWindow(handle), S_OK);
    ASSERT_EQ(version->get_OwnerWindow(&back), S_OK);
    EXPECT_EQ(back.lVal, handle.lVal);

    HWND formOwner = nullptr, form = nullptr, boxOwner = nullptr;
    BOOL enabled = TRUE;
    test::Visitor user(L"iPhone Map File Settings", [&](HWND window) {
        form = window;
        formOwner = GetWindow(window, GW_OWNER);
        enabled = IsWindowEnabled(host);
        test::Type(window, 100, L" ");
        test::Press(window, IDOK);
        const HWND box = test::WaitForWindow(L"Missing Value");
        boxOwner = GetWindow(box, GW_OWNER);
        test::Accept(box);
        test::WaitUntilGone(box);
        test::Type(window, 100, L"Of the host");
        test::Press(window, IDOK);
    });
    auto type = ::mftiPhoneMapFile;
    EXPECT_EQ(maps->ExportMap(0, Text(own.File("MAP.IPH")), VARIANT_TRUE, &type, &done), S_OK);
    EXPECT_TRUE(user.Wait());
    version->put_OwnerWindow(Var(0));
    DestroyWindow(host);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(formOwner, host);
    EXPECT_FALSE(enabled);
    EXPECT_EQ(boxOwner, form);
    EXPECT_EQ(test::Part(own.Read("MAP.IPH"), 49, 11), test::Ascii("Of the host"));
}

TEST_F(ComponentMaps, NamedAndTypedArgumentsFindTheirPlaces) {
    ASSERT_EQ(maps->LoadMap(1, &outPlanes, &outWidth, &outHeight, &done), S_OK);
    std::wstring words[] = {L"LoadMap", L"Height", L"MapNum", L"Width", L"MapDataPlanes"};
    LPOLESTR names[5];
    for (int i = 0; i < 5; ++i)
        names[i] = words[i].data();
    DISPID ids[5];
    ASSERT_EQ(maps->GetIDsOfNames(IID_NULL, names, 5, LOCALE_USER_DEFAULT, ids), S_OK);
    double doubleHeight = 0;
    SHORT shortWidth = 0;
    Var number(1), grid, result;
    VARIANT arguments[4];
    arguments[0].vt = VT_BYREF | VT_R8;
    arguments[0].pdblVal = &doubleHeight;
    arguments[1] = test::ByReference(number);
    arguments[2].vt = VT_BYREF | VT_I2;
    arguments[2].piVal = &shortWidth;
    arguments[3] = test::ByReference(grid);
    DISPPARAMS parameters{arguments, ids + 1, 4, 4};
    const auto call = [&](UINT* bad) {
        return maps->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                            &result, nullptr, bad);
    };
    ASSERT_EQ(call(nullptr), S_OK);
    EXPECT_EQ(result.boolVal, VARIANT_TRUE);
    EXPECT_EQ(doubleHeight, outHeight);
    EXPECT_EQ(shortWidth, outWidth);
    EXPECT_EQ(grid.vt, VT_ARRAY | VT_VARIANT);

    Var text;
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"64");  // a text variable takes a number's place, and gets it
    arguments[2].vt = VT_BYREF | VT_BSTR;
    arguments[2].pbstrVal = &text.bstrVal;
    ASSERT_EQ(call(nullptr), S_OK);
    EXPECT_EQ(std::stoi(std::wstring(text.bstrVal)), outWidth);
    SysReAllocString(&text.bstrVal, L"wide");
    UINT bad = 9;
    EXPECT_EQ(call(&bad), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(bad, 2U);
}

}  // namespace
}  // namespace tessaro
