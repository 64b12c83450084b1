#pragma once

#include <cstdint>

// The list of nets coupled to the current net in one coupling region. It is
// reference counted: Release at zero destroys the object.
class ICRWDCoupledNetsList {
public:
    virtual int32_t AddRef() = 0;  // 0
    // Returns the new entry's index, or -1 when it could not be stored.
    virtual int32_t AddNet(const char* netName, const char* separation, const char* stackupLayer,
                           const char* traceWidth) = 0;      // 1
    virtual void RemoveAll() = 0;                            // 2
    virtual int32_t Release() = 0;                           // 3
    virtual void CopyFrom(ICRWDCoupledNetsList* other) = 0;  // 4

protected:
    ~ICRWDCoupledNetsList() = default;
};
