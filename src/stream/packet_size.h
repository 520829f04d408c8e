// packet_size.h
// The GigE stream packet size, negotiated once when a camera is set up.
#pragma once

#include "VimbaC.h"

class BLogCollector;

// Lets the camera find the largest packet that the network carries, then caps it. Failures stop nothing. [host thread]
void GVSPAdjustPacketSize(BLogCollector& log, VmbHandle_t camera);
