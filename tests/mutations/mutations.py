"""Mutations: mistakes that an engineer could make, and the tests that have to notice each. Where it stands (a file, and a
piece of its text that is there exactly once), what stands there instead, what is wrong then, and what is run: programs of
GoogleTest ("wire-test", or "wire-test:SUITE.TEST*") and Python tests ("tests/host/script_test.py::test_...")."""

from typing import NamedTuple


class Mutation(NamedTuple):
    file: str
    old: str
    new: str
    wrong: str
    tests: list

    @property
    def room(self):
        """The folder, but for one of the daemon's: that one's folder."""
        return self.file.rpartition("/")[0]


MUTATIONS = []


def mutate(file, old, new, wrong, *tests):
    MUTATIONS.append(Mutation(file, old, new, wrong, list(tests)))


# The console
mutate("src/debugmenu/DebugMenu.cpp",
       "if (number == 99)",
       "if (number == 98)",
       "number 99 of the process menu no longer leaves", "zarn_driver_tests")
mutate("src/debugmenu/DebugMenu.cpp",
       "            dialogue.m_screen = ParserQuarleCommand(word);\n",
       '            if (word != "99")\n'
       "                dialogue.m_screen = ParserQuarleCommand(word);\n",
       "the word 99 is not handed to the provider's prompt", "zarn_driver_tests")
mutate("src/debugmenu/DebugMenu.cpp",
       "            dialogue.m_pControl->Stop();\n",
       "",
       "a dialogue that has ended is not stopped", "zarn_driver_tests")
mutate("src/debugmenu/DebugMenu.cpp",
       "            if (GstPluginDebugFunction() == 0)\n",
       "            if (GstPluginDebugFunction() != 0)\n",
       "the media menu's end says nothing", "zarn_driver_tests")
mutate("src/debugmenu/DebugMenu.cpp",
       "    // Meant: a second line.\n"
       '    std::cout << "Command not implemented" << std::endl;\n',
       "",
       "a failed start is one line", "zarn_driver_tests")
mutate("src/debugmenu/QuarleDebugMenu.cpp",
       "    static_cast<void>(std::remove(MarkerFile().c_str()));\n",
       "",
       "switching the provider's log off keeps its marker file", "zarn_driver_tests")
mutate("src/debugutil/DebugPrintControlProxy.cpp",
       '"Stop", 2, false)',
       '"Stop", 11, false)',
       "the operation Stop has the ID of its place", "zarn_unit_tests")
mutate("src/debugutil/DebugPrintControlProxy.cpp",
       "constexpr int kNoAnswer = -1;",
       "constexpr int kNoAnswer = 0;",
       "an exchange that failed answers 0", "zarn_unit_tests")
mutate("src/debugutil/MarshalableOneDimensionContainer.h",
       "        delete m_pNodeCreator;\n",
       "",
       "a wrapper does not delete its node creator", "zarn_unit_tests")
mutate("src/debugutil/MenuItem.cpp",
       "    formatter.PushValue(kStateTag, sizeof(m_state), &m_state);\n"
       "    formatter.PushValue(kIdTag, sizeof(m_id), &m_id);\n"
       "    return formatter.Extract();",
       "    formatter.PushValue(kIdTag, sizeof(m_id), &m_id);\n"
       "    formatter.PushValue(kStateTag, sizeof(m_state), &m_state);\n"
       "    return formatter.Extract();",
       "an item's state is written behind its number", "zarn_unit_tests")
mutate("src/simplemenu/DebugMenuSimple.cpp",
       "std::left",
       "std::right",
       "the simple menu's numbers stand right", "zarn_driver_tests")
mutate("src/tpms/EpgDataFeedingMenu.cpp",
       "m_pSignalSubscriber->Subscribe(SIGNAL_BARKER_CHANNEL_TUNE, 0, 702, 0, 0);",
       "m_pSignalSubscriber->Subscribe(SIGNAL_BARKER_CHANNEL_TUNE, 0, 703, 0, 0);",
       "the signals' subscriptions ask for another type", "zarn_tpms_tests")
mutate("src/tpms/MainMenuItems.cpp",
       "    navigation->GetLatestServiceId(&serviceId, cable);\n"
       '    std::cout << "[RF][CABLE]',
       "    navigation->GetLatestVeldaServiceId(&serviceId, air);\n"
       '    std::cout << "[RF][CABLE]',
       "the first of the latest services is asked of the other list", "zarn_tpms_tests")
mutate("src/tpms/PreparationLogicMenu.cpp",
       '" 1. call IPipelineUtilityl::',
       '" 1. call IPipelineUtility::',
       "a misspelling is put right", "zarn_tpms_tests")
