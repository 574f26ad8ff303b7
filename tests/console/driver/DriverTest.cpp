#include "DriverTest.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <zarn/DebugMenu.h>

#include "CoreWatch.h"
#include "FakeConnection.h"
#include "FakeDevice.h"
#include "FakeFiles.h"
#include "FakeProcesses.h"

namespace {

const char kMarker[] = "quarle-provider/data/FCdebug.conf";

// A call of the shared control.
std::string Call(const std::string& method, const std::string& arguments) {
    return "{Exchange(com.holvi.IDebugPrintControl, " + method + ", false; " + arguments + ")}";
}

std::string Described(const Tree& tree) {
    return "in {" + Describe(tree.GetBytes().data(), tree.GetBytes().size()) + "}";
}

// When the resolver is asked for the marker file is nobody's concern; "{simple}" is what the simple
// menu asks the control for.
const screens::Names kNames = {
    {std::string("{TCPathResolver::GetAbsolutePath(6, ") + kMarker + ")}", ""},
    {kMarker, "marker"},
    {"{stat(marker)}DebugUtil\n{flush}", "{entered}"},
    {screens::kProcessMenu + "\n{flush}cmd> {flush}", "{menu}"},
    {screens::kMediaMenu + "\n{flush}cmd> {flush}", "{media}"},
    {screens::ProviderList("OFF") + "{flush}", "{list off}"},
    {screens::ProviderList("ON ") + "{flush}", "{list on}"},
    {screens::kProviderPrompt + "{flush}", "{on or off?}"},
    {"Command not implemented\n{flush}", "{not implemented}"},
    {"{fopen(marker, w)}{fclose}{startdlogtagbydefault(quarle-daemon)}"
     "{startdlogtagbydefault(quarle-provider)}",
     "{switched on}"},
    {"{stopdlogtagbydefault(quarle-daemon)}{stopdlogtagbydefault(quarle-provider)}"
     "{remove(marker)}",
     "{switched off}"},
    {Call("IsQoSEnabled, 8", "out value 00") + Call("GetMenuItems, 4", "out value ffffffff, out {}"), "{simple}"},
    {Call("Start, 0", "out value ffffffff, out length"), "{Start}"},
    {Call("Stop, 2", "out value ffffffff"), "{Stop}"},
};

} // namespace

DriverTest::DriverTest() {
    std::string name = testing::TempDir() + "console-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        ADD_FAILURE() << "no directory: " << name;
    m_directory = name;
    m_marker = m_directory + "/" + kMarker;
    std::filesystem::create_directories(std::filesystem::path(m_marker).parent_path());
    FakeConnection::Reset();
    FakeDevice::SetDirectory(m_directory);
    FakeDevice::SetLogTagResult(0);
    FakeProcesses::Reset();
    FakeFiles::Watch(m_directory);
}

DriverTest::~DriverTest() {
    FakeFiles::Watch("");
    FakeConnection::Reset();
    CoreWatch::Reset();
    for (const pid_t child : FakeProcesses::GetChildren())
        FakeProcesses::WaitForExitStatus(child);
    FakeProcesses::Reset();
    std::filesystem::remove_all(m_directory);
}

std::string DriverTest::Run(const std::string& words) {
    return Run(words, zarn_startmaindebug);
}

std::string DriverTest::Run(const std::string& words, const std::function<void()>& part) {
    console.Type(words).Run(part);
    EXPECT_EQ(console.CountWordsLeft(), 0u) << "the console was left before the last word";
    return screens::Abbreviated(console.Whole(), kNames);
}

bool DriverTest::MarkerExists() const {
    return std::filesystem::exists(m_marker);
}

void DriverTest::MakeMarker(const std::string& content) {
    std::ofstream(m_marker) << content;
}

std::string Execute(const std::string& word) {
    return Call("Execute, 1", "out value ffffffff, " + Described(Tree::OfText(word)) + ", out length");
}

std::string SetMenuItem(const std::string& name, bool state, unsigned int id) {
    return Call("SetMenuItem, 6", "out value ffffffff, " + Described(Tree::OfItem(name, state, id)));
}
