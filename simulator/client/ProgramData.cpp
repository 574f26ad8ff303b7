#include <algorithm>

#include <norvex/client/ProgramData.h>
#include <values/Values.h>

#include "MarshalableValue.h"

namespace {

values::Programme& GetProgramme(void* state) {
    return *static_cast<values::Programme*>(state);
}

} // namespace

TCProgramData::TCProgramData() {
    m_pState = new values::Programme;
}

TCProgramData::~TCProgramData() {
    delete &GetProgramme(m_pState);
}

bool TCProgramData::Title(unsigned short* buffer, unsigned int* length) const {
    const auto& title = GetProgramme(m_pState).title;
    if (!title || buffer == nullptr || length == nullptr)
        return false;
    *length = static_cast<unsigned int>(std::min<std::size_t>(*length, title->size()));
    std::copy_n(title->begin(), *length, buffer);
    return true;
}

bool TCProgramData::ClassToTree(TCTreeBranch& branch) {
    return WriteValue(branch, GetProgramme(m_pState));
}

bool TCProgramData::TreeToClass(TCTreeBranch& branch) {
    values::Programme programme;
    if (!ReadValue(branch, programme))
        return false;
    GetProgramme(m_pState) = std::move(programme);
    return true;
}
