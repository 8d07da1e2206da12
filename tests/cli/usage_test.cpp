// Exit codes, the one line of an error, and where the log goes.
#include <algorithm>
#include <cstdlib>

#include "cli/command.h"
#include "commands/commands.h"

namespace tessaro::test {

namespace {

struct UsageCase {
    std::vector<std::string> arguments;
    int exitCode;
    const char* says;  ///< part of the error's line
};

TEST(Usage, FailuresAreOneLineAndAnExitCode) {
    const SampleGame game;
    const TempFolder nothing;
    const std::string file = nothing.Write("raw", Ascii("text"));
    const std::string none = nothing.File("none");
    const UsageCase cases[] = {
        {{}, 2, "subcommand"},
        {{"list"}, 2, "FOLDER"},
        {{"fly", game.Path()}, 2, "fly"},
        {{"list", game.Path(), "--kind", "tree"}, 2, "tree"},
        {{"render", game.Path(), "first", none}, 1, "no map called"},
        {{"import", game.Path(), file}, 2, "required"},
        {{"import", game.Path(), "--wall", "0", "--sprite", "0", file}, 2, "required"},
        {{"map", "export", game.Path(), "all", none + ".txt"}, 2, ".lvl"},
        {{"map", "export", game.Path(), "0", none, "--par", "1:75"}, 2, "--par"},
        {{"map", "export", game.Path(), "0", none, "--tag", "12345"}, 2, "--tag"},
        {{"palette", "convert", file, none, "--to", "jpeg"}, 2, "jpeg"},
        {{"list", none}, 1, "not a folder"},
        {{"info", ""}, 2, "FOLDER is empty"},
        {{"info", file}, 1, "the one that the file is in"},
        {{"map", "set", game.Path(), "0", "3", "0", "0", "1"}, 1, "no plane 3 (they run from 0"},
        {{"map", "resize", game.Path(), "0", "0", "5"}, 1, "0 x 5 cells"},
        {{"list", nothing.Path()}, 1, "VGADICT"},
        {{"render", game.Path(), "99", none}, 1, "no map 99"},
        {{"render", game.Path(), "0", "/nowhere/at/all.png"}, 1, "cannot write"},
        {{"text", game.Path(), "--font", "0", "x", none}, 1, "no font 0 (they run from 1"},
        {{"import", game.Path(), "--wall", "0", none}, 1, "cannot read"},
        {{"import", game.Path(), "--wall", "0", file}, 1, "neither a PNG nor a BMP"},
        {{"import", game.Path(), "--sound", "0", file}, 1, "not a WAV file"},
        {{"map", "rename", game.Path(), "0", "a name of twenty-one."}, 1, "--name-size"},
        {{"map", "set", game.Path(), "0", "0", "64", "0", "1"},
         1,
         "no column 64 (they run from 0 to 63)"},
        {{"palette", "convert", file, none, "--to", "jasc"}, 1, "Unknown file format"},
    };
    for (const UsageCase& row : cases) {
        const Ran ran = Tessaro(row.arguments);
        SCOPED_TRACE(ran.err);
        EXPECT_EQ(ran.exitCode, row.exitCode);
        EXPECT_EQ(ran.err.rfind("tessaro: ", 0), 0U);
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1);
        EXPECT_NE(ran.err.find(row.says), std::string::npos) << row.says;
    }
    EXPECT_FALSE(nothing.Has("none"));
}

TEST(Usage, EveryCommandHasHelpAndItsPlaceInTheDocuments) {
    const Ran top = Tessaro({"--help"});
    EXPECT_EQ(top.exitCode, 0);
    for (const cli::Command& row : cli::Commands()) {
        const std::string command = row.name;
        std::vector<std::string> arguments = {command.substr(0, command.find(' ')), "--help"};
        if (const std::size_t blank = command.find(' '); blank != std::string::npos)
            arguments.insert(arguments.begin() + 1, command.substr(blank + 1));
        else
            EXPECT_NE(top.out.find("  " + command + " "), std::string::npos) << command;
        const Ran ran = Tessaro(arguments);
        EXPECT_EQ(ran.exitCode, 0) << command;
        EXPECT_NE(ran.out.find("tessaro " + command + " "), std::string::npos) << ran.out;
    }
    const ByteArray page = ReadWholeFile(TESSARO_SOURCE "/docs/command.md");
    const Ran reference = Tessaro({"--generate", "markdown"});
    EXPECT_TRUE(std::string(page.begin(), page.end()).ends_with("-->\n\n" + reference.out))
        << "scripts/reference writes the page anew";
    const TempFolder files;
    files.Write("tessaro.1", Ascii(Tessaro({"--generate", "man"}).out));
    const std::string groff = "groff -man -ww -Tutf8 " + files.File("tessaro.1") + " 2>&1 >" +
                              files.File("seen") + " | grep . ";
    if (std::system("groff --version >/dev/null 2>&1") == 0) {
        EXPECT_NE(std::system(groff.c_str()), 0) << "the manual page has mistakes";
    }
}

/// What bash offers for the last of some words.
std::string Completed(const std::string& words) {
    const TempFolder files;
    files.Write("tessaro", Ascii(Tessaro({"--generate", "bash"}).out));
    const std::string line = "bash -c '. " + files.File("tessaro") + "; COMP_WORDS=(" + words +
                             "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tessaro; " +
                             "echo \"${COMPREPLY[*]}\"' >" + files.File("offered");
    EXPECT_EQ(std::system(line.c_str()), 0);
    const ByteArray offered = files.Read("offered");
    return {offered.begin(), offered.end()};
}

TEST(Usage, BashCompletesCommandsOptionsAndChoices) {
    EXPECT_EQ(Completed("tessaro ex"), "extract\n");
    EXPECT_EQ(Completed("tessaro map re"), "resize remove rename replace\n");
    EXPECT_EQ(Completed("tessaro map export game 0 --form"), "--format\n");
    EXPECT_EQ(Completed("tessaro map export game 0 --format k"), "kzr\n");
    EXPECT_EQ(Completed("tessaro import --wa"), "--wall\n");
    EXPECT_EQ(Completed("tessaro info ga"), "\n") << "files are left to bash";
}

TEST(Usage, ErrorsCanBeJsonAndWorkCanBeQuiet) {
    const SampleGame game;
    const TempFolder files;
    const std::string none = files.File("none");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"list", none, "--json"}, {"list", "--json"}}) {
        const Ran ran = Tessaro(arguments);
        const Json error = Json::parse(ran.err, nullptr, false);
        ASSERT_TRUE(error.is_object()) << ran.err;
        EXPECT_EQ(error.at("exit"), ran.exitCode);
        EXPECT_NE(error.at("error"), "");
    }
    const Ran loud = Tessaro({"render", game.Path(), "0", files.File("a.png")});
    const Ran quiet = Tessaro({"render", game.Path(), "0", files.File("b.png"), "--quiet"});
    EXPECT_NE(loud.out, "");
    EXPECT_EQ(quiet.out + quiet.err, "");
    EXPECT_EQ(files.Read("a.png"), files.Read("b.png"));
}

