#include "GDBusPeer.h"

#include <climits>

#include <sys/socket.h>

#include "Figure.h"

namespace bench {

namespace {

constexpr char kPath[] = "/com/holvi/Norvex/SignalObject";

std::string MakeDescription() {
    return "<node><interface name='" + kInterface + "'><method name='" + kExecute +
           "'><arg type='s' direction='in'/><arg type='i' direction='out'/>"
           "<arg type='s' direction='out'/></method><method name='" +
           kGetMenuItems +
           "'><arg type='i' direction='out'/><arg type='a(sbu)' direction='out'/></method>"
           "</interface></node>";
}

template <class T> T* Demand(T* object, GError* error) {
    if (object == nullptr)
        GiveUp(error != nullptr ? error->message : "GDBus failed");
    return object;
}

GVariant* ItemList(const std::vector<TSMenuItem>& items) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a(sbu)"));
    for (const TSMenuItem& item : items) {
        g_variant_builder_add(&builder, "(sbu)", item.getName().c_str(), static_cast<gboolean>(item.getState()),
                              item.getID());
    }
    return g_variant_builder_end(&builder);
}

void Answer(GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant* arguments,
            GDBusMethodInvocation* invocation, void* data) {
    const Answers& answers = *static_cast<Answers*>(data);
    if (method == kExecute) {
        const char* word = nullptr;
        g_variant_get(arguments, "(&s)", &word);
        const std::string screen = answers.answer ? answers.answer(word) : answers.screen;
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(is)", 1, screen.c_str()));
    } else {
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(i@a(sbu))", 1, ItemList(answers.items)));
    }
}

GDBusConnection* Open(int descriptor, const char* guid, GDBusConnectionFlags flags) {
    GError* error = nullptr;
    GSocket* socket = Demand(g_socket_new_from_fd(descriptor, &error), error);
    GSocketConnection* stream = g_socket_connection_factory_create_connection(socket);
    g_object_unref(socket);
    GDBusConnection* connection =
        g_dbus_connection_new_sync(G_IO_STREAM(stream), guid, flags, nullptr, nullptr, &error);
    g_object_unref(stream);
    return Demand(connection, error);
}

void Serve(int descriptor, Answers answers) {
    char* guid = g_dbus_generate_guid();
    GDBusConnection* connection = Open(descriptor, guid, G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_SERVER);
    g_free(guid);

    GError* error = nullptr;
    GDBusNodeInfo* node = Demand(g_dbus_node_info_new_for_xml(MakeDescription().c_str(), &error), error);
    const GDBusInterfaceVTable operations = {Answer, nullptr, nullptr, {}};
    g_dbus_connection_register_object(connection, kPath, node->interfaces[0], &operations, &answers, nullptr, nullptr);
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    g_signal_connect_swapped(connection, "closed", G_CALLBACK(g_main_loop_quit), loop);
    g_main_loop_run(loop);
}

} // namespace

GDBusPeer::GDBusPeer(const Answers& answers)
    : m_process(SOCK_STREAM, [&answers](int descriptor) { Serve(descriptor, answers); }) {}

GDBusPeer::~GDBusPeer() {
    if (m_connection != nullptr) {
        g_dbus_connection_close_sync(m_connection, nullptr, nullptr);
        g_object_unref(m_connection);
    }
}

void GDBusPeer::Connect() {
    m_connection = Open(m_process.ReleaseDescriptor(), nullptr, G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT);
    // The process registers its object only after the authentication. The word is one that
    // Answers::answer can read as a number.
    GError* error = nullptr;
    GVariant* reply = nullptr;
    while (reply == nullptr) {
        g_clear_error(&error);
        reply = g_dbus_connection_call_sync(m_connection, nullptr, kPath, kInterface.c_str(), kExecute.c_str(),
                                            g_variant_new("(s)", "0"), nullptr, G_DBUS_CALL_FLAGS_NONE, INT_MAX,
                                            nullptr, &error);
        if (reply == nullptr && !g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD))
            Demand(reply, error);
    }
    g_variant_unref(reply);
}

GVariant* GDBusPeer::Call(const std::string& method, GVariant* arguments, const char* replyType) {
    GError* error = nullptr;
    GVariant* reply =
        g_dbus_connection_call_sync(m_connection, nullptr, kPath, kInterface.c_str(), method.c_str(), arguments,
                                    G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE, INT_MAX, nullptr, &error);
    return Demand(reply, error);
}

int GDBusPeer::Execute(const std::string& word, std::string& screen) {
    GVariant* reply = Call(kExecute, g_variant_new("(s)", word.c_str()), "(is)");
    int status = 0;
    const char* text = nullptr;
    g_variant_get(reply, "(i&s)", &status, &text);
    screen = text;
    g_variant_unref(reply);
    return status;
}

std::vector<TSMenuItem> GDBusPeer::GetMenuItems() {
    GVariant* reply = Call(kGetMenuItems, nullptr, "(ia(sbu))");
    int status = 0;
    GVariantIter* rows = nullptr;
    g_variant_get(reply, "(ia(sbu))", &status, &rows);
    std::vector<TSMenuItem> items;
    const char* name = nullptr;
    gboolean state = FALSE;
    unsigned int id = 0;
    while (g_variant_iter_next(rows, "(&sbu)", &name, &state, &id)) {
        TSMenuItem& item = items.emplace_back();
        item.setName(name);
        item.setState(state != FALSE);
        item.setID(id);
    }
    g_variant_iter_free(rows);
    g_variant_unref(reply);
    return items;
}

} // namespace bench
