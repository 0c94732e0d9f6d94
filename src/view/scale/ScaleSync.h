#pragma once

/// Who follows edits of the custom palette while they are made.
class IScaleSync {
public:
    virtual void SyncScale() = 0;

protected:
    ~IScaleSync() = default;
};
