#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace sim {

// What `norvex-simctl set NAME VALUE...` can change: by name, with a line of help.
class Settings {
public:
    // Gets the values after the name. False: `error` says what is expected.
    using Setter = std::function<bool(const std::vector<std::string>& values, std::string& error)>;

    void Add(const std::string& name, const std::string& help, Setter setter) {
        m_settings[name] = {help, std::move(setter)};
    }
    bool Set(const std::string& name, const std::vector<std::string>& values, std::string& error) const;

private:
    struct Setting {
        std::string help; // "VALUE: what it is"
        Setter setter;
    };
    std::map<std::string, Setting> m_settings;
};

} // namespace sim
