#pragma once
#include "vldv_api.h"

/// Who follows edits of the custom palette while they are made.
class VLDV_API IScaleSync {
public:
    virtual void SyncScale() = 0;

protected:
    ~IScaleSync() = default;
};
