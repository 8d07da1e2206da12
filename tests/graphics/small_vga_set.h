// A small VGA set, opened: one chunk of every kind.
#pragma once

#include <gtest/gtest.h>

#include "graphics/set_builder.h"
#include "tessaro/vga_graph.h"

namespace tessaro::test {

inline ByteArray EndScreen() {
    return Joined({Hex("FD00B80000A00F"), Noise(4000), Hex("1A")});
}

inline ByteArray DemoBytes(std::uint8_t level) {
    return Joined({{level, 10, 0, 0}, Hex("010203 040506")});
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
        graph.SaveStatus = [this](std::int32_t, std::int32_t) { ++steps; };
        graph.SaveError = [this](std::int32_t chunk, const std::string& text) {
            errors.push_back(std::to_string(chunk) + ": " + text);
        };
        graph.SaveComplete = [this](bool success) { completed.push_back(success); };
    }
    ByteArray Load(std::int32_t chunk) {
        ByteArray data;
        EXPECT_TRUE(graph.LoadTessaro(chunk, data)) << chunk;
        return data;
    }
    std::string LastBox() const { return user.boxes.empty() ? "" : user.boxes.back().prompt; }

    SetFolder set;
    ScriptedUserInterface user;
    clsVGAGraph graph;
    int steps = 0;
    std::vector<std::string> errors;
    std::vector<bool> completed;
};

}  // namespace tessaro::test
