#include "Journal.h"

#include <functional>
#include <map>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <values/Values.h>
#include <wire/Tree.h>

#include "CallLine.h"
#include "Components.h"
#include "Context.h"
#include "Interface.h"

namespace {

using nlohmann::json;
using wire::Direction;

NORVEX_INTERFACE(Shown, Do)

class ShownInterface : public sim::Interface {
public:
    ShownInterface() : Interface(interfaces::kTable<ShownMethod>, Calls::ToInterface) {
        Add(ShownMethod::Do,
            {sim::Out("status", sim::kInt), sim::In("service", sim::kNumber64), sim::In("text", sim::kText),
             sim::Out("screen", sim::kText)},
            &ShownInterface::Do);
    }

private:
    void Do(const sim::Call&, const sim::ArgumentReader&, sim::ReplyWriter&) {}
};

class JournalTest : public testing::Test {
protected:
    void Add(sim::Journal& journal, const std::string& text = "text", const std::string& screen = "screen") {
        m_arguments.Clear();
        m_results.Clear();
        wire::TreeWriter arguments(m_arguments);
        arguments.PutValue(0, std::int32_t{-1});
        arguments.PutValue(1, std::uint64_t{0x8000000000000001}, Direction::In);
        arguments.PutText(2, text, Direction::In);
        const std::uint32_t length = 5;
        arguments.PutLeaf(3, wire::NodeKind::Length, &length, sizeof length);
        wire::TreeWriter results(m_results);
        results.PutValue(0, std::int32_t{1});
        results.PutText(3, screen);
        journal.Add({journal.TakeSequence(),
                     4,
                     5,
                     &m_interface,
                     m_interface.GetOperations()[0].get(),
                     m_interface.GetName(),
                     "Do",
                     0,
                     nullptr,
                     {},
                     {m_arguments.GetData(), m_arguments.GetSize()},
                     {m_results.GetData(), m_results.GetSize()}});
    }

    ShownInterface m_interface;
    wire::Buffer m_arguments;
    wire::Buffer m_results;
};

TEST_F(JournalTest, ACallIsDescribedAsJson) {
    sim::Journal journal;
    Add(journal);
    json call = journal.Describe(0);
    EXPECT_GT(call["time"], 0);
    EXPECT_EQ(call["interface"], m_interface.GetName());
    for (const char* name : {"time", "interface"})
        call.erase(name);
    EXPECT_EQ(call, json::parse(R"({
        "sequence": 1, "client": 4, "session": 5, "id": 0, "method": "Do",
        "arguments": [
            {"place": 0, "direction": "out", "name": "status", "type": "int", "value": -1},
            {"place": 1, "direction": "in", "name": "service", "type": "64 bits",
             "value": "0x8000000000000001"},
            {"place": 2, "direction": "in", "name": "text", "type": "text", "value": "text"},
            {"place": 3, "direction": "out", "name": "screen", "type": "text", "length": 5}],
        "results": [
            {"place": 0, "direction": "out", "name": "status", "type": "int", "value": 1},
            {"place": 3, "direction": "out", "name": "screen", "type": "text",
             "value": "screen"}]})"));
}

TEST_F(JournalTest, MalformedArgumentsAreShownAsBytes) {
    sim::Journal journal;
    wire::TreeWriter tree(m_arguments);
    tree.PutValue(0, std::uint16_t{0xABCD}, Direction::In);
    journal.Add({1,
                 1,
                 0,
                 nullptr,
                 nullptr,
                 "INone",
                 "Go",
                 9,
                 nullptr,
                 "unknown operation",
                 {m_arguments.GetData(), m_arguments.GetSize()},
                 {}});
    const json call = journal.Describe(0);
    EXPECT_EQ(call["interface"], "INone");
    EXPECT_EQ(call["method"], "Go");
    EXPECT_EQ(call["id"], 9);
    EXPECT_EQ(call["fault"], "unknown operation");
    EXPECT_EQ(call["arguments"], json::parse(R"([{"place": 0, "direction": "in",
                                                   "value": {"hex": "cdab"}}])"));
}

