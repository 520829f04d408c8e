/* vimba_simulator.h
 * Controls the simulated VimbaC library from a test or a benchmark: other cameras, faults, unplugging, the record of
 * calls. All texts are UTF-8. [any thread] but in a library callback. Functions that return int return 0 on success; on
 * failure they change nothing, and VimbaSimLastError returns the reason. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32) && defined(VIMBAC_BUILD)
#define VIMBA_SIM_CALL __declspec(dllexport)
#elif defined(_WIN32)
#define VIMBA_SIM_CALL __declspec(dllimport)
#else
#define VIMBA_SIM_CALL __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Forgets faults and recorded calls and sets up the cameras of this JSON configuration (docs/simulator.md). Null stands
 * for the configuration that VIMBA_SIM_CONFIG names or, without that variable, the three built-in cameras. Fails while
 * the API is started. */
VIMBA_SIM_CALL int VimbaSimConfigure(const char* json);

/* Adds one fault (a JSON object) or several (an array). They stay until VimbaSimClearFaults or VimbaSimConfigure. */
VIMBA_SIM_CALL int VimbaSimAddFaults(const char* json);
VIMBA_SIM_CALL void VimbaSimClearFaults(void);

/* The camera vanishes from the link, and calls to its handle answer as on a lost camera; or it returns to the link. A
 * discovery event follows. */
VIMBA_SIM_CALL int VimbaSimUnplug(const char* camera_id);
VIMBA_SIM_CALL int VimbaSimPlug(const char* camera_id);

/* An edge on input line 1 to 4: rising with level 1, falling with level 0. */
VIMBA_SIM_CALL int VimbaSimSetLine(const char* camera_id, int line, int level);

/* Delivers one frame at once, past every acquisition rule. JSON members override what the frame says:
 * {"status":-1,"timestamp":5,"pixelFormat":16777217,"flags":15,...}; a timestamp of 0 means now. Returns after its
 * callback. Fails when no frame is queued. */
VIMBA_SIM_CALL int VimbaSimDeliverFrame(const char* camera_id, const char* json);

/* Waits until no callback runs and no frame is due at once. Returns 1 when the time is over before. */
VIMBA_SIM_CALL int VimbaSimWaitIdle(uint32_t timeout_ms);

/* The record of API calls since start, configuration or clearing: one line a call, in the order in which they began:
 *   VmbFeatureEnumSet(DEV_000F31034C65, "AcquisitionMode", "Continuous") = 0
 * Handles print as the camera's id, `system`, `null` or `unknown`. The newest 100,000 lines are kept. Copies what fits
 * into `size` bytes and returns the size that the text needs with its terminating zero. */
VIMBA_SIM_CALL size_t VimbaSimCalls(char* buffer, size_t size);
VIMBA_SIM_CALL void VimbaSimClearCalls(void);
/* Switches recording on (1, as at the start) or off (0), which saves a long run time and memory. The count goes on. */
VIMBA_SIM_CALL void VimbaSimRecordCalls(int on);
VIMBA_SIM_CALL uint64_t VimbaSimCallCount(void);

/* A JSON object: whether the API is started, and for each camera its feature values, its open handles, whether it is
 * plugged in, acquires and captures, and how many frames are announced, queued, exposed, delivered and dropped because
 * none was queued, and how many packets were lost. Same size rule as VimbaSimCalls. */
VIMBA_SIM_CALL size_t VimbaSimState(char* buffer, size_t size);

/* How many frames the camera has exposed since the configuration; 0 for a camera that there is not. */
VIMBA_SIM_CALL uint64_t VimbaSimExposed(const char* camera_id);

/* Why this thread's last call that failed did so. Never null; valid until the thread's next call of this interface. */
VIMBA_SIM_CALL const char* VimbaSimLastError(void);

#ifdef __cplusplus
}
#endif
