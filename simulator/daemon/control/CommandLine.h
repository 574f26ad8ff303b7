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

// The arguments of a program or a control command: parsed, checked, and described by `--help`. A
// name with dashes is an option, one without is a required argument. Parse sets the variables;
// those not given keep their values.
class CommandLine {
public:
    // `program` is what a user types before the arguments, `help` describes it.
    CommandLine(const std::string& program, const std::string& help);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    void Flag(const char* name, bool& given, const char* help);
    // `type` is the placeholder in the help: "FILE".
    void Text(const char* name, std::string& value, const char* type, const char* help);
    // One or more.
    void Texts(const char* name, std::vector<std::string>& values, const char* type, const char* help);
    void Integer(const char* name, std::optional<std::int32_t>& value, const char* type, const char* help);
    // A value outside the two bounds is an error.
    void Integer(const char* name, std::int32_t& value, std::int32_t least, std::int32_t most, const char* type,
                 const char* help);
    void Integer(const char* name, std::optional<std::int32_t>& value, std::int32_t least, std::int32_t most,
                 const char* type, const char* help);
    void Number(const char* name, double& value, double least, double most, const char* type, const char* help);

    // What the program prints instead of running.
    struct Ending {
        int status; // 0: help, for standard output; kBadArguments: an error of one line, without its end
        std::string text;
    };
    static constexpr int kBadArguments = 2;
    // Nothing if the arguments are valid.
    std::optional<Ending> Parse(std::vector<std::string> arguments);

private:
    std::unique_ptr<CLI::App> m_app;
};

} // namespace sim
