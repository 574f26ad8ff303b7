#include "CallLog.h"

#include <mutex>
#include <utility>

namespace {

std::mutex mutex;
std::vector<std::string> calls;

} // namespace

void CallLog::Record(std::string call) {
    const std::lock_guard<std::mutex> lock(mutex);
    calls.push_back(std::move(call));
}

std::vector<std::string> CallLog::Calls() {
    const std::lock_guard<std::mutex> lock(mutex);
    return calls;
}

void CallLog::Clear() {
    const std::lock_guard<std::mutex> lock(mutex);
    calls.clear();
}
