// From channel numbers to service ids.

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ServiceNavigation.h>

#include "ServiceCalls.h"
#include "TPMSScenario.h"
#include "Timeline.h"

namespace {

constexpr std::uint64_t kInvalid = 0xffffffffffffffffULL;

class ServiceList : public TPMSScenario {
protected:
    using Services = std::list<std::pair<std::uint64_t, std::uint32_t>>;

    void SetUp() override {
        NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &navigation);
        Timeline::now().clear();
    }
    void TearDown() override {
        NorvexAPI::Destroy(navigation);
        TPMSScenario::TearDown();
    }
    bool list() {
        bool found = false;
        console.run([&] { found = menus.m_GetServiceList(services, navigation); });
        return found;
    }

    IServiceNavigation* navigation = nullptr;
    Services services;
};

const std::string kAskedForList =
    "{GetNavigationCriteria(1, 0)}{CriteriaHelper.WhereNot(1, 9)}{CriteriaHelper.Fetch(12)}";

class ServiceLookup : public TPMSScenario {
protected:
    std::uint64_t find(int antennaMode, std::uint16_t major) {
        std::uint64_t serviceId = 0;
        console.run([&] {
            serviceId = menus.m_GetServiceId(static_cast<EAntennaMode>(antennaMode), major);
        });
        return serviceId;
    }
    std::uint64_t find(std::uint16_t major) {
        std::uint64_t serviceId = 0;
        console.run([&] { serviceId = menus.m_GetServiceId(major); });
        return serviceId;
    }
};

// The look-up on one antenna up to the find; the channel type and the service mode are the fake's.
std::string findOnAntenna(const std::string& antennaMode, const std::string& profile,
                          const std::string& major, const std::string& channelType) {
    return "{CreateService()}{CreateServiceNavigation(1, 0)}"
           "{ServiceNavigation.GetTvMode({-1, -1})}{ServiceProfileToServiceMode(" +
           profile + ")}{CriteriaHelper.Where(3, " + profile +
           ")}{CriteriaHelper.Where(23, 1)}{CriteriaHelper.Where(25, 0)}"
           "{CriteriaHelper.Where(13, " +
           major + ")}{CriteriaHelper.Fetch(12)}{AntennaModeToDigitalChannelType(" + antennaMode +
           ")}{CriteriaHelper.Where(1, " + channelType + ")}{Service.FindService(true, 1)}";
}
const std::string kFreed =
    "{~ServiceData}{~CriteriaHelper}{Destroy(ServiceNavigation)}{Destroy(Service)}";

} // namespace

TEST_F(ServiceList, HoldsEveryServiceWithCode5) {
    tv.giveTvMode(1, 3);
    tv.giveServiceList({{{{12, 7}}}, {{{12, -2}}}, {{{12, 0}, {13, 9}}}});
    EXPECT_TRUE(list());
    EXPECT_EQ(services, (Services{{7, 5}, {0xfffffffffffffffeULL, 5}, {0, 5}}));
    EXPECT_EQ(console.dialogue(), "{ServiceNavigation.GetTvMode({-1, -1})}" + kAskedForList +
                                      "{ServiceNavigation.GetServiceList(0, {1, 3}, 0, 0)}"
                                      "{~ServiceData}{~ServiceData}{~ServiceData}"
                                      "{~CriteriaHelper}");
}

TEST_F(ServiceList, IsAppendedTo) {
    services = {{1, 2}};
    tv.giveServiceList({{{{12, 7}}}});
    EXPECT_TRUE(list());
    EXPECT_EQ(services, (Services{{1, 2}, {7, 5}}));
}

TEST_F(ServiceList, IsLeftAloneWhenThereIsNoService) {
    services = {{1, 2}};
    EXPECT_FALSE(list());
    EXPECT_EQ(services, (Services{{1, 2}}));
    EXPECT_EQ(console.dialogue(), "{ServiceNavigation.GetTvMode({-1, -1})}" + kAskedForList +
                                      "{ServiceNavigation.GetServiceList(0, {0, 0}, 0, 0)}"
                                      "services.empty()!\n"
                                      "{~CriteriaHelper}");
}

TEST_F(ServiceList, IsTakenWhateverTheMiddlewareAnswers) {
    tv.giveServiceList({{{{12, 7}}}});
    tv.answer("ServiceNavigation.GetServiceList", {-1});
    EXPECT_TRUE(list());
    EXPECT_EQ(services, (Services{{7, 5}}));
}

