/* VimbaC.h
 * The part of the Vimba C API that this project uses, declared in its own words. 64-bit targets only. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32) && defined(VIMBAC_BUILD)
#define VIMBAC_CALL __declspec(dllexport)
#elif defined(_WIN32)
#define VIMBAC_CALL __declspec(dllimport)
#else
#define VIMBAC_CALL __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef int32_t VmbError_t;
typedef void* VmbHandle_t;
typedef char VmbBool_t;
typedef int32_t VmbInt32_t;
typedef uint32_t VmbUint32_t;
typedef int64_t VmbInt64_t;
typedef uint64_t VmbUint64_t;
typedef uint32_t VmbPixelFormat_t;
typedef uint32_t VmbAccessMode_t;
typedef uint32_t VmbFrameFlags_t;
typedef int32_t VmbFrameStatus_t;

/* The Vimba system itself, as a handle. */
#define gVimbaHandle ((VmbHandle_t)1)

enum VmbErrorType {
  VmbErrorSuccess = 0,
  VmbErrorInternalFault = -1,
  VmbErrorApiNotStarted = -2,
  VmbErrorNotFound = -3,
  VmbErrorBadHandle = -4,
  VmbErrorDeviceNotOpen = -5,
  VmbErrorInvalidAccess = -6,
  VmbErrorBadParameter = -7,
  VmbErrorStructSize = -8,
  VmbErrorMoreData = -9,
  VmbErrorWrongType = -10,
  VmbErrorInvalidValue = -11,
  VmbErrorTimeout = -12,
  VmbErrorOther = -13,
  VmbErrorResources = -14,
  VmbErrorInvalidCall = -15,
  VmbErrorNoTL = -16,
  VmbErrorNotImplemented = -17,
  VmbErrorNotSupported = -18,
  VmbErrorIncomplete = -19,
  VmbErrorIO = -20
};

enum VmbAccessModeType {
  VmbAccessModeNone = 0,
  VmbAccessModeFull = 1,
  VmbAccessModeRead = 2,
  VmbAccessModeConfig = 4,
  VmbAccessModeLite = 8
};

enum VmbFrameStatusType {
  VmbFrameStatusComplete = 0,
  VmbFrameStatusIncomplete = -1,
  VmbFrameStatusTooSmall = -2,
  VmbFrameStatusInvalid = -3
};

enum VmbFrameFlagsType {
  VmbFrameFlagsDimension = 1,
  VmbFrameFlagsOffset = 2,
  VmbFrameFlagsFrameID = 4,
  VmbFrameFlagsTimestamp = 8
};

enum VmbPixelFormatType {
  VmbPixelFormatMono8 = 0x01080001,
  VmbPixelFormatBayerGR8 = 0x01080008,
  VmbPixelFormatBayerRG8 = 0x01080009,
  VmbPixelFormatBayerGB8 = 0x0108000A,
  VmbPixelFormatBayerBG8 = 0x0108000B,
  VmbPixelFormatRgb8 = 0x02180014,
  VmbPixelFormatYuv422 = 0x0210001F
};

typedef struct VmbVersionInfo_t {
  VmbUint32_t major;
  VmbUint32_t minor;
  VmbUint32_t patch;
} VmbVersionInfo_t;

/* The texts belong to the library. */
typedef struct VmbCameraInfo_t {
  const char* cameraIdString;
  const char* cameraName;
  const char* modelName;
  const char* serialString;
  VmbAccessMode_t permittedAccess;
  const char* interfaceIdString;
} VmbCameraInfo_t;

typedef struct VmbFrame_t {
  /* Set by the caller. */
  void* buffer;
  VmbUint32_t bufferSize;
  void* context[4];
  /* Filled by the library. */
  VmbFrameStatus_t receiveStatus;
  VmbFrameFlags_t receiveFlags;
  VmbUint32_t imageSize;
  VmbUint32_t ancillarySize;
  VmbPixelFormat_t pixelFormat;
  VmbUint32_t width;
  VmbUint32_t height;
  VmbUint32_t offsetX;
  VmbUint32_t offsetY;
  VmbUint64_t frameID;
  VmbUint64_t timestamp;
} VmbFrame_t;

#ifdef __cplusplus
#define VIMBAC_ASSERT(condition) static_assert(condition, #condition)
#else
#define VIMBAC_ASSERT(condition) _Static_assert(condition, #condition)
#endif
VIMBAC_ASSERT(sizeof(VmbVersionInfo_t) == 12);
VIMBAC_ASSERT(sizeof(VmbCameraInfo_t) == 48);
VIMBAC_ASSERT(sizeof(VmbFrame_t) == 104);
VIMBAC_ASSERT(offsetof(VmbFrame_t, context) == 16);
VIMBAC_ASSERT(offsetof(VmbFrame_t, receiveStatus) == 48);
VIMBAC_ASSERT(offsetof(VmbFrame_t, width) == 68);
VIMBAC_ASSERT(offsetof(VmbFrame_t, frameID) == 88);
VIMBAC_ASSERT(offsetof(VmbFrame_t, timestamp) == 96);

