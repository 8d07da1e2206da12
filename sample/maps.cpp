#include "sample/maps.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "foundation/bytes.h"
#include "maps/carmack.h"
#include "maps/rlew.h"

namespace tessaro::sample {
namespace {

constexpr std::uint16_t kRlewTag = 0xABCD;

// Cells of the wall plane.
constexpr std::uint16_t kStone = 1, kWood = 2, kTiles = 3, kMoss = 4, kBanner = 5, kBooks = 6;
constexpr std::uint16_t kDoorVertical = 90, kDoorHorizontal = 91, kLockedDoor = 92, kExit = 100;
constexpr std::uint16_t kFirstFloor = 108;  // each room is an area of its own
// Cells of the object plane.
constexpr std::uint16_t kStartNorth = 19, kLamp = 23, kPlant = 24, kCrate = 25, kKey = 26,
                        kCoins = 27, kSecretDoor = 98, kBeetle = 108, kKeeper = 116;

struct Room {
    int x, y, width, height;
    std::uint16_t wall;
};

class Builder {
public:
    explicit Builder(std::string name) {
        map_.name = std::move(name);
        map_.walls.assign(kMapSide * kMapSide, kStone);
        map_.objects.assign(kMapSide * kMapSide, 0);
    }

    /// Clears a room, gives it walls of its own kind and a lamp in each corner that has room.
    Builder& Carve(const Room& room) {
        for (int y = room.y - 1; y <= room.y + room.height; ++y)
            for (int x = room.x - 1; x <= room.x + room.width; ++x) {
                const bool inside = x >= room.x && x < room.x + room.width && y >= room.y &&
                                    y < room.y + room.height;
                if (inside)
                    Wall(x, y, static_cast<std::uint16_t>(kFirstFloor + rooms_));
                else if (WallAt(x, y) < kDoorVertical)
                    Wall(x, y, room.wall);
            }
        ++rooms_;
        if (room.width > 4 && room.height > 4)
            for (int corner = 0; corner < 4; ++corner)
                Object(room.x + (corner % 2) * (room.width - 1),
                       room.y + (corner / 2) * (room.height - 1), kLamp);
        return *this;
    }
    Builder& Wall(int x, int y, std::uint16_t cell) {
        map_.walls[Index(x, y)] = cell;
        return *this;
    }
    Builder& Object(int x, int y, std::uint16_t cell) {
        map_.objects[Index(x, y)] = cell;
        return *this;
    }
    /// Objects drawn as rows of letters from a corner on.
    Builder& Objects(int x, int y, std::initializer_list<std::string_view> rows) {
        static const std::map<char, std::uint16_t> kinds = {
            {'^', kStartNorth}, {'l', kLamp},  {'p', kPlant},  {'c', kCrate},
            {'k', kKey},        {'o', kCoins}, {'b', kBeetle}, {'K', kKeeper}};
        for (std::string_view row : rows) {
            for (std::size_t i = 0; i < row.size(); ++i)
                if (const auto kind = kinds.find(row[i]); kind != kinds.end())
                    Object(x + static_cast<int>(i), y, kind->second);
            ++y;
        }
        return *this;
    }
    SampleMap Done() { return std::move(map_); }

private:
    static std::size_t Index(int x, int y) { return static_cast<std::size_t>(y * kMapSide + x); }
    std::uint16_t WallAt(int x, int y) const { return map_.walls[Index(x, y)]; }

