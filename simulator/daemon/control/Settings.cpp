#include "Settings.h"

namespace sim {

bool Settings::Set(const std::string& name, const std::vector<std::string>& words,
                   std::string& error) const {
    const auto found = m_settables.find(name);
    if (found == m_settables.end()) {
        error = "nothing to set is called \"" + name + "\"; there is:";
        for (const auto& [known, settable] : m_settables)
            error += (known == m_settables.begin()->first ? " " : ", ") + known;
        return false;
    }
    if (found->second.setter(words, error))
        return true;
    if (error.empty())
        error = "expected: " + name + " " + found->second.help;
    return false;
}

} // namespace sim
