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

# The wire
mutate("simulator/wire/Packet.cpp", "payloadSize >= missing", "payloadSize > missing",
       "a packet that completes its message may say that more follows", "wire-test")
mutate("simulator/wire/Packet.cpp", " ||\n        (bytes[3] & ~kPacketMore) != 0)", ")",
       "unknown flags of a packet are passed over", "wire-test")
mutate("simulator/wire/Packet.cpp", "EncodePacketHeader(m_packetHeader, m_left > 0);",
       "EncodePacketHeader(m_packetHeader, room == kMaxPacketPayload);",
       "the last packet of a message says that more follows when it is full", "wire-test")
mutate("simulator/wire/Message.cpp",
       "bytes[0] < static_cast<unsigned char>(MessageKind::Hello) ||\n        ", "",
       "a message of kind 0 is taken", "wire-test")
mutate("simulator/wire/Message.cpp", "bytes[1] != 0 ||", "bytes[1] > 1 ||",
       "a reserved byte may be 1", "wire-test:Packet.*")
mutate("simulator/wire/Message.cpp", "header.methodSize <= kMaxNameSize", "header.methodSize < kMaxNameSize",
       "an operation's name of the longest length is refused", "wire-test")
mutate("simulator/wire/Tree.cpp", "    text = child.GetBytes();\n    return cursor.IsAtEnd();",
       "    text = child.GetBytes();\n    return true;",
       "a text may have more nodes after its bytes", "wire-test")
mutate("simulator/wire/Tree.cpp", "        text = {};\n        return cursor.IsAtEnd();", "        text = {};\n        return true;",
       "a text of length 0 may have bytes all the same", "wire-test")
mutate("simulator/wire/Tree.cpp", "IsWellFormed(NodeCursor(data, size), kMaxDepth)",
       "IsWellFormed(NodeCursor(data, size), kMaxDepth - 1)",
       "a tree of the greatest depth is refused", "wire-test")
mutate("simulator/wire/include/wire/Tree.h", "kind - static_cast<unsigned>(NodeKind::Value) > 3u", "kind > 4u",
       "a node of kind 0 is taken", "wire-test")

# The core library
mutate("simulator/core/ArgumentList.cpp", "static_cast<long long>(node.size) != argument.size",
       "static_cast<long long>(node.size) > argument.size",
       "a reply's value that is too short fills a part of the argument", "wire-test")
mutate("simulator/core/ArgumentList.cpp", "bool ArgumentList::Encode() {\n    m_scratch.Clear();", "bool ArgumentList::Encode() {",
       "a helper that is run twice sends its arguments twice", "wire-test")
mutate("simulator/core/ClassToTreeFormatter.cpp", "    branch.childCount += written ? 1 : 0;\n", "",
       "an object in a branch is not counted among its children", "wire-test")
mutate("simulator/core/BranchView.cpp", "highest = std::max(highest, int{node.tag});", "highest = int{node.tag};",
       "a tag that stands before a higher one is not found again", "wire-test")
mutate("simulator/core/DefaultNodeCreator.cpp", "node->GetSize() == byteCount", "node->GetSize() >= byteCount",
       "an element is filled from a node that is longer", "wire-test")
mutate("simulator/core/ObjectTree.cpp", "        buffer.Truncate(before);\n", "",
       "an object that could not be written leaves its first half in the message", "wire-test")
mutate("simulator/core/ObjectTree.cpp", "depth >= wire::kMaxDepth", "depth > wire::kMaxDepth",
       "objects are written one level deeper than any reader takes", "wire-test")
mutate("simulator/core/FormatterState.h", "if (!worked && !HasFailed())", "if (!worked)",
       "a second failure of a formatter is counted as well", "wire-test")
mutate("simulator/core/Marshalable.cpp", "cursor.Next(node) && cursor.IsAtEnd() &&", "cursor.Next(node) &&",
       "an object is loaded from bytes that go on after it", "wire-test")
mutate("simulator/core/DebugMenuUtility.cpp", "    dlclose(library);\n", "",
       "an opened library stays after its function has returned", "wire-test")

# A client's connection
mutate("simulator/connection/DaemonConnection.cpp", " || more != (here < whole))", ")",
       "a reply's first packet may lie about whether more follows", "wire-test")
