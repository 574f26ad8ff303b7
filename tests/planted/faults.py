"""Faults to plant into the plug-in: what is wrong then, the file below src/, the piece of text and what stands in its
place. A piece stands in its file exactly once."""

FAULTS = [
    # Constants
    ("number 99 of the process menu no longer leaves", "debugmenu/DebugMenu.cpp",
     "if (number == 99)", "if (number == 98)"),
    ("the operation Stop has the ID of its place", "debugutil/DebugPrintControlProxy.cpp",
     '"Stop", 2, false)', '"Stop", 11, false)'),
    ("an exchange that failed answers 0", "debugutil/DebugPrintControlProxy.cpp",
     "constexpr int kNoAnswer = -1;", "constexpr int kNoAnswer = 0;"),
    ("listed services travel with another code", "tpms/ServiceLookup.cpp",
     "kListedServiceCode = 5", "kListedServiceCode = 6"),
    ("source 47 is no valid source", "tpms/PreviewSourceMenu.cpp", "kLastSource = 47", "kLastSource = 46"),
    ("profile 2 chooses the analysis profile, as its prompt says", "tpms/UserInput.cpp", "case 3:", "case 2:"),
    ("the fixed service is another", "tpms/SetSourceMenu.cpp", "0xfa0000000002002d;", "0xfa0000000002002e;"),
    ("the signals' subscriptions ask for another type", "tpms/EpgDataFeedingMenu.cpp",
     "m_pSignalSubscriber->Subscribe(SIGNAL_BARKER_CHANNEL_TUNE, 0, 702, 0, 0);",
     "m_pSignalSubscriber->Subscribe(SIGNAL_BARKER_CHANNEL_TUNE, 0, 703, 0, 0);"),
    # Orders
    ("the word 99 is not handed to the provider's prompt",
     "debugmenu/DebugMenu.cpp",
     "            dialogue.m_screen = ParserQuarleCommand(word);\n",
     '            if (word != "99")\n                dialogue.m_screen = ParserQuarleCommand(word);\n'),
    ("the query's condition comes before its fetched field", "tpms/ServiceLookup.cpp",
     "    query.Where(SERVICE_FIELD_MAJOR, major);\n    query.Fetch(SERVICE_FIELD_ID);\n    // After",
     "    query.Fetch(SERVICE_FIELD_ID);\n    query.Where(SERVICE_FIELD_MAJOR, major);\n    // After"),
    ("the sources of switching to a service are prepared in another order", "tpms/SetSourceMenu.cpp",
     "    sourceControl->PreSetSourceA();\n    sourceControl->PreSetSourceB();\n    sourceControl->PreSetSourceC();\n"
     "    std::string text;\n    sourceControl->SetSource(SOURCE_TV, serviceId, text);",
     "    sourceControl->PreSetSourceB();\n    sourceControl->PreSetSourceA();\n    sourceControl->PreSetSourceC();\n"
     "    std::string text;\n    sourceControl->SetSource(SOURCE_TV, serviceId, text);"),
    ("the TV mode test asks for the channel only after it has judged the command", "tpms/SetTvModeMenu.cpp",
     "        if (command == -1) {", "        if (command == -1 || command == 99) {\n            if (command == 99) return;"),
    ("an item's state is written behind its number", "debugutil/MenuItem.cpp",
     "    formatter.PushValue(kStateTag, sizeof(m_state), &m_state);\n    formatter.PushValue(kIdTag, sizeof(m_id), &m_id);\n"
     "    return formatter.Extract();",
     "    formatter.PushValue(kIdTag, sizeof(m_id), &m_id);\n    formatter.PushValue(kStateTag, sizeof(m_state), &m_state);\n"
     "    return formatter.Extract();"),
    ("the first of the latest services is asked of the other list", "tpms/MainMenuItems.cpp",
     "    navigation->GetLatestServiceId(&serviceId, cable);\n    std::cout << \"[RF][CABLE]",
     "    navigation->GetLatestVeldaServiceId(&serviceId, air);\n    std::cout << \"[RF][CABLE]"),
    # Missing calls
    ("a dialogue that has ended is not stopped", "debugmenu/DebugMenu.cpp", "            dialogue.m_pControl->Stop();\n", ""),
    ("the subscriber stays when the test console is left", "tpms/TPMSDebugMenu.cpp",
     "    NorvexAPI::DestroySignalSubscriber(NorvexSignalCallback);\n", ""),
    ("the signal thread's loop is quit without a look whether it runs", "tpms/TPMSDebugMenu.cpp",
     "    while (!g_main_loop_is_running(loop)) {\n        std::this_thread::yield();\n    }\n", ""),
    ("a pending change keeps the second receiver", "tpms/SignalTunePreparationMenu.cpp",
     "        utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app1);\n"
     "        utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app2);\n",
     "        utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app1);\n"),
    ("switching the provider's log off keeps its marker file", "debugmenu/QuarleDebugMenu.cpp",
     "    static_cast<void>(std::remove(MarkerFile().c_str()));\n", ""),
    ("a wrapper does not delete its node creator", "debugutil/MarshalableOneDimensionContainer.h",
     "        delete m_pNodeCreator;\n", ""),
    # Prompts and texts
    ("a misspelling is put right", "tpms/PreparationLogicMenu.cpp",
     '" 1. call IPipelineUtilityl::', '" 1. call IPipelineUtility::'),
    ("a failed lookup ends its line", "tpms/SetTvModeMenu.cpp",
     'std::cout << "FindService failed";', 'std::cout << "FindService failed\\n";'),
    ("the media menu's end says nothing", "debugmenu/DebugMenu.cpp",
     "            if (GstPluginDebugFunction() == 0)\n", "            if (GstPluginDebugFunction() != 0)\n"),
    ("a failed start is one line", "debugmenu/DebugMenu.cpp",
     "    // Meant: a second line.\n    std::cout << \"Command not implemented\" << std::endl;\n", ""),
    ("the zoom test's source asks for its height before its width", "tpms/ZoomControlMenu.cpp",
     '    rect.m_width = m_SelectCmd("SrcWidth = ");\n    rect.m_height = m_SelectCmd("SrcHeight = ");\n',
     '    rect.m_height = m_SelectCmd("SrcHeight = ");\n    rect.m_width = m_SelectCmd("SrcWidth = ");\n'),
    ("the simple menu's numbers stand right", "simplemenu/DebugMenuSimple.cpp", "std::left", "std::right"),
]
