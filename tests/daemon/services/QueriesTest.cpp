#include <algorithm>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "LineUpTv.h"

namespace {

using sim::Condition;
using sim::Criteria;

Condition Where(std::int32_t field, std::int32_t value) {
    return {values::Comparison::Equal, field, value};
}
Condition WhereNot(std::int32_t field, std::int32_t value) {
    return {values::Comparison::Different, field, value};
}

std::uint64_t IdOf(const Reply& reply) {
    const auto node = reply.Find(2);
    if (!node)
        return kInvalidService;
    for (const auto& [field, value] : ToRecord(*node)) {
        if (field == 12)
            return *value;
    }
    return kInvalidService;
}

TEST(Queries, FindWhatTheConsoleLooksUp) {
    LineUpTv tv;
    LineUpClient client(tv);
    // Only by number, then by profile, flags, number and type, then a streamed one.
    EXPECT_EQ(IdOf(client.FindService({{Where(23, 1), Where(25, 0), Where(13, 7)}, {12}})), kNorvexOne);
    const auto broadcast = [&](std::int32_t profile, std::int32_t major, std::int32_t type) {
        return IdOf(client.FindService(
            {{Where(3, profile), Where(23, 1), Where(25, 0), Where(13, major), Where(1, type)}, {12}}));
    };
    EXPECT_EQ(broadcast(0, 7, 1), kNorvexOne);
    EXPECT_EQ(broadcast(2, 7, 1), 0xc000000000000004u);
    EXPECT_EQ(broadcast(0, 7, 2), 0x2004u);
    EXPECT_EQ(broadcast(0, 7, 3), 0x3004u);
    EXPECT_EQ(broadcast(0, 30, 2), 0xfffffffffffffffeu);
    EXPECT_EQ(broadcast(0, 13, 1), kInvalidService); // hidden
    EXPECT_EQ(broadcast(0, 14, 1), kInvalidService); // not listed
    EXPECT_EQ(IdOf(client.FindService(
                  {{Where(3, 0), Where(23, 1), Where(25, 0), Where(13, 5), Where(1, 9), Where(115, 2)}, {12}})),
              0xe000000000000021u);
}

TEST(Queries, AnswerZeroAndNoRecordWhenNothingIsFound) {
    LineUpTv tv;
    LineUpClient client(tv);
    const Reply reply = client.FindService({{Where(13, 999)}, {12}});
    EXPECT_EQ(reply.Status(), 0);
    EXPECT_FALSE(reply.Find(2));
}

TEST(Queries, BringTheFetchedFieldsOnlyInTheirOrder) {
    LineUpTv tv;
    LineUpClient client(tv);
    const Criteria norvexTwo{{Where(13, 7), Where(14, 2), Where(1, 1)}, {}};
    const auto fetch = [&](const std::vector<std::int32_t>& fields) {
        const Reply reply = client.FindService({norvexTwo.conditions, fields});
        EXPECT_EQ(reply.Status(), 1);
        return ToRecord(*reply.Find(2));
    };
    EXPECT_EQ(fetch({14, 12, 4, 13}), (Record{{14, 2}, {12, 0xfa0000000002002eu}, {4, 474000}, {13, 7}}));
    EXPECT_EQ(fetch({1, 3, 23, 25}), (Record{{1, 1}, {3, 0}, {23, 1}, {25, 0}}));
    EXPECT_EQ(fetch({13}), (Record{{13, 7}}));
    EXPECT_EQ(fetch({}), Record{});
    // A field that the service does not have is returned without a value.
    EXPECT_EQ(fetch({115}), (Record{{115, std::nullopt}}));
    const Reply streamed = client.FindService({{Where(1, 9), Where(13, 70)}, {4, 115}});
    EXPECT_EQ(ToRecord(*streamed.Find(2)), (Record{{4, std::nullopt}, {115, 0}}));
}

TEST(Queries, CountUpToWhatWasAskedFor) {
    LineUpTv tv;
    LineUpClient client(tv);
    const Criteria sevens{{Where(13, 7), Where(23, 1)}, {12}};
    EXPECT_EQ(client.FindService(sevens, 3).Status(), 3);
    EXPECT_EQ(client.FindService(sevens, 1000).Status(), 8);
    for (const std::int32_t count : {0, -1}) {
        EXPECT_LT(client.FindService(sevens, count).Status(), 0);
        EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "FindService refused"));
    }
}

