#include <norvex/client/CriteriaHelper.h>
#include <values/Values.h>

#include "MarshalableValue.h"

namespace {

values::Criteria& GetCriteria(void* state) {
    return *static_cast<values::Criteria*>(state);
}

} // namespace

TCCriteriaHelper::TCCriteriaHelper() {
    m_pState = new values::Criteria;
}

TCCriteriaHelper::~TCCriteriaHelper() {
    delete &GetCriteria(m_pState);
}

void TCCriteriaHelper::Where(int field, int value) {
    GetCriteria(m_pState).conditions.push_back({values::Comparison::Equal, field, value});
}

void TCCriteriaHelper::WhereNot(int field, int value) {
    GetCriteria(m_pState).conditions.push_back({values::Comparison::Different, field, value});
}

void TCCriteriaHelper::Fetch(int field) {
    GetCriteria(m_pState).fetched.push_back(field);
}

bool TCCriteriaHelper::ClassToTree(TCTreeBranch& branch) {
    return WriteValue(branch, GetCriteria(m_pState));
}

bool TCCriteriaHelper::TreeToClass(TCTreeBranch& branch) {
    values::Criteria criteria;
    if (!ReadValue(branch, criteria))
        return false;
    GetCriteria(m_pState) = std::move(criteria);
    return true;
}