mutate("simulator/connection/DaemonConnection.cpp", " || more != (expected < size))", ")",
       "a reply's further packets may lie about whether more follows", "wire-test")
mutate("simulator/connection/DaemonConnection.cpp", "static_cast<std::int32_t>(header.serial - serial) > 0",
       "header.serial > serial",
       "a late answer from before the serial numbers began anew counts as one to a call that was never made", "wire-test")
mutate("simulator/connection/DaemonConnection.cpp", "    if (!mayWait)\n        fcntl(socket, F_SETFL, 0);\n", "",
       "a connection that asked a stalled TV whether it is back never waits", "wire-test")
mutate("simulator/connection/DaemonClient.cpp", " ||\n        connection.GetClient() != m_client)", ")",
       "sessions that the TV released meanwhile are taken for open", "wire-test", "client-test")
mutate("simulator/connection/DaemonClient.cpp",
       "        if (session.generation != connection.generation)\n            return Failure::None;\n        wire::Buffer tree;",
       "        wire::Buffer tree;",
       "the end of a session of an earlier TV closes one of the new TV's", "wire-test", "client-test")
mutate("simulator/connection/DaemonConnection.cpp", "        ClientToken::Renew();\n", "",
       "a child of fork is taken for its parent", "wire-test:DaemonClientTest.AForked*")
mutate("simulator/connection/DaemonClient.cpp", "(status >= 0 && !hasId)", "(status >= 0 && hasId && id == 0)",
       "a session without an id is taken for open", "wire-test", "client-test")
mutate("simulator/connection/DaemonClient.cpp", "            return failure;\n        DropIdle();\n", "            return failure;\n",
       "two connections that ended while idle fail a call on a new TV", "wire-test", "client-test")
mutate("simulator/connection/DaemonClient.cpp", "        if (m_isStalled) {\n            failure = Failure::Stalled;\n            return nullptr;\n        }\n", "",
       "signals are asked for again and again, a whole limit each, while the TV is stalled", "wire-test", "client-test")
mutate("simulator/connection/DaemonClient.cpp", "purpose.role == wire::Role::Calls ? std::move(connection) : nullptr",
       "std::move(connection)",
       "a connection for signals is used for calls when the TV comes back", "wire-test", "client-test")
mutate("simulator/connection/Environment.cpp", "number >= 1 &&", "number >= 0 &&",
       "a limit of 0 ms is taken from the environment", "wire-test", "client-test")

# The client library
mutate("simulator/client/SignalSubscriber.cpp", "if (found != m_subscriptions.rend())",
       "if (found != m_subscriptions.rend() && IsWatching())",
       "what is unsubscribed while there is no TV comes back with it", "client-test")
mutate("simulator/client/SignalSubscriber.cpp", "each.type == type && each.filter == filter &&", "each.type == type &&",
       "unsubscribing takes the latest subscription of a type, whatever its filter", "client-test")
mutate("simulator/client/SignalSubscriber.cpp", "        m_session->Close();\n        return false;", "        return false;",
       "a subscription that was restored before another one failed is made twice", "client-test")
mutate("simulator/client/SignalSubscriber.cpp", "            m_daemon->DropIdle();\n", "",
       "after the TV ended the idle connections are taken for its present state", "client-test")
mutate("simulator/client/SignalSubscriber.cpp", "            StartTimer();\n            return false;", "            return false;",
       "signals are not restored by themselves after the TV ended", "client-test")
mutate("simulator/client/SignalSubscriber.cpp", "    if (status > 0)\n        m_subscriptions.push_back(subscription);",
       "    m_subscriptions.push_back(subscription);",
       "a subscription that was refused is made again with the next TV", "client-test")
mutate("simulator/client/SignalSubscriber.cpp", "            return m_deliveringThread == std::thread::id() ||\n                   m_deliveringThread == std::this_thread::get_id();",
       "            return m_deliveringThread == std::thread::id();",
       "a callback that unsubscribes itself waits for its own end", "client-test")
mutate("simulator/client/SignalSubscriber.cpp", "connection == nullptr || connection->generation != m_session->GetGeneration()",
       "connection == nullptr",
       "signals of a newer TV are watched with an older one's session", "client-test")
mutate("simulator/client/RemoteCall.cpp", "return exchanged ? m_status : -1;", "return exchanged || m_status > 0 ? m_status : -1;",
       "a call whose reply was read in part is a success", "client-test")
