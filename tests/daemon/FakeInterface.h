#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "Interface.h"
#include "Session.h"

NORVEX_INTERFACE(Fake, Set, Set_Text)

// An interface that records its sessions, by profile, and its calls: "open 1", "set 7". It refuses
// sessions with a profile below 0, and throws on the text "throw".
class FakeInterface : public sim::Interface {
public:
    FakeInterface() : Interface(interfaces::kTable<FakeMethod>, Calls::ToSession) {
        Add(FakeMethod::Set, {sim::Out("status", sim::kInt), sim::In("value", sim::kInt)}, &FakeInterface::Set);
        Add(FakeMethod::Set_Text, {sim::Out("status", sim::kInt), sim::In("text", sim::kText)},
            &FakeInterface::SetText);
    }

    std::int32_t OpenSession(sim::Session& session) override {
        if (session.profile < 0)
            return -3;
        events.push_back("open " + std::to_string(session.profile));
        return 0;
    }
    void CloseSession(sim::Session& session) override { events.push_back("close " + std::to_string(session.profile)); }

    std::vector<std::string> events;

private:
    void Set(const sim::Call&, const sim::ArgumentReader& in, sim::ReplyWriter& out) {
        events.push_back("set " + std::to_string(in.Int(1)));
        out.Int(0, 1);
    }
    void SetText(const sim::Call&, const sim::ArgumentReader& in, sim::ReplyWriter& out) {
        if (in.Text(1) == "throw")
            throw std::runtime_error("it has failed");
        events.push_back("set " + std::string(in.Text(1)));
        out.Int(0, 1);
    }
};
