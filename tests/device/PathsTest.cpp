// Paths of the device's files and its log, depending on the environment.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include <unistd.h>

#include <base/LogFile.h>
#include <gtest/gtest.h>
#include <norvex/device/PathResolver.h>

#include "LogWatch.h"

namespace {

namespace fs = std::filesystem;

// A temporary folder, with the environment cleared; the previous environment is restored, with an
// empty variable for an unset one.
class DevicePaths : public testing::Test {
protected:
    DevicePaths() {
        std::string pattern = (fs::temp_directory_path() / "norvex-test-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        for (const char* variable : {"NORVEX_DEVICE_DIR", "XDG_STATE_HOME", "HOME"})
            Unset(variable);
    }
    ~DevicePaths() override {
        for (const auto& [variable, value] : m_before)
            setenv(variable.c_str(), value.c_str(), 1);
        fs::remove_all(m_folder);
    }

    std::string InFolder(const std::string& path) const { return m_folder + "/" + path; }
    void Set(const char* variable, const std::string& value) { setenv(variable, value.c_str(), 1); }
    void Unset(const char* variable) {
        const char* value = getenv(variable);
        m_before[variable] = value != nullptr ? value : "";
        unsetenv(variable);
    }

private:
    std::string m_folder;
    std::map<std::string, std::string> m_before;
};

class LogPaths : public DevicePaths {
protected:
    LogPaths() { Unset("NORVEX_LOG"); }
};

std::string Resolve(const std::string& path) {
    return TCPathResolver::GetAbsolutePath(DEVICE_DIRECTORY_DATA, path);
}

} // namespace

TEST_F(DevicePaths, TheDevicesOwnVariableGoesBeforeTheUsersState) {
    Set("NORVEX_DEVICE_DIR", InFolder("device"));
    Set("XDG_STATE_HOME", InFolder("state"));
    EXPECT_EQ(Resolve("a/file"), InFolder("device/a/file"));
}

TEST_F(DevicePaths, TheUsersStateGoesBeforeTheHome) {
    Set("XDG_STATE_HOME", InFolder("state"));
    Set("HOME", InFolder("home"));
    EXPECT_EQ(Resolve("a/file"), InFolder("state/norvex/device/a/file"));
}

TEST_F(DevicePaths, TheHomesStateIsTheLastThatIsAsked) {
    Set("HOME", InFolder("home"));
    EXPECT_EQ(Resolve("file"), InFolder("home/.local/state/norvex/device/file"));
}

TEST_F(DevicePaths, AnEmptyVariableNamesNoDirectory) {
    Set("NORVEX_DEVICE_DIR", "");
    Set("XDG_STATE_HOME", "");
    Set("HOME", InFolder("home"));
    EXPECT_EQ(Resolve("file"), InFolder("home/.local/state/norvex/device/file"));
}

TEST_F(DevicePaths, LookingMakesNothing) {
    Set("NORVEX_DEVICE_DIR", InFolder("device"));
    Resolve("a/b/file");
    EXPECT_FALSE(fs::exists(InFolder("device")));
}

TEST_F(DevicePaths, ARelativeDirectoryOfTheDeviceIsRefused) {
    Set("NORVEX_DEVICE_DIR", "device");
    const LogWatch log;
    EXPECT_EQ(Resolve("a/file"), "");
    EXPECT_EQ(log.Count("NORVEX_DEVICE_DIR: expected an absolute path, not device"), 1);
}

TEST_F(DevicePaths, ARelativeDirectoryOfTheUserIsPassedOver) {
    Set("XDG_STATE_HOME", "state");
    Set("HOME", InFolder("home"));
    EXPECT_EQ(Resolve("file"), InFolder("home/.local/state/norvex/device/file"));
    Set("HOME", "home");
    EXPECT_EQ(Resolve("file"), "/tmp/norvex-" + std::to_string(geteuid()) + "/device/file");
}

TEST_F(DevicePaths, AnUnknownDirectoryHasNoPathAndIsLogged) {
    const LogWatch log;
    EXPECT_EQ(TCPathResolver::GetAbsolutePath(static_cast<EDeviceDirectory>(7), "file"), "");
    EXPECT_EQ(log.Count("unknown directory 7"), 1);
}

TEST_F(LogPaths, TheLogIsWhereItsVariableSays) {
    Set("NORVEX_LOG", InFolder("own.log"));
    Set("XDG_STATE_HOME", InFolder("state"));
    EXPECT_EQ(devicelog::LogFile::FindPath(), InFolder("own.log"));
}

TEST_F(LogPaths, TheLogIsInTheUsersStateElse) {
    Set("HOME", InFolder("home"));
    EXPECT_EQ(devicelog::LogFile::FindPath(), InFolder("home/.local/state/norvex/norvex.log"));
    EXPECT_TRUE(fs::is_directory(InFolder("home/.local/state/norvex")));
    Set("XDG_STATE_HOME", InFolder("state"));
    EXPECT_EQ(devicelog::LogFile::FindPath(), InFolder("state/norvex/norvex.log"));
    EXPECT_TRUE(fs::is_directory(InFolder("state/norvex")));
}

TEST_F(LogPaths, WithoutAHomeThereIsNoLog) {
    EXPECT_EQ(devicelog::LogFile::FindPath(), "");
}