TEST_F(JournalTest, TheOldestAreEvicted) {
    // Room for a few calls; sizes vary, so that many cases at the ring's end occur.
    sim::Journal journal(4096, 1000);
    for (std::size_t call = 0; call < 500; ++call) {
        Add(journal, std::string(call % 97, 'w'), std::string(call % 113, 's'));
        ASSERT_EQ(journal.GetEnd(), call + 1);
        ASSERT_TRUE(call < 6 || journal.GetEnd() - journal.GetBegin() > 5);
        for (std::uint64_t place = journal.GetBegin(); place < journal.GetEnd(); ++place) {
            const json described = journal.Describe(place);
            ASSERT_EQ(described["sequence"], place + 1);
            ASSERT_EQ(described["arguments"][2]["value"], std::string(place % 97, 'w'));
            ASSERT_EQ(described["results"][1]["value"], std::string(place % 113, 's'));
        }
    }
}

TEST_F(JournalTest, TheNumberOfEntriesIsBounded) {
    sim::Journal journal(1u << 20, 3);
    for (int call = 0; call < 10; ++call)
        Add(journal);
    EXPECT_EQ(journal.GetBegin(), 7u);
    EXPECT_EQ(journal.GetEnd(), 10u);
    EXPECT_EQ(journal.Describe(7)["sequence"], 8);
}

TEST_F(JournalTest, ALongTreeIsCutAndMarked) {
    sim::Journal journal;
    Add(journal, "text", std::string(100000, 's'));
    const json call = journal.Describe(0);
    EXPECT_EQ(call["resultsCut"], m_results.GetSize());
    EXPECT_FALSE(call.contains("argumentsCut"));
    EXPECT_EQ(call["results"][0]["value"], 1);
    const auto shown = call["results"][1]["value"].get<std::string>();
    EXPECT_GT(shown.size(), 10000u);
    EXPECT_EQ(shown, std::string(shown.size(), 's'));
}

TEST_F(JournalTest, SequencesGoOnAfterAClear) {
    sim::Journal journal;
    Add(journal);
    journal.Clear();
    EXPECT_EQ(journal.GetBegin(), journal.GetEnd());
    Add(journal);
    EXPECT_EQ(journal.Describe(journal.GetBegin())["sequence"], 2);
}

// A value of a type as a client or the TV sends it, and how the journal shows it.
struct Sample {
    std::function<void(wire::TreeWriter& tree, std::int16_t place)> write;
    json shown;
};

template <class T> Sample MakeSample(T value, const char* shown) {
    return {[value](wire::TreeWriter& tree, std::int16_t place) { values::WriteArgument(tree, place, value); },
            json::parse(shown)};
}

void WriteRecord(wire::TreeWriter& tree, std::int16_t place) {
    const std::size_t branch = tree.BeginBranch(place);
    tree.PutValue(12, std::uint64_t{0x8000000000000001});
    tree.PutValue(13, std::int32_t{7});
    tree.EndBranch(branch);
}

