#include "cli/command.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>

namespace tessaro::test {

namespace {

std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

}  // namespace

Ran Tessaro(const std::vector<std::string>& arguments, const std::string& state) {
    static const TempFolder ownState;
    const TempFolder streams;
    std::string line = "XDG_STATE_HOME=" + Quoted(state.empty() ? ownState.Path() : state) + " " +
                       Quoted(TESSARO_COMMAND);
    for (const std::string& argument : arguments)
        line += " " + Quoted(argument);
    line += " </dev/null >" + Quoted(streams.File("out")) + " 2>" + Quoted(streams.File("err"));
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TextOf(streams.Read("out")),
            TextOf(streams.Read("err"))};
}

SampleGame::SampleGame(bool ega) {
    std::vector<std::string> arguments = {"sample", folder_.Path()};
    if (ega)
        arguments.push_back("--ega");
    const Ran ran = Tessaro(arguments);
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
}

Json List(const std::string& game, const std::vector<std::string>& kinds) {
    std::vector<std::string> arguments = {"list", game, "--json"};
    for (const std::string& kind : kinds)
        arguments.insert(arguments.end(), {"--kind", kind});
    const Ran ran = Tessaro(arguments);
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    return Json::parse(ran.out, nullptr, false);
}

Json ItemOf(const std::string& game, const std::string& kind, int number) {
    for (const Json& item : List(game, {kind}))
        if (item.at("number") == number)
            return item;
    ADD_FAILURE() << "no " << kind << " " << number;
    return {};
}

std::vector<int> Filled(const std::string& game, const std::string& kind) {
    std::vector<int> numbers;
    for (const Json& item : List(game, {kind}))
        if (!item.contains("empty"))
            numbers.push_back(item.at("number"));
    return numbers;
}

}  // namespace tessaro::test