TEST(Queries, RefuseUnknownFields) {
    LineUpTv tv;
    LineUpClient client(tv);
    const Criteria kUnknown[] = {{{Where(2, 1)}, {12}},
                                 {{Where(13, 7), WhereNot(99, 1)}, {12}},
                                 {{Where(13, 7)}, {12, -1}},
                                 {{Where(13, 7)}, {65536 + 12}}};
    for (const Criteria& criteria : kUnknown) {
        const Reply reply = client.FindService(criteria);
        EXPECT_LT(reply.Status(), 0);
        EXPECT_FALSE(reply.Find(2));
        EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "unknown field"));
        EXPECT_LT(client.GetServiceList(criteria).Status(), 0);
    }
    Criteria huge;
    huge.conditions.assign(501, Where(13, 7));
    EXPECT_LT(client.FindService(huge).Status(), 0);
    huge.conditions.pop_back();
    EXPECT_EQ(client.FindService(huge).Status(), 1);
    // An unknown kind of condition.
    EXPECT_EQ(client.FindService({{{static_cast<values::Comparison>(2), 13, 7}}, {12}}).Status(), kNoStatus);
}

TEST(Queries, ShareAStatementWhenOnlyValuesDiffer) {
    LineUpTv tv;
    LineUpClient client(tv);
    for (std::int32_t major = 0; major < 100; ++major)
        client.FindService({{Where(13, major)}, {12}});
    EXPECT_EQ(tv.GetLineUp().GetQueries().GetStatementCount(), 1u);
    client.FindService({{WhereNot(13, 1)}, {12}});
    client.FindService({{Where(13, 1)}, {12, 13}});
    client.GetServiceList({{Where(13, 1)}, {12}});
    EXPECT_EQ(tv.GetLineUp().GetQueries().GetStatementCount(), 4u);
    // Not forever: clients determine the statements.
    Criteria grown;
    for (int size = 0; size < 300; ++size) {
        grown.conditions.push_back(Where(25, 0));
        EXPECT_EQ(client.FindService(grown).Status(), 1);
    }
    EXPECT_LE(tv.GetLineUp().GetQueries().GetStatementCount(), 64u);
}

TEST(Queries, ListTheServicesOfATvModeInOrder) {
    LineUpTv tv;
    LineUpClient client(tv);
    const Criteria all{{Where(23, 1), Where(25, 0), WhereNot(1, 9)}, {12, 13, 14}};
    const auto list = [&](std::int32_t antenna, std::int32_t mode, std::int32_t first = 0, std::int32_t count = 0) {
        const Reply reply = client.GetServiceList(all, {antenna, mode}, first, count);
        EXPECT_EQ(reply.Status(), 1);
        return ToRecords(*reply.Find(2));
    };
    const auto air = list(0, 0);
    EXPECT_EQ(air.size(), 16u);
    EXPECT_EQ(list(-1, -1), air); // what the pipeline has
    EXPECT_TRUE(std::is_sorted(air.begin(), air.end(), [](const Record& a, const Record& b) {
        return std::pair(a[1].second, a[2].second) < std::pair(b[1].second, b[2].second);
    }));
    EXPECT_EQ(list(0, 1).size(), 4u); // the operator's
    EXPECT_EQ(list(0, 5), list(0, 1));
    EXPECT_EQ(client.SetTvMode({2, 0}, 0x3001), kDone);
    EXPECT_EQ(list(-1, -1), list(2, 0));
    EXPECT_NE(list(-1, -1), air);
    EXPECT_EQ(list(0, 0, 3, 2), std::vector<Record>(air.begin() + 3, air.begin() + 5));
    EXPECT_EQ(list(0, 0, 15, 9), std::vector<Record>(air.begin() + 15, air.end()));
    EXPECT_TRUE(list(0, 0, 16).empty());
    EXPECT_LT(client.GetServiceList(all, {0, 0}, -1, 0).Status(), 0);
    EXPECT_LT(client.GetServiceList(all, {0, 0}, 0, -1).Status(), 0);
    EXPECT_LT(client.GetServiceList(all, {3, 0}).Status(), 0);
}

