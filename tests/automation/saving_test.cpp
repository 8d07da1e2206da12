// A class that saves and raises events, as hosts use it: the audio container.
#include <olectl.h>

#include "automation/component_fixture.h"
#include "automation/windows_visitor.h"
#include "support/saving.h"
#include "tessaro/audio_t.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Bytes;
using test::BytesOf;
using test::Component;
using test::Create;
using test::Hex;
using test::Ref;
using test::Text;
using test::Var;

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
    test::SaveEvents expected;
    expected.Listen(direct);

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
    EXPECT_EQ(sink.seen, expected.seen);
    EXPECT_TRUE(expected.EndedOnce(true));
    for (const char* file : {"AUDIOHED.TST", "AUDIOT.TST"})
        EXPECT_EQ(folder.Read(std::string("component\\") + file),
                  folder.Read(std::string("direct\\") + file));

    ASSERT_EQ(audio->SaveAudioT(&done), S_OK);
    EXPECT_EQ(sink.seen, expected.seen) << "disconnected";
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

TEST_F(ComponentAudio, AnObjectThatIsLetGoInAnEventLivesUntilTheSaveEnds) {
    test::RecordingSink sink(__uuidof(ISaveEvents));
    {
        Ref<IConnectionPointContainer> container;
        ASSERT_EQ(audio->QueryInterface(__uuidof(IConnectionPointContainer), container.Out()),
                  S_OK);
        Ref<IConnectionPoint> point;
        container->FindConnectionPoint(__uuidof(ISaveEvents),
                                       reinterpret_cast<IConnectionPoint**>(point.Out()));
        DWORD cookie = 0;
        ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    }
    version.Reset();
    HRESULT meanwhile = S_OK;
    sink.onEvent = [&] {
        audio.Reset();
        meanwhile = UnloadNow();
    };
    EXPECT_EQ(audio->SaveAudioT(&done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(meanwhile, S_FALSE);
    EXPECT_EQ(UnloadNow(), S_OK);
}

TEST_F(ComponentAudio, AFailureIsReportedAndNothingThrownLeavesTheDll) {
    Var out = Bytes(Hex("07"));
    LONG size = 9;
    test::Visitor visitor(L"clsAudioT.LoadChunk Error", test::Accept);
    EXPECT_EQ(audio->LoadChunk(99, &out, &size, &done), S_OK);
    EXPECT_TRUE(visitor.Wait());
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(size, 9);
    EXPECT_EQ(BytesOf(out), Hex("07"));

    // A log that cannot be written changes nothing about the operation's answer.
    version->put_AppPath(Text(folder.File("no such folder")));
    test::Visitor second(L"clsAudioT.LoadChunk Error", test::Accept);
    EXPECT_EQ(audio->LoadChunk(99, &out, &size, &done), S_OK);
    EXPECT_TRUE(second.Wait());
    EXPECT_EQ(done, VARIANT_FALSE);

    // A host without a user sees no box, and hears what was said.
    EXPECT_EQ(version->put_Quiet(VARIANT_TRUE), S_OK);
    EXPECT_EQ(audio->LoadChunk(99, &out, &size, &done), S_OK);
    Text said;
    EXPECT_EQ(version->get_Messages(said.Out()), S_OK);
    EXPECT_EQ(said.Ascii(), "Error 9 in clsAudioT.LoadChunk: Subscript out of range\r\n");
    EXPECT_EQ(version->put_Quiet(VARIANT_FALSE), S_OK);
}

}  // namespace
}  // namespace tessaro
