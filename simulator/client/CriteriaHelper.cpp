#include <norvex/client/CriteriaHelper.h>

#include <cstdint>
#include <utility>
#include <vector>

#include <norvex/core/ClassToTreeFormatter.h>

#include "ArrayChild.h"

namespace {

enum class ConditionKind : std::int32_t { Where = 0, WhereNot = 1 };

struct Condition {
    ConditionKind kind;
    std::int32_t field;
    std::int32_t value;
};
static_assert(sizeof(Condition) == 12, "it travels as it stands");

struct Query {
    std::vector<Condition> conditions;
    std::vector<std::int32_t> fetched;
};

constexpr int kConditionsTag = 0;
constexpr int kFetchedTag = 1;

Query& GetQuery(void* state) {
    return *static_cast<Query*>(state);
}

} // namespace

TCCriteriaHelper::TCCriteriaHelper() {
    m_pState = new Query;
}

TCCriteriaHelper::~TCCriteriaHelper() {
    delete &GetQuery(m_pState);
}

void TCCriteriaHelper::Where(int field, int value) {
    GetQuery(m_pState).conditions.push_back({ConditionKind::Where, field, value});
}

void TCCriteriaHelper::WhereNot(int field, int value) {
    GetQuery(m_pState).conditions.push_back({ConditionKind::WhereNot, field, value});
}

void TCCriteriaHelper::Fetch(int field) {
    GetQuery(m_pState).fetched.push_back(field);
}

bool TCCriteriaHelper::ClassToTree(TCTreeBranch& branch) {
    Query& query = GetQuery(m_pState);
    TCClassToTreeFormatter formatter(branch);
    formatter.PushArray(kConditionsTag, static_cast<int>(query.conditions.size()),
                        sizeof(Condition), query.conditions.data());
    formatter.PushArray(kFetchedTag, static_cast<int>(query.fetched.size()), sizeof(std::int32_t),
                        query.fetched.data());
    return formatter.Extract();
}

bool TCCriteriaHelper::TreeToClass(TCTreeBranch& branch) {
    Query query;
    for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
        if (node->GetTag() == kConditionsTag && !ReadElements(*node, query.conditions))
            return false;
        if (node->GetTag() == kFetchedTag && !ReadElements(*node, query.fetched))
            return false;
    }
    GetQuery(m_pState) = std::move(query);
    return true;
}
