#include "Walk.h"

#include <chrono>
#include <cstdio>

#include <unistd.h>

#include "Playback.h"
#include "Prediction.h"
#include "Progress.h"
#include "WordList.h"
#include "Words.h"

// Defined where the leak sanitizer is.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): its own name for it.
extern "C" __attribute__((weak)) int __lsan_do_recoverable_leak_check();

namespace walk {

namespace {

// A session that takes so long does not come back.
constexpr unsigned kSecondsForSession = 120;

// Looking for lost memory takes as long as a session does.
constexpr std::uint64_t kSessionsBetweenLooks = 16;

void played(Playback& playback, const Session& session) {
    alarm(kSecondsForSession);
    playback.play(session);
    alarm(0);
}

void endWhereMemoryIsLost() {
    if (__lsan_do_recoverable_leak_check && __lsan_do_recoverable_leak_check() != 0)
        ::_exit(kLeaks);
}

std::vector<Word> wordsOf(const Session& session) {
    std::vector<Word> words;
    for (const Step& step : session.steps)
        words.push_back(step.word);
    return words;
}

} // namespace

int walk(const Options& options) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(options.seconds);
    Progress progress{0, options.seed, ""};
    Coverage coverage = everyRow();
    Playback playback;
    while ((options.words == 0 || progress.words < options.words) &&
           (options.seconds == 0 || Clock::now() < end)) {
        DrawnWords words(progress.seed, options.session, coverage);
        const Session session = predict(progress.seed, words, coverage);
        writeSession(options.progress, progress.seed, WordList::text(wordsOf(session)));
        played(playback, session);
        progress.words += static_cast<long>(session.steps.size());
        ++progress.seed;
        if (progress.seed % kSessionsBetweenLooks == 0) {
            endWhereMemoryIsLost();
            forgetSessions(options.progress);
        }
        progress.rows = coverage.text();
        writeProgress(options.progress, progress);
    }
    endWhereMemoryIsLost();
    return 0;
}

int replay(const Options& options) {
    Coverage coverage = everyRow();
    GivenWords words(options.replay);
    Playback playback;
    const Session session = predict(options.seed, words, coverage);
    played(playback, session);
    endWhereMemoryIsLost();
    std::printf("walk: %zu words, seed %llu, as predicted\n", session.steps.size(),
                static_cast<unsigned long long>(options.seed));
    return 0;
}

} // namespace walk
