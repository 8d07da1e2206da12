"""Changes a cell and a wall of the game in a folder, saves, and reads both back.

usage: python edit_game.py FOLDER
"""
import os
import sys

import win32com.client

VC_GOOD = 2


def check(done, message):
    if not done:
        sys.exit(message)


def main(folder):
    # EnsureDispatch reads the type library: [in, out] arguments come back beside the result.
    create = win32com.client.gencache.EnsureDispatch
    game = create("Tessaro.clsVersion")
    check(game.LoadDataPath(folder), f"No game in {folder}")
    game.OutputFolder = folder
    game.BackupFolder = os.path.join(folder, "backup")
    game.CompileExtension = game.Extension

    # The cell two to the right and two below the top left corner becomes a wall of kind 5.
    maps = create("Tessaro.clsGameMaps")
    check(maps.Initialize(), "The maps cannot be read")
    for number in range(maps.NumberOfMaps):
        print(f"Map {number}: " + maps.MapName(number).rstrip("\0"))
    check(maps.SetMapCode(0, 0, 2, 2, 5), "The cell cannot be changed")
    check(maps.SaveMapFile(), "The maps cannot be saved")

    # A frame of colour 15 around the first wall. The pixels of its BMP image are its last 4096
    # bytes.
    pages = create("Tessaro.clsVSwap")
    check(pages.Initialize(), "The page file cannot be read")
    done, data = pages.LoadWall(0, None)
    check(done, "The wall cannot be read")
    image = bytearray(data)
    start = len(image) - 4096
    for i in range(64):
        for at in (i, 63 * 64 + i, i * 64, i * 64 + 63):
            image[start + at] = 15
    pages.SetChunkData(0, bytes(image))
    check(pages.SaveVSwap(VC_GOOD), "The page file cannot be saved")

    # New objects read what is on the disk.
    maps = create("Tessaro.clsGameMaps")
    pages = create("Tessaro.clsVSwap")
    check(maps.Initialize() and pages.Initialize(), "The game cannot be read again")
    done, planes, width, height = maps.LoadMap(0, None, 0, 0)
    check(done, "No map")
    done, data = pages.LoadWall(0, None)
    check(done, "No wall")
    print(f"Map 0 is {width} x {height}, its cell (2, 2) is {planes[0][2 * width + 2]}")
    print("Wall 0 begins with the colours", *bytes(data)[start:start + 2])


if __name__ == "__main__":
    check(len(sys.argv) == 2, "usage: python edit_game.py FOLDER")
    main(os.path.abspath(sys.argv[1]))