mutate("simulator/client/RemoteCall.h", "byte(flagTarget ? 1 : 0)", "byte(0)",
       "a flag that a refusal does not bring becomes false", "client-test")
mutate("simulator/client/SessionProxy.h", "return session->GetStatus();", "return -session->GetStatus();",
       "a factory that is refused answers a success", "client-test")

# The device
mutate("simulator/device/DeviceService.cpp", "if (status <= 0", "if (status < 0",
       "a status of 0 from the TV is a success", "device-test")
mutate("simulator/device/DeviceService.cpp", "bool hasAnswer = false;", "bool hasAnswer = true;",
       "a value that the reply does not bring is 0", "device-test")
mutate("simulator/base/NewFile.cpp", "fchmod(m_file, old.st_mode & 0777) != 0", "m_file < 0",
       "a saved file loses the mode of the one before", "tests/system/files_test.py")
mutate("simulator/base/NewFile.cpp", "fsync(m_file) != 0 || ", "",
       "a saved file is not on the disk", "tests/resources/daemon_resources_test.py::test_a_line_up_that_does_not_reach_the_disk_is_not_saved")
mutate("simulator/base/Path.cpp", "mkdir(path.substr(0, slash).c_str(), 0700);", "static_cast<void>(slash);",
       "the data directory is not made where the one above it is missing", "tests/system/device_logs_test.py", "device-test")
mutate("simulator/base/Path.cpp", "return value != nullptr && *value != '\\0' ? value : nullptr;", "return value;",
       "an empty NORVEX_DEVICE_DIR is not as one that is unset", "device-test")
mutate("simulator/daemon/device/Device.cpp", "    context.clients.SetBeginHook([this] { FollowMarker(); });\n", "",
       "the provider's tags do not follow their marker file when a console begins", "tests/system/device_logs_test.py")
mutate("simulator/device/viewer/LogViewer.cpp", "        if (sources[1].revents != 0)\n            return EXIT_SUCCESS;\n", "",
       "a viewer stays after its reader has gone", "tests/system/device_logs_test.py")
mutate("simulator/device/viewer/main.cpp", "    pthread_sigmask(SIG_SETMASK, &none, nullptr);\n", "",
       "a viewer keeps the blocked signals of whoever started it", "tests/system/device_logs_test.py")
mutate("simulator/device/viewer/main.cpp", "{SIGTERM, SIGINT, SIGHUP}", "{SIGTERM, SIGINT}",
       "a viewer that was started by nohup survives its terminal", "tests/system/device_logs_test.py")

# Shared by the programs
mutate("simulator/base/LogWriter.cpp", "if (m_file < 0 && errno == ENXIO)", "if (m_file < 0 && errno == ENOENT)",
       "a pipe that nobody reads yet cannot be the log", "daemon_tests:LogPipeTest.*")
mutate("simulator/base/LogFile.cpp", "mine.st_ino == named.st_ino && mine.st_dev == named.st_dev", "mine.st_dev == named.st_dev",
       "a second process moves the new log away in place of the full one", "wire-test")
mutate("simulator/base/LogFile.cpp", " || status.st_nlink == 0", "",
       "a log that somebody removed is written on without a name", "wire-test")
mutate("simulator/base/Path.cpp", "(there.st_mode & 0077) == 0", "(there.st_mode & 0007) == 0",
       "a runtime directory that is open to a group is used", "tests/daemon/start_test.py", "tests/daemon/other_users_test.py")
mutate("simulator/interfaces/include/interfaces/Interfaces.h", "StartLogTag, StopLogTag", "StopLogTag, StartLogTag",
       "starting a log tag has the number of stopping one, on both sides", "wire-test", "device-test")
mutate("simulator/interfaces/include/interfaces/InterfaceTable.h", "method.substr(0, method.find('_'))", "method",
       "an overload travels under the name that tells it apart here", "wire-test", "client-test")

# The host
mutate("host/ConsoleOutput.cpp", "S_ISREG(status.st_mode) && ::ftruncate(m_descriptor, 0) != 0", "false",
       "a transcript ends with what is left of a longer one", "host-unit-tests", "tests/host/transcript_test.py")
mutate("host/ScriptRun.cpp", "m_printed.erase(0, m_printed.size() - m_wanted.size() + 1);", "m_printed.erase(0, m_printed.size() - m_wanted.size() + 2);",
       "an expected text whose last byte comes by itself is missed", "host-unit-tests")
