#pragma once

// The stimulus and eye-diagram data object as the host sees it. The order of
// the operations is the order of the virtual table the host binds to: never
// reorder, insert or remove one.
//
// Periods are in nanoseconds, the duty cycle in percent. No setter validates
// a value; Load checks the data as a whole.
//
// The component index of the jitter flags (slots 12, 13 and 22 to 25) is 0
// Gaussian, 1 uniform, 2 sine. The original left it unchecked and wrote
// outside its three flags; here an index outside 0..2 is refused: the setter
// returns false and changes nothing, the getter returns false.

struct EYEMASK;

class IEyeDiagramData {
public:
    virtual int SetCycleCount(int count) = 0;                        // 0
    virtual int GetCycleCount() const = 0;                           // 1
    virtual int SetSkipBits(int count) = 0;                          // 2
    virtual int GetSkipBits() const = 0;                             // 3
    virtual bool SetAuxFlag(bool flag) = 0;                          // 4
    virtual bool GetAuxFlag() const = 0;                             // 5
    virtual int SetEyeCount(int count) = 0;                          // 6
    virtual int GetEyeCount() const = 0;                             // 7
    virtual void SetPeriod(double nanoseconds) = 0;                  // 8
    virtual double GetPeriod() const = 0;                            // 9
    virtual void SetDutyCycle(double percent) = 0;                   // 10
    virtual double GetDutyCycle() const = 0;                         // 11
    virtual bool SetAddJitter(int component, bool add) = 0;          // 12
    virtual bool GetAddJitter(int component) const = 0;              // 13
    virtual bool SetAdvancedJitter(bool advanced) = 0;               // 14
    virtual bool GetAdvancedJitter() const = 0;                      // 15
    virtual void SetMaxJitter(double value) = 0;                     // 16
    virtual double GetMaxJitter() const = 0;                         // 17
    virtual int SetJitterType(int type) = 0;                         // 18
    virtual int GetJitterType() const = 0;                           // 19
    virtual bool SetJitterRepeatable(bool repeatable) = 0;           // 20
    virtual bool GetJitterRepeatable() const = 0;                    // 21
    virtual bool SetJitterAsTime(int component, bool asTime) = 0;    // 22
    virtual bool GetJitterAsTime(int component) const = 0;           // 23
    virtual bool SetFreqMeasured(int component, bool measured) = 0;  // 24
    virtual bool GetFreqMeasured(int component) const = 0;           // 25
    virtual void SetRandomFreq(double value) = 0;                    // 26
    virtual double GetRandomFreq() const = 0;                        // 27
    virtual void SetSineMag(double value) = 0;                       // 28
    virtual double GetSineMag() const = 0;                           // 29
    virtual void SetSineFreq(double value) = 0;                      // 30
    virtual double GetSineFreq() const = 0;                          // 31
    virtual void SetSineInit(double value) = 0;                      // 32
    virtual double GetSineInit() const = 0;                          // 33
    virtual void SetUniformMag(double value) = 0;                    // 34
    virtual double GetUniformMag() const = 0;                        // 35
    virtual void SetUniformMean(double value) = 0;                   // 36
    virtual double GetUniformMean() const = 0;                       // 37
    virtual int SetSeqType(int code) = 0;                            // 38
    virtual int GetSeqType() const = 0;                              // 39
    virtual int SetInitState(int state) = 0;                         // 40
    virtual int GetInitState() const = 0;                            // 41
    virtual int SetPolyDegree(int degree) = 0;                       // 42
    virtual int GetPolyDegree() const = 0;                           // 43
    virtual void SetMask(const EYEMASK& mask) = 0;                   // 44
    virtual EYEMASK* GetMask() = 0;                                  // 45
    virtual void SetBits(const bool* bits, int count) = 0;           // 46
    virtual int GetBitCount() const = 0;                             // 47
    // Throws std::out_of_range for an index outside 0..count-1: the one
    // operation that raises across the contract.
    virtual bool GetBit(int index) const = 0;                    // 48
    virtual bool Save(const char* location, bool toFile) = 0;    // 49
    virtual bool Load(const char* location, bool fromFile) = 0;  // 50

protected:
    // The host never deletes the object: it gives it back to the factory.
    ~IEyeDiagramData() = default;
};
