#include <norvex/client/ProgramData.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeToClassFormatter.h>

#include "ArrayChild.h"

namespace {

struct Program {
    std::uint64_t start = 0;    // seconds since 1970
    std::uint32_t duration = 0; // seconds
    std::optional<std::vector<unsigned short>> title;
};

constexpr int kStartTag = 0;
constexpr int kDurationTag = 1;
constexpr int kTitleTag = 2;

Program& GetProgram(void* state) {
    return *static_cast<Program*>(state);
}

} // namespace

TCProgramData::TCProgramData() {
    m_pState = new Program;
}

TCProgramData::~TCProgramData() {
    delete &GetProgram(m_pState);
}

bool TCProgramData::Title(unsigned short* buffer, unsigned int* length) const {
    const Program& program = GetProgram(m_pState);
    if (!program.title.has_value() || buffer == nullptr || length == nullptr)
        return false;
    *length = static_cast<unsigned int>(std::min<std::size_t>(*length, program.title->size()));
    std::copy_n(program.title->begin(), *length, buffer);
    return true;
}

bool TCProgramData::ClassToTree(TCTreeBranch& branch) {
    Program& program = GetProgram(m_pState);
    TCClassToTreeFormatter formatter(branch);
    formatter.PushValue(kStartTag, sizeof program.start, &program.start);
    formatter.PushValue(kDurationTag, sizeof program.duration, &program.duration);
    if (program.title.has_value())
        formatter.PushArray(kTitleTag, static_cast<int>(program.title->size()),
                            sizeof(unsigned short), program.title->data());
    return formatter.Extract();
}

bool TCProgramData::TreeToClass(TCTreeBranch& branch) {
    Program program;
    TCTreeToClassFormatter formatter(branch);
    formatter.PushValue(kStartTag, sizeof program.start, &program.start);
    formatter.PushValue(kDurationTag, sizeof program.duration, &program.duration);
    for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
        if (node->GetTag() != kTitleTag || program.title.has_value())
            continue;
        if (!ReadElements(*node, program.title.emplace()))
            return false;
    }
    if (!formatter.FillOut())
        return false;
    GetProgram(m_pState) = std::move(program);
    return true;
}