mutate("host/ScriptRun.cpp", "    m_wanted.clear();\n    return m_found;", "    return m_found;",
       "output that was searched for an expectation is dropped before the next one", "host-unit-tests")
mutate("host/ConsoleRun.cpp", 'm_transcript.Error()));\n        status = status == ExitStatus::Done ? ExitStatus::Unavailable : status;',
       'm_transcript.Error()));\n        status = ExitStatus::Unavailable;',
       "a missed expectation and a transcript that cannot be written are status 1", "tests/host/script_test.py", "tests/host/transcript_test.py")
mutate("host/Script.cpp", "!(seconds >= 0.001)", "!(seconds > 0)",
       "a limit that is rounded to no time is taken", "host-unit-tests")
mutate("host/Process.cpp", "    static_cast<void>(std::signal(SIGPIPE, SIG_DFL));\n", "",
       "a host whose caller ignores SIGPIPE prints on after its reader has gone", "tests/host/process_test.py")
mutate("host/Process.cpp", "{SIGINT, SIGQUIT, SIGTERM, SIGHUP}", "{SIGINT, SIGQUIT, SIGTERM}",
       "a terminal that hangs up keeps the console's modes", "tests/host/terminal_test.py")
mutate("host/Plugin.cpp", "program.parent_path().parent_path()", "program.parent_path()",
       "the plug-in beside the host is not found", "tests/host/process_test.py", "tests/system/console_test.py")

# The daemon: store
mutate("simulator/daemon/store/Database.cpp", "    if (m_hasFailed)\n        return Step::Failed;\n", "",
       "a statement with a value that could not be bound runs with the last one's", "tests/resources/daemon_resources_test.py")
mutate("simulator/daemon/store/Database.cpp", "    sqlite3_reset(m_statement);\n    m_hasFailed = false;", "    sqlite3_reset(m_statement);",
       "a statement that failed once fails for ever", "daemon_tests")
mutate("simulator/daemon/store/Database.cpp", '        m_database.Execute("ROLLBACK");', "        static_cast<void>(m_database);",
       "a transaction that is given up stays open", "daemon_services_tests")
mutate("simulator/daemon/store/Database.cpp", "PRAGMA locking_mode = EXCLUSIVE; BEGIN", "BEGIN",
       "two TVs run on one database", "tests/daemon/start_test.py")
mutate("simulator/daemon/store/NumberStore.cpp", '"DELETE FROM setting WHERE part = ?1"', '"DELETE FROM setting WHERE part >= ?1"',
       "resetting one component forgets what others keep", "daemon_tests")
mutate("simulator/daemon/store/NumberStore.cpp", "DO UPDATE SET value = ?3", "DO NOTHING",
       "a number that is kept again stays as it was first", "daemon_tests")
mutate("simulator/daemon/store/Database.cpp", "    return m_isLost;", "    return false;",
       "a change is lost with a database that has been replaced, and answered with success", "tests/daemon/start_test.py")

# The daemon: io
mutate("simulator/daemon/io/Listener.cpp", "umask(0177)", "umask(0077)",
       "the sockets have a mode of 0700", "tests/daemon/start_test.py", "tests/daemon/other_users_test.py")
mutate("simulator/daemon/io/Listener.cpp", "[this] { m_watch.SetEvents(EPOLLIN); }", "[] {}",
       "after descriptors ran out no connection is ever accepted again", "tests/daemon/hostile_test.py")

mutate("simulator/daemon/io/Listener.cpp", "    if (IsSame(m_path, m_file))\n", "",
       "a TV's end removes the socket of the next one", "tests/daemon/start_test.py")
mutate("simulator/daemon/io/Listener.cpp", "        if (!IsStale(address, type)) {", "        if (IsStale(address, SOCK_RAW)) {",
       "another program's socket is taken away", "tests/daemon/start_test.py")

# The daemon: rpc
mutate("simulator/daemon/rpc/Clients.cpp", "    client->m_grace.Stop();\n", "",
       "a client that came back in time is released all the same", "daemon_tests")
mutate("simulator/daemon/rpc/Clients.cpp", "if (--client.m_connections == 0)", "if (client.m_connections-- <= 2)",
       "a client is released when it has one connection left", "daemon_tests", "tests/daemon/clients_test.py")
