#include "Interface.h"

#include <stdexcept>

namespace sim {

Interface::Interface(const interfaces::InterfaceTable& table, Calls calls)
    : m_table(table), m_name(table.name), m_calls(calls), m_operations(table.methodCount) {}

void Interface::CheckComplete() const {
    for (std::size_t id = 0; id < m_operations.size(); ++id) {
        if (m_operations[id] == nullptr)
            throw std::logic_error(m_name + "." + std::string(m_table.methods.at(id)) + " has no handler");
    }
}

Operation* Interface::Find(std::int16_t id, std::string_view name) const {
    if (id < 0 || static_cast<std::size_t>(id) >= m_operations.size())
        return nullptr;
    Operation* method = m_operations[static_cast<std::size_t>(id)].get();
    return method->name == name ? method : nullptr;
}

void Interface::Add(std::int16_t id, std::vector<Argument> arguments, Operation::Handler handler) {
    std::string name(m_table.GetName(id));
    std::unique_ptr<Operation>& method = m_operations.at(static_cast<std::size_t>(id));
    if (method != nullptr)
        throw std::logic_error(m_name + "." + name + " has two handlers");
    if (arguments.size() > ArgumentReader::kMaxArguments)
        throw std::length_error(m_name + "." + name + " has too many arguments");
    method =
        std::make_unique<Operation>(Operation{this, std::move(name), id, std::move(arguments), std::move(handler)});
}

} // namespace sim