/* Both are called on threads of the library. */
typedef void (*VmbFrameCallback)(VmbHandle_t camera, VmbFrame_t* frame);
typedef void (*VmbInvalidationCallback)(VmbHandle_t handle, const char* name, void* userContext);

VIMBAC_CALL VmbError_t VmbVersionQuery(VmbVersionInfo_t* version, VmbUint32_t sizeofVersionInfo);
VIMBAC_CALL VmbError_t VmbStartup(void);
VIMBAC_CALL void VmbShutdown(void);

VIMBAC_CALL VmbError_t VmbCamerasList(VmbCameraInfo_t* list, VmbUint32_t listLength, VmbUint32_t* numFound,
                                      VmbUint32_t sizeofCameraInfo);
VIMBAC_CALL VmbError_t VmbCameraInfoQuery(const char* id, VmbCameraInfo_t* info, VmbUint32_t sizeofCameraInfo);
VIMBAC_CALL VmbError_t VmbCameraOpen(const char* id, VmbAccessMode_t access, VmbHandle_t* camera);
VIMBAC_CALL VmbError_t VmbCameraClose(VmbHandle_t camera);

VIMBAC_CALL VmbError_t VmbFeatureIntGet(VmbHandle_t handle, const char* name, VmbInt64_t* value);
VIMBAC_CALL VmbError_t VmbFeatureIntSet(VmbHandle_t handle, const char* name, VmbInt64_t value);
VIMBAC_CALL VmbError_t VmbFeatureIntRangeQuery(VmbHandle_t handle, const char* name, VmbInt64_t* min, VmbInt64_t* max);
VIMBAC_CALL VmbError_t VmbFeatureFloatGet(VmbHandle_t handle, const char* name, double* value);
VIMBAC_CALL VmbError_t VmbFeatureFloatSet(VmbHandle_t handle, const char* name, double value);
VIMBAC_CALL VmbError_t VmbFeatureFloatRangeQuery(VmbHandle_t handle, const char* name, double* min, double* max);
VIMBAC_CALL VmbError_t VmbFeatureEnumGet(VmbHandle_t handle, const char* name, const char** value);
VIMBAC_CALL VmbError_t VmbFeatureEnumSet(VmbHandle_t handle, const char* name, const char* value);
VIMBAC_CALL VmbError_t VmbFeatureEnumAsInt(VmbHandle_t handle, const char* name, const char* entry, VmbInt64_t* value);
VIMBAC_CALL VmbError_t VmbFeatureStringGet(VmbHandle_t handle, const char* name, char* buffer, VmbUint32_t bufferSize,
                                           VmbUint32_t* sizeFilled);
VIMBAC_CALL VmbError_t VmbFeatureStringMaxlengthQuery(VmbHandle_t handle, const char* name, VmbUint32_t* maxLength);
VIMBAC_CALL VmbError_t VmbFeatureBoolGet(VmbHandle_t handle, const char* name, VmbBool_t* value);
VIMBAC_CALL VmbError_t VmbFeatureCommandRun(VmbHandle_t handle, const char* name);
VIMBAC_CALL VmbError_t VmbFeatureCommandIsDone(VmbHandle_t handle, const char* name, VmbBool_t* done);
VIMBAC_CALL VmbError_t VmbFeatureInvalidationRegister(VmbHandle_t handle, const char* name,
                                                      VmbInvalidationCallback callback, void* userContext);

VIMBAC_CALL VmbError_t VmbFrameAnnounce(VmbHandle_t camera, const VmbFrame_t* frame, VmbUint32_t sizeofFrame);
VIMBAC_CALL VmbError_t VmbFrameRevokeAll(VmbHandle_t camera);
VIMBAC_CALL VmbError_t VmbCaptureStart(VmbHandle_t camera);
VIMBAC_CALL VmbError_t VmbCaptureEnd(VmbHandle_t camera);
VIMBAC_CALL VmbError_t VmbCaptureFrameQueue(VmbHandle_t camera, const VmbFrame_t* frame, VmbFrameCallback callback);
VIMBAC_CALL VmbError_t VmbCaptureQueueFlush(VmbHandle_t camera);

#ifdef __cplusplus
}
#endif
