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
// In the time lines that it gives, screens and runs of calls have the names that DriverTest.cpp
// lists: "{menu}" is the process menu with its prompt, "{Start}" a call of the control.
class DriverTest : public testing::Test {
protected:
    DriverTest();
    ~DriverTest() override;

    // Runs the whole console, from its entry to the last word. Returns the time line.
    std::string Run(const std::string& words = "");
    // The same for a part of the console.
    std::string Run(const std::string& words, const std::function<void()>& part);

    // The marker file; the directory that it belongs into exists.
    const std::string& GetMarker() const { return m_marker; }
    bool MarkerExists() const;
    void MakeMarker(const std::string& content = "");

public:
    Console console;

private:
    std::string m_directory;
    std::string m_marker;
};

// Calls of the shared debug print control, as they stand in a time line.
std::string Execute(const std::string& word);
std::string SetMenuItem(const std::string& name, bool state, unsigned int id);