mutate("src/tpms/PreviewSourceMenu.cpp",
       "kLastSource = 47",
       "kLastSource = 46",
       "source 47 is no valid source", "zarn_tpms_tests")
mutate("src/tpms/ServiceLookup.cpp",
       "kListedServiceCode = 5",
       "kListedServiceCode = 6",
       "listed services travel with another code", "zarn_tpms_tests")
mutate("src/tpms/ServiceLookup.cpp",
       "    query.Where(SERVICE_FIELD_MAJOR, major);\n"
       "    query.Fetch(SERVICE_FIELD_ID);\n"
       "    // After",
       "    query.Fetch(SERVICE_FIELD_ID);\n"
       "    query.Where(SERVICE_FIELD_MAJOR, major);\n"
       "    // After",
       "the query's condition comes before its fetched field", "zarn_tpms_tests")
mutate("src/tpms/SetSourceMenu.cpp",
       "0xfa0000000002002d;",
       "0xfa0000000002002e;",
       "the fixed service is another", "zarn_tpms_tests")
mutate("src/tpms/SetSourceMenu.cpp",
       "    sourceControl->PreSetSourceA();\n"
       "    sourceControl->PreSetSourceB();\n"
       "    sourceControl->PreSetSourceC();\n"
       "    std::string text;\n"
       "    sourceControl->SetSource(SOURCE_TV, serviceId, text);",
       "    sourceControl->PreSetSourceB();\n"
       "    sourceControl->PreSetSourceA();\n"
       "    sourceControl->PreSetSourceC();\n"
       "    std::string text;\n"
       "    sourceControl->SetSource(SOURCE_TV, serviceId, text);",
       "the sources of switching to a service are prepared in another order", "zarn_tpms_tests")
mutate("src/tpms/SetTvModeMenu.cpp",
       "        if (command == -1) {",
       "        if (command == -1 || command == 99) {\n"
       "            if (command == 99) return;",
       "the TV mode test asks for the channel only after it has judged the command", "zarn_tpms_tests")
mutate("src/tpms/SetTvModeMenu.cpp",
       'std::cout << "FindService failed";',
       'std::cout << "FindService failed\\n";',
       "a failed lookup ends its line", "zarn_tpms_tests")
mutate("src/tpms/SignalTunePreparationMenu.cpp",
       "        utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app1);\n"
       "        utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app2);\n",
       "        utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app1);\n",
       "a pending change keeps the second receiver", "zarn_tpms_tests")
mutate("src/tpms/TPMSDebugMenu.cpp",
       "    NorvexAPI::DestroySignalSubscriber(NorvexSignalCallback);\n",
       "",
       "the subscriber stays when the test console is left", "zarn_tpms_tests")
mutate("src/tpms/TPMSDebugMenu.cpp",
       "    while (!g_main_loop_is_running(loop)) {\n"
       "        std::this_thread::yield();\n"
       "    }\n",
       "",
       "the signal thread's loop is quit without a look whether it runs", "zarn_tpms_tests")
mutate("src/tpms/UserInput.cpp",
       "case 3:",
       "case 2:",
       "profile 2 chooses the analysis profile, as its prompt says", "zarn_tpms_tests")
mutate("src/tpms/ZoomControlMenu.cpp",
       '    rect.m_width = m_SelectCmd("SrcWidth = ");\n'
       '    rect.m_height = m_SelectCmd("SrcHeight = ");\n',
       '    rect.m_height = m_SelectCmd("SrcHeight = ");\n'
       '    rect.m_width = m_SelectCmd("SrcWidth = ");\n',
       "the zoom test's source asks for its height before its width", "zarn_tpms_tests")

# What people type
mutate("script/console", "[[ -n ${NORVEX_SOCKET:-} ]] || start_tv", "start_tv",
       "a TV that NORVEX_SOCKET names is passed over", "tests/system/script_console_test.py")
mutate("script/console", '    [[ -z $directory ]] || rm -rf "$directory"\n', "",
       "each console leaves a directory in the temporary ones", "tests/system/script_console_test.py")
mutate("script/console", "--) shift ;;", "--) ;;",
       "--help after -- is not the host's", "tests/system/script_console_test.py")
mutate("script/console", 'become_host "$@" <&0 &', 'become_host "$@" &',
       "the words of a pipe do not reach the host", "tests/system/script_console_test.py")
mutate("script/console", "exec env --default-signal=INT,QUIT", "exec",
       "Ctrl-C does not end the console", "tests/system/script_console_test.py")
mutate("script/in-device", '    rm -rf "$directory"\n}', "}",
       "each command run in the device leaves a directory", "tests/system/script_console_test.py")
