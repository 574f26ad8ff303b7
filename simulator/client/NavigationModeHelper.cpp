#include <norvex/client/NavigationModeHelper.h>

// Both ways go through the services that are listed and not hidden; the line-up has one order, by
// its numbers, in which every list comes.
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