TEST_F(ServiceList, IsNotAskedForWithoutATvMode) {
    for (const int result : {0, -1}) {
        tv.answer("ServiceNavigation.GetTvMode", {result});
        tv.giveServiceList({{{{12, 7}}}});
        Timeline::now().clear();
        EXPECT_FALSE(list());
        EXPECT_EQ(console.dialogue(), "{ServiceNavigation.GetTvMode({-1, -1})}GetTvMode failed!\n");
    }
    EXPECT_TRUE(services.empty());
}

TEST_F(ServiceList, HoldsTheInvalidIdForARecordWithoutTheField) {
    tv.giveServiceList({{{{13, 7}}}, {{{12, 8}}}});
    EXPECT_TRUE(list());
    EXPECT_EQ(services, (Services{{kInvalid, 5}, {8, 5}}));
    EXPECT_EQ(console.dialogue(), "{ServiceNavigation.GetTvMode({-1, -1})}" + kAskedForList +
                                      "{ServiceNavigation.GetServiceList(0, {0, 0}, 0, 0)}" +
                                      missingTag(" 12") +
                                      "{~ServiceData}{~ServiceData}{~CriteriaHelper}");
}

TEST_F(ServiceList, HoldsTheInvalidIdForARecordWithoutFields) {
    tv.giveServiceList({{{}, false}});
    EXPECT_TRUE(list());
    EXPECT_EQ(services, (Services{{kInvalid, 5}}));
    EXPECT_NE(console.dialogue().find("0, 0)}" + missingTag(" 12") + "{~ServiceData}"),
              std::string::npos)
        << console.dialogue();
}

TEST_F(ServiceList, LogsOneLineMoreForAFieldWithoutAValue) {
    tv.giveServiceList({{{{12, std::nullopt}}}});
    EXPECT_TRUE(list());
    EXPECT_EQ(services, (Services{{kInvalid, 5}}));
    EXPECT_NE(console.dialogue().find("0, 0)}{TCApiPrintMessage(tag 12 has do data)}" +
                                      missingTag(" 12") + "{~ServiceData}"),
              std::string::npos)
        << console.dialogue();
}

TEST_F(ServiceList, FlushesItsFailures) {
    EXPECT_FALSE(list());
    EXPECT_NE(console.whole().find("services.empty()!\n{flush}"), std::string::npos);
    tv.answer("ServiceNavigation.GetTvMode", {0});
    EXPECT_FALSE(list());
    EXPECT_NE(console.whole().find("GetTvMode failed!\n{flush}"), std::string::npos);
}

TEST_F(ServiceLookup, FindsAServiceOnAnAntenna) {
    tv.giveFound({{{12, static_cast<std::int64_t>(0xfa0000000002002dULL)}}});
    EXPECT_EQ(find(1, 7), 0xfa0000000002002dULL);
    EXPECT_EQ(console.dialogue(), findOnAntenna("1", "0", "7", "41") + kFreed);
}

TEST_F(ServiceLookup, FindsNoServiceOnAnAntenna) {
    EXPECT_EQ(find(2, 7), kInvalid);
    EXPECT_EQ(console.dialogue(),
              findOnAntenna("2", "0", "7", "42") + "FindService failed" + kFreed);
}

TEST_F(ServiceLookup, TakesAFindThatWasRefusedForNone) {
    tv.answer("Service.FindService", {-1});
    tv.giveFound({{{12, 5}}});
    EXPECT_EQ(find(0, 7), kInvalid);
    EXPECT_EQ(console.dialogue(),
              findOnAntenna("0", "0", "7", "40") + "FindService failed" + kFreed);
}

TEST_F(ServiceLookup, TakesEveryAnswerAbove0ForSuccess) {
    tv.answer("Service.FindService", {2});
    tv.giveFound({{{12, 5}}});
    EXPECT_EQ(find(0, 7), 5U);
}

TEST_F(ServiceLookup, AsksForTheBroadcastProfileInServiceMode0) {
    tv.giveTvMode(2, 0);
    tv.giveFound({{{12, 5}}});
    EXPECT_EQ(find(0, 1), 5U);
    EXPECT_EQ(console.dialogue(), findOnAntenna("0", "0", "1", "40") + kFreed);
}

