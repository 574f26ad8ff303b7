#include "SignalLine.h"

#include <cstdint>

namespace {

// The signed 16-bit field of a payload that begins at bit `shift`.
std::string signedField(TSSignalData data, int shift) {
    return std::to_string(static_cast<std::int16_t>(data.m_value >> shift));
}

} // namespace

std::string signalLine(ESignalType type, EProfile profile, unsigned short screenId, TSSignalData data) {
    const std::string pipeline = std::to_string(static_cast<int>(profile)) + ", screenId: " + std::to_string(screenId);
    switch (type) {
    case SIGNAL_SI_STARTED:
        return "\tSIGNAL_SI_STARTED -> profile:" + pipeline + ", chType:" + signedField(data, 0) +
               ", srvProfile:" + signedField(data, 16) + ", chNumber:" + signedField(data, 32) + "\n";
    case SIGNAL_TUNE_AROUND_SERVICE_DONE:
        return "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:" + pipeline +
               ", serviceId: " + std::to_string(data.m_value) + "\n";
    case SIGNAL_TUNE_AROUND_FINISHED: {
        // Not 0 means that the scan was stopped early.
        const bool stopped = (data.m_value & 0xFFFF) != 0;
        return "\tSIGNAL_TUNE_AROUND_FINISHED -> profile:" + pipeline + ", completed: " + (stopped ? "false" : "true") +
               "\n";
    }
    case SIGNAL_BARKER_CHANNEL_TUNE: {
        const bool success = (data.m_value & 0xFF) != 0;
        return "\tSIGNAL_BARKER_CHANNEL_TUNE -> profile:" + pipeline + ", is success:" + (success ? "true" : "false") +
               "\n";
    }
    }
    return std::string();
}
