// From channel numbers to service ids.

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ServiceNavigation.h>

#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

constexpr std::uint64_t kInvalid = 0xffffffffffffffffULL;

class ServiceList : public TPMSScenario {
protected:
    using Services = std::list<std::pair<std::uint64_t, std::uint32_t>>;

    void SetUp() override { NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &navigation); }
    void TearDown() override {
        NorvexAPI::Destroy(navigation);
        TPMSScenario::TearDown();
    }
    // Appends to `services`; gives whether it found some.
    bool List() {
        bool found = false;
        Run("", [&] { found = menus.m_GetServiceList(services, navigation); });
        return found;
    }

public:
    IServiceNavigation* navigation = nullptr;
    Services services;
};

class ServiceLookup : public TPMSScenario {
protected:
    std::uint64_t Find(int antennaMode, std::uint16_t major) {
        std::uint64_t serviceId = 0;
        Run("", [&] { serviceId = menus.m_GetServiceId(static_cast<EAntennaMode>(antennaMode), major); });
        return serviceId;
    }
    std::uint64_t Find(std::uint16_t major) {
        std::uint64_t serviceId = 0;
        Run("", [&] { serviceId = menus.m_GetServiceId(major); });
        return serviceId;
    }
};

} // namespace

TEST_F(ServiceList, IsAppendedEveryServiceWithCode5WhateverTheMiddlewareAnswers) {
    services = {{1, 2}};
    tv.GiveTvMode(1, 3);
    tv.GiveServiceList({{{{12, 7}}}, {{{12, -2}}}, {{{12, 0}, {13, 9}}}});
    tv.Answer("ServiceNavigation.GetServiceList", {-1});
    EXPECT_TRUE(List());
    EXPECT_EQ(services, (Services{{1, 2}, {7, 5}, {0xfffffffffffffffeULL, 5}, {0, 5}}));
    EXPECT_EQ(console.Dialogue(), ListServices(3, "1, 3"));
}

TEST_F(ServiceList, IsLeftAloneWhenThereIsNoService) {
    services = {{1, 2}};
    EXPECT_FALSE(List());
    EXPECT_EQ(services, (Services{{1, 2}}));
    EXPECT_EQ(console.Dialogue(), ListServices(0));
    EXPECT_NE(console.Whole().find("services.empty()!\n{flush}"), std::string::npos);
}

TEST_F(ServiceList, IsNotAskedForWithoutATvMode) {
    tv.GiveServiceList({{{{12, 7}}}});
    for (const int result : {0, -1}) {
        tv.Answer("ServiceNavigation.GetTvMode", {result});
        EXPECT_FALSE(List());
        EXPECT_EQ(console.Whole(), "{ServiceNavigation.GetTvMode({-1, -1})}GetTvMode failed!\n{flush}");
    }
    EXPECT_TRUE(services.empty());
}

TEST_F(ServiceList, HoldsTheInvalidIdForARecordWithoutTheFieldItsValueOrAnyField) {
    tv.GiveServiceList({{{{13, 7}}}, {{{12, 8}}}, {{{12, std::nullopt}}}, {{}, false}});
    EXPECT_TRUE(List());
    EXPECT_EQ(services, (Services{{kInvalid, 5}, {8, 5}, {kInvalid, 5}, {kInvalid, 5}}));
    EXPECT_EQ(console.Dialogue(),
              ListServices(4, "0, 0", MissingTag(" 12") + EmptyTag("12") + MissingTag(" 12") + MissingTag(" 12")));
}

TEST_F(ServiceLookup, FindsAServiceOnAnAntenna) {
    tv.GiveFound({{{12, static_cast<std::int64_t>(0xfa0000000002002dULL)}}});
    EXPECT_EQ(Find(1, 7), 0xfa0000000002002dULL);
    EXPECT_EQ(console.Dialogue(), FindOnAntenna("1", "0", "7"));
}

