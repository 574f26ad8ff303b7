#pragma once

#include <cstdint>

#include <norvex/client/Profile.h>

// Signals of the middleware. Only those that the console prints have names.
enum ESignalType : int {
    SIGNAL_SI_STARTED = 81,
    SIGNAL_TUNE_AROUND_SERVICE_DONE = 193,
    SIGNAL_TUNE_AROUND_FINISHED = 194,
    SIGNAL_BARKER_CHANNEL_TUNE = 195,
};

// Payload of a signal: 64 bits, fields counted from the lowest.
//   SIGNAL_SI_STARTED                bits 0-15 channel type, 16-31 service profile,
//                                    32-47 channel number, each signed
//   SIGNAL_TUNE_AROUND_SERVICE_DONE  the service id
//   SIGNAL_TUNE_AROUND_FINISHED      bits 0-15: 0 when every service was visited,
//                                    else stopped before
//   SIGNAL_BARKER_CHANNEL_TUNE       bits 0-7: not 0 on success
struct TSSignalData {
    std::uint64_t m_value;
};

// Called for each signal, on the thread that iterates GLib's default main context. The result is
// ignored.
using NorvexSignalCallbackFunction = int (*)(ESignalType type, EProfile profile, unsigned short screenId,
                                             TSSignalData data, void* userData);