TEST(Usage, NoSlipCostsAFile) {
    const SampleGame game;
    const TempFolder files;
    const ByteArray notes = Ascii("notes of a year");
    const std::string mine = files.Write("mine.txt", notes);
    const std::string swap = game.Folder().File("VSWAP.LKP"), other = files.File("VSWAP.WL6");
    files.Write("VSWAP.WL6", Ascii("some game's pages"));
    const std::vector<std::vector<std::string>> commands = {
        {"render", game.Path(), "0"},
        {"sheet", game.Path()},
        {"text", game.Path(), "--font", "1", "x"},
        {"map", "export", game.Path(), "0"},
        {"palette", "convert", files.Write("p.pal", Ascii("JASC-PAL\r\n0100\r\n1\r\n1 2 3\r\n")),
         "--to", "raw"},
    };
    const Json before = List(game.Path());
    for (std::vector<std::string> command : commands) {
        SCOPED_TRACE(command[0]);
        command.push_back(mine);
        const Ran asked = Tessaro(command);
        EXPECT_EQ(asked.exitCode, 1);
        EXPECT_NE(asked.err.find("--force"), std::string::npos) << asked.err;
        EXPECT_EQ(files.Read("mine.txt"), notes);
        command.push_back("--force");
        EXPECT_EQ(Tessaro(command).exitCode, 0);
        EXPECT_NE(files.Read("mine.txt"), notes);
        command.pop_back();
        EXPECT_EQ(Tessaro(command).exitCode, 0) << "its own file is replaced unasked";
        for (const std::string& data : {swap, other}) {
            command.back() = data;
            const Ran never = Tessaro(command);
            EXPECT_EQ(never.exitCode, 1);
            EXPECT_NE(never.err.find("never replaced"), std::string::npos) << never.err;
        }
        files.Write("mine.txt", notes);
    }
    EXPECT_EQ(List(game.Path()), before);
    EXPECT_EQ(files.Read("VSWAP.WL6"), Ascii("some game's pages"));
    const Ran sample = Tessaro({"sample", files.Path()});
    EXPECT_EQ(sample.exitCode, 1);
    EXPECT_NE(sample.err.find("empty"), std::string::npos);
    EXPECT_EQ(ListFiles(files.Path(), "*.LKP").size(), 0U);
    for (const std::string& name : ListFiles(files.Path(), "*"))
        EXPECT_EQ(name.find(".new"), std::string::npos) << "nothing is left beside";
}

TEST(Usage, TheErrorLogIsInTheUsersStateFolder) {
    const TempFolder state;
    const TempFolder files;
    const std::string palette = files.Write("raw", Ascii("no palette"));
    const Ran good = Tessaro({"list", SampleGame().Path(), "--kind", "map"}, state.Path());
    EXPECT_EQ(good.exitCode, 0);
    EXPECT_FALSE(state.Has("tessaro/Error.log")) << "nothing failed, nothing is created";
    Tessaro({"palette", "convert", palette, files.File("out"), "--to", "jasc"}, state.Path());
    const ByteArray log = state.Read("tessaro/Error.log");
    EXPECT_NE(std::string(log.begin(), log.end()).find("clsPalette.LoadPaletteDataFromFile"),
              std::string::npos);
    // A state folder that cannot be had costs the place of the log, not the command.
    const Ran odd =
        Tessaro({"palette", "convert", palette, files.File("out"), "--to", "jasc"}, palette);
    EXPECT_EQ(odd.exitCode, 1);
    EXPECT_NE(odd.err.find("Unknown file format"), std::string::npos);
}

}  // namespace

}  // namespace tessaro::test
