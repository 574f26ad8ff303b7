#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeToClassFormatter.h>
#include <zarn/MenuItem.h>

#include "MarshalableString.h"

namespace {

// The fields' tags, known to both sides; written and read in this order.
constexpr short kNameTag = 0;
constexpr short kStateTag = 1;
constexpr short kIdTag = 2;

} // namespace

TSMenuItem::TSMenuItem() : m_state(false), m_id(0) {}

TSMenuItem::TSMenuItem(const TSMenuItem& other) = default;

TSMenuItem& TSMenuItem::operator=(const TSMenuItem& other) = default;

TSMenuItem::TSMenuItem(TSMenuItem&& other) noexcept = default;

TSMenuItem& TSMenuItem::operator=(TSMenuItem&& other) noexcept = default;

TSMenuItem::~TSMenuItem() = default;

void TSMenuItem::setName(const std::string& name) {
    m_name = name;
}

const std::string& TSMenuItem::getName() const {
    return m_name;
}

void TSMenuItem::setState(bool state) {
    m_state = state;
}

bool TSMenuItem::getState() const {
    return m_state;
}

void TSMenuItem::setID(unsigned int id) {
    m_id = id;
}

unsigned int TSMenuItem::getID() const {
    return m_id;
}

bool TSMenuItem::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    TCMarshalableString name(&m_name);
    formatter.PushMarshalableClass(kNameTag, &name);
    formatter.PushValue(kStateTag, sizeof(m_state), &m_state);
    formatter.PushValue(kIdTag, sizeof(m_id), &m_id);
    return formatter.Extract();
}

bool TSMenuItem::TreeToClass(TCTreeBranch& branch) {
    TCTreeToClassFormatter formatter(branch);
    TCMarshalableString name(&m_name);
    formatter.PushMarshalableClass(kNameTag, &name);
    // Read as a byte: whatever was sent, m_state is then a valid bool.
    unsigned char state = m_state;
    formatter.PushValue(kStateTag, sizeof(state), &state);
    m_state = state != 0;
    formatter.PushValue(kIdTag, sizeof(m_id), &m_id);
    return formatter.FillOut();
}
