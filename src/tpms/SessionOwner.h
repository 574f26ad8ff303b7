#pragma once

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/NorvexSession.h>

// Owns one object of a NorvexAPI factory and releases it through NorvexAPI::Destroy, also when an
// exception passes through. Several in one block are destroyed in reverse order.
//
// Operations reach the object without a test for null: most menus call into whatever the factory
// returned.
template <class TSession> class TCSessionOwner {
public:
    TCSessionOwner() = default;
    explicit TCSessionOwner(TSession* session) : m_pSession(session) {}
    ~TCSessionOwner() { reset(); }
    TCSessionOwner(const TCSessionOwner&) = delete;
    TCSessionOwner& operator=(const TCSessionOwner&) = delete;

    // Where a factory stores its object; null before that.
    TSession** out() { return &m_pSession; }
    TSession* get() const { return m_pSession; }
    TSession* operator->() const { return m_pSession; }

    // Destroys the object now, if there is one.
    void reset() {
        if (TSession* const session = release()) {
            NorvexAPI::Destroy(session);
        }
    }
    // Gives up ownership: the object stays alive.
    TSession* release() {
        TSession* const session = m_pSession;
        m_pSession = nullptr;
        return session;
    }

private:
    TSession* m_pSession = nullptr;
};