TEST(Queries, ListMoreServicesThanATagHasNumbers) {
    std::ostringstream text;
    text << "transponder air 474000\n";
    for (int id = 0; id < 40000; ++id)
        text << "service 0x" << std::hex << id << std::dec << ' ' << id % 999 << " \"\"\n";
    LineUpTv tv(text.str().c_str());
    LineUpClient client(tv);
    EXPECT_EQ(ToRecords(*client.GetServiceList({{}, {12}}).Find(2)).size(), 40000u);
}

// The expected results, computed without the database.
struct PlainService {
    std::uint64_t id;
    std::map<int, std::optional<std::int64_t>> fields;
};

class RandomQueries : public testing::Test {
protected:
    int Pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); }

    std::string MakeLineUp() {
        std::string text;
        for (int number = 0; number < 400; ++number) {
            const int antenna = Pick(3);
            const int frequency = Pick(4) * 1000; // 0: streamed
            const std::uint64_t id = static_cast<std::uint64_t>(number) | static_cast<std::uint64_t>(Pick(2)) << 63;
            const int major = Pick(12);
            const int minor = Pick(3);
            const int profile = Pick(2) * 2;
            const bool listed = Pick(4) != 0;
            const bool hidden = Pick(4) == 0;
            static const char* const kAntennas[] = {"air", "cable", "satellite"};
            text += frequency == 0 ? "streamed " : "transponder ";
            text += kAntennas[antenna];
            text += frequency == 0 ? "" : " " + std::to_string(frequency);
            text += "\nservice " + sim::ToHexText(id).get<std::string>() + " " + std::to_string(major) + "-" +
                    std::to_string(minor) + " \"S\" profile=" + std::to_string(profile) + (listed ? "" : " unlisted") +
                    (hidden ? " hidden" : "") + "\n";
            PlainService service{id,
                                 {{1, frequency == 0 ? 9 : antenna + 1},
                                  {3, profile},
                                  {4, std::nullopt},
                                  {12, static_cast<std::int64_t>(id)},
                                  {13, major},
                                  {14, minor},
                                  {23, listed},
                                  {25, hidden},
                                  {115, std::nullopt}}};
            service.fields[frequency == 0 ? 115 : 4] = frequency == 0 ? antenna : frequency;
            antennas[id] = antenna;
            services.push_back(std::move(service));
        }
        // The line-up's order.
        std::sort(services.begin(), services.end(),
                  [&](const PlainService& a, const PlainService& b) { return Key(a) < Key(b); });
        return text;
    }
    std::tuple<int, std::int64_t, std::int64_t, std::int64_t> Key(const PlainService& service) {
        return {antennas.at(service.id), *service.fields.at(13), *service.fields.at(14), *service.fields.at(12)};
    }

    Criteria MakeCriteria() {
        static constexpr int kFields[] = {1, 3, 4, 12, 13, 13, 14, 23, 25, 115};
        Criteria criteria;
        for (int count = Pick(6); count > 0; --count) {
            const int field = kFields[Pick(10)];
            int value = Pick(13);
            if (field == 1 && Pick(2) == 0)
                value = 9;
            else if (field == 4)
                value *= 500;
            else if (field == 12)
                value = Pick(500) - 1;
            else if (field == 23 || field == 25)
                value %= 2;
            criteria.conditions.push_back(Pick(3) == 0 ? WhereNot(field, value) : Where(field, value));
        }
        criteria.fetched.push_back(12);
        for (int count = Pick(4); count > 0; --count)
            criteria.fetched.push_back(kFields[Pick(10)]);
        return criteria;
    }

    static bool Meets(const PlainService& service, const Criteria& criteria) {
        return std::all_of(criteria.conditions.begin(), criteria.conditions.end(), [&](const Condition& condition) {
            const bool equal = service.fields.at(condition.field) == std::optional<std::int64_t>(condition.value);
            return equal == (condition.comparison == values::Comparison::Equal);
        });
    }
    static Record ToPlainRecord(const PlainService& service, const Criteria& criteria) {
        Record record;
        for (const std::int32_t field : criteria.fetched) {
            const auto& value = service.fields.at(field);
            record.emplace_back(field, value ? std::optional(static_cast<std::uint64_t>(*value)) : std::nullopt);
        }
        return record;
    }

    std::mt19937 random{20260301};
    std::vector<PlainService> services;
    std::map<std::uint64_t, int> antennas;
};

