// The interface between a host and an ASIO driver, version 2, as far as it is used here: a COM
// object that the driver's DLL makes, and records that both sides share.
//
// Integers are of 32 bits, and true is 1. Beside the three methods of IUnknown the methods are
// plain virtual functions: on 32-bit Windows `this` comes in a register and the callee clears the
// stack, which is the compiler's default for them, so no convention is written there. The
// callbacks are plain functions. There is no virtual destructor: the vtable is part of the
// interface, in this order.
#pragma once

#include <cstdint>

#include <unknwn.h>

namespace tonvane {

// What a method reports. Methods that return AsioError return ok for success.
enum AsioError : int32_t {
    ASE_OK = 0,
    ASE_NotPresent = -1000,       // there is no driver, device or such a feature
    ASE_HWMalfunction = -999,     //
    ASE_InvalidParameter = -998,  //
    ASE_InvalidMode = -997,       // not in this state
    ASE_SPNotAdvancing = -996,    // the sample position stands still
    ASE_NoClock = -995,           // the rate cannot be had
    ASE_NoMemory = -994,          //
};

// What a driver asks or tells the host by ASIOCallbacks::asioMessage.
enum AsioSelector : int32_t {
    kAsioSelectorSupported = 1,  // is the selector `value` known?
    kAsioEngineVersion = 2,      // of the interface, for the host: 2
    kAsioResetRequest = 3,       // the driver wants to be made anew
    kAsioBufferSizeChange = 4,   //
    kAsioResyncRequest = 5,      // the driver has lost its place: frames are missing
    kAsioLatenciesChanged = 6,   //
    kAsioSupportsTimeInfo = 7,   // is bufferSwitchTimeInfo to be called?
    kAsioSupportsTimeCode = 8,   //
};

// Of the samples of a channel; these two are used here.
enum class AsioSampleType : int32_t { int32 = 0x12, float32 = 0x13 };

#pragma pack(push, 4)

// One channel's pair of buffers. The host fills in the first two for createBuffers, the driver
// the pointers; at a switch of index i buffers[i] is the host's.
struct ASIOBufferInfo {
    int32_t isInput;
    int32_t channelNum;  // from 0
    void* buffers[2];
};

// The host fills in the first two for getChannelInfo.
struct ASIOChannelInfo {
    int32_t channel;
    int32_t isInput;
    int32_t isActive;  // it has buffers
    int32_t channelGroup;
    AsioSampleType type;
    char name[32];
};

struct ASIOTime;         // time information; not looked at
struct ASIOClockSource;  // not used

struct ASIOCallbacks {
    void (*bufferSwitch)(int32_t index, int32_t direct);
    void (*sampleRateDidChange)(double rate);
    int32_t (*asioMessage)(int32_t selector, int32_t value, void* message, double* option);
    ASIOTime* (*bufferSwitchTimeInfo)(ASIOTime* info, int32_t index, int32_t direct);
};

#pragma pack(pop)

struct IASIO : IUnknown {
    // `system` is a window of the host or null. True for success.
    virtual int32_t init(void* system) = 0;
    virtual void getDriverName(char* name) = 0;  // 32 bytes
    virtual int32_t getDriverVersion() = 0;
    virtual void getErrorMessage(char* text) = 0;  // 124 bytes
    virtual AsioError start() = 0;
    virtual AsioError stop() = 0;
    virtual AsioError getChannels(int32_t* inputs, int32_t* outputs) = 0;
    // In frames, with the buffers counted in; known when there are buffers.
    virtual AsioError getLatencies(int32_t* input, int32_t* output) = 0;
    virtual AsioError getBufferSize(int32_t* least, int32_t* most, int32_t* preferred,
                                    int32_t* granularity) = 0;
    virtual AsioError canSampleRate(double rate) = 0;
    virtual AsioError getSampleRate(double* rate) = 0;
    virtual AsioError setSampleRate(double rate) = 0;
    virtual AsioError getClockSources(ASIOClockSource* clocks, int32_t* count) = 0;
    virtual AsioError setClockSource(int32_t reference) = 0;
    virtual AsioError getSamplePosition(void* position, void* timeStamp) = 0;
    virtual AsioError getChannelInfo(ASIOChannelInfo* info) = 0;
    // `callbacks` stays where it is until disposeBuffers.
    virtual AsioError createBuffers(ASIOBufferInfo* infos, int32_t channels, int32_t frames,
                                    ASIOCallbacks* callbacks) = 0;
    virtual AsioError disposeBuffers() = 0;
    virtual AsioError controlPanel() = 0;
    virtual AsioError future(int32_t selector, void* option) = 0;
    // Says that the output of this switch is in its buffers; ok from a driver that uses it.
    virtual AsioError outputReady() = 0;
};

}  // namespace tonvane
