#pragma once

#include <norvex/client/NorvexSession.h>

// Data that comes with a pipeline's service.
class NORVEX_API IDataControl : public INorvexSession {
public:
    // Whether the current service carries captions.
    virtual int CheckCaptionExist(bool* exists) = 0;
};
