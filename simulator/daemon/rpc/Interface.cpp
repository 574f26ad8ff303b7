#include "Interface.h"

#include <stdexcept>

namespace sim {

Method* Interface::Find(std::int16_t id, std::string_view name) const {
    if (id < 0 || static_cast<std::size_t>(id) >= m_methods.size())
        return nullptr;
    Method* method = m_methods[static_cast<std::size_t>(id)].get();
    return method->name == name ? method : nullptr;
}

void Interface::Add(const char* name, std::vector<Argument> arguments, Method::Handler handler) {
    if (arguments.size() > ArgumentReader::kMaxArguments)
        throw std::length_error(std::string(name) + " has too many arguments");
    m_methods.push_back(
        std::make_unique<Method>(Method{this, name, static_cast<std::int16_t>(m_methods.size()),
                                        std::move(arguments), std::move(handler)}));
}

} // namespace sim
