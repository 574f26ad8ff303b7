#include "GstPluginDebug.h"

#include <algorithm>
#include <iostream>
#include <locale>

#include <unistd.h>

#include "MenuText.h"
#include "WordNumber.h"

namespace {

constexpr char kElementRows[] = "  0. GST_VIDEO_SINK\n"
                                "  1. GST_VIDEO_DEC\n"
                                "  2. GST_TUNER\n"
                                "  3. GST_TUNER_INFO\n"
                                "  4. GST_AUDIO_SINK\n"
                                "  5. GST_AUDIO_DEC\n"
                                "  6. GST_CI\n"
                                "  7. GST_DEMUXER\n"
                                "  8. GST_DRM_SINK\n"
                                "  9. GST_EXT_AUDIO\n"
                                " 10. GST_EXT_VIDEO\n"
                                " 11. GST_FPA_PARSER\n";

// Log tag by row number. Kept: 2 and 6 to 10 don't match their rows, and row 11 has none; users
// know these numbers.
constexpr const char* kElements[] = {
    "tvvideosink",    // 0
    "tvvideodec",     // 1
    "tvvideodec",     // 2
    "tvtunerinfosrc", // 3
    "tvaudiosink",    // 4
    "tvaudiodec",     // 5
    "tvdemuxer",      // 6
    "tvdrmsink",      // 7
    "extaudiosrc",    // 8
    "extvideosrc",    // 9
    "tvfpaparser",    // 10
};
constexpr int kElementCount = sizeof(kElements) / sizeof(kElements[0]);

} // namespace

std::string CreateGstDebugUtilMenu() {
    return framedMenu("\t[GST Debug Log ON]\t\n", kElementRows);
}

bool isNumberGst(const std::string& text) {
    const std::locale locale;
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [&locale](char character) { return std::isdigit(character, locale); });
}

int ExecuteLogOn(const std::string& element, int /*index*/) {
    std::cout << "[GST Debug Log ON] ExecuteLogOn : " << element << std::endl;

    const char* tag = element.c_str();
    const pid_t child = vfork();
    if (child == 0) {
        // The child shares the console's memory: it only starts the viewer.
        execl("/usr/bin/dlogutil", "dlogutil", tag, static_cast<char*>(nullptr));
        _exit(1);
    }
    m_child_Pid = child;
    return child;
}

int GstPluginDebugFunction() {
    const std::string menu = CreateGstDebugUtilMenu();
    std::string element;
    std::string word;
    while (true) {
        std::cout << menu << std::endl;
        std::cout << "cmd> " << std::flush;
        std::cin >> word;
        // The stream stays failed: at end of input the menu repeats for ever.
        if (std::cin.fail())
            continue;
        if (!isNumberGst(word))
            continue;

        const int number = WordNumber(word);
        std::cout << number << std::endl;
        if (number == 99)
            return 0;
        if (number >= 0 && number < kElementCount) {
            element = kElements[number];
            ExecuteLogOn(element, number);
        } else {
            element = "NG";
            std::cout << " The input is invalid!! \n";
        }
    }
}
