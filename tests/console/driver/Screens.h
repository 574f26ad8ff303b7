#pragma once

#include <string>

// What the user sees, written down from the console's promise to its users. The texts are the
// tests' own: nothing here comes from the sources.
namespace screens {

inline const std::string processMenu = "====================================\n"
                                       "\t[Process Debug List]\t\n"
                                       "------------------------------------\n"
                                       " 1. Norvex\n"
                                       " 2. TV Player\n"
                                       " 3. TV Plug in\n"
                                       " 4. Quarle-Provider\n"
                                       " 5. Norvex Debug\n"
                                       " 6. Norvex LUMO Debug\n"
                                       " 7. Simple Debug\n"
                                       "------------------------------------\n"
                                       " 99 : Exit\n"
                                       "====================================\n";

inline const std::string mediaMenu = "====================================\n"
                                     "\t[GST Debug Log ON]\t\n"
                                     "------------------------------------\n"
                                     "  0. GST_VIDEO_SINK\n"
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
                                     " 11. GST_FPA_PARSER\n"
                                     "------------------------------------\n"
                                     " 99 : Exit\n"
                                     "====================================\n";

inline const std::string providerListOff = "\n====================================\n"
                                           "     [Quarle-Provider Module]\n"
                                           "------------------------------------\n"
                                           " 0: [OFF] QUARLE_PROVIDER  "
                                           "\n====================================\n"
                                           "99 : Exit\n"
                                           "====================================\n"
                                           "cmd> ";

inline const std::string providerListOn = "\n====================================\n"
                                          "     [Quarle-Provider Module]\n"
                                          "------------------------------------\n"
                                          " 0: [ON ] QUARLE_PROVIDER  "
                                          "\n====================================\n"
                                          "99 : Exit\n"
                                          "====================================\n"
                                          "cmd> ";

inline const std::string providerPrompt = "QUARLE_DAEMON ==> ON[1]/OFF[0]: ";

// The simple menu with these rows, each with its line end.
inline std::string simpleMenu(const std::string& qos, const std::string& rows) {
    return "\n====================================\n"
           "     [Simple menu]\n"
           "------------------------------------\n" +
           qos + rows +
           "====================================\n"
           "99 : Exit\n"
           "====================================\n";
}

} // namespace screens
