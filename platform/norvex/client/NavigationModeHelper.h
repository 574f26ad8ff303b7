#pragma once

#include <norvex/client/CriteriaHelper.h>
#include <norvex/core/Export.h>

// Navigation modes: which services of the line-up are visited, and in which order.
enum ENavigationMode : int {
    NAVIGATION_ALL = 1,
    NAVIGATION_BY_MAJOR = 14,
};

enum ENavigationSortMode : int { NAVIGATION_SORT_DEFAULT = 0 };

class NORVEX_API TCNavigationModeHelper {
public:
    // Adds the conditions of a navigation mode to `criteria`. Above 0 on success; an unknown mode
    // adds nothing. Needs no middleware.
    static int GetNavigationCriteria(ENavigationMode mode, TCCriteriaHelper& criteria, ENavigationSortMode sortMode);
};