TEST_F(ServiceLookup, FindsNoServiceOnAnAntennaForAnAnswerBelow1) {
    EXPECT_EQ(Find(2, 65535), kInvalid);
    EXPECT_EQ(console.Dialogue(), FindOnAntenna("2", "0", "65535", "FindService failed"));
    tv.Answer("Service.FindService", {-1, 2});
    tv.GiveFound({{{12, 5}}});
    tv.GiveFound({{{12, 5}}});
    EXPECT_EQ(Find(0, 7), kInvalid);
    EXPECT_EQ(console.Dialogue(), FindOnAntenna("0", "0", "7", "FindService failed"));
    EXPECT_EQ(Find(0, 7), 5U);
}

TEST_F(ServiceLookup, AsksForProfile2OutsideServiceMode0) {
    for (const int mode : {0, 1, 2, 3, -1, 256, 2147483647}) {
        tv.GiveTvMode(2, mode);
        tv.GiveFound({{{12, 5}}});
        EXPECT_EQ(Find(0, 1), 5U);
        EXPECT_EQ(console.Dialogue(), FindOnAntenna("0", mode == 0 ? "0" : "2", "1")) << mode;
    }
}

// The record of the TV mode holds -1 then.
TEST_F(ServiceLookup, AsksForProfile2WithoutATvMode) {
    tv.Answer("ServiceNavigation.GetTvMode", {-1});
    tv.GiveFound({{{12, 5}}});
    EXPECT_EQ(Find(0, 1), 5U);
    EXPECT_EQ(console.Dialogue(), FindOnAntenna("0", "2", "1"));
}

TEST_F(ServiceLookup, GivesTheInvalidIdForAFoundRecordWithoutTheFieldOrItsValue) {
    tv.GiveFound({{{13, 7}}});
    EXPECT_EQ(Find(0, 7), kInvalid);
    EXPECT_EQ(console.Dialogue(), FindOnAntenna("0", "0", "7", MissingTag(" 12")));
    tv.GiveFound({{{12, std::nullopt}}});
    EXPECT_EQ(Find(0, 7), kInvalid);
    EXPECT_EQ(console.Dialogue(), FindOnAntenna("0", "0", "7", EmptyTag("12") + MissingTag(" 12")));
}

TEST_F(ServiceLookup, FindsAServiceOnAnyAntennaAlsoWhenItsCreationAnsweredAnError) {
    tv.GiveFound({{{12, -2}}});
    tv.AnswerCreation("CreateService", -1, true);
    EXPECT_EQ(Find(7), 0xfffffffffffffffeULL);
    EXPECT_EQ(console.Dialogue(), FindByMajor("7"));
}

TEST_F(ServiceLookup, FindsNoServiceOnAnyAntennaForAnAnswerBelow1) {
    EXPECT_EQ(Find(65535), kInvalid);
    EXPECT_EQ(console.Dialogue(), FindByMajor("65535", "FindService failed"));
    tv.Answer("Service.FindService", {-5});
    tv.GiveFound({{{12, 5}}});
    EXPECT_EQ(Find(0), kInvalid);
    EXPECT_EQ(console.Dialogue(), FindByMajor("0", "FindService failed"));
}

TEST_F(ServiceLookup, GivesTheInvalidIdForARecordWithoutFieldsOnAnyAntenna) {
    tv.GiveFound({{}, false});
    EXPECT_EQ(Find(7), kInvalid);
    EXPECT_EQ(console.Dialogue(), FindByMajor("7", MissingTag(" 12")));
}

namespace {

struct Thrown {};

} // namespace

TEST_F(ServiceLookup, DestroysWhatItCreatedWhenAnExceptionPassesThrough) {
    tv.RunWithin("Service.FindService", [] { throw Thrown{}; });
    EXPECT_THROW(Find(0, 7), Thrown);
    EXPECT_EQ(console.Dialogue(), FindOnAntenna("0", "0", "7"));
    tv.RunWithin("Service.FindService", [] { throw Thrown{}; });
    EXPECT_THROW(Find(7), Thrown);
    EXPECT_EQ(console.Dialogue(), FindByMajor("7"));
}