mutate("simulator/daemon/rpc/Dispatcher.cpp", "            method->calls = 0;", "            static_cast<void>(method->calls);",
       "a reset leaves the operations' counts", "daemon_tests")
mutate("simulator/daemon/rpc/Dispatcher.cpp", " || call.session->client != connection.client", "",
       "a client calls another one's session", "daemon_tests")
mutate("simulator/daemon/rpc/Dispatcher.cpp", "    m_log.SetSequence(0);\n", "",
       "what the log says after a call has the call's number",
       "tests/daemon/hostile_test.py::test_another_version_is_refused")
mutate("simulator/daemon/rpc/Injections.cpp", "    if (--order->calls == 0)\n        found->second.erase(order);", "    --order->calls;",
       "an injected fault is never used up", "daemon_tests")
mutate("simulator/daemon/rpc/Journal.cpp", "if (m_head > tail) {", "if (m_head >= tail) {",
       "a journal that is full to the last byte overwrites its oldest call without evicting it", "daemon_tests")
mutate("simulator/daemon/rpc/Journal.cpp", "    if (m_end - m_begin == m_entryCount)\n        ++m_begin;\n", "",
       "the journal keeps one more call than it has places for", "daemon_tests")
mutate("simulator/daemon/rpc/Sessions.cpp", "for (auto id = ids.rbegin(); id != ids.rend(); ++id)", "for (auto id = ids.begin(); id != ids.end(); ++id)",
       "a client's sessions are ended oldest first", "daemon_tests")
mutate("simulator/daemon/rpc/SessionInterface.cpp", "screen < 0 || screen > UINT16_MAX", "screen > UINT16_MAX",
       "screen -1 is screen 65535", "tests/daemon/clients_test.py")
mutate("simulator/daemon/rpc/Signals.cpp", " || served->client != connection.client", "",
       "a client gets the signals of another one's session", "tests/daemon/hostile_test.py::test_signals_are_for_the_client_whose_session_it_is")
mutate("simulator/daemon/rpc/Connection.cpp", "            m_queued -= first.tree.GetSize();\n", "",
       "what has been sent counts as waiting for ever",
       "tests/daemon/hostile_test.py::test_signals_that_are_read_late_are_all_there_in_their_order")
mutate("simulator/daemon/rpc/Server.cpp", "    if (m_followers.remove(&connection) > 0)\n        FollowersChanged();", "    m_followers.remove(&connection);",
       "the state counts log viewers that are gone", "tests/system/device_logs_test.py")
mutate("simulator/daemon/rpc/Connection.cpp", "        due.splice(due.end(), m_late, late);\n", "",
       "a late reply that has been sent is still there", "daemon_tests:*LateReplies*")
mutate("simulator/daemon/rpc/Server.cpp", "        if (most->second <= shares[connection.client])\n            return false;", "        return false;",
       "a message has no room while others hold half ones",
       "tests/daemon/hostile_test.py::test_who_stops_in_the_middle_of_a_message_makes_room_for_others")
mutate("simulator/daemon/rpc/Sessions.cpp", "return session->signals == nullptr;", "return session != nullptr;",
       "a signal subscriber that makes no calls is closed when its client leaks", "daemon_tests:SessionsTest.*")
mutate("simulator/daemon/rpc/Server.cpp", "        connection.helloDeadline.Stop();\n", "",
       "a client is dropped two seconds after its hello",
       "tests/daemon/hostile_test.py::test_running_out_of_descriptors_is_survived")

# The daemon: device, debug menu
mutate("simulator/daemon/device/Device.cpp", " || (tag == kOwnTag && !started)", "",
       "the TV's own tag can be stopped", "tests/daemon/clients_test.py")
mutate("simulator/daemon/device/Device.cpp", "        !m_context.numbers.Clear(kTagsPart) || ", "        ",
       "log tags of before a reset are back after the next start", "tests/daemon/start_test.py", "tests/system/device_logs_test.py")
mutate("simulator/daemon/device/Device.cpp", "!m_values.contains(key) && m_values.size() >= kMaxKeys", "m_values.size() >= kMaxKeys",
       "a full key-value store refuses a new value of a key that it has", "tests/daemon/hostile_test.py", "tests/daemon/control_test.py")
