#include <norvex/client/NavigationModeHelper.h>

// Both directions cover services that are listed and not hidden. All lists are in the line-up's
// order, by number.
int TCNavigationModeHelper::GetNavigationCriteria(ENavigationMode mode, TCCriteriaHelper& criteria,
                                                  ENavigationSortMode) {
    switch (mode) {
    case NAVIGATION_ALL:
    case NAVIGATION_BY_MAJOR:
        criteria.Where(SERVICE_FIELD_LISTED, 1);
        criteria.Where(SERVICE_FIELD_HIDDEN, 0);
        return 1;
    }
    return -1;
}
