// lineup load, show, save

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "ControlSocket.h"
#include "Subcommands.h"

namespace simctl {

using nlohmann::json;

namespace {

// A million services take seconds.
constexpr double kLoadSeconds = 300;

int Load(const std::string& socketPath, const std::string& file) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(file, error);
    if (error) {
        Complain(file + ": " + error.message());
        return 1;
    }
    json answer;
    const json request{
        {"command", "lineup"}, {"action", "load"}, {"path", path.string()}, {"name", file}};
    return ControlSocket(socketPath).Ask(request, answer, kLoadSeconds) ? 0 : 1;
}

bool Write(const std::string& socketPath, std::FILE* file) {
    const json request{{"command", "lineup"}, {"action", "show"}};
    return ControlSocket(socketPath).AskForLines(request, [file](const json& answer) {
        const auto& text = answer.at("text").get_ref<const std::string&>();
        return std::fwrite(text.data(), 1, text.size(), file) == text.size();
    });
}

// The file is there as a whole or not at all.
int Save(const std::string& socketPath, const std::string& file) {
    const std::string unfinished = file + ".part";
    std::FILE* stream = std::fopen(unfinished.c_str(), "w");
    if (stream == nullptr) {
        Complain(file + ": cannot be written");
        return 1;
    }
    const bool came = Write(socketPath, stream);
    const bool written = std::ferror(stream) == 0;
    const bool closed = std::fclose(stream) == 0;
    if (came && written && closed && std::rename(unfinished.c_str(), file.c_str()) == 0)
        return 0;
    if (came)
        Complain(file + ": cannot be written");
    static_cast<void>(std::remove(unfinished.c_str()));
    return 1;
}

} // namespace

void AddLineUp(CLI::App& app, Line& line) {
    CLI::App* lineUp = app.add_subcommand("lineup", "The services that the TV has, as a text");
    lineUp->require_subcommand(1);
    auto file = std::make_shared<std::string>();

    CLI::App* load = lineUp->add_subcommand("load", "Take a file's line-up instead");
    load->add_option("file", *file)->required()->type_name("FILE");
    load->callback(
        [&line, file] { line.run = [&line, file] { return Load(line.socketPath, *file); }; });

    CLI::App* show = lineUp->add_subcommand("show", "Print it");
    show->callback([&line] {
        line.run = [&line] {
            return Write(line.socketPath, stdout) && std::fflush(stdout) == 0 ? 0 : 1;
        };
    });

    CLI::App* save = lineUp->add_subcommand("save", "Write it to a file");
    save->add_option("file", *file)->required()->type_name("FILE");
    save->callback(
        [&line, file] { line.run = [&line, file] { return Save(line.socketPath, *file); }; });
}

} // namespace simctl