mutate("simulator/daemon/debug/DebugSwitches.cpp", "return SetExtraItems(m_extraAtStart);", "return SetExtraItems(m_extraItems);",
       "a reset keeps the number of items that was set since the start", "daemon_tests", "tests/daemon/control_test.py")
mutate("simulator/daemon/debug/DebugPrintControl.cpp", "    m_dialogues.erase(client.GetNumber());\n", "    static_cast<void>(client);\n",
       "the dialogue of a client that is gone stays", "tests/daemon/clients_test.py")
mutate("simulator/daemon/debug/DebugPrintControl.cpp", "m_dialogues.erase(call.client.GetNumber()) > 0 ? kDone : 0", "m_dialogues.erase(call.client.GetNumber()) > 0 ? 0 : kDone",
       "stopping a dialogue that was never started is the success", "tests/daemon/clients_test.py")

# The daemon: pipelines
mutate("simulator/daemon/pipelines/Pipelines.cpp", "    --At(handle).sessions;\n", "",
       "a pipeline's reference count is never lowered", "daemon_pipelines_tests")
mutate("simulator/daemon/pipelines/Pipelines.cpp", "std::exchange(pipeline.preparedNext, {})", "pipeline.preparedNext",
       "what was prepared for one source is there for the next as well", "daemon_pipelines_tests")
mutate("simulator/daemon/pipelines/Preparation.cpp", "            receiver.state = 0;", "            static_cast<void>(receiver);",
       "a receiver that was ready once is ready for each later change", "daemon_pipelines_tests")
mutate("simulator/daemon/pipelines/Preparation.cpp", "        Check(handle, queue);\n    }", "    }",
       "a change waits for a client that is gone", "daemon_pipelines_tests")
mutate("simulator/daemon/pipelines/ZoomControl.cpp", "if (!HasWindow(handle))", "if (HasWindow(handle))",
       "the main picture stays small after the last window's client is gone", "daemon_pipelines_tests")
mutate("simulator/daemon/pipelines/ZoomControl.cpp", "m_windows.size() < m_limit);", "m_windows.size() <= m_limit);",
       "one more zoom window is available than the limit allows", "daemon_pipelines_tests")
mutate("simulator/daemon/pipelines/Subscribers.cpp", "    if (left == 0)\n        counts.erase(found);\n", "",
       "a session whose subscriptions are all undone gets the signal still", "daemon_pipelines_tests")
mutate("simulator/daemon/pipelines/SourceControl.cpp", "source >= 0 && source <= kLastSource", "source <= kLastSource",
       "source -1 is a source", "daemon_pipelines_tests")

mutate("simulator/daemon/pipelines/Pipelines.cpp", "    Mark(handle);\n    return m_pipelines.try_emplace", "    return m_pipelines.try_emplace",
       "nobody who waits is told of a change of a pipeline", "daemon_pipelines_tests")

# The daemon: services
mutate("simulator/daemon/services/Programmes.cpp", "second < m_last.Int(0) + m_last.Int(1))", "second <= m_last.Int(0) + m_last.Int(1))",
       "a programme is on for a second after its end", "daemon_services_tests")
mutate("simulator/daemon/services/Programmes.cpp", " - midnights * kSecondsOfDay", "",
       "a programme that began before midnight begins in the coming evening", "daemon_services_tests")
mutate("simulator/daemon/services/ServiceComponents.cpp", "    lineUp.SetListener([&parts = parts.pipelines] { parts.LineUpChanged(); });\n", "",
       "pipelines do not learn of a new line-up", "daemon_services_tests")
mutate("simulator/daemon/services/ServiceComponents.cpp", "    pipelines.Perform(kMainPipeline, change);\n", "    static_cast<void>(pipelines);\n",
       "the boot-up service is kept, and not shown at the next start", "daemon_services_tests")
mutate("simulator/daemon/services/LineUpText.cpp", '        m_text += " unlisted";', '        m_text += " hidden";',
       "an unlisted service is written as a hidden one", "daemon_services_tests")
mutate("simulator/daemon/services/LineUpText.cpp", "programme.duration / 60", "programme.duration",
       "programmes are written with their length in seconds", "daemon_services_tests")
mutate("simulator/daemon/services/Scans.cpp", "    m_timer.Stop();\n    m_state = {};", "    m_state = {};",
       "a scan goes on through a reset", "daemon_services_tests")
