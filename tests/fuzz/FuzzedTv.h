#pragma once

#include <string>

#include "Context.h"
#include "ControlServer.h"
#include "Server.h"

// A whole simulated TV within the program, with a small line-up and its two sockets in a directory
// of its own, which goes when the program ends in an orderly way. What is ready at once happens in
// Settle; nothing waits for a time.
//
// One thread.
class FuzzedTv {
public:
    // One for the program.
    static FuzzedTv& Get();

    // A connection to the product's socket, or to the control socket. The descriptor is the
    // caller's.
    int Connect() const;
    int ConnectControl() const;
    void Settle();
    // A file of that name in its directory; "lineup" is there.
    std::string GetFile(const std::string& name) const { return m_directory + "/" + name; }

    sim::Context& GetContext() { return m_context; }

private:
    FuzzedTv();

    std::string m_directory;
    sim::Database m_database;
    sim::Log m_log;
    sim::Context m_context;
    sim::Server m_server;
    sim::ControlServer m_control;
};
