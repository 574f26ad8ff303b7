#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "Child.h"
#include "Playback.h"
#include "Prediction.h"
#include "Progress.h"
#include "Shrinking.h"
#include "Walk.h"
#include "WordList.h"

namespace walk {

namespace {

// In so many words each row has been visited, whatever the seed.
constexpr long kWordsForEachRow = 20000;
// What depends on how threads meet need not show each time.
constexpr int kTries = 3;

class Watch {
public:
    Watch(const Options& options, std::string program)
        : m_options(options), m_program(std::move(program)), m_rows(everyRow()) {
        std::string name = std::filesystem::temp_directory_path() / "zarn-walks-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) {
            std::perror("walk: no directory for the progress");
            std::exit(1);
        }
        m_folder = name;
    }
    ~Watch() { std::filesystem::remove_all(m_folder); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    int run() {
        const auto begin = std::chrono::steady_clock::now();
        long words = 0;
        long findings = 0;
        std::uint64_t seed = m_options.seed;
        while (findings < m_options.findings) {
            const auto passed = std::chrono::duration_cast<std::chrono::seconds>(
                std::chrono::steady_clock::now() - begin);
            const long secondsLeft = m_options.seconds - passed.count();
            if ((m_options.words != 0 && words >= m_options.words) ||
                (m_options.seconds != 0 && secondsLeft <= 0))
                break;
            writeProgress(m_folder, {0, seed, ""});
            const Ending ending =
                runChild(m_program,
                         {"--progress", m_folder, "--seed", std::to_string(seed), "--session",
                          std::to_string(m_options.session), "--words",
                          std::to_string(m_options.words == 0 ? 0 : m_options.words - words),
                          "--seconds", std::to_string(m_options.seconds == 0 ? 0 : secondsLeft)},
                         false);
            const Progress progress = readProgress(m_folder);
            words += progress.words;
            seed = progress.seed;
            m_rows.add(progress.rows);
            if (ending.isGood())
                break;
            ++findings;
            const auto sessions = readSessions(m_folder);
            forgetSessions(m_folder);
            tell(sessions, ending);
            // The one that was under way is left out.
            if (ending != Ending{kLeaks, 0})
                ++seed;
        }
        if (findings == 0 && (m_options.everyRow || words >= kWordsForEachRow)) {
            for (const std::string& row : m_rows.unvisited()) {
                std::printf("walk: never visited: %s\n", row.c_str());
                ++findings;
            }
        }
        if (m_options.tellsRows)
            std::printf("%s", m_rows.text().c_str());
        std::printf("walk: %zu rows, %zu never visited\n", m_rows.rows(),
                    m_rows.unvisited().size());
        std::printf("walk: %ld words, seed %llu, %ld finding%s\n", words,
                    static_cast<unsigned long long>(m_options.seed), findings,
                    findings == 1 ? "" : "s");
        return findings == 0 ? 0 : 1;
    }

private:
    // The last of the sessions; where memory was lost, the first one that loses some.
    void tell(const std::map<std::uint64_t, std::string>& sessions, const Ending& ending) {
        if (sessions.empty()) {
            std::printf("walk: finding: %s outside of a session\n", ending.text().c_str());
            return;
        }
        std::uint64_t seed = sessions.rbegin()->first;
        std::string text = sessions.rbegin()->second;
        if (ending == Ending{kLeaks, 0}) {
            for (const auto& [earlier, words] : sessions) {
                if (!repeats(earlier, ending, WordList::parsed(words)))
                    continue;
                seed = earlier;
                text = words;
                break;
            }
        }
        std::printf("walk: finding: session of seed %llu %s\n",
                    static_cast<unsigned long long>(seed), ending.text().c_str());
        std::vector<Word> words = WordList::parsed(text);
        if (m_options.shrinks)
            words = shrunk(seed, ending, words);
        std::printf("walk: replay with\n  %s --seed %llu --replay \"%s\"\n",
                    std::filesystem::path(m_program).filename().c_str(),
                    static_cast<unsigned long long>(seed), WordList::text(words).c_str());
        if (std::fflush(stdout) != 0)
            std::perror("walk: no output");
    }

    std::vector<Word> shrunk(std::uint64_t seed, const Ending& ending,
                             const std::vector<Word>& words) const {
        if (!repeats(seed, ending, words)) {
            std::printf("walk: it does not show again in a session of its own\n");
            return words;
        }
        std::vector<Word> few = walk::shrunk(
            words, [&](const std::vector<Word>& fewer) { return repeats(seed, ending, fewer); });
        std::printf("walk: shrunk from %zu words to %zu:", words.size(), few.size());
        for (const Word& word : few)
            std::printf(" %s", word.text.c_str());
        std::printf("\n");
        runChild(m_program, replaying(seed, few), false);
        return few;
    }

    bool repeats(std::uint64_t seed, const Ending& ending, const std::vector<Word>& words) const {
        for (int i = 0; i < kTries; ++i) {
            const Ending now = runChild(m_program, replaying(seed, words), true);
            if (now == ending)
                return true;
            if (now.isGood() && ending.status == Playback::kDiffers)
                return false;
        }
        return false;
    }

    std::vector<std::string> replaying(std::uint64_t seed, const std::vector<Word>& words) const {
        const std::string file = m_folder + "/replay";
        std::ofstream(file, std::ios::binary) << WordList::text(words);
        return {"--seed", std::to_string(seed), "--replay-file", file};
    }

    const Options& m_options;
    std::string m_program;
    std::string m_folder;
    Coverage m_rows;
};

} // namespace

int watchOver(const Options& options, const std::string& program) {
    return Watch(options, program).run();
}

} // namespace walk
