// A small VGA set, opened: one chunk of every kind.
#pragma once

#include <gtest/gtest.h>

#include "graphics/set_builder.h"
#include "support/saving.h"
#include "tessaro/vga_graph.h"

namespace tessaro::test {

inline ByteArray EndScreen() {
    return Hex("FD00B80000A00F") + Noise(4000) + Hex("1A");
}

inline ByteArray DemoBytes(std::uint8_t level) {
    return ByteArray{level, 10, 0, 0} + Hex("010203 040506");
}

inline std::vector<BuiltChunk> VgaChunks() {
    return {
        {Hex("0800 0100 0A00 0200 0400 0200"), false, false, false, "!ID!"},  // 0: 3 pictures
        {FontChunk(Hex("0F000F000F 000F0F0000"))},                            // 1
        {Hex("0102 0304 0506 0708")},                                         // 2: 8 x 1
        {Noise(20)},                                                          // 3: 10 x 2
        {Hex("0102 0304 0506 0708"), false, false, false, "!ID!"},            // 4: 4 x 2
        {Noise(35 * 64, 4), true},                                            // 5: tiles
        {EndScreen()},                                                        // 6
        {ByteArray(768, 63)},                                                 // 7: a palette
        {{}, false, true},                                                    // 8: sparse
        {DemoBytes(5)},                                                       // 9
        {Ascii("^Ptext^E")},                                                  // 10
        {Noise(300, 5)},                                                      // 11
        {Hex("0102"), false, false, true},                                    // 12: too short
        {Ascii("JAMP....")},                                                  // 13
    };
}

struct OpenSet {
    explicit OpenSet(const std::vector<BuiltChunk>& chunks = VgaChunks()) : set(chunks, false) {
        EXPECT_TRUE(graph.InitializeGraphics());
        events.Listen(graph);
    }
    ByteArray Load(std::int32_t chunk) {
        ByteArray data;
        EXPECT_TRUE(graph.LoadTessaro(chunk, data)) << chunk;
        return data;
    }

    SetFolder set;
    ScriptedUserInterface user;
    clsVGAGraph graph;
    SaveEvents events;
};

}  // namespace tessaro::test
