/* vimba_simulator.h
 * How a test or a bench reaches into the simulated VimbaC library: other cameras, faults, unplugging, the record of
 * calls. All texts are UTF-8. Every function may be called from any thread but a library callback. Functions that
 * return int give 0 on success; on failure they change nothing and VimbaSimLastError tells why. */
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

/* Forgets faults and recorded calls and sets up the cameras of this JSON configuration (docs/simulator.md); null: those
 * of VIMBA_SIM_CONFIG or, without it, the three built-in ones. Fails while the API is started. */
VIMBA_SIM_CALL int VimbaSimConfigure(const char* json);

/* Adds one fault (a JSON object) or several (an array). They stay until VimbaSimClearFaults or VimbaSimConfigure. */
VIMBA_SIM_CALL int VimbaSimAddFaults(const char* json);
VIMBA_SIM_CALL void VimbaSimClearFaults(void);

/* The camera vanishes from (returns to) the link; discovery events follow, calls to its handle answer as on a lost
 * camera. */
VIMBA_SIM_CALL int VimbaSimUnplug(const char* camera_id);
VIMBA_SIM_CALL int VimbaSimPlug(const char* camera_id);

/* An edge on input line 1 to 4: level 1 rises, level 0 falls. */
VIMBA_SIM_CALL int VimbaSimSetLine(const char* camera_id, int line, int level);

/* One frame arrives now, as if the camera had just exposed it at camera time `timestamp` (0: now), outside any
 * acquisition rule; JSON members override what is delivered:
 * {"status":-1,"timestamp":5,"pixelFormat":16777217,"flags":15,...}. Returns once its callback has returned. Fails when
 * no frame is queued. */
VIMBA_SIM_CALL int VimbaSimDeliverFrame(const char* camera_id, const char* json);

/* Waits until no callback runs and no frame is due at once; 0, or 1 when the deadline passed. */
VIMBA_SIM_CALL int VimbaSimWaitIdle(uint32_t timeout_ms);

/* The record of API calls since start, configuration or clearing: one line a call, in the order in which they began:
 *   VmbFeatureEnumSet(DEV_000F31034C65, "AcquisitionMode", "Continuous") = 0
 * The newest 100,000 lines are kept.
 * Handles print as the camera's id, `system`, `null` or `unknown`. Returns the size the text needs with its terminating
 * zero; copies what fits. */
VIMBA_SIM_CALL size_t VimbaSimCalls(char* buffer, size_t size);
VIMBA_SIM_CALL void VimbaSimClearCalls(void);
/* Recording costs time and memory; a long run may switch it off (1: on, the start). The count goes on. */
VIMBA_SIM_CALL void VimbaSimRecordCalls(int on);
VIMBA_SIM_CALL uint64_t VimbaSimCallCount(void);

/* A JSON object: per camera the frames exposed, delivered, dropped for want of a queued frame, lost packets, queued
 * frames, announced frames, open handles; and whether the API is started. Same size rule as VimbaSimCalls. */
VIMBA_SIM_CALL size_t VimbaSimState(char* buffer, size_t size);

/* Why the last failing call of this thread failed; never null, valid until the thread's next call here. */
VIMBA_SIM_CALL const char* VimbaSimLastError(void);

#ifdef __cplusplus
}
#endif
