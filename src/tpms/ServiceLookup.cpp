#include <iostream>

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/NavigationModeHelper.h>
#include <norvex/client/Service.h>
#include <norvex/client/ServiceId.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/ServiceUtility.h>

#include "ServiceRecord.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

// The code that a scan gets with each listed service.
constexpr std::uint32_t kListedServiceCode = 5;

} // namespace

bool TCDebugMenuTPMS::m_GetServiceList(std::list<std::pair<std::uint64_t, std::uint32_t>>& services,
                                       IServiceNavigation* navigation) {
    TSTvMode tvMode;
    if (navigation->GetTvMode(tvMode) <= 0) {
        std::cout << "GetTvMode failed!" << std::endl;
        return false;
    }
    TCCriteriaHelper query;
    TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_ALL, query, NAVIGATION_SORT_DEFAULT);
    query.WhereNot(SERVICE_FIELD_CHANNEL_TYPE, CHANNEL_TYPE_VIRTUAL);
    query.Fetch(SERVICE_FIELD_ID);

    TSServiceRecords records;
    navigation->GetServiceList(query, records.m_list, TSTvMode(tvMode), 0, 0);
    if (records.m_list.empty()) {
        std::cout << "services.empty()!" << std::endl;
        return false;
    }
    for (const TCServiceData* const record : records.m_list) {
        services.emplace_back(serviceIdField(*record), kListedServiceCode);
    }
    return true;
}

std::uint64_t TCDebugMenuTPMS::m_GetServiceId(EAntennaMode antennaMode, std::uint16_t major) {
    TCSessionOwner<IService> service;
    NorvexAPI::CreateService(service.out());
    TCSessionOwner<IServiceNavigation> navigation;
    NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, navigation.out());

    TSTvMode tvMode;
    navigation->GetTvMode(tvMode);
    const EServiceProfile profile =
        tvMode.m_serviceMode != SERVICE_MODE_DEFAULT ? SERVICE_PROFILE_OPERATOR : SERVICE_PROFILE_DEFAULT;
    // The TV mode of the wanted service; only the TV mode menu also sets it.
    tvMode.m_antennaMode = antennaMode;
    tvMode.m_serviceMode = TCServiceUtility::ServiceProfileToServiceMode(profile);

    TCCriteriaHelper query;
    query.Where(SERVICE_FIELD_PROFILE, profile);
    query.Where(SERVICE_FIELD_LISTED, 1);
    query.Where(SERVICE_FIELD_HIDDEN, 0);
    query.Where(SERVICE_FIELD_MAJOR, major);
    query.Fetch(SERVICE_FIELD_ID);
    // After the fetched field on purpose: the order is part of the query.
    query.Where(SERVICE_FIELD_CHANNEL_TYPE, TCServiceUtility::AntennaModeToDigitalChannelType(antennaMode));

    TCServiceData record;
    if (service->FindService(query, record, 1) <= 0) {
        // No line end: the caller's text follows on the same line.
        std::cout << "FindService failed";
        return INVALID_SERVICE_ID;
    }
    return serviceIdField(record);
}

std::uint64_t TCDebugMenuTPMS::m_GetServiceId(std::uint16_t major) {
    TCSessionOwner<IService> service;
    NorvexAPI::CreateService(service.out());

    TCCriteriaHelper query;
    TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_BY_MAJOR, query, NAVIGATION_SORT_DEFAULT);
    query.Where(SERVICE_FIELD_MAJOR, major);
    query.Fetch(SERVICE_FIELD_ID);

    TCServiceData record;
    if (service->FindService(query, record, 1) <= 0) {
        // No line end here either.
        std::cout << "FindService failed";
        return INVALID_SERVICE_ID;
    }
    return serviceIdField(record);
}
