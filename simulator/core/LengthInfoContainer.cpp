#include <norvex/core/LengthInfoContainer.h>

TILengthInfoContainer::~TILengthInfoContainer() = default;
