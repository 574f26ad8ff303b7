#include <norvex/core/TreeFormatter.h>

TCTreeFormatter::TCTreeFormatter() = default;

TCTreeFormatter::~TCTreeFormatter() = default;

bool TCTreeFormatter::Extract() {
    return true;
}

bool TCTreeFormatter::FillOut() {
    return true;
}