const std::map<const sim::ArgumentType*, Sample>& GetSamples() {
    using namespace values;
    static const std::map<const sim::ArgumentType*, Sample> kSamples{
        {&sim::kInt, MakeSample(std::int32_t{-5}, "-5")},
        {&sim::kUInt, MakeSample(std::uint32_t{5}, "5")},
        {&sim::kUShort, MakeSample(std::uint16_t{5}, "5")},
        {&sim::kBool, MakeSample(true, "true")},
        {&sim::kNumber64, MakeSample(std::uint64_t{0x8000000000000001}, R"("0x8000000000000001")")},
        {&sim::kText, MakeSample(std::string("word"), R"("word")")},
        {&sim::kIntList, MakeSample(std::vector<std::int32_t>{1, 2}, "[1, 2]")},
        {&sim::kRect, MakeSample(Rect{1, 2, 3, 4}, R"({"x": 1, "y": 2, "width": 3, "height": 4})")},
        {&sim::kTvMode, MakeSample(TvMode{1, 2}, R"({"antenna": 1, "serviceMode": 2})")},
        {&sim::kCriteria, MakeSample(Criteria{{{Comparison::Different, 13, 7}}, {12}},
                                     R"({"where": [{"is": "different", "field": 13, "value": 7}], "fetch": [12]})")},
        {&sim::kServiceCodes, MakeSample(std::vector<ServiceCode>{{0x11, 5}}, R"([{"service": "0x11", "code": 5}])")},
        {&sim::kMenuItem, MakeSample(MenuItem{"item", true, 7}, R"({"name": "item", "state": true, "id": 7})")},
        {&sim::kMenuItemList,
         MakeSample(std::vector<MenuItem>{{"item", true, 7}}, R"([{"name": "item", "state": true, "id": 7}])")},
        {&sim::kProgramme, MakeSample(Programme{1, 2, u"news"}, R"({"start": 1, "duration": 2, "title": "news"})")},
        {&sim::kStatus,
         MakeSample(Status{{{1, 0, {{3, 4}}}}, {{101, 0, "muted"}}},
                    R"({"pipelines": [{"profile": 1, "screen": 0, "events": [{"event": 3, "milliseconds": 4}]}],
                        "entries": [{"profile": 101, "screen": 0, "text": "muted"}]})")},
        {&sim::kRecord, {WriteRecord, json::parse(R"({"id": "0x8000000000000001", "major": 7})")}},
        {&sim::kRecordList,
         {[](wire::TreeWriter& tree, std::int16_t place) {
              const std::size_t branch = tree.BeginBranch(place);
              WriteRecord(tree, 0);
              tree.EndBranch(branch);
          },
          json::parse(R"([{"id": "0x8000000000000001", "major": 7}])")}},
    };
    return kSamples;
}

// A call with a sample of each argument and of each result, as the journal describes it.
json DescribeSampleCall(const sim::Interface& interface, const sim::Operation& operation) {
    wire::Buffer argumentBytes;
    wire::Buffer resultBytes;
    wire::TreeWriter arguments(argumentBytes);
    wire::TreeWriter results(resultBytes);
    for (std::int16_t place = 0; const sim::Argument& argument : operation.arguments) {
        GetSamples().at(argument.type).write(arguments, place);
        if (argument.direction == Direction::Out)
            GetSamples().at(argument.type).write(results, place);
        ++place;
    }
    sim::Journal journal;
    journal.Add({journal.TakeSequence(),
                 1,
                 0,
                 &interface,
                 &operation,
                 {},
                 {},
                 operation.id,
                 nullptr,
                 {},
                 {argumentBytes.GetData(), argumentBytes.GetSize()},
                 {resultBytes.GetData(), resultBytes.GetSize()}});
    return journal.Describe(0);
}

TEST(JournalOfTheTv, ShowsEveryArgumentAndResultOfEveryOperationInWords) {
    sim::Database database;
    sim::Log log;
    ASSERT_TRUE(database.Open(""));
    sim::Context context(database, log);
    std::string error;
    ASSERT_TRUE(context.numbers.Prepare());
    ASSERT_TRUE(sim::RegisterComponents(context, {}, error)) << error;
    std::size_t operations = 0;
    for (const sim::Interface* interface : context.dispatcher.GetInterfaces()) {
        for (const auto& operation : interface->GetOperations()) {
            SCOPED_TRACE(interface->GetName() + "." + operation->name);
            ++operations;
            const json call = DescribeSampleCall(*interface, *operation);
            const std::string line = sim::ToLine(call);
            std::size_t result = 0;
            for (std::size_t place = 0; place < operation->arguments.size(); ++place) {
                const sim::Argument& argument = operation->arguments[place];
                const json& shown = GetSamples().at(argument.type).shown;
                EXPECT_EQ(call["arguments"][place]["name"], argument.name);
                EXPECT_EQ(call["arguments"][place]["value"], shown);
                if (argument.isRead) {
                    EXPECT_NE(line.find(std::string(argument.name) + "=" + shown.dump().substr(0, 50)),
                              std::string::npos)
                        << line;
                }
                if (argument.direction == Direction::Out) {
                    EXPECT_EQ(call["results"][result++]["value"], shown);
                }
            }
        }
    }
    EXPECT_GE(operations, 60u);
}

} // namespace
