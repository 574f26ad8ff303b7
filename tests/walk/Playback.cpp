#include "Playback.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <unistd.h>

#include <zarn/DebugMenu.h>

#include "Answers.h"
#include "Console.h"
#include "FakeCore.h"
#include "FakeDevice.h"
#include "FakeFiles.h"
#include "FakeNorvexAPI.h"
#include "FakeProcesses.h"
#include "LooseLines.h"
#include "MainLoopWatch.h"
#include "Timeline.h"

namespace walk {

namespace {

const char kMarker[] = "quarle-provider/data/FCdebug.conf";

void eraseAll(std::string& text, const std::string& piece) {
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at))
        text.erase(at, piece.size());
}

// The time line without what is nobody's concern: when the path resolver is asked, and flushes.
std::string bare(std::string timeline) {
    eraseAll(timeline, "{flush}");
    eraseAll(timeline, std::string("{TCPathResolver::GetAbsolutePath(6, ") + kMarker + ")}");
    return timeline;
}

[[noreturn]] void differs(std::size_t words, const Step& step, const std::string& seen) {
    std::cerr << "\nwalk: not as predicted after " << words << " words, in: " << step.place
              << "\n----- predicted\n"
              << step.expected << "\n----- seen\n"
              << seen << "\n-----" << std::endl;
    // Its thread may still run, and what it holds is no leak.
    ::_exit(Playback::kDiffers);
}

void compare(std::size_t words, const Step& step) {
    if (!step.loose.empty())
        Answers::waitUntilDelivered();
    const std::string whole = Timeline::now().whole();
    std::string seen = bare(whole);
    if (!isButFor(step.loose, seen, step.expected)) {
        for (const std::string& line : step.loose)
            seen += "\nwhere this line may stand anywhere: " + line;
        differs(words, step, seen);
    }
    if (step.flushed && step.loose.empty() && !whole.ends_with("{flush}"))
        differs(words, step, whole + "\nwhich was not flushed out");
    Timeline::now().clear();
}

} // namespace

Playback::Playback() {
    std::string name = std::filesystem::temp_directory_path() / "zarn-walk-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
        std::perror("walk: no directory for the device");
        std::exit(1);
    }
    m_directory = name;
    std::filesystem::create_directories(
        std::filesystem::path(m_directory + "/" + kMarker).parent_path());
    FakeDevice::setDirectory(m_directory);
}

Playback::~Playback() {
    FakeFiles::watch("");
    std::filesystem::remove_all(m_directory);
}

void Playback::play(const Session& session) {
    const std::string marker = m_directory + "/" + kMarker;
    std::filesystem::remove(marker);
    if (session.markerThere)
        std::ofstream(marker).flush();
    FakeFiles::watch(m_directory);
    if (session.readOnly)
        FakeFiles::mountReadOnly();
    FakeProcesses::reset();
    if (session.viewers == "missing")
        FakeProcesses::removePrograms();
    else if (session.viewers == "no process")
        FakeProcesses::exhaust();
    FakeCore::reset();

    FakeNorvexAPI tv;
    Console console;
    std::size_t words = 0;
    for (const Step& step : session.steps) {
        console.meanwhile([&step, &session, &tv, &words] {
            compare(words, step);
            ++words;
            FakeCore::reset();
            if (session.signedDigits)
                Answers::takeSigned(step.word.text);
            for (const Answer& answer : step.answers)
                Answers::give(answer, tv);
            for (const Signal& signal : step.before)
                Answers::deliver(signal);
            for (const Signal& signal : step.meanwhile)
                Answers::send(signal);
        });
        console.type(step.word.text);
    }
    Step beyond = session.end;
    console.meanwhile([&] {
        beyond.place = "the console's end, but it asks for one more word";
        differs(words, beyond, bare(Timeline::now().whole()));
    });

    console.run(zarn_startmaindebug);

    Step end = session.end;
    end.place = "the console's end";
    end.flushed = false;
    compare(words, end);
    if (words != session.steps.size() || tv.kept() != session.kept || tv.liveValues() != 0 ||
        FakeCore::helpersAlive() != 0 || MainLoopWatch::runsBegun() != MainLoopWatch::runsEnded()) {
        std::string kept = "objects, values or loops are left, or words: ";
        for (const std::string& name : tv.kept())
            kept += name + " ";
        differs(words, end, kept);
    }
    for (const pid_t child : FakeProcesses::children())
        FakeProcesses::exitStatus(child);
    FakeProcesses::reset();
    MainLoopWatch::clear();
    FakeDevice::clearVconf();
    Timeline::now().clear();
}

} // namespace walk