TEST_F(RandomQueries, FindAndListWhatAPlainFilterLeaves) {
    LineUpTv tv(MakeLineUp().c_str());
    LineUpClient client(tv);
    int found = 0;
    for (int round = 0; round < 10000; ++round) {
        const Criteria criteria = MakeCriteria();
        const int antenna = Pick(3);
        std::vector<Record> all;
        std::vector<Record> listed;
        for (const PlainService& service : services) {
            if (!Meets(service, criteria))
                continue;
            all.push_back(ToPlainRecord(service, criteria));
            if (antennas.at(service.id) == antenna && service.fields.at(3) == 0)
                listed.push_back(all.back());
        }
        const Reply reply = client.FindService(criteria, 5);
        ASSERT_EQ(reply.Status(), std::min<std::size_t>(all.size(), 5)) << round;
        if (!all.empty()) {
            ASSERT_EQ(ToRecord(*reply.Find(2)), all.front()) << round;
        }
        const Reply list = client.GetServiceList(criteria, {antenna, 0});
        ASSERT_EQ(ToRecords(*list.Find(2)), listed) << round;
        found += !all.empty();
    }
    EXPECT_GT(found, 3000);
    EXPECT_LT(found, 9700);
}

// SQLite's plan for a statement.
std::string Plan(LineUpTv& tv, const std::string& text) {
    sim::Statement statement;
    EXPECT_TRUE(statement.Prepare(tv.database, "EXPLAIN QUERY PLAN " + text)) << text;
    std::string plan;
    while (statement.Next() == sim::Statement::Step::Row)
        plan += std::string(statement.Text(3)) + "\n";
    return plan;
}

TEST(QueryPlans, NoLookUpScansTheTable) {
    LineUpTv tv;
    using Queries = sim::ServiceQueries;
    const std::vector<std::int32_t> fetched{12, 4, 13, 14};
    const std::string kLookUps[] = {
        Queries::ToFindText({{Where(13, 0)}, {12}}),
        Queries::ToFindText({{Where(23, 0), Where(25, 0), Where(13, 0)}, {12}}),
        Queries::ToFindText({{Where(3, 0), Where(23, 0), Where(25, 0), Where(13, 0), Where(1, 0)}, fetched}),
        Queries::ToFindText(
            {{Where(3, 0), Where(23, 0), Where(25, 0), Where(13, 0), Where(1, 0), Where(115, 0)}, {12}}),
        Queries::ToFindText({{Where(115, 0)}, {12}}),
        Queries::ToFindText({{Where(115, 0), Where(13, 0)}, {12}}),
        Queries::ToFindText({{Where(12, 0)}, fetched}),
        Queries::ToListText({{Where(23, 0), Where(25, 0), WhereNot(1, 0)}, fetched}),
        Queries::ToListText({{Where(13, 0)}, fetched}),
    };
    for (const std::string& text : kLookUps) {
        EXPECT_EQ(Plan(tv, text).find("SCAN"), std::string::npos) << text << "\n" << Plan(tv, text);
        EXPECT_NE(Plan(tv, text).find("SEARCH"), std::string::npos) << text;
    }
    // Lists and look-ups by number come in order without being sorted.
    for (const std::size_t place : {0u, 1u, 2u, 7u, 8u})
        EXPECT_EQ(Plan(tv, kLookUps[place]).find("TEMP B-TREE"), std::string::npos) << Plan(tv, kLookUps[place]);
}

} // namespace
