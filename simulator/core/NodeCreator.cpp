#include <norvex/core/NodeCreator.h>

TINodeCreator::~TINodeCreator() = default;
