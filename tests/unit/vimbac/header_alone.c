/* header_alone.c
 * Both interfaces compile alone as C11 and can be called from C. */
#include "VimbaC.h"
#include "vimba_simulator.h"

int main(void) {
  VmbVersionInfo_t version = {0, 0, 0};
  VmbFrame_t frame = {0};
  VmbCameraInfo_t info;
  VmbUint32_t found = 0;
  VmbHandle_t handle = gVimbaHandle;
  if (VmbVersionQuery(&version, sizeof version) != VmbErrorSuccess || version.major == 0) return 1;
  if (VmbFrameAnnounce(handle, &frame, sizeof frame) != VmbErrorApiNotStarted) return 2;
  if (VimbaSimConfigure("{\"timing\":\"instant\"}") != 0) return 3;
  if (VmbStartup() != VmbErrorSuccess) return 4;
  if (VmbCamerasList(&info, 1, &found, sizeof info) != VmbErrorMoreData || found != 3) return 5;
  VmbShutdown();
  return 0;
}