    SampleMap map_;
    int rooms_ = 0;
};

SampleMap Gatehouse() {
    return Builder("The Gatehouse")
        .Carve({28, 50, 9, 9, kWood})     // the gate, where the player starts
        .Carve({31, 34, 3, 15, kStone})   // the way north
        .Carve({14, 22, 37, 11, kTiles})  // the hall
        .Carve({6, 36, 15, 12, kBooks})   // library
        .Carve({44, 38, 13, 10, kMoss})   // cellar
        .Carve({24, 6, 17, 11, kBanner})  // the keeper's room
        .Wall(32, 49, kDoorHorizontal)
        .Wall(32, 33, kDoorHorizontal)
        .Wall(18, 33, kDoorHorizontal)
        .Wall(18, 34, kFirstFloor)
        .Wall(18, 35, kDoorHorizontal)
        .Wall(47, 33, kDoorHorizontal)
        .Wall(47, 34, kFirstFloor)
        .Wall(47, 35, kFirstFloor)
        .Wall(47, 36, kFirstFloor)
        .Wall(47, 37, kDoorHorizontal)
        .Wall(32, 17, kLockedDoor)
        .Wall(32, 18, kFirstFloor)
        .Wall(32, 19, kFirstFloor)
        .Wall(32, 20, kFirstFloor)
        .Wall(32, 21, kDoorHorizontal)
        .Wall(32, 5, kExit)
        .Objects(28, 50,
                 {"l...p...l", ".........", ".........", "....^....", "c........", "cc......p"})
        .Objects(14, 26, {"..p..b.......p.........p.......b..p.."})
        .Objects(8, 38, {"o.c.c.c.c.c", "..........o", "k.c.c.c.c.c", "..........b"})
        .Objects(46, 40, {"ccc....b", "cc.o....", "c.....oo"})
        .Objects(26, 8, {"p...........p", ".............", "......K......", ".b.........b."})
        .Carve({22, 41, 4, 3, kStone})  // behind the wall that gives way
        .Object(21, 42, kSecretDoor)
        .Objects(22, 41, {"oooo", "oooo", "oooo"})
        .Done();
}

/// A ring of cells around a court.
SampleMap Cloister() {
    Builder builder("The Cloister");
    builder.Carve({10, 10, 44, 44, kMoss});
    for (int ring = 0; ring < 2; ++ring) {
        const int from = ring == 0 ? 16 : 26, to = ring == 0 ? 47 : 37;
        for (int i = from; i <= to; ++i) {
            const std::uint16_t wall = i % 5 == 0 ? kBanner : kStone;
            builder.Wall(i, from, wall).Wall(i, to, wall).Wall(from, i, wall).Wall(to, i, wall);
        }
    }
    builder.Wall(32, 16, kDoorHorizontal).Wall(32, 47, kDoorHorizontal);
    builder.Wall(16, 32, kDoorVertical).Wall(47, 32, kDoorVertical);
    builder.Wall(32, 37, kLockedDoor).Wall(31, 26, kExit);
    for (int i = 12; i < 52; i += 4)
        builder.Object(i, 13, i % 8 == 0 ? kPlant : kLamp)
            .Object(i, 50, kLamp)
            .Object(20, i, kBeetle);
    builder.Objects(29, 50, {"^.....c"})
        .Object(22, 22, kKey)
        .Objects(29, 29, {"oooooo", "o....o", "o..K.o", "oooooo"});
    return builder.Done();
}

/// Rooms on a spiral, joined by doors.
SampleMap Tower() {
    Builder builder("Lantern Tower");
    const Room rooms[] = {
        {4, 4, 11, 11, kTiles},  {17, 4, 14, 9, kWood},    {33, 4, 12, 12, kBooks},
        {47, 4, 12, 9, kBanner}, {47, 15, 12, 16, kMoss},  {47, 33, 12, 12, kTiles},
        {30, 33, 15, 12, kWood}, {12, 33, 16, 10, kBooks}, {12, 17, 14, 14, kBanner}};
    for (const Room& room : rooms)
        builder.Carve(room);
    builder.Wall(15, 8, kFirstFloor).Wall(16, 8, kDoorVertical);
    builder.Wall(31, 8, kFirstFloor).Wall(32, 8, kDoorVertical);
    builder.Wall(45, 8, kFirstFloor).Wall(46, 8, kDoorVertical);
    builder.Wall(52, 13, kFirstFloor).Wall(52, 14, kDoorHorizontal);
    builder.Wall(52, 31, kFirstFloor).Wall(52, 32, kDoorHorizontal);
    builder.Wall(45, 38, kFirstFloor).Wall(46, 38, kDoorVertical);
    builder.Wall(28, 38, kFirstFloor).Wall(29, 38, kLockedDoor);
    builder.Wall(18, 31, kFirstFloor).Wall(18, 32, kDoorHorizontal).Wall(26, 24, kExit);
    builder.Objects(6, 6, {"p.....p", ".......", "...^...", ".......", "p.....p"})
        .Objects(19, 6, {"b....c", "....cc"})
        .Objects(35, 7, {"c.c.c.c", ".......", "c.c.c.c", "...b..."})
        .Objects(49, 6, {"..b..o", "oo..b."})
        .Objects(50, 19, {"p..p..", "......", "..bb..", "......", "p..p.."})
        .Objects(33, 36, {"o.o.o.o.o", "...k....."})
        .Objects(15, 20, {"..l..l..", "........", "...K....", "........", "..l..l.."});
    return builder.Done();
}

ByteArray WordBytes(const std::vector<std::uint16_t>& words) {
    ByteWriter out;
    for (std::uint16_t word : words)
        out.U16(word);
    return out.Release();
}

}  // namespace

std::array<SampleMap, 3> MakeMaps() {
    return {Gatehouse(), Cloister(), Tower()};
}

MapFiles WriteMapFiles(bool older) {
    ByteWriter data;
    std::vector<std::int32_t> records;
    data.Text("TED5v1.0");
    for (const SampleMap& map : MakeMaps()) {
        std::vector<std::vector<std::uint16_t>> planes = {map.walls, map.objects};
        if (!older)
            planes.emplace_back(kMapSide * kMapSide);
        std::array<std::int32_t, 3> offsets = {0, 0, -1};  // the third plane may be nowhere
        std::array<std::uint16_t, 3> lengths{};
        for (std::size_t plane = 0; plane < planes.size(); ++plane) {
            ByteArray stored =
                RlewCompress(kRlewTag, WordBytes(planes[plane]), LengthPrefix::Short);
            if (!older)
                stored = CarmackCompress(stored, LengthPrefix::Short, CarmackTags{});
            offsets[plane] = static_cast<std::int32_t>(data.Position());
            lengths[plane] = static_cast<std::uint16_t>(stored.size());
            data.Bytes(stored);
        }
        records.push_back(static_cast<std::int32_t>(data.Position()));
        for (std::int32_t offset : offsets)
            data.I32(offset);
        for (std::uint16_t length : lengths)
            data.U16(length);
        data.U16(kMapSide);
        data.U16(kMapSide);
        data.Padded(map.name, 16);
        data.Text("!ID!");
    }

    ByteWriter header;
    header.U16(kRlewTag);
    records.resize(100);
    for (std::int32_t record : records)
        header.I32(record);
    return {header.Release(), data.Release()};
}

}  // namespace tessaro::sample
