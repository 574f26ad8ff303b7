#include <norvex/core/MarshallingHelper.h>

#include "ArgumentList.h"

TCMarshallingHelper::TCMarshallingHelper() : m_pState(ArgumentList::Take().release()) {}

TCMarshallingHelper::~TCMarshallingHelper() {
    ArgumentList::GiveBack(std::unique_ptr<ArgumentList>(static_cast<ArgumentList*>(m_pState)));
}

void TCMarshallingHelper::PushValue(EMarshallingDirection direction, int size, void* data) {
    static_cast<ArgumentList*>(m_pState)->Add({direction, size, data, nullptr});
}

void TCMarshallingHelper::PushMarshalableClass(EMarshallingDirection direction, TIMarshalable* object) {
    static_cast<ArgumentList*>(m_pState)->Add({direction, 0, nullptr, object});
}
