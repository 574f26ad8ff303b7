#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Console.h"
#include "Screens.h"

// Scenarios of the driver: a console, a device with a directory of its own, and a process behind
// the debug print control that answers from a script (FakeConnection).
//
// In the time lines that it gives, what stands often has a name:
//
//     {entered}           what every call of the entry begins with: a look for the marker file, the
//                         first line
//     {menu}, {media}     the process menu and the media log menu, each with its prompt
//     {list off}, {list on}, {on or off?}   the screens of the provider log menu
//     {not implemented}   the line for a number without an entry
//     {switched on}, {switched off}   the marker file and the log tags, in their order
//     {simple}            the simple menu's questions to the control: the QoS state, then the items
//     {Start}, {Stop}     calls of the shared debug print control
class DriverTest : public testing::Test {
protected:
    DriverTest();
    ~DriverTest() override;

    // Runs the whole console, from its entry to the last word. Returns the time line; the path
    // resolver's answers for the marker file are left out, since when it is asked is nobody's
    // concern.
    std::string Run(const std::string& words = "");
    // The same for a part of the console.
    std::string Run(const std::string& words, const std::function<void()>& part);

    // The marker file; the directory that it belongs into exists.
    const std::string& GetMarker() const { return m_marker; }
    bool MarkerExists() const;
    void MakeMarker(const std::string& content = "");

    Console console;

private:
    std::string m_directory;
    std::string m_marker;
};

// Calls of the shared debug print control, as they stand in a time line.
std::string Execute(const std::string& word);
std::string SetMenuItem(const std::string& name, bool state, unsigned int id);

// The test console that was entered last; null when none was.
const void* GetLastEnteredTestConsole();
