// camera/pacing.h
// The pause between the packets of a frame, which a camera of Aravis has a register for and does not keep by itself.
#pragma once

#include <arv.h>

// From now on each packet of a frame that this process sends takes the time that it takes on gigabit Ethernet, and the
// pause of the camera's register after it. So the camera has the stream rate that it was told. Answers to the host are
// not held up. With the one to a host that gives up control the acquisition ends. For one camera of the process, which
// must outlive its stream; call it before a host takes control.
void PacePackets(ArvFakeCamera* camera);
