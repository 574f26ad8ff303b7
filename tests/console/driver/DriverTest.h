#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Console.h"

// Scenarios of the driver: a console, a device with a directory of its own, and a process behind
// the debug print control that answers from a script (FakeCore).
class DriverTest : public testing::Test {
protected:
    DriverTest();
    ~DriverTest() override;

    // Runs the whole console, from its entry to the last word. Returns the time line; the path
    // resolver's answers for the marker file are left out, since when it is asked is nobody's
    // concern.
    std::string run(const std::string& words);
    // The same for a console that was typed to already.
    std::string run();
    // The same for a part of the console.
    std::string run(const std::string& words, const std::function<void()>& part);

    // Path of the marker file; the directory that it belongs into exists.
    const std::string& marker() const { return m_marker; }
    bool markerExists() const;
    void makeMarker(const std::string& content = "");
    const std::string& directory() const { return m_directory; }

    Console console;

private:
    std::string m_directory;
    std::string m_marker;
};

// Pieces of the time line.
namespace pieces {

// What every call of the entry begins with.
extern const std::string entered;
// The process menu with its prompt.
extern const std::string menu;
extern const std::string notImplemented;
std::string typed(const std::string& word);
// Calls of the shared debug print control.
extern const std::string start;
extern const std::string stop;
std::string execute(const std::string& word);
extern const std::string getMenuItems;
extern const std::string isQoSEnabled;
std::string setMenuItem(const std::string& name, bool state, unsigned int id);

} // namespace pieces

// Calls made while the program was loaded, before main.
const std::vector<std::string>& callsAtLoad();
// currentMenu, QuarleLogonOff, StatusForquarleDebug and m_child_Pid as they were then.
const std::string& globalsAtLoad();
