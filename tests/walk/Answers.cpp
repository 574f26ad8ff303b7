#include "Answers.h"

#include "FakeCore.h"
#include "FakeDevice.h"
#include "FakeNorvexAPI.h"
#include "MainLoopWatch.h"

namespace walk {

namespace {

FakeRecord faked(const Record& record) {
    FakeRecord fake;
    fake.hasTable = record.hasTable;
    fake.fields.insert(record.fields.begin(), record.fields.end());
    return fake;
}

// The reply's values stand in the order in which the method has its out arguments.
void reply(const Answer& answer) {
    FakeCore::Reply reply;
    if (answer.operation == "IsQoSEnabled") {
        if (answer.answer)
            reply.value(*answer.answer);
    } else if (answer.status) {
        reply.value(static_cast<int>(*answer.status));
    } else {
        reply.nothing();
    }
    if (answer.screen)
        reply.text(*answer.screen);
    if (answer.items) {
        std::vector<FakeCore::Reply::Item> items;
        for (const Item& item : *answer.items)
            items.push_back({item.name, item.state, item.id});
        reply.items(items);
    }
    if (!answer.flag)
        reply.failed();
    FakeCore::answer(answer.operation, reply);
}

} // namespace

void Answers::give(const Answer& answer, FakeNorvexAPI& tv) {
    const int number = static_cast<int>(answer.number);
    switch (answer.kind) {
    case Answer::Kind::Result:
        return tv.answer(answer.operation, {number});
    case Answer::Kind::Value:
        return tv.give(answer.operation, {answer.number});
    case Answer::Kind::Creation:
        return tv.answerCreation(answer.operation, number, answer.flag);
    case Answer::Kind::Found:
        return tv.giveFound(faked(answer.records.front()));
    case Answer::Kind::Services: {
        std::vector<FakeRecord> records;
        for (const Record& record : answer.records)
            records.push_back(faked(record));
        return tv.giveServiceList(std::move(records));
    }
    case Answer::Kind::TvMode:
        return tv.giveTvMode(number, static_cast<int>(answer.second));
    case Answer::Kind::Program:
        return tv.giveProgram(answer.flag ? std::optional(static_cast<unsigned int>(number))
                                          : std::nullopt);
    case Answer::Kind::ZoomWindows:
        return tv.giveZoomWindows(answer.ids);
    case Answer::Kind::Vconf:
        return FakeDevice::setVconf(answer.operation, number);
    case Answer::Kind::Reply:
        return reply(answer);
    case Answer::Kind::Open:
        return FakeCore::setOpenLibrary([opens = answer.flag] { return opens; });
    case Answer::Kind::Within:
        return tv.runWithin(answer.operation, [signal = answer.signal] { deliver(signal); });
    }
}

void Answers::takeSigned(const std::string& word) {
    const bool isSigned = word.size() > 1 && (word[0] == '-' || word[0] == '+');
    if (isSigned && word.find_first_not_of("0123456789", 1) == std::string::npos)
        FakeCore::acceptAsNumber(word);
}

// Waited for as long as it takes, also on a machine that is busy with something else; where nobody
// takes the signal, the session's time runs out.
void Answers::deliver(const Signal& signal) {
    MainLoopWatch::deliver(static_cast<ESignalType>(signal.type),
                           static_cast<EProfile>(signal.profile), signal.screen, {signal.data});
    waitUntilDelivered();
}

void Answers::waitUntilDelivered() {
    while (!MainLoopWatch::waitUntilDelivered()) {
    }
}

void Answers::send(const Signal& signal) {
    MainLoopWatch::send(static_cast<ESignalType>(signal.type),
                        static_cast<EProfile>(signal.profile), signal.screen, {signal.data});
}

} // namespace walk