mutate("simulator/daemon/services/Scans.cpp", 'Finish(SIGNAL_TUNE_AROUND_FINISHED, 1, "stopped")', 'Finish(SIGNAL_TUNE_AROUND_FINISHED, 0, "stopped")',
       "the signal at the end of a stopped scan says that it was completed", "daemon_services_tests")
mutate("simulator/daemon/pipelines/Pipelines.cpp", "(pipeline.GetTuner() == itsOwn && HasSignal(pipeline))", "m_inputs.HasSignal(itsOwn)",
       "a pipeline receives while a scan has its tuner on another transponder", "daemon_services_tests")
mutate("simulator/daemon/services/Scans.cpp", "    if (m_pipelines.Get(kMainPipeline).GetTuner() != transponder)\n", "    if (transponder.antenna < 0)\n",
       "a service is scanned although a viewer has tuned away", "daemon_services_tests")
mutate("simulator/daemon/debug/DebugDialogue.cpp", '        screen = "\\n" + m_lines + screen;\n', '        screen = "\\n" + screen;\n',
       "a debug menu's screen lacks the lines of the items that are on", "daemon_services_tests")
mutate("simulator/daemon/rpc/Dispatcher.cpp", "m_log.IsOn(Debug::DryRun) && ", "",
       "calls are not executed without dry-run", "daemon_services_tests")
mutate("simulator/daemon/services/ServiceQueries.cpp", "page.count == 0 ? -1 : page.count", "page.count == 0 ? 1 : page.count",
       "a page of 0 services is not all of them", "daemon_services_tests")

# The daemon: the TV's components, control channel, program
mutate("simulator/daemon/tv/Context.cpp", "    journal.Clear();\n", "",
       "a reset leaves the journal", "tests/daemon/control_test.py")
mutate("simulator/daemon/control/ControlConnection.cpp", 'file.starts_with(\'/\') ? file : m_directory + "/" + file', "file",
       "a relative path of norvex-simctl's is one from where the TV was started", "tests/daemon/control_test.py")
mutate("simulator/daemon/app/main/main.cpp", "    sigaddset(&signals, SIGINT);\n", "",
       "Ctrl-C ends a TV without its cleaning up", "tests/daemon/start_test.py")
mutate("simulator/daemon/app/main/main.cpp", "    log.SetSink([&](std::string_view tag, std::string_view text) { server.PushLine(tag, text); });\n", "",
       "viewers get no lines", "tests/system/device_logs_test.py")

# norvex-simctl
mutate("simulator/simctl/Ask.cpp", "    if (isEndless)\n        return 0;\n", "    if (!isEndless)\n        return 0;\n",
       "a TV that ends in the middle of its answer is a success", "tests/daemon/control_test.py")
mutate("simulator/simctl/Ask.cpp", "request[\"directory\"] = directory;", "request[\"directory\"] = \"/\";",
       "relative paths are not those of norvex-simctl's directory", "tests/daemon/control_test.py")

# What people type
mutate("script/console", "if [[ -z ${NORVEX_SOCKET:-} ]]; then", "if true; then",
       "a TV that NORVEX_SOCKET names is passed over", "tests/system/script_console_test.py")
mutate("script/console", '    [[ -z $directory ]] || rm -rf "$directory"\n', "",
       "each console leaves a directory in the temporary ones", "tests/system/script_console_test.py")
mutate("script/console", " --life-fd 0", "",
       "the TV outlives a script that is killed", "tests/system/script_console_test.py")
mutate("simulator/device/viewer/LogViewer.cpp", "if (errno == EPIPE)\n                    return EXIT_SUCCESS;", "return EXIT_SUCCESS;",
       "a viewer on a full disk ends well", "tests/system/programs_test.py")
mutate("script/console", "--) shift ;;", "--) ;;",
       "--help after -- is not the host's", "tests/system/script_console_test.py")
mutate("script/console", 'become_host "$@" <&0 &', 'become_host "$@" &',
       "the words of a pipe do not reach the host", "tests/system/script_console_test.py")
mutate("script/in-device", '    exec env --default-signal=INT,QUIT "$@"', '    exec "$@"',
       "Ctrl-C does not end the console", "tests/system/script_console_test.py")
mutate("script/in-device", '    rm -rf "$directory"\n}', "}",
       "each command run in the device leaves a directory", "tests/system/script_console_test.py")
