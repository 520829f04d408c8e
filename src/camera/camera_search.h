// camera_search.h
// One look at the attached cameras, as the search by serial number takes it.
#pragma once

#include <vector>

#include "VimbaC.h"

using CameraRecords = std::vector<VmbCameraInfo_t>;

// The records of the cameras attached now; none when the list cannot be read as a whole, or claims more cameras than
// can be believed. [host thread]
CameraRecords FetchCameraRecords();

// Gives up a pass's records without freeing them: only the list of the pass that ends a search is released. The one
// place where memory is left behind on purpose, a few hundred bytes for each search that had to try again.
void LeaveUnreleased(CameraRecords records);