TEST_F(ServiceLookup, AsksForProfile2InEveryOtherServiceMode) {
    for (const int mode : {1, 2, 3, -1, 256, 2147483647}) {
        Timeline::now().clear();
        tv.giveTvMode(0, mode);
        tv.giveFound({{{12, 5}}});
        EXPECT_EQ(find(0, 1), 5U);
        EXPECT_NE(
            console.dialogue().find("{ServiceProfileToServiceMode(2)}{CriteriaHelper.Where(3, 2)}"
                                    "{CriteriaHelper.Where(23, 1)}"),
            std::string::npos)
            << console.dialogue();
    }
}

// The record of the TV mode holds -1 then.
TEST_F(ServiceLookup, AsksForProfile2WithoutATvMode) {
    tv.answer("ServiceNavigation.GetTvMode", {-1});
    tv.giveFound({{{12, 5}}});
    EXPECT_EQ(find(0, 1), 5U);
    EXPECT_EQ(console.dialogue(), findOnAntenna("0", "2", "1", "40") + kFreed);
}

TEST_F(ServiceLookup, PassesEveryMajorOf16Bits) {
    EXPECT_EQ(find(0, 65535), kInvalid);
    EXPECT_EQ(console.dialogue(),
              findOnAntenna("0", "0", "65535", "40") + "FindService failed" + kFreed);
}

TEST_F(ServiceLookup, GivesTheInvalidIdForAFoundRecordWithoutTheField) {
    tv.giveFound({{{13, 7}}});
    EXPECT_EQ(find(0, 7), kInvalid);
    EXPECT_EQ(console.dialogue(), findOnAntenna("0", "0", "7", "40") + missingTag(" 12") + kFreed);
}

TEST_F(ServiceLookup, GivesTheInvalidIdForAFoundFieldWithoutAValue) {
    tv.giveFound({{{12, std::nullopt}}});
    EXPECT_EQ(find(0, 7), kInvalid);
    EXPECT_EQ(console.dialogue(), findOnAntenna("0", "0", "7", "40") +
                                      "{TCApiPrintMessage(tag 12 has do data)}" +
                                      missingTag(" 12") + kFreed);
}

TEST_F(ServiceLookup, FindsAServiceOnAnyAntenna) {
    tv.giveFound({{{12, -2}}});
    EXPECT_EQ(find(7), 0xfffffffffffffffeULL);
    EXPECT_EQ(console.dialogue(), findByMajor("Service", "7") + foundByMajor("Service"));
}

TEST_F(ServiceLookup, FindsNoServiceOnAnyAntenna) {
    EXPECT_EQ(find(65535), kInvalid);
    EXPECT_EQ(console.dialogue(),
              findByMajor("Service", "65535") + "FindService failed" + foundByMajor("Service"));
}

TEST_F(ServiceLookup, TakesARefusalOnAnyAntennaForNone) {
    tv.answer("Service.FindService", {-5});
    tv.giveFound({{{12, 5}}});
    EXPECT_EQ(find(0), kInvalid);
    EXPECT_EQ(console.dialogue(),
              findByMajor("Service", "0") + "FindService failed" + foundByMajor("Service"));
}

TEST_F(ServiceLookup, GivesTheInvalidIdForARecordWithoutFieldsOnAnyAntenna) {
    tv.giveFound({{}, false});
    EXPECT_EQ(find(7), kInvalid);
    EXPECT_EQ(console.dialogue(),
              findByMajor("Service", "7") + missingTag(" 12") + foundByMajor("Service"));
}

TEST_F(ServiceLookup, UsesAServiceWhoseCreationAnsweredAnError) {
    tv.answerCreation("CreateService", -1, true);
    tv.giveFound({{{12, 5}}});
    EXPECT_EQ(find(7), 5U);
}

namespace {

struct Thrown {};

} // namespace

TEST_F(ServiceLookup, DestroysWhatItCreatedWhenAnExceptionPassesThrough) {
    tv.runWithin("Service.FindService", [] { throw Thrown{}; });
    EXPECT_THROW(find(0, 7), Thrown);
    EXPECT_EQ(console.dialogue(), findOnAntenna("0", "0", "7", "40") + kFreed);
    Timeline::now().clear();
    tv.runWithin("Service.FindService", [] { throw Thrown{}; });
    EXPECT_THROW(find(7), Thrown);
    EXPECT_EQ(console.dialogue(), findByMajor("Service#2", "7") + foundByMajor("Service#2"));
}
