// tessaro import FOLDER --wall N | --sprite N | ... FILE
#include <algorithm>
#include <iostream>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "files.h"
#include "known/item_names.h"
#include "report.h"
#include "sounds/wav.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, file;
    enmVSWAPCompression compression = vcNone;
    std::optional<std::string> wall, sprite, sound, picture, chunk, audio;
    SaveOptions save;
};

/// The file's picture in the game's colours.
IndexedImage LoadImage(Game& game, const std::string& file, std::optional<std::uint8_t> hole) {
    const ByteArray bytes = ReadFile(file);
    Mapped mapped;
    try {
        mapped = MapToColors(ReadImage(bytes), CurrentColors(game.Palette()), 256, hole);
    } catch (const CommandError& error) {
        throw CommandError(file + ": " + error.what());
    }
    Say(file + (mapped.kept ? ": the palette is the game's, its indices are kept"
                            : ": the palette is not the game's, each colour became the nearest"));
    return mapped.image;
}

void CheckSide(Game& game, const IndexedImage& image, const Options& options) {
    const int side = game.Pages().HiResInput() ? 128 : 64;
    if (image.width != side || image.height != side)
        throw CommandError(options.file + " has " + std::to_string(image.width) + " x " +
                           std::to_string(image.height) +
                           " pixels, this game's walls and sprites " + std::to_string(side) +
                           " x " + std::to_string(side));
}

void ImportWall(Game& game, const Options& options) {
    const int wall = NumberOf(game, "wall", *options.wall);
    CheckNumber("wall", wall, game.Pages().NumberOfWalls());
    const IndexedImage image = LoadImage(game, options.file, {});
    CheckSide(game, image, options);
    game.Pages().SetChunkData(wall, ToBmp(image));
    game.SavePages(options.save, options.compression);
}

void ImportSprite(Game& game, const Options& options) {
    const int sprite = NumberOf(game, "sprite", *options.sprite);
    CheckNumber("sprite", sprite, game.Pages().NumberOfSprites());
    const IndexedImage image = LoadImage(game, options.file, kHole);
    CheckSide(game, image, options);
    game.Pages().SetChunkData(game.Pages().NumberOfWalls() + sprite, ToBmp(image));
    game.SavePages(options.save, options.compression);
}

void ImportSound(Game& game, const Options& options) {
    const int sound = NumberOf(game, "sound", *options.sound);
    CheckNumber("sound", sound, game.Pages().NumberOfSounds());
    const ByteArray bytes = ReadFile(options.file);
    Wav wav;
    try {
        wav = ReadWav(bytes);
    } catch (const CommandError& error) {
        throw CommandError(options.file + ": " + error.what());
    }
    if (wav.rate != kSoundRate || wav.bits != 8 || wav.channels != 1)
        throw CommandError(options.file + " has " + std::to_string(wav.rate) + " Hz, " +
                           std::to_string(wav.bits) + " bits, " + std::to_string(wav.channels) +
                           " channels; the game plays " + std::to_string(kSoundRate) +
                           " Hz, 8 bits, 1 channel");
    game.Pages().SetSoundData(sound, WriteWav(wav.samples));
    game.SavePages(options.save, options.compression);
}

constexpr Choice<enmVSWAPCompression> kCompressions[] = {
    {"none", vcNone}, {"original", vcOriginal}, {"good", vcGood}};

clsVGAGraph& WritableGraphics(Game& game) {
    clsVGAGraph& graphics = game.Graphics();
    if (!game.Version().CanCompileVGAGraph())
        throw CommandError("the graphics of this game cannot be rewritten");
    return graphics;
}

void ImportPicture(Game& game, const Options& options) {
    const int picture = NumberOf(game, "picture", *options.picture);
    clsVGAGraph& graphics = WritableGraphics(game);
    CheckNumber("chunk", picture, graphics.NumberOfChunks());
    if (graphics.ChunkDataType(picture) != vgPicture)
        throw CommandError("chunk " + std::to_string(picture) + " is not a picture");
    const IndexedImage image = LoadImage(game, options.file, {});
    if (image.width % 4 != 0)  // a picture is stored as every fourth column, four times
        throw CommandError(options.file + " is " + std::to_string(image.width) +
                           " pixels wide; a picture's width is a multiple of 4");
    graphics.SetChunkData(picture, ToBmp(image));
    game.SaveGraphics(options.save);
}

void ImportChunk(Game& game, const Options& options) {
    const int chunk = NumberOf(game, "chunk", *options.chunk);
    clsVGAGraph& graphics = WritableGraphics(game);
    CheckNumber("chunk", chunk, graphics.NumberOfChunks());
    graphics.SetChunkData(chunk, ReadFile(options.file));
    game.SaveGraphics(options.save);
}

void ImportAudio(Game& game, const Options& options) {
    const int audio = NumberOf(game, "audio", *options.audio);
    CheckNumber("audio chunk", audio, game.Audio().NumberOfChunks());
    game.Audio().SetChunkData(audio, ReadFile(options.file));
    game.SaveAudio(options.save);
}

void Run(const Options& options) {
    Game game(options.folder);
    if (options.wall)
        ImportWall(game, options);
    else if (options.sprite)
        ImportSprite(game, options);
    else if (options.sound)
        ImportSound(game, options);
    else if (options.picture)
        ImportPicture(game, options);
    else if (options.chunk)
        ImportChunk(game, options);
    else
        ImportAudio(game, options);
}

}  // namespace

void AddImport(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    command.add_option("FILE", options->file, "The file with the new item")->required();
    CLI::Option_group* item = command.add_option_group("item", "What to replace");
    const auto add = [&](const char* name, std::optional<std::string>& number, const char* help) {
        item->add_option(name, number, help)->type_name("N");
    };
    add("--wall", options->wall, "A wall, from a PNG or BMP file");
    add("--sprite", options->sprite, "A sprite, from a PNG or BMP file");
    add("--sound", options->sound, "A digitised sound, from a WAV file of 7042 Hz, 8 bits, mono");
    add("--picture", options->picture, "A picture by its chunk, from a PNG or BMP file");
    add("--chunk", options->chunk, "A graphics chunk, from its expanded bytes");
    add("--audio", options->audio, "An audio chunk, from its bytes");
    item->require_option(1);
    AddChoice(command, "--compression", options->compression, ListOf(kCompressions),
              "How sprites share pixels [none, as the games do]");
    options->save.AddTo(command);
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
