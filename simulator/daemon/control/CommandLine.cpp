#include "CommandLine.h"

#include <algorithm>

#include <CLI/CLI.hpp>

namespace sim {

namespace {

// CLI11 would parse "[]" and "[a,b]" as lists where several arguments are allowed: a blank appended
// to them, and removed afterwards, prevents that.
bool IsInBrackets(const std::string& text) {
    return text.starts_with('[') && text.ends_with(']');
}

std::string TakeBlank(std::string text) {
    if (text.starts_with('[') && text.ends_with("] "))
        text.pop_back();
    return text;
}

void Finish(CLI::Option* option, const char* type) {
    option->type_name(type)->required(option->get_positional())->transform(TakeBlank);
}

} // namespace

CommandLine::CommandLine(const std::string& program, const std::string& help)
    : m_app(std::make_unique<CLI::App>(help, program)) {}

CommandLine::~CommandLine() = default;

void CommandLine::Flag(const char* name, bool& given, const char* help) {
    m_app->add_flag(name, given, help);
}

void CommandLine::Text(const char* name, std::string& value, const char* type, const char* help) {
    Finish(m_app->add_option(name, value, help), type);
}

void CommandLine::Texts(const char* name, std::vector<std::string>& values, const char* type, const char* help) {
    Finish(m_app->add_option(name, values, help), type);
}

void CommandLine::Integer(const char* name, std::optional<std::int32_t>& value, const char* type, const char* help) {
    Finish(m_app->add_option(name, value, help), type);
}

void CommandLine::Integer(const char* name, std::int32_t& value, std::int32_t least, std::int32_t most,
                          const char* type, const char* help) {
    Finish(m_app->add_option(name, value, help)->check(CLI::Range(least, most)), type);
}

void CommandLine::Integer(const char* name, std::optional<std::int32_t>& value, std::int32_t least, std::int32_t most,
                          const char* type, const char* help) {
    Finish(m_app->add_option(name, value, help)->check(CLI::Range(least, most)), type);
}

void CommandLine::Number(const char* name, double& value, double least, double most, const char* type,
                         const char* help) {
    // A range contains "nan".
    const auto isNumber = [](const std::string& text) {
        return text.find_first_of("nN") == std::string::npos ? "" : "expected a number, found " + text;
    };
    Finish(m_app->add_option(name, value, help)->check(isNumber)->check(CLI::Range(least, most)), type);
}

std::optional<CommandLine::Ending> CommandLine::Parse(std::vector<std::string> arguments) {
    for (std::string& argument : arguments) {
        if (IsInBrackets(argument))
            argument += ' ';
    }
    // CLI11 expects them in reverse order.
    std::reverse(arguments.begin(), arguments.end());
    try {
        m_app->parse(arguments);
    } catch (const CLI::CallForHelp&) {
        return Ending{0, m_app->help()};
    } catch (const CLI::Error& error) {
        return Ending{kBadArguments, error.what()};
    }
    return {};
}

} // namespace sim
