#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace sim {

// What a program or a control command can be given: read, checked, and described to `--help`. A name with dashes is an
// option, one without is an argument that has to be given. The variables get their values in Parse and keep what they
// hold where nothing is given.
class CommandLine {
public:
    // `program` is what a user types before the arguments, `help` what it is for.
    CommandLine(const std::string& program, const std::string& help);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    void Flag(const char* name, bool& given, const char* help);
    // `type` stands for the value in the help: "FILE".
    void Text(const char* name, std::string& value, const char* type, const char* help);
    // One or more.
    void Texts(const char* name, std::vector<std::string>& values, const char* type,
               const char* help);
    void Integer(const char* name, std::optional<std::int32_t>& value, const char* type,
                 const char* help);
    // What is not within the two bounds is an error.
    void Integer(const char* name, std::int32_t& value, std::int32_t least, std::int32_t most,
                 const char* type, const char* help);
    void Integer(const char* name, std::optional<std::int32_t>& value, std::int32_t least,
                 std::int32_t most, const char* type, const char* help);
    void Number(const char* name, double& value, double least, double most, const char* type,
                const char* help);

    // Instead of doing its work, the program prints this text.
    struct Ending {
        int status; // 0: help, for standard output; kBadArguments: an error of one line, without its end
        std::string text;
    };
    static constexpr int kBadArguments = 2;
    // Nothing when the arguments were fine.
    std::optional<Ending> Parse(std::vector<std::string> arguments);

private:
    std::unique_ptr<CLI::App> m_app;
};

} // namespace sim
