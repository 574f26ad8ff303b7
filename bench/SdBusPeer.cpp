#include "SdBusPeer.h"

#include <cstring>

#include <sys/socket.h>

#include "Figure.h"

namespace bench {

namespace {

constexpr char kPath[] = "/com/holvi/Norvex/SignalObject";

void Demand(int result) {
    if (result < 0)
        GiveUp(std::strerror(-result));
}

int Answer(sd_bus_message* call, void* data, sd_bus_error*) {
    const Answers& answers = *static_cast<Answers*>(data);
    sd_bus_message* reply = nullptr;
    Demand(sd_bus_message_new_method_return(call, &reply));
    if (sd_bus_message_get_member(call) == kExecute) {
        const char* word = nullptr;
        Demand(sd_bus_message_read(call, "s", &word));
        Demand(sd_bus_message_append(reply, "is", 1, answers.screen.c_str()));
    } else {
        Demand(sd_bus_message_append(reply, "i", 1));
        AppendItems(reply, answers.items);
    }
    Demand(sd_bus_send(nullptr, reply, nullptr));
    sd_bus_message_unref(reply);
    return 1;
}

sd_bus* Open(int descriptor, bool server) {
    sd_bus* bus = nullptr;
    Demand(sd_bus_new(&bus));
    Demand(sd_bus_set_fd(bus, descriptor, descriptor));
    if (server) {
        sd_id128_t id;
        Demand(sd_id128_randomize(&id));
        Demand(sd_bus_set_server(bus, 1, id));
    }
    Demand(sd_bus_start(bus));
    return bus;
}

void Serve(int descriptor, Answers answers) {
    sd_bus* bus = Open(descriptor, true);
    Demand(sd_bus_add_object(bus, nullptr, kPath, Answer, &answers));
    while (true) {
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0)
            return;
        if (processed == 0 && sd_bus_wait(bus, UINT64_MAX) < 0)
            return;
    }
}

} // namespace

void AppendItems(sd_bus_message* message, const std::vector<TSMenuItem>& items) {
    Demand(sd_bus_message_open_container(message, 'a', "(sbu)"));
    for (const TSMenuItem& item : items) {
        Demand(sd_bus_message_append(message, "(sbu)", item.getName().c_str(), item.getState(), item.getID()));
    }
    Demand(sd_bus_message_close_container(message));
}

std::vector<TSMenuItem> ReadItems(sd_bus_message* message) {
    std::vector<TSMenuItem> items;
    Demand(sd_bus_message_enter_container(message, 'a', "(sbu)"));
    const char* name = nullptr;
    int state = 0;
    unsigned int id = 0;
    int read = 0;
    while ((read = sd_bus_message_read(message, "(sbu)", &name, &state, &id)) > 0) {
        TSMenuItem& item = items.emplace_back();
        item.setName(name);
        item.setState(state != 0);
        item.setID(id);
    }
    Demand(read);
    Demand(sd_bus_message_exit_container(message));
    return items;
}

SdBusPeer::SdBusPeer(const Answers& answers)
    : m_process(SOCK_STREAM, [&answers](int descriptor) { Serve(descriptor, answers); }) {}

SdBusPeer::~SdBusPeer() {
    sd_bus_close_unref(m_bus);
}

void SdBusPeer::Connect() {
    m_bus = Open(m_process.ReleaseDescriptor(), false);
}

int SdBusPeer::Execute(const std::string& word, std::string& screen) {
    sd_bus_message* reply = nullptr;
    Demand(sd_bus_call_method(m_bus, nullptr, kPath, kInterface.c_str(), kExecute.c_str(), nullptr, &reply, "s",
                              word.c_str()));
    int status = 0;
    const char* text = nullptr;
    Demand(sd_bus_message_read(reply, "is", &status, &text));
    screen = text;
    sd_bus_message_unref(reply);
    return status;
}

std::vector<TSMenuItem> SdBusPeer::GetMenuItems() {
    sd_bus_message* reply = nullptr;
    Demand(
        sd_bus_call_method(m_bus, nullptr, kPath, kInterface.c_str(), kGetMenuItems.c_str(), nullptr, &reply, nullptr));
    int status = 0;
    Demand(sd_bus_message_read(reply, "i", &status));
    std::vector<TSMenuItem> items = ReadItems(reply);
    sd_bus_message_unref(reply);
    return items;
}

} // namespace bench
