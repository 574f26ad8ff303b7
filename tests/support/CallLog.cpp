#include "CallLog.h"

#include "Timeline.h"

void CallLog::Record(std::string call) {
    Timeline::now().call(call);
}

std::vector<std::string> CallLog::Calls() {
    return Timeline::now().calls();
}

void CallLog::Clear() {
    Timeline::now().clear();
}
