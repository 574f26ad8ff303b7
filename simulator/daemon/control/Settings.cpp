#include "Settings.h"

namespace sim {

bool Settings::Set(const std::string& name, const std::vector<std::string>& values, std::string& error) const {
    const auto found = m_settings.find(name);
    if (found == m_settings.end()) {
        error = "unknown setting '" + name + "'; available:";
        for (const auto& [known, setting] : m_settings)
            error += (known == m_settings.begin()->first ? " " : ", ") + known;
        return false;
    }
    if (found->second.setter(values, error))
        return true;
    if (error.empty())
        error = "expected: " + name + " " + found->second.help;
    return false;
}

} // namespace sim
