#include "DriverTest.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <zarn/DebugMenu.h>

#include "FakeCore.h"
#include "FakeDevice.h"
#include "FakeFiles.h"
#include "FakeProcesses.h"
#include "FakeTree.h"
#include "Screens.h"

namespace {

const char kMarker[] = "quarle-provider/data/FCdebug.conf";

std::string withoutResolver(std::string text) {
    const std::string call = std::string("{TCPathResolver::GetAbsolutePath(6, ") + kMarker + ")}";
    for (std::size_t at; (at = text.find(call)) != std::string::npos;)
        text.erase(at, call.size());
    return text;
}

} // namespace

DriverTest::DriverTest() {
    std::string name = testing::TempDir() + "console-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        ADD_FAILURE() << "no directory: " << name;
    m_directory = name;
    m_marker = m_directory + "/" + kMarker;
    std::filesystem::create_directories(std::filesystem::path(m_marker).parent_path());
    FakeCore::reset();
    FakeDevice::setDirectory(m_directory);
    FakeDevice::setLogTagResult(0);
    FakeProcesses::reset();
    FakeFiles::watch(m_directory);
}

DriverTest::~DriverTest() {
    FakeFiles::watch("");
    EXPECT_EQ(FakeCore::helpersAlive(), 0);
    FakeCore::reset();
    for (const pid_t child : FakeProcesses::children())
        FakeProcesses::exitStatus(child);
    FakeProcesses::reset();
    std::filesystem::remove_all(m_directory);
}

std::string DriverTest::run(const std::string& words) {
    return run(words, zarn_startmaindebug);
}

std::string DriverTest::run() {
    return run("", zarn_startmaindebug);
}

std::string DriverTest::run(const std::string& words, const std::function<void()>& part) {
    console.type(words).run(part);
    EXPECT_EQ(console.wordsLeft(), 0u) << "the console was left before the last word";
    return withoutResolver(console.whole());
}

bool DriverTest::markerExists() const {
    return std::filesystem::exists(m_marker);
}

void DriverTest::makeMarker(const std::string& content) {
    std::ofstream(m_marker) << content;
}

namespace pieces {

const std::string entered = "{stat(quarle-provider/data/FCdebug.conf)}DebugUtil\n{flush}";
const std::string menu = screens::processMenu + "\n{flush}cmd> {flush}";
const std::string notImplemented = "Command not implemented\n{flush}";

std::string typed(const std::string& word) {
    return "{typed " + word + "}";
}

const std::string start = "{Run(connection, com.holvi.IDebugPrintControl, Start, 0, false; out "
                          "value 4 = ffffffff; out TCMarshalableString)}";
const std::string stop = "{Run(connection, com.holvi.IDebugPrintControl, Stop, 2, false; out value "
                         "4 = ffffffff)}";

std::string execute(const std::string& word) {
    FakeBranch text;
    text.becomeText(word);
    return "{Run(connection, com.holvi.IDebugPrintControl, Execute, 1, false; out value 4 = "
           "ffffffff; in TCMarshalableString " +
           FakeTree::describe(text) + "; out TCMarshalableString)}";
}

const std::string getMenuItems =
    "{Run(connection, com.holvi.IDebugPrintControl, GetMenuItems, 4, false; out value 4 = "
    "ffffffff; out TCMarshalableOneDimensionContainer)}";
const std::string isQoSEnabled =
    "{Run(connection, com.holvi.IDebugPrintControl, IsQoSEnabled, 8, false; out value 1 = 00)}";

std::string setMenuItem(const std::string& name, bool state, unsigned int id) {
    FakeBranch item;
    item.becomeItem(name, state, id);
    return "{Run(connection, com.holvi.IDebugPrintControl, SetMenuItem, 6, false; out value 4 = "
           "ffffffff; in TSMenuItem " +
           FakeTree::describe(item) + ")}";
}

} // namespace pieces
